// Value decoding (charset and transfer encoding), the backslash escapes and
// the string and data conveniences over the quoted-printable codecs.
#include "phonepim/encoding/Encoding.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "phonepim/encoding/NGQuotedPrintableCoding.h"

namespace phonepim {
namespace {

using namespace std::string_literals;

Bytes ToBytes(const std::string& s) { return Bytes(s.begin(), s.end()); }

struct DecodeCase {
  const char* name;
  std::string bytes;
  int charset;
  int encoding;
  std::optional<String> expected;
};

void PrintTo(const DecodeCase& c, std::ostream* os) { *os << c.name; }

class decode_value : public testing::TestWithParam<DecodeCase> {};

TEST_P(decode_value, gives_exact_string) {
  const DecodeCase& c = GetParam();
  // An exact-size heap copy: Decode must not read beyond `len`.
  const std::vector<char> bytes(c.bytes.begin(), c.bytes.end());
  EXPECT_EQ(Decode(bytes.empty() ? "" : bytes.data(), static_cast<int>(bytes.size()),
                   c.charset, c.encoding),
            c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    cases, decode_value,
    testing::ValuesIn(std::vector<DecodeCase>{
        {"qp_underscore_as_space", "A=3d_b", kCharsetUTF8, kEncodingQuotedPrintable,
         u"A= b"},
        {"qp_cr_option_same_decoder", "A=3d_b=0D", kCharsetUTF8,
         kEncodingQuotedPrintableCR, u"A= b\r"},
        {"qp_utf8", "=E3=81=82", kCharsetUTF8, kEncodingQuotedPrintable, u"\u3042"},
        {"qp_soft_break", "caf=C3=\r\n=A9", kCharsetUTF8, kEncodingQuotedPrintable,
         u"caf\u00E9"},
        {"qp_invalid_escape_text", "=ZZ", kCharsetUTF8, kEncodingQuotedPrintable, u"ZZ"},
        {"qp_trailing_equals", "abc=", kCharsetUTF8, kEncodingQuotedPrintable,
         std::nullopt},
        {"qp_truncated_utf8", "=C3", kCharsetUTF8, kEncodingQuotedPrintable,
         std::nullopt},
        {"qp_shift_jis", "=82=A0", kCharsetShiftJIS, kEncodingQuotedPrintable,
         u"\u3042"},
        {"qp_invalid_shift_jis", "=82", kCharsetShiftJIS, kEncodingQuotedPrintable,
         std::nullopt},
        {"qp_empty", "", kCharsetUTF8, kEncodingQuotedPrintable, u""},
        {"raw_keeps_escapes", "A=3d_b", kCharsetUTF8, kEncodingNone, u"A=3d_b"},
        {"base64_not_decoded", "TWFu", kCharsetUTF8, kEncodingBase64, u"TWFu"},
        {"unknown_encoding_raw", "x=3Dy", kCharsetUTF8, kEncodingUnknown, u"x=3Dy"},
        {"other_encoding_value_raw", "x_y", kCharsetUTF8, 7, u"x_y"},
        {"raw_utf8", "\xC3\xA9", kCharsetUTF8, kEncodingNone, u"\u00E9"},
        {"charset_zero_is_utf8", "\xC3\xA9", 0, kEncodingNone, u"\u00E9"},
        {"charset_other_is_utf8", "\xC3\xA9", 9, kEncodingNone, u"\u00E9"},
        {"raw_shift_jis", "\x82\xA0", kCharsetShiftJIS, kEncodingNone, u"\u3042"},
        {"shift_jis_bytes_as_utf8", "\x82\xA0", kCharsetUTF8, kEncodingNone,
         std::nullopt},
        {"invalid_utf8", "a\xFF", kCharsetUTF8, kEncodingNone, std::nullopt},
        {"overlong_utf8", "\xC0\xAF", kCharsetUTF8, kEncodingNone, std::nullopt},
        {"invalid_shift_jis_trail", "\x81\x7F", kCharsetShiftJIS, kEncodingNone,
         std::nullopt},
        {"truncated_shift_jis", "a\x82", kCharsetShiftJIS, kEncodingBase64,
         std::nullopt},
        {"embedded_nul_kept", "a\0b"s, kCharsetUTF8, kEncodingNone, u"a\0b"s},
        {"empty_shift_jis", "", kCharsetShiftJIS, kEncodingNone, u""},
    }),
    [](const testing::TestParamInfo<DecodeCase>& info) { return info.param.name; });

TEST(decode_value_length, raw_bytes_stop_at_len) {
  EXPECT_EQ(Decode("abcdef", 3, kCharsetUTF8, kEncodingNone), u"abc");
}

// The quoted-printable text is copied and terminated before decoding, so
// "=4" cut from "=41" sees its terminator, not the caller's next byte.
TEST(decode_value_length, qp_escape_cut_by_len_reads_terminator) {
  EXPECT_EQ(Decode("=41=42", 3, kCharsetUTF8, kEncodingQuotedPrintable), u"A");
  EXPECT_EQ(Decode("=41=42", 2, kCharsetUTF8, kEncodingQuotedPrintable), u"4\0"s);
}

TEST(decode_value_length, bad_arguments_give_nothing) {
  EXPECT_EQ(Decode(nullptr, 0, kCharsetUTF8, kEncodingNone), u"");
  EXPECT_EQ(Decode(nullptr, 0, kCharsetUTF8, kEncodingQuotedPrintable), u"");
  EXPECT_EQ(Decode(nullptr, 3, kCharsetUTF8, kEncodingNone), std::nullopt);
  EXPECT_EQ(Decode("abc", -1, kCharsetUTF8, kEncodingNone), std::nullopt);
}

TEST(encode_escaped_char_string, escapes_backslash_and_semicolon) {
  const struct {
    String in;
    String expected;
  } cases[] = {
      {u"a;b\\c", u"a\\;b\\\\c"},
      {u"", u""},
      {u";;", u"\\;\\;"},
      {u"\\", u"\\\\"},
      {u"\u00E9;\u4E2D", u"\u00E9\\;\u4E2D"},
      {u",:=\r\n", u",:=\r\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(EncodeEscapedCharString(c.in), c.expected) << ToDisplayUTF8(c.in);
  }
}

TEST(decode_escaped_char_string, bytes_keep_backslash_and_drop_next) {
  const struct {
    std::string in;
    std::string expected;
  } cases[] = {
      {"a\\;b", "a\\b"},
      {"a\\\\b", "a\\b"},
      {"a\\nb", "a\\b"},
      {"\\;\\;", "\\\\"},
      {"abc\\", "abc\\"},
      {"", ""},
      {"\xC3\xA9;x", "\xC3\xA9;x"},
      {"a\0b"s, "a"},
      // A NUL right after a backslash is skipped with it and ends nothing.
      {"\\\0b"s, "\\b"},
  };
  for (const auto& c : cases) {
    const std::vector<char> heap(c.in.begin(), c.in.end());
    const Bytes out = DecodeEscapedCharString(heap.empty() ? "" : heap.data(), heap.size());
    EXPECT_EQ(std::string(out.begin(), out.end()), c.expected)
        << testing::PrintToString(c.in);
  }
}

TEST(decode_escaped_char_string, bytes_stop_at_len) {
  const Bytes out = DecodeEscapedCharString("abcdef", 2);
  EXPECT_EQ(std::string(out.begin(), out.end()), "ab");
  EXPECT_TRUE(DecodeEscapedCharString(nullptr, 0).empty());
}

TEST(decode_escaped_char_string, string_narrows_units_sign_extended) {
  const struct {
    String in;
    String expected;
  } cases[] = {
      {u"a\\;b", u"a\\b"},
      {u"a\\\\b", u"a\\b"},
      {u"abc\\", u"abc\\"},
      {u"\\\u4E2D", u"\\"},
      {u"\u00E9", u"\uFFE9"},
      {u"\u4E2D", u"\u002D"},
      {u"\u007F\u0080", u"\u007F\uFF80"},
      {u"\u0100", u"\0"s},
      // Only a real backslash escapes: U+015C narrows to one but does not
      // swallow the unit after it.
      {u"\u015Cx", u"\\x"},
      {u"\U0001F600", u"=\0"s},
      {u"a\0b"s, u"a\0b"s},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(DecodeEscapedCharString(c.in), c.expected) << ToDisplayUTF8(c.in);
  }
}

TEST(qp_encode_string, writes_utf8_quoted_printable) {
  EXPECT_EQ(QPEncode(u"Hello World"), u"Hello=20World");
  EXPECT_EQ(QPEncode(u"caf\u00E9"), u"caf=C3=A9");
  EXPECT_EQ(QPEncode(u"\u3042;"), u"=E3=81=82;");
  EXPECT_EQ(QPEncode(u""), u"");
  EXPECT_EQ(QPEncode(u"a\r\nb", 1), u"a=0D=0Ab");
  EXPECT_EQ(QPEncode(u"abc", 999), u"abc");
  EXPECT_EQ(QPEncode(String(69, u'x')), String(68, u'x') + u"=\r\nx");
}

TEST(qp_encode_string, utf8_pointer_form_ignores_len) {
  EXPECT_EQ(QPEncode("Gr\xC3\xBC\xC3\x9F", 1), u"Gr=C3=BC=C3=9F");
  EXPECT_EQ(QPEncode("", 0), u"");
  EXPECT_EQ(QPEncode(static_cast<const char*>(nullptr), 0), std::nullopt);
  EXPECT_EQ(QPEncode("\xFF", 1), std::nullopt);
}

TEST(qp_encode_string, unpaired_surrogate_gives_nothing) {
  EXPECT_EQ(QPEncode(String(1, u'\xD800')), std::nullopt);
  EXPECT_EQ(stringByEncodingQuotedPrintable(String(1, u'\xDC00')), std::nullopt);
}

TEST(qp_decode_stub, changes_nothing) {
  String out = u"keep";
  QPDecode("=41", 3, &out, 4);
  EXPECT_EQ(out, u"keep");
  QPDecode(nullptr, -1, nullptr, -1);
}

TEST(data_quoted_printable, encodes_with_stl_rules) {
  EXPECT_EQ(dataByEncodingQuotedPrintable(Bytes()), Bytes());
  EXPECT_EQ(dataByEncodingQuotedPrintable(ToBytes("a b.")), ToBytes("a=20b."));
  EXPECT_EQ(dataByEncodingQuotedPrintable(ToBytes(".\xFF")), ToBytes(".=FF"));
}

TEST(data_quoted_printable, decodes_with_underscore_as_space) {
  EXPECT_EQ(dataByDecodingQuotedPrintable(ToBytes("A=3d_b")), ToBytes("A= b"));
  EXPECT_EQ(dataByDecodingQuotedPrintable(ToBytes("=ZZ")), ToBytes("ZZ"));
  EXPECT_EQ(dataByDecodingQuotedPrintable(ToBytes("abc=")), std::nullopt);
  EXPECT_EQ(dataByDecodingQuotedPrintable(Bytes()), Bytes());
  EXPECT_EQ(dataByDecodingQuotedPrintable(ToBytes("x=Z")), ToBytes("xZ\0"s));
}

TEST(data_quoted_printable, transfer_encoding_keeps_underscore_and_drops_line_ends) {
  EXPECT_EQ(dataByDecodingQuotedPrintableTransferEncoding(ToBytes("a=0D_b")),
            ToBytes("a\r_b"));
  EXPECT_EQ(dataByDecodingQuotedPrintableTransferEncoding(ToBytes("a=\r\nb\r\nc")),
            ToBytes("abc"));
  EXPECT_EQ(dataByDecodingQuotedPrintableTransferEncoding(ToBytes("x=")), std::nullopt);
  EXPECT_EQ(dataByDecodingQuotedPrintableTransferEncoding(Bytes()), Bytes());
  EXPECT_EQ(dataByDecodingQuotedPrintableTransferEncoding(ToBytes("ab=4")), ToBytes("ab"));
}

TEST(string_quoted_printable, decodes_bytes_in_the_given_encoding) {
  EXPECT_EQ(stringByDecodingQuotedPrintable("caf=C3=A9", 9, StringEncoding::UTF8),
            u"caf\u00E9");
  EXPECT_EQ(stringByDecodingQuotedPrintable("caf=C3=A9", 9, StringEncoding::Latin1),
            u"caf\u00C3\u00A9");
  EXPECT_EQ(stringByDecodingQuotedPrintable("=82=A0", 6, StringEncoding::ShiftJIS),
            u"\u3042");
  EXPECT_EQ(stringByDecodingQuotedPrintable("=FF", 3, StringEncoding::ASCII),
            std::nullopt);
  EXPECT_EQ(stringByDecodingQuotedPrintable(nullptr, 0, StringEncoding::UTF8), u"");
  EXPECT_EQ(stringByDecodingQuotedPrintable(nullptr, 1, StringEncoding::UTF8),
            std::nullopt);
}

// The receiver's UTF-8 is decoded and read back byte for byte as Latin-1.
TEST(string_quoted_printable, decodes_string_as_latin1_c_string) {
  EXPECT_EQ(stringByDecodingQuotedPrintable(u"caf=C3=A9"), u"caf\u00C3\u00A9");
  EXPECT_EQ(stringByDecodingQuotedPrintable(u"\u00E9=41_"), u"\u00C3\u00A9A ");
  EXPECT_EQ(stringByDecodingQuotedPrintable(u""), u"");
  EXPECT_EQ(stringByDecodingQuotedPrintable(u"a="), std::nullopt);
  EXPECT_EQ(stringByDecodingQuotedPrintable(String(1, u'\xD800')), std::nullopt);
}

TEST(string_quoted_printable, encodes_to_ascii) {
  EXPECT_EQ(stringByEncodingQuotedPrintable(u"a\r\nb"), u"a=0D=0Ab");
  EXPECT_EQ(stringByEncodingQuotedPrintable(u"\u4E2D_"), u"=E4=B8=AD_");
  EXPECT_EQ(stringByEncodingQuotedPrintable(u""), u"");
}

}  // namespace
}  // namespace phonepim
