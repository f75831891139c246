// Value decoding (charset and transfer encoding, strict and lenient), the
// backslash escapes, structured values, the string and data conveniences
// over the quoted-printable codecs, and BASE64 decoding. Then the
// quoted-printable codecs themselves: NGDecodeQuotedPrintableX (what the
// readers use), the transfer-encoding pair STL_QPDecode and QPDecode2, which
// must give the same bytes including the byte past the end they read and
// write, and the header-word encoder NGEncodeQuotedPrintable; the two
// line-oriented encoders around the line-length and white-space columns,
// their flags and capacity assertions; the one-pass UTF-8 codec against the
// two steps it stands in for.
#include "phonepim/encoding/Encoding.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "encoding/QuotedPrintableUTF8.h"
#include "phonepim/encoding/Charset.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/encoding/base64.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace {

using namespace std::string_literals;

Bytes ToBytes(const std::string& s) { return Bytes(s.begin(), s.end()); }

TEST(decode, undoes_the_transfer_encoding_then_the_charset) {
  const struct { std::string bytes; int charset, encoding; std::optional<String> expected; } rows[] = {
      {"A=3d_b=0D", kCharsetUTF8, kEncodingQuotedPrintableCR, u"A= b\r"},
      {"caf=C3=\r\n=A9=ZZ", kCharsetUTF8, kEncodingQuotedPrintable, u"caf\u00E9ZZ"},
      {"abc=", kCharsetUTF8, kEncodingQuotedPrintable, std::nullopt},
      {"=C3", kCharsetUTF8, kEncodingQuotedPrintable, std::nullopt},
      {"=82=A0", kCharsetShiftJIS, kEncodingQuotedPrintable, u"\u3042"},
      {"", kCharsetShiftJIS, kEncodingQuotedPrintable, u""},
      // Base64 and any other encoding value are left as they are.
      {"A=3d_b", kCharsetUTF8, kEncodingNone, u"A=3d_b"},
      {"TWFu", kCharsetUTF8, kEncodingBase64, u"TWFu"},
      // Any charset but Shift_JIS is UTF-8.
      {"a\0\xC3\xA9"s, 9, kEncodingNone, u"a\0\u00E9"s},
      {"\x82\xA0", kCharsetShiftJIS, kEncodingNone, u"\u3042"},
      {"\x82\xA0", kCharsetUTF8, kEncodingNone, std::nullopt},
      {"a\x82", kCharsetShiftJIS, kEncodingBase64, std::nullopt},
  };
  for (const auto& r : rows) {
    // An exact-size heap copy: Decode must not read beyond `len`.
    const std::vector<char> bytes(r.bytes.begin(), r.bytes.end());
    const int length = static_cast<int>(bytes.size());
    EXPECT_EQ(Decode(bytes.empty() ? "" : bytes.data(), length, r.charset, r.encoding), r.expected) << &r - rows;
  }
  EXPECT_EQ(Decode("abcdef", 3, kCharsetUTF8, kEncodingNone), u"abc");
  // The quoted-printable text is copied and terminated before decoding, so
  // "=4" cut from "=41" sees its terminator, not the caller's next byte.
  EXPECT_EQ(Decode("=41=42", 2, kCharsetUTF8, kEncodingQuotedPrintable), u"4\0"s);
  EXPECT_EQ(Decode(nullptr, 0, kCharsetUTF8, kEncodingQuotedPrintable), u"");
  EXPECT_EQ(Decode(nullptr, 3, kCharsetUTF8, kEncodingNone), std::nullopt);
  EXPECT_EQ(Decode("abc", -1, kCharsetUTF8, kEncodingNone), std::nullopt);
}

TEST(escaped_char_string, escapes_backslash_and_semicolon_and_decoding_drops_the_next_unit) {
  EXPECT_EQ(EncodeEscapedCharString(u"a;b\\c\u00E9,:=\r\n"), u"a\\;b\\\\c\u00E9,:=\r\n");
  const struct { std::string in, expected; } bytes[] = {
      {"a\\;b\\\\c\\nd", "a\\b\\c\\d"},
      {"abc\\", "abc\\"},
      {"", ""},
      {"\xC3\xA9;a\0b"s, "\xC3\xA9;a"},
      // A NUL right after a backslash is skipped with it and ends nothing.
      {"\\\0b"s, "\\b"},
  };
  for (const auto& r : bytes) {
    const std::vector<char> heap(r.in.begin(), r.in.end());
    EXPECT_EQ(DecodeEscapedCharString(heap.empty() ? "" : heap.data(), heap.size()), ToBytes(r.expected)) << &r - bytes;
  }
  EXPECT_EQ(DecodeEscapedCharString("abcdef", 2), ToBytes("ab"));
  EXPECT_TRUE(DecodeEscapedCharString(nullptr, 0).empty());
  // The string form narrows each unit to a byte and sign-extends it back.
  const struct { String in, expected; } units[] = {
      {u"a\\;b\\\\c\\", u"a\\b\\c\\"},
      {u"\\\u4E2D\u00E9\u007F\u0080\u0100"s, u"\\\uFFE9\u007F\uFF80\0"s},
      // Only a real backslash escapes: U+015C narrows to one but does not
      // swallow the unit after it.
      {u"\u015Cx", u"\\x"},
      {u"\U0001F600a\0b"s, u"=\0a\0b"s},
  };
  for (const auto& r : units) EXPECT_EQ(DecodeEscapedCharString(r.in), r.expected) << &r - units;
}

TEST(qp_string_and_data, encode_and_decode_with_their_own_rules) {
  EXPECT_EQ(QPEncode(u"Hello W\u00F6rld;"), u"Hello=20W=C3=B6rld;");
  EXPECT_EQ(QPEncode(u"a\r\nb", 1), u"a=0D=0Ab");
  EXPECT_EQ(QPEncode(String(69, u'x')), String(68, u'x') + u"=\r\nx");
  EXPECT_EQ(QPEncode(String(1, u'\xD800')), std::nullopt);
  // The UTF-8 pointer form ignores its length.
  EXPECT_EQ(QPEncode("Gr\xC3\xBC\xC3\x9F", 1), u"Gr=C3=BC=C3=9F");
  EXPECT_EQ(QPEncode(static_cast<const char*>(nullptr), 0), std::nullopt);
  EXPECT_EQ(QPEncode("\xFF", 1), std::nullopt);
  String out = u"keep";
  QPDecode("=41", 3, &out, 4);
  EXPECT_EQ(out, u"keep");

  EXPECT_EQ(dataByEncodingQuotedPrintable(ToBytes("a b.\xFF")), ToBytes("a=20b.=FF"));
  EXPECT_EQ(dataByDecodingQuotedPrintable(ToBytes("A=3d_b=ZZ")), ToBytes("A= bZZ"));
  EXPECT_EQ(dataByDecodingQuotedPrintable(ToBytes("x=Z")), ToBytes("xZ\0"s));
  EXPECT_EQ(dataByDecodingQuotedPrintable(ToBytes("abc=")), std::nullopt);
  EXPECT_EQ(dataByDecodingQuotedPrintable(Bytes()), Bytes());
  // The transfer encoding keeps '_' and drops hard line ends.
  EXPECT_EQ(dataByDecodingQuotedPrintableTransferEncoding(ToBytes("a=0D_b=\r\nc\r\nd=4")), ToBytes("a\r_bcd"));
  EXPECT_EQ(dataByDecodingQuotedPrintableTransferEncoding(ToBytes("x=")), std::nullopt);
  EXPECT_EQ(dataByDecodingQuotedPrintableTransferEncoding(Bytes()), Bytes());

  EXPECT_EQ(stringByDecodingQuotedPrintable("caf=C3=A9", 9, StringEncoding::Latin1), u"caf\u00C3\u00A9");
  EXPECT_EQ(stringByDecodingQuotedPrintable("=82=A0", 6, StringEncoding::ShiftJIS), u"\u3042");
  EXPECT_EQ(stringByDecodingQuotedPrintable("=FF", 3, StringEncoding::ASCII), std::nullopt);
  EXPECT_EQ(stringByDecodingQuotedPrintable(nullptr, 0, StringEncoding::UTF8), u"");
  EXPECT_EQ(stringByDecodingQuotedPrintable(nullptr, 1, StringEncoding::UTF8), std::nullopt);
  // The receiver's UTF-8 is decoded and read back byte for byte as Latin-1.
  EXPECT_EQ(stringByDecodingQuotedPrintable(u"\u00E9=41_"), u"\u00C3\u00A9A ");
  EXPECT_EQ(stringByDecodingQuotedPrintable(u"a="), std::nullopt);
  EXPECT_EQ(stringByDecodingQuotedPrintable(String(1, u'\xD800')), std::nullopt);
  EXPECT_EQ(stringByEncodingQuotedPrintable(u"a\r\n\u4E2D_"), u"a=0D=0A=E4=B8=AD_");
  EXPECT_EQ(stringByEncodingQuotedPrintable(u""), u"");
  EXPECT_EQ(stringByEncodingQuotedPrintable(String(1, u'\xDC00')), std::nullopt);
}


TEST(decode_charset, reads_by_the_charset_word_and_keeps_what_it_cannot) {
  const struct {
    std::string bytes;
    const char* charset;
    int encoding;
    std::u16string text;
    bool replaced = false, unknown = false;
  } rows[] = {
      {"M=FCller", "ISO-8859-1", kEncodingQuotedPrintable, u"Müller"},
      {"M\xC3\xBCller", "UTF8", kEncodingNone, u"Müller"},
      {"M\xC3\xBCller", "", kEncodingNone, u"Müller"},
      {"M\xFCller", "utf-8", kEncodingNone, u"Müller", true},
      {"\x80", "WINDOWS-1252", kEncodingNone, u"€"},
      {"\x93\xFA\x96\x7B", "Shift_JIS", kEncodingNone, u"日本"},
      {"a\x81", "SHIFT_JIS", kEncodingNone, u"a\uFFFD", true},
      {"abc", "X-NO-SUCH", kEncodingNone, u"abc", false, true},
      {"(nessa_flame)", "", kEncodingQuotedPrintable, u"(nessa_flame)"},
      {"a=\r\nb=3d=ZZ=", "", kEncodingQuotedPrintableCR, u"ab==ZZ="},
      {"w6k=", "ISO-8859-1", kEncodingBase64, u"Ã©"},
  };
  for (const auto& r : rows) {
    const CharsetText decoded = DecodeCharset(r.bytes, r.charset, r.encoding);
    EXPECT_EQ(std::tuple(decoded.text, decoded.replaced, decoded.unknownCharset),
              std::tuple(r.text, r.replaced, r.unknown)) << &r - rows;
  }
}

TEST(split_structured_value, splits_at_unescaped_separators_and_unescapes) {
  const struct { std::u16string value; std::vector<std::u16string> unescaped, asWritten; } rows[] = {
      {u"", {u""}, {u""}},
      {u"Sales Dept.\\Manager;x", {u"Sales Dept.\\Manager", u"x"}, {u"Sales Dept.\\Manager", u"x"}},
      {u"a\\;b;c\\\\;d\\,e\\nf\\Ng\\:h", {u"a;b", u"c\\", u"d,e\nf\ng:h"}, {u"a\\;b", u"c\\\\", u"d\\,e\\nf\\Ng\\:h"}},
      {u"end\\", {u"end\\"}, {u"end\\"}},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(std::pair(SplitStructuredValue(r.value, true), SplitStructuredValue(r.value, false)),
              std::pair(r.unescaped, r.asWritten));
  }
}

TEST(base64, decodes_up_to_the_first_byte_outside_the_alphabet) {
  const struct { std::string in, expected; } rows[] = {
      {"TWFu", "Man"},       {"TWE=", "Ma"},        {"TW Fu", "M"},    {"TWFu\r\nTWFu", "Man"},
      {"//79+/8=", "\xFF\xFE\xFD\xFB\xFF"},          {"", ""},          {"=TWFu", ""},
      {"T", ""},             {"TWFuT", "Man"},      {"TWFuTWE", "ManMa"},
      // Bits left over in the last character are dropped, not checked.
      {"TR==", "M"},         {"-_AA", ""},          {"TWFu\x80TWFu", "Man"},
  };
  for (const auto& r : rows) {
    // Into a buffer of exactly Base64decode_len bytes, NUL after the bytes.
    std::vector<char> dst(static_cast<std::size_t>(Base64decode_len(r.in.c_str())), '#');
    const int count = Base64decode(dst.data(), r.in.c_str());
    ASSERT_LT(count, static_cast<int>(dst.size())) << r.in;
    EXPECT_EQ(std::string(dst.data(), static_cast<std::size_t>(count) + 1), r.expected + '\0') << r.in;
  }
  const std::pair<const char*, int> lengths[] = {{"", 1}, {"T", 4}, {"TWFuT", 7}, {"TW Fu", 4}, {"=AAAAAAAA", 1}};
  for (const auto& [in, expected] : lengths) EXPECT_EQ(Base64decode_len(in), expected) << in;
  char dst[1] = {'#'};
  EXPECT_EQ(std::pair(Base64decode_len(nullptr), Base64decode(dst, nullptr)), std::pair(1, 0));
  EXPECT_EQ(dst[0], '\0');
}

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
