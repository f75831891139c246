// The quoted-printable decoders: NGDecodeQuotedPrintableX (what the readers
// use), the transfer-encoding pair STL_QPDecode and QPDecode2, which must
// give the same bytes including the byte past the end they read and write,
// and the header-word encoder NGEncodeQuotedPrintable.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"

namespace phonepim {
namespace {

using namespace std::string_literals;
constexpr int kQP = kEncodingQuotedPrintable;

struct Outcome {
  int result;         // the decoder's result: a length, -1, or STL's 0/1
  std::string bytes;  // what it reported as written
  bool operator==(const Outcome&) const = default;
};
void PrintTo(const Outcome& o, std::ostream* os) { *os << o.result << " " << ::testing::PrintToString(o.bytes); }

TEST(ng_decode, gives_exact_bytes_and_reads_one_byte_past_the_source_at_most) {
  const struct {
    std::string src;
    signed char underscoreIsSpace;
    Outcome expected;
    char past = '\0';  // the only byte beyond the source the decoder may read
    int dstLen = -1;   // -1: the source length
  } rows[] = {
      {"", 1, {0, ""}},
      {"A=3d_b", 1, {4, "A= b"}},
      {"A=3d_b", 0, {4, "A=_b"}},
      {"_", -1, {1, " "}},
      {"=5F=c3=A9", 1, {3, "_\xC3\xA9"}},
      {"a\r\nb", 1, {4, "a\r\nb"}},
      // Invalid escapes are kept as text; the second character of "==" is
      // looked at as the first digit.
      {"=3G", 1, {2, "3G"}},
      {"==41", 1, {3, "=41"}},
      {"abc=", 1, {-1, ""}},
      // Soft breaks of any line end, up to two line-end characters.
      {"line=\nnext", 1, {8, "linenext"}},
      {"a=\r\rb", 1, {2, "ab"}},
      {"a=\r\n\r\nb", 1, {4, "a\r\nb"}},
      {"=\r", 1, {0, ""}},
      {"a=C3=\r\n=A9", 1, {3, "a\xC3\xA9"}},
      // "=X" at the very end takes its second digit from the byte after it.
      {"=4", 1, {1, "A"}, '1'},
      {"=4", 1, {2, "4\0"s}},
      {"x=Z", 1, {3, "xZ\0"s}},
      {"a=\r", 1, {1, "a"}, '\n'},
      // The destination must be exactly as long as the source, or hold all.
      {"abc", 1, {-1, ""}, '\0', 4},
      {"abcd", 1, {-1, ""}, '\0', 2},
      {"=41=42", 1, {2, "AB"}, '\0', 2},
      {"ab=ZZ", 1, {-1, ""}, '\0', 3},
      {"ab=ZZ", 1, {4, "abZZ"}, '\0', 4},
  };
  for (const auto& r : rows) {
    std::vector<char> source(r.src.begin(), r.src.end());
    source.push_back(r.past);
    const auto dstLen = static_cast<unsigned>(r.dstLen < 0 ? static_cast<int>(r.src.size()) : r.dstLen);
    std::vector<char> dst(dstLen + 1);
    const int n = NGDecodeQuotedPrintableX(source.data(), static_cast<unsigned>(r.src.size()), dst.data(),
                                           dstLen, r.underscoreIsSpace);
    EXPECT_EQ((Outcome{n, n < 0 ? "" : std::string(dst.data(), static_cast<std::size_t>(n))}), r.expected)
        << &r - rows;
  }
  char src[] = "a_=41";
  char dst[5];
  EXPECT_EQ(NGDecodeQuotedPrintable(src, 5, dst, 5), 3);
  EXPECT_EQ(std::string(dst, 3), "a A");
}

TEST(transfer_decode, both_decoders_give_the_same_exact_bytes) {
  const struct {
    std::string src;
    int nEncoding;
    unsigned flags;
    Outcome expected;  // the bytes include dst[length]: the byte past the source
    char past = '\0';
  } rows[] = {
      {"", kQP, 0, {1, "\0"s}},
      // The byte after the source is copied as the terminator; an '=' there
      // cannot start an escape and goes out as a NUL.
      {"abc", kQP, 0, {1, "abcZ"}, 'Z'},
      {"a", kQP, 0, {1, "a\0"s}, '='},
      {"=4a=ff_", kQP, 0, {1, "J\xFF_\0"s}},
      {"line=\r\nnext", kQP, 0, {1, "linenext\0"s}},
      {"A\r\nB\nC\rD", kQP, 0, {1, "ABCD\0"s}},
      {"=\n", kQP, 0, {0, ""}},
      {"a=\rb", kQP, 0, {0, ""}},
      {"abc=", kQP, 0, {0, ""}},
      {"a= b", kQP, 0, {0, ""}},
      {"==41", kQP, 0, {0, ""}},
      // Read by strtol in base 16: it stops at the first non-hex character.
      {"=G1=1G=0x", kQP, 0, {1, "\0\x01\0\0"s}},
      {"a=0D=0Ab=0d", kEncodingQuotedPrintableCR, 0, {1, "a\n\nb\r\0"s}},
      {"=0D", kEncodingBase64, 0, {1, "\r\0"s}},
      // "=X" closing the source takes the terminator as its second digit and
      // the escape's byte then falls outside the reported length.
      {"ab=4", kQP, 0, {1, "ab\x04"}},
      {"=4", kQP, 0, {1, "A"}, '1'},
      {"..a", kQP, 0, {1, "..a\0"s}},
      {".a.", kQP, kQPDotStuffing, {1, "a.\0"s}},
      {"a\r\n..b", kQP, kQPDotStuffing, {1, "a.b\0"s}},
      {"x=\r\n..y", kQP, kQPDotStuffing, {1, "x.y\0"s}},
      {"=2E=41.", kQP, kQPDotStuffing, {1, ".A.\0"s}},
  };
  for (const auto& r : rows) {
    std::vector<char> source(r.src.begin(), r.src.end());
    source.push_back(r.past);
    std::vector<char> dst(r.src.size() + 1, '#');
    unsigned long length = 12345;
    const int rc = STL_QPDecode(source.data(), r.src.size(), dst.data(), &length, r.nEncoding, r.flags);
    const Outcome stl{rc, rc == 1 ? std::string(dst.data(), length + 1) : ""};
    EXPECT_EQ(stl, r.expected) << &r - rows;
    if (rc != 1) {
      EXPECT_EQ(length, 12345u) << "length changed on failure";
    }
    std::vector<char> dst2(r.src.size() + 1, '#');
    int length2 = 12345;
    const int rc2 = QPDecode2(reinterpret_cast<const unsigned char*>(source.data()),
                              static_cast<int>(r.src.size()), dst2.data(), &length2, r.nEncoding, r.flags);
    EXPECT_EQ((Outcome{rc2, rc2 == 1 ? std::string(dst2.data(), static_cast<std::size_t>(length2) + 1) : ""}), stl)
        << "STL_QPDecode and QPDecode2 disagree on row " << &r - rows;
  }
  char dst[4] = {'#'};
  unsigned long length = 7;
  EXPECT_EQ(STL_QPDecode(nullptr, 1, dst, &length, kQP, 0), 0);
  EXPECT_EQ(STL_QPDecode("a", 1, nullptr, &length, kQP, 0), 0);
  EXPECT_EQ(STL_QPDecode("a", 1, dst, nullptr, kQP, 0), 0);
  EXPECT_EQ(length, 7u);
  int length2 = 7;
  const unsigned char src[] = "abc";
  EXPECT_EQ(QPDecode2(nullptr, 1, dst, &length2, kQP, 0), 0);
  EXPECT_EQ(QPDecode2(src, 1, nullptr, &length2, kQP, 0), 0);
  EXPECT_EQ(QPDecode2(src, 1, dst, nullptr, kQP, 0), 0);
  EXPECT_EQ(length2, 7);
  // A negative length reads nothing.
  EXPECT_EQ(QPDecode2(src, -5, dst, &length2, kQP, 0), 1);
  EXPECT_EQ(length2, 0);
  EXPECT_EQ(dst[0], '#');
}

TEST(ng_encode, escapes_what_is_not_printable_and_needs_room_for_it) {
  const struct {
    std::string src;
    Outcome expected;
    int dstLen = -1;  // -1: three times the source
  } rows[] = {
      {"", {0, ""}},
      // Spaces, tabs and line ends literal, no line limit; '_' and '=' escaped.
      {"a b_=\t\r\n<>~" + std::string(100, 'a'), {115, "a b=5F=3D\t\r\n<>~" + std::string(100, 'a')}},
      {"\x7F\x80\xFF\x1F"s + '\0', {15, "=7F=80=FF=1F=00"}},
      {"abc", {-1, ""}, 2},
      {"abc", {3, "abc"}, 3},
      {"\xC3\xA9", {-1, ""}, 5},
      {"\xC3\xA9", {6, "=C3=A9"}, 6},
  };
  for (const auto& r : rows) {
    const auto dstLen = static_cast<unsigned>(r.dstLen < 0 ? 3 * static_cast<int>(r.src.size()) : r.dstLen);
    std::vector<char> dst(dstLen + 1);
    const int n = NGEncodeQuotedPrintable(r.src.data(), static_cast<unsigned>(r.src.size()), dst.data(), dstLen);
    EXPECT_EQ((Outcome{n, n < 0 ? "" : std::string(dst.data(), static_cast<std::size_t>(n))}), r.expected)
        << &r - rows;
  }
}

}  // namespace
}  // namespace phonepim
