// The two line-oriented quoted-printable encoders: exact output around the
// line-length and white-space columns, the flags, the capacity assertions.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace {

std::string Repeat(char c, std::size_t n) { return std::string(n, c); }

// Encodes into a heap buffer of exactly the required capacity, so that a
// write past it is an ASan report rather than a silent success.
std::string EncodeSTL(const std::string& in, unsigned int flags) {
  unsigned long capacity =
      static_cast<unsigned long>(QPEncodeGetRequiredLength(static_cast<int>(in.size())));
  std::vector<char> buffer(capacity);
  EXPECT_EQ(STL_QPEncode(in.data(), in.size(), buffer.data(), &capacity, flags), 1);
  return std::string(buffer.data(), capacity);
}

std::string Encode2(const std::string& in, unsigned int flags) {
  int capacity = QPEncodeGetRequiredLength(static_cast<int>(in.size()));
  std::vector<char> buffer(static_cast<std::size_t>(capacity));
  EXPECT_EQ(QPEncode2(reinterpret_cast<const unsigned char*>(in.data()),
                      static_cast<int>(in.size()), buffer.data(), &capacity, flags),
            1);
  return std::string(buffer.data(), static_cast<std::size_t>(capacity));
}

struct EncodeCase {
  const char* name;
  std::string input;
  unsigned int flags;
  std::string expected;
};

void PrintTo(const EncodeCase& c, std::ostream* os) { *os << c.name; }

std::string CaseName(const testing::TestParamInfo<EncodeCase>& info) {
  return info.param.name;
}

// Cases where both encoders agree.
std::vector<EncodeCase> CommonCases() {
  const std::string a64 = Repeat('a', 64);
  return {
      {"empty", "", 0, ""},
      {"empty_final_break", "", kQPFinalSoftBreak, "=\r\n"},
      {"equals_sign", "a=b", 0, "a=3Db"},
      {"printable_edges", "!~", 0, "!~"},
      {"underscore_left_alone", "a_b", 0, "a_b"},
      {"delete_char", "\x7F", 0, "=7F"},
      {"line_ends_escaped", "a\r\nb", 0, "a=0D=0Ab"},
      {"nul_byte", std::string("\0", 1), 0, "=00"},
      {"control_byte", "\x1F", 0, "=1F"},
      {"high_bytes_upper_hex", "\x80\xAB\xFF", 0, "=80=AB=FF"},
      {"utf8_text", "caf\xC3\xA9", 0, "caf=C3=A9"},
      {"tab_at_start", "\tx", 0, "\tx"},
      {"tab_at_column_63", Repeat('a', 63) + "\tb", 0, Repeat('a', 63) + "\tb"},
      {"tab_at_column_64", a64 + "\t", 0, a64 + "=09"},
      {"tab_after_soft_break", Repeat('a', 68) + "\tx", 0, Repeat('a', 68) + "=\r\n=09x"},
      {"line_of_67", Repeat('a', 67), 0, Repeat('a', 67)},
      {"line_of_68_no_trailing_break", Repeat('a', 68), 0, Repeat('a', 68)},
      {"line_of_69", Repeat('a', 69), 0, Repeat('a', 68) + "=\r\na"},
      {"run_of_100", Repeat('a', 100), 0, Repeat('a', 68) + "=\r\n" + Repeat('a', 32)},
      {"run_of_137", Repeat('a', 137), 0,
       Repeat('a', 68) + "=\r\n" + Repeat('a', 68) + "=\r\na"},
      {"line_of_68_final_break", Repeat('a', 68), kQPFinalSoftBreak,
       Repeat('a', 68) + "=\r\n"},
      {"line_of_69_final_break", Repeat('a', 69), kQPFinalSoftBreak,
       Repeat('a', 68) + "=\r\na=\r\n"},
      {"escape_ends_at_column_67", a64 + "\xC3" "bc", 0,
       a64 + "=C3b=\r\nc"},
      {"escape_ends_at_column_68", Repeat('a', 65) + "\xC3" "b", 0,
       Repeat('a', 65) + "=C3=\r\nb"},
      {"escape_ends_at_column_69", Repeat('a', 66) + "\xC3" "b", 0,
       Repeat('a', 66) + "=C3=\r\nb"},
      {"escape_ends_at_column_70", Repeat('a', 67) + "\xC3" "b", 0,
       Repeat('a', 67) + "=C3=\r\nb"},
      {"escape_closes_input_past_67", Repeat('a', 67) + "\xC3", 0,
       Repeat('a', 67) + "=C3"},
      {"all_escapes_23_per_line", Repeat('\xFF', 24), 0,
       [] {
         std::string s;
         for (int i = 0; i < 23; ++i) s += "=FF";
         return s + "=\r\n=FF";
       }()},
      {"dot_not_stuffed_without_flag", ".abc", 0, ".abc"},
      {"dot_stuffed_at_start", ".abc", kQPDotStuffing, "..abc"},
      {"dot_inside_line_not_stuffed", "a.b", kQPDotStuffing, "a.b"},
      {"only_dot_both_flags", ".", kQPDotStuffing | kQPFinalSoftBreak, "..=\r\n"},
      {"dot_after_soft_break_stuffed", Repeat('a', 68) + ".x", kQPDotStuffing,
       Repeat('a', 68) + "=\r\n..x"},
      {"dot_after_soft_break_plain", Repeat('a', 68) + ".x", 0,
       Repeat('a', 68) + "=\r\n.x"},
      // The extra dot counts towards the column, so the line breaks a byte
      // earlier than it would unstuffed.
      {"stuffed_dot_moves_break", "." + Repeat('a', 66) + "b", kQPDotStuffing,
       ".." + Repeat('a', 66) + "=\r\nb"},
      {"unstuffed_dot_no_break", "." + Repeat('a', 66) + "b", 0,
       "." + Repeat('a', 66) + "b"},
      {"escaped_line_end_is_not_a_line_start", "\n.", kQPDotStuffing, "=0A."},
  };
}

class StlQpEncode : public testing::TestWithParam<EncodeCase> {};
TEST_P(StlQpEncode, writes_exact_bytes) {
  EXPECT_EQ(EncodeSTL(GetParam().input, GetParam().flags), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(common, StlQpEncode, testing::ValuesIn(CommonCases()), CaseName);
INSTANTIATE_TEST_SUITE_P(
    space_rule, StlQpEncode,
    testing::ValuesIn(std::vector<EncodeCase>{
        {"hello_world", "Hello World", 0, "Hello=20World"},
        {"space_at_start", " x", 0, "=20x"},
        {"space_at_column_10", "0123456789 x", 0, "0123456789=20x"},
        {"spaces_past_column_63", Repeat('a', 63) + "   x", 0,
         Repeat('a', 63) + "=20=20=\r\n=20x"},
    }),
    CaseName);

class QpEncode2 : public testing::TestWithParam<EncodeCase> {};
TEST_P(QpEncode2, writes_exact_bytes) {
  EXPECT_EQ(Encode2(GetParam().input, GetParam().flags), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(common, QpEncode2, testing::ValuesIn(CommonCases()), CaseName);
INSTANTIATE_TEST_SUITE_P(
    space_rule, QpEncode2,
    testing::ValuesIn(std::vector<EncodeCase>{
        {"hello_world", "Hello World", 0, "Hello World"},
        {"space_at_start", " x", 0, " x"},
        {"space_at_column_63", Repeat('a', 63) + " b", 0, Repeat('a', 63) + " b"},
        {"space_at_column_64", Repeat('a', 64) + " ", 0, Repeat('a', 64) + "=20"},
        {"spaces_past_column_63", Repeat('a', 63) + "   x", 0,
         Repeat('a', 63) + " =20=20=\r\nx"},
        {"space_after_stuffed_dot", ". x", kQPDotStuffing | kQPFinalSoftBreak,
         ".. x=\r\n"},
    }),
    CaseName);

TEST(qp_encode_required_length, follows_the_capacity_formula) {
  const struct {
    int n;
    int expected;
  } cases[] = {{0, 3}, {1, 6}, {22, 69}, {23, 75}, {67, 210}, {68, 216}, {1000, 3135}};
  for (const auto& c : cases) {
    EXPECT_EQ(QPEncodeGetRequiredLength(c.n), c.expected) << c.n;
  }
  EXPECT_EQ(QPDecodeGetRequiredLength(0), 0);
  EXPECT_EQ(QPDecodeGetRequiredLength(1234), 1234);
}

// The formula must cover the worst case: every byte escaped plus a soft
// break every 23 bytes and the final break.
TEST(qp_encode_required_length, covers_every_byte_escaped) {
  for (int n = 0; n <= 600; ++n) {
    const std::string in = Repeat('\x01', static_cast<std::size_t>(n));
    const std::string out = EncodeSTL(in, kQPDotStuffing | kQPFinalSoftBreak);
    EXPECT_LE(out.size(), static_cast<std::size_t>(QPEncodeGetRequiredLength(n))) << n;
    EXPECT_EQ(out.size(), 3u * n + 3u * (n == 0 ? 0 : (n - 1) / 23) + 3u) << n;
  }
}

TEST(qp_encode_null_pointers, return_zero_and_leave_length) {
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

TEST(qp_encode_capacity, exact_requirement_is_enough) {
  unsigned long capacity = 6;
  char dst[6];
  ASSERT_EQ(STL_QPEncode("\x01", 1, dst, &capacity, kQPFinalSoftBreak), 1);
  EXPECT_EQ(std::string(dst, capacity), "=01=\r\n");
}

constexpr char kRequiredText[] =
    "Assertion failed: \\(\\*pnDestLen >= QPEncodeGetRequiredLength\\(nSrcLen\\)\\)";
constexpr char kWrittenText[] = "Assertion failed: \\(\\*pnDestLen >= nWritten\\)";

class qp_encode_death : public testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(qp_encode_death, stl_asserts_below_required_capacity) {
  EXPECT_DEATH(
      {
        char dst[8];
        unsigned long capacity = 5;  // one short of QPEncodeGetRequiredLength(1)
        STL_QPEncode("a", 1, dst, &capacity, 0);
      },
      kRequiredText);
}

TEST_F(qp_encode_death, qpencode2_asserts_below_required_capacity) {
  EXPECT_DEATH(
      {
        char dst[128];
        int capacity = 74;  // QPEncodeGetRequiredLength(23) is 75
        const std::string in = Repeat('a', 23);
        QPEncode2(reinterpret_cast<const unsigned char*>(in.data()), 23, dst, &capacity,
                  0);
      },
      kRequiredText);
}

// The capacity formula is computed in int; a length it cannot describe
// gets past the first check, and the write check must stop the encoder
// before it passes the destination.
TEST_F(qp_encode_death, stl_asserts_before_writing_past_capacity) {
  if (sizeof(unsigned long) < 8) GTEST_SKIP() << "needs a 64-bit unsigned long";
  EXPECT_DEATH(
      {
        const std::string src = Repeat('\x01', 16);
        char dst[12];
        unsigned long capacity = sizeof dst;
        // Seen as 3 bytes by the capacity formula (12 required).
        STL_QPEncode(src.data(), (1UL << 32) + 3, dst, &capacity, 0);
      },
      kWrittenText);
}

TEST_F(qp_encode_death, qpencode2_asserts_before_writing_past_capacity) {
  EXPECT_DEATH(
      {
        const std::string src = Repeat('\x01', 16);
        char dst[6];
        int capacity = sizeof dst;
        // The capacity formula wraps to a negative value for INT_MAX.
        QPEncode2(reinterpret_cast<const unsigned char*>(src.data()), INT_MAX, dst,
                  &capacity, 0);
      },
      kWrittenText);
}

// A negative length needs no capacity by the formula, but the final soft
// break still has to fit.
TEST(qp_encode_capacity, final_soft_break_is_checked_too) {
  ScopedAssertionHandler handler(&ThrowingAssertionHandler);
  const unsigned char src[] = {'a'};
  char dst[4] = {'#', '#', '#', '#'};
  int capacity = 2;
  try {
    QPEncode2(src, -1, dst, &capacity, kQPFinalSoftBreak);
    ADD_FAILURE() << "no assertion";
  } catch (const AssertionFailure& failure) {
    EXPECT_EQ(failure.text(), "*pnDestLen >= nWritten");
  }
  EXPECT_EQ(std::string(dst, 4), "####");
  capacity = 3;
  ASSERT_EQ(QPEncode2(src, -1, dst, &capacity, kQPFinalSoftBreak), 1);
  EXPECT_EQ(std::string(dst, static_cast<std::size_t>(capacity)), "=\r\n");
}

TEST(qp_encode_capacity, write_check_leaves_bytes_past_capacity_alone) {
  if (sizeof(unsigned long) < 8) GTEST_SKIP() << "needs a 64-bit unsigned long";
  ScopedAssertionHandler handler(&ThrowingAssertionHandler);
  const std::string src = Repeat('\x01', 16);
  std::string dst(32, '#');
  unsigned long capacity = 13;
  try {
    STL_QPEncode(src.data(), (1UL << 32) + 3, dst.data(), &capacity, 0);
    ADD_FAILURE() << "no assertion";
  } catch (const AssertionFailure& failure) {
    EXPECT_EQ(failure.text(), "*pnDestLen >= nWritten");
  }
  EXPECT_EQ(dst, "=01=01=01=01" + Repeat('#', 20));
  EXPECT_EQ(capacity, 13u);
}

}  // namespace
}  // namespace phonepim
