// The quoted-printable decoders: NGDecodeQuotedPrintableX (what the readers
// use), the transfer-encoding pair STL_QPDecode and QPDecode2, which must
// give the same bytes including the byte past the end they read and write,
// and the header-word encoder NGEncodeQuotedPrintable; the two line-oriented
// encoders around the line-length and white-space columns, their flags and
// capacity assertions; the one-pass UTF-8 codec against the two steps it
// stands in for.
#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "encoding/QuotedPrintableUTF8.h"
#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace {

using namespace std::string_literals;
constexpr int kQP = kEncodingQuotedPrintable;

// The decoder's result (a length, -1, or STL's 0/1) and what it reported as
// written.
using Outcome = std::pair<int, std::string>;

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
  char dst[5];
  EXPECT_EQ(NGDecodeQuotedPrintable("a_=41", 5, dst, 5), 3);
  EXPECT_EQ(std::string(dst, 3), "a A");
}

TEST(transfer_decode, both_decoders_give_the_same_exact_bytes) {
  // The expected bytes include dst[length], the byte past the source.
  const struct { std::string src; int nEncoding; unsigned flags; Outcome expected; char past = '\0'; } rows[] = {
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
    EXPECT_TRUE(rc == 1 || length == 12345u) << "length changed on failure in row " << &r - rows;
    std::vector<char> dst2(r.src.size() + 1, '#');
    int length2 = 12345;
    const int rc2 = QPDecode2(reinterpret_cast<const unsigned char*>(source.data()),
                              static_cast<int>(r.src.size()), dst2.data(), &length2, r.nEncoding, r.flags);
    EXPECT_EQ((Outcome{rc2, rc2 == 1 ? std::string(dst2.data(), static_cast<std::size_t>(length2) + 1) : ""}), stl)
        << "STL_QPDecode and QPDecode2 disagree on row " << &r - rows;
  }
  char dst[4] = {'#'};
  unsigned long length = 7;
  int length2 = 7;
  const unsigned char src[] = "abc";
  EXPECT_EQ((std::vector{STL_QPDecode(nullptr, 1, dst, &length, kQP, 0), STL_QPDecode("a", 1, nullptr, &length, kQP, 0),
                         STL_QPDecode("a", 1, dst, nullptr, kQP, 0), QPDecode2(nullptr, 1, dst, &length2, kQP, 0),
                         QPDecode2(src, 1, nullptr, &length2, kQP, 0), QPDecode2(src, 1, dst, nullptr, kQP, 0)}),
            std::vector(6, 0));
  EXPECT_EQ(std::pair(length, length2), std::pair(7UL, 7));
  // A negative length reads nothing.
  EXPECT_EQ(QPDecode2(src, -5, dst, &length2, kQP, 0), 1);
  EXPECT_EQ(std::pair(length2, dst[0]), std::pair(0, '#'));
}

TEST(ng_encode, escapes_what_is_not_printable_and_needs_room_for_it) {
  // dstLen -1: three times the source.
  const struct { std::string src; Outcome expected; int dstLen = -1; } rows[] = {
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

TEST(qp_encode, both_encoders_break_lines_at_the_same_columns_and_differ_on_spaces) {
  const std::string a64 = A(64);
  std::string ff23;
  for (int i = 0; i < 23; ++i) ff23 += "=FF";
  const struct {
    std::string input;
    unsigned flags;
    std::string stl;
    std::optional<std::string> two = std::nullopt;  // nothing: as STL_QPEncode
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
      {std::string(24, '\xFF'), 0, ff23 + "=\r\n=FF"},
      {".a.b", kDot, "..a.b"},
      {".", kDot | kFinal, "..=\r\n"},
      {A(68) + ".x", kDot, A(68) + "=\r\n..x"},
      {A(68) + ".x", 0, A(68) + "=\r\n.x"},
      // The extra dot counts towards the column.
      {"." + A(66) + "b", kDot, ".." + A(66) + "=\r\nb"},
      {"\n.", kDot, "=0A."},
      // STL_QPEncode escapes every space, QPEncode2 only past column 63.
      {" x y", 0, "=20x=20y", " x y"},
      {A(63) + " b", 0, A(63) + "=20b", A(63) + " b"},
      {A(64) + " ", 0, A(64) + "=20"},
      {A(63) + "   x", 0, A(63) + "=20=20=\r\n=20x", A(63) + " =20=20=\r\nx"},
      {". x", kDot | kFinal, "..=20x=\r\n", ".. x=\r\n"},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(EncodeSTL(r.input, r.flags), r.stl) << &r - rows;
    EXPECT_EQ(Encode2(r.input, r.flags), r.two.value_or(r.stl)) << &r - rows;
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
  int length2 = 8;
  const unsigned char one[] = {'a'};
  EXPECT_EQ((std::vector{STL_QPEncode(nullptr, 1, dst, &length, 0), STL_QPEncode("a", 1, nullptr, &length, 0),
                         STL_QPEncode("a", 1, dst, nullptr, 0), QPEncode2(nullptr, 1, dst, &length2, 0),
                         QPEncode2(one, 1, nullptr, &length2, 0), QPEncode2(one, 1, dst, nullptr, 0)}),
            std::vector(6, 0));
  EXPECT_EQ(std::pair(length, length2), std::pair(sizeof dst, 8));
}

// The capacity formula is computed in int; a length it cannot describe gets
// past the first check, and the write check must stop the encoder before it
// passes the destination.
TEST(qp_encode, asserts_a_capacity_too_small_before_and_while_writing) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        char dst[8];
        unsigned long capacity = 5;  // one short of QPEncodeGetRequiredLength(1)
        STL_QPEncode("a", 1, dst, &capacity, 0);
      },
      "Assertion failed: \\(\\*pnDestLen >= QPEncodeGetRequiredLength\\(nSrcLen\\)\\)");
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
  std::string dst(128, '#');
  int capacity2 = 74;  // QPEncodeGetRequiredLength(23) is 75
  try {
    QPEncode2(reinterpret_cast<const unsigned char*>(A(23).data()), 23, dst.data(), &capacity2, 0);
    ADD_FAILURE() << "no assertion";
  } catch (const AssertionFailure& failure) {
    EXPECT_EQ(failure.text(), std::string("*pnDestLen >= QPEncodeGetRequiredLength(nSrcLen)"));
  }
  unsigned long capacity = 6;
  ASSERT_EQ(STL_QPEncode("\x01", 1, dst.data(), &capacity, kFinal), 1);
  EXPECT_EQ(dst.substr(0, capacity), "=01=\r\n");
  capacity = 13;
  // Seen as 3 bytes by the capacity formula (12 required).
  EXPECT_THROW(STL_QPEncode(src.data(), (1UL << 32) + 3, dst.data(), &capacity, 0), AssertionFailure);
  EXPECT_EQ(dst.substr(0, 32), "=01=01=01=01" + std::string(20, '#'));
  EXPECT_EQ(capacity, 13u);
  // A negative length needs no capacity by the formula, but the final soft
  // break still has to fit.
  const unsigned char one[] = {'a'};
  capacity2 = 2;
  EXPECT_THROW(QPEncode2(one, -1, dst.data(), &capacity2, kFinal), AssertionFailure);
  EXPECT_EQ(dst.substr(0, 2), "=0");
  capacity2 = 3;
  ASSERT_EQ(QPEncode2(one, -1, dst.data(), &capacity2, kFinal), 1);
  EXPECT_EQ(dst.substr(0, 3), "=\r\n");
}

// Random texts of escapes, raw bytes and the troublesome tokens: whenever
// the one-pass decoder answers, the two steps give the same text.
TEST(quoted_printable_utf8, decoding_agrees_with_the_two_steps) {
  static const char* const kTokens[] = {
      "a", "Z", " ", "_", "=3D", "=5F", "=C3", "=A9", "=BC", "=E6", "=97", "=A5", "=F0",
      "=9F", "=98", "=80", "=ED", "=A0", "=c3", "=a9", "=00", "\xC3", "\xA9", "=",
      "=\r\n", "=4", "=ZZ", "=\n", "\r"};
  std::mt19937 random(1121);
  std::uniform_int_distribution<std::size_t> pick(0, std::size(kTokens) - 1);
  std::uniform_int_distribution<int> count(0, 12);
  int answered = 0;
  for (int round = 0; round < 100000; ++round) {
    std::string text;
    for (int i = count(random); i > 0; --i) text += kTokens[pick(random)];
    String out;
    if (!DecodeQuotedPrintableUTF8(text.data(), text.size(), &out)) continue;
    ++answered;
    std::string bytes(text.size() + 2, '\0');
    const auto n = static_cast<unsigned>(text.size());
    const int written = NGDecodeQuotedPrintableX(text.c_str(), n, bytes.data(), n, 1);
    ASSERT_GE(written, 0) << text;
    bytes.resize(static_cast<std::size_t>(written));
    ASSERT_EQ(out, StringFromUTF8(bytes)) << text;
  }
  EXPECT_GT(answered, 5000);
}

// Random texts long enough to break lines at every column, with tabs around
// the column where they stop being literal; an unpaired surrogate is
// written as U+FFFD.
TEST(quoted_printable_utf8, encoding_agrees_with_stl_qpencode) {
  static constexpr char16_t kUnits[] = {u'a', u' ', u'\t', u'=', u'.', u'~', u'!', u'\r',
                                        u'\n', 0xE9, 0x3042, 0xD83D, 0xDE00, 0x7F};
  std::mt19937 random(68);
  std::uniform_int_distribution<std::size_t> pick(0, std::size(kUnits) - 1);
  std::uniform_int_distribution<int> length(0, 140);
  for (int round = 0; round < 20000; ++round) {
    String text;
    for (int i = length(random); i > 0; --i) text += kUnits[pick(random)];
    const std::string expected = EncodeSTL(ToDisplayUTF8(text), 0);
    String actual;
    EncodeQuotedPrintableUTF8(text, &actual);
    ASSERT_EQ(actual, String(expected.begin(), expected.end())) << expected;
  }
}

}  // namespace
}  // namespace phonepim
