// The two line-oriented quoted-printable encoders: exact output around the
// line-length and white-space columns, the flags, the capacity assertions.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace {

std::string A(std::size_t n) { return std::string(n, 'a'); }

// Encodes into a heap buffer of exactly the required capacity, so that a
// write past it is an ASan report rather than a silent success.
std::string EncodeSTL(const std::string& in, unsigned flags) {
  auto capacity = static_cast<unsigned long>(QPEncodeGetRequiredLength(static_cast<int>(in.size())));
  std::vector<char> buffer(capacity);
  EXPECT_EQ(STL_QPEncode(in.data(), in.size(), buffer.data(), &capacity, flags), 1);
  return std::string(buffer.data(), capacity);
}

std::string Encode2(const std::string& in, unsigned flags) {
  int capacity = QPEncodeGetRequiredLength(static_cast<int>(in.size()));
  std::vector<char> buffer(static_cast<std::size_t>(capacity));
  EXPECT_EQ(QPEncode2(reinterpret_cast<const unsigned char*>(in.data()), static_cast<int>(in.size()),
                      buffer.data(), &capacity, flags),
            1);
  return std::string(buffer.data(), static_cast<std::size_t>(capacity));
}

constexpr unsigned kDot = kQPDotStuffing, kFinal = kQPFinalSoftBreak;

TEST(qp_encode, both_encoders_break_lines_at_the_same_columns) {
  const std::string a64 = A(64);
  const struct {
    std::string input;
    unsigned flags;
    std::string expected;
  } rows[] = {
      {"", 0, ""},
      {"", kFinal, "=\r\n"},
      {"a=b_!~\x7F\r\n" + std::string(1, '\0') + "\x1F\x80\xAB\xFF", 0, "a=3Db_!~=7F=0D=0A=00=1F=80=AB=FF"},
      // A tab is literal up to column 63.
      {"\tx" + A(61) + "\tb", 0, "\tx" + A(61) + "\tb"},
      {a64 + "\t", 0, a64 + "=09"},
      // A TAB first on a line after a soft break would read as folding.
      {A(68) + "\tx", 0, A(68) + "=\r\n=09x"},
      {A(68), 0, A(68)},
      {A(69), 0, A(68) + "=\r\na"},
      {A(137), kFinal, A(68) + "=\r\n" + A(68) + "=\r\na=\r\n"},
      // An escape that would end past column 67 moves to the next line,
      // unless it closes the input.
      {a64 + "\xC3" "bc", 0, a64 + "=C3b=\r\nc"},
      {A(65) + "\xC3" "b", 0, A(65) + "=C3=\r\nb"},
      {A(67) + "\xC3", 0, A(67) + "=C3"},
      {std::string(24, '\xFF'), 0, [] {
         std::string s;
         for (int i = 0; i < 23; ++i) s += "=FF";
         return s + "=\r\n=FF";
       }()},
      {".a.b", kDot, "..a.b"},
      {".", kDot | kFinal, "..=\r\n"},
      {A(68) + ".x", kDot, A(68) + "=\r\n..x"},
      {A(68) + ".x", 0, A(68) + "=\r\n.x"},
      // The extra dot counts towards the column.
      {"." + A(66) + "b", kDot, ".." + A(66) + "=\r\nb"},
      {"\n.", kDot, "=0A."},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(EncodeSTL(r.input, r.flags), r.expected) << &r - rows;
    EXPECT_EQ(Encode2(r.input, r.flags), r.expected) << &r - rows;
  }
}

TEST(qp_encode, stl_escapes_every_space_and_qpencode2_only_past_column_63) {
  const struct {
    std::string input;
    unsigned flags;
    std::string stl, two;
  } rows[] = {
      {" x y", 0, "=20x=20y", " x y"},
      {A(63) + " b", 0, A(63) + "=20b", A(63) + " b"},
      {A(64) + " ", 0, A(64) + "=20", A(64) + "=20"},
      {A(63) + "   x", 0, A(63) + "=20=20=\r\n=20x", A(63) + " =20=20=\r\nx"},
      {". x", kDot | kFinal, "..=20x=\r\n", ".. x=\r\n"},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(EncodeSTL(r.input, r.flags), r.stl) << &r - rows;
    EXPECT_EQ(Encode2(r.input, r.flags), r.two) << &r - rows;
  }
}

// The formula must cover the worst case: every byte escaped plus a soft
// break every 23 bytes and the final break.
TEST(qp_encode, required_length_covers_every_byte_escaped) {
  const int lengths[][2] = {{0, 3}, {1, 6}, {22, 69}, {23, 75}, {68, 216}, {1000, 3135}};
  for (const auto& [n, expected] : lengths) EXPECT_EQ(QPEncodeGetRequiredLength(n), expected) << n;
  EXPECT_EQ(QPDecodeGetRequiredLength(1234), 1234);
  for (int n = 0; n <= 600; ++n) {
    const std::string out = EncodeSTL(std::string(static_cast<std::size_t>(n), '\x01'), kDot | kFinal);
    EXPECT_EQ(out.size(), 3u * n + 3u * (n == 0 ? 0 : (n - 1) / 23) + 3u) << n;
  }
  char dst[8];
  unsigned long length = sizeof dst;
  EXPECT_EQ(STL_QPEncode(nullptr, 1, dst, &length, 0), 0);
  EXPECT_EQ(STL_QPEncode("a", 1, nullptr, &length, 0), 0);
  EXPECT_EQ(STL_QPEncode("a", 1, dst, nullptr, 0), 0);
  EXPECT_EQ(length, sizeof dst);
  int length2 = 8;
  const unsigned char one[] = {'a'};
  EXPECT_EQ(QPEncode2(nullptr, 1, dst, &length2, 0), 0);
  EXPECT_EQ(QPEncode2(one, 1, nullptr, &length2, 0), 0);
  EXPECT_EQ(QPEncode2(one, 1, dst, nullptr, 0), 0);
  EXPECT_EQ(length2, 8);
}

TEST(qp_encode, asserts_a_capacity_below_the_required_length) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        char dst[8];
        unsigned long capacity = 5;  // one short of QPEncodeGetRequiredLength(1)
        STL_QPEncode("a", 1, dst, &capacity, 0);
      },
      "Assertion failed: \\(\\*pnDestLen >= QPEncodeGetRequiredLength\\(nSrcLen\\)\\)");
  ScopedAssertionHandler handler(&ThrowingAssertionHandler);
  char dst[128];
  int capacity = 74;  // QPEncodeGetRequiredLength(23) is 75
  try {
    QPEncode2(reinterpret_cast<const unsigned char*>(A(23).data()), 23, dst, &capacity, 0);
    ADD_FAILURE() << "no assertion";
  } catch (const AssertionFailure& failure) {
    EXPECT_EQ(failure.text(), std::string("*pnDestLen >= QPEncodeGetRequiredLength(nSrcLen)"));
  }
  unsigned long exact = 6;
  ASSERT_EQ(STL_QPEncode("\x01", 1, dst, &exact, kFinal), 1);
  EXPECT_EQ(std::string(dst, exact), "=01=\r\n");
}

// The capacity formula is computed in int; a length it cannot describe gets
// past the first check, and the write check must stop the encoder before it
// passes the destination.
TEST(qp_encode, asserts_before_writing_past_the_capacity) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const std::string src(16, '\x01');
  EXPECT_DEATH(
      {
        char dst[6];
        int capacity = sizeof dst;
        // The formula wraps to a negative value for INT_MAX.
        QPEncode2(reinterpret_cast<const unsigned char*>(src.data()), INT_MAX, dst, &capacity, 0);
      },
      "Assertion failed: \\(\\*pnDestLen >= nWritten\\)");
  ScopedAssertionHandler handler(&ThrowingAssertionHandler);
  std::string dst(32, '#');
  unsigned long capacity = 13;
  // Seen as 3 bytes by the capacity formula (12 required).
  EXPECT_THROW(STL_QPEncode(src.data(), (1UL << 32) + 3, dst.data(), &capacity, 0), AssertionFailure);
  EXPECT_EQ(dst, "=01=01=01=01" + std::string(20, '#'));
  EXPECT_EQ(capacity, 13u);
  // A negative length needs no capacity by the formula, but the final soft
  // break still has to fit.
  const unsigned char one[] = {'a'};
  int capacity2 = 2;
  EXPECT_THROW(QPEncode2(one, -1, dst.data(), &capacity2, kFinal), AssertionFailure);
  EXPECT_EQ(dst.substr(0, 2), "=0");
  capacity2 = 3;
  ASSERT_EQ(QPEncode2(one, -1, dst.data(), &capacity2, kFinal), 1);
  EXPECT_EQ(dst.substr(0, 3), "=\r\n");
}

}  // namespace
}  // namespace phonepim
