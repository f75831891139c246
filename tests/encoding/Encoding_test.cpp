// Value decoding (charset and transfer encoding, strict and lenient), the
// backslash escapes, structured values, the string and data conveniences
// over the quoted-printable codecs, and BASE64 decoding.
#include "phonepim/encoding/Encoding.h"

#include <gtest/gtest.h>

#include "phonepim/encoding/Charset.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/encoding/base64.h"

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
      {"x=3Dy", kCharsetUTF8, 7, u"x=3Dy"},
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

}  // namespace
}  // namespace phonepim
