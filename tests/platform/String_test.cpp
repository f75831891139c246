// Text to bytes and back in every encoding the library speaks.
#include "phonepim/platform/String.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <cstdio>
#include <optional>
#include <random>
#include <ostream>
#include <string>

namespace phonepim {
namespace {

using namespace std::string_literals;

std::string EncodingName(StringEncoding encoding) {
  switch (encoding) {
    case StringEncoding::ASCII: return "ASCII";
    case StringEncoding::UTF8: return "UTF8";
    case StringEncoding::ShiftJIS: return "ShiftJIS";
    case StringEncoding::UTF16LE: return "UTF16LE";
    case StringEncoding::UTF16BE: return "UTF16BE";
    case StringEncoding::Latin1: return "Latin1";
  }
  return "?";
}

std::string HexBytes(const std::string& bytes) {
  std::string out;
  for (const char byte : bytes) {
    char hex[4];
    std::snprintf(hex, sizeof hex, "%02X ", static_cast<unsigned char>(byte));
    out += hex;
  }
  return out;
}

std::string HexUnits(const String& text) {
  std::string out;
  for (const char16_t unit : text) {
    char hex[6];
    std::snprintf(hex, sizeof hex, "%04X ", static_cast<unsigned>(unit));
    out += hex;
  }
  return out;
}

// --- Decoding ---

struct DecodeCase {
  StringEncoding encoding;
  std::string bytes;
  std::optional<String> expected;  // nothing: invalid in that encoding
  friend void PrintTo(const DecodeCase& c, std::ostream* os) {
    *os << EncodingName(c.encoding) << " [" << HexBytes(c.bytes) << "]";
  }
};

class string_from_bytes : public ::testing::TestWithParam<DecodeCase> {};

TEST_P(string_from_bytes, decodes_valid_bytes_and_rejects_invalid_ones) {
  const DecodeCase& c = GetParam();
  const std::optional<String> decoded =
      StringFromBytes(c.bytes.data(), c.bytes.size(), c.encoding);
  ASSERT_EQ(decoded.has_value(), c.expected.has_value())
      << (decoded ? "decoded to " + HexUnits(*decoded) : "no string");
  if (decoded) {
    EXPECT_EQ(*decoded, *c.expected) << HexUnits(*decoded);
  }
}

INSTANTIATE_TEST_SUITE_P(
    utf8, string_from_bytes,
    ::testing::Values(
        DecodeCase{StringEncoding::UTF8, "", u""},
        DecodeCase{StringEncoding::UTF8, "abc", u"abc"},
        DecodeCase{StringEncoding::UTF8, "a\0b"s, u"a\0b"s},
        DecodeCase{StringEncoding::UTF8, "\xC3\xA9", u"\u00E9"},
        DecodeCase{StringEncoding::UTF8, "\xE6\x97\xA5\xE6\x9C\xAC", u"\u65E5\u672C"},
        DecodeCase{StringEncoding::UTF8, "\xF0\x9F\x98\x80", u"\U0001F600"},
        DecodeCase{StringEncoding::UTF8, "\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        DecodeCase{StringEncoding::UTF8, "\xEF\xBF\xBD", u"\uFFFD"},
        // A byte-order mark is text like any other, not a signature.
        DecodeCase{StringEncoding::UTF8, "\xEF\xBB\xBF" "a", u"\uFEFFa"},
        // Truncated sequences.
        DecodeCase{StringEncoding::UTF8, "\xC3", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "a\xC3", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xE6\x97", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xF0\x9F\x98", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xC3(", std::nullopt},
        // Overlong forms.
        DecodeCase{StringEncoding::UTF8, "\xC0\x80", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xC1\xBF", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xE0\x80\xAF", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xF0\x80\x80\x80", std::nullopt},
        // Surrogates encoded in UTF-8, alone or as a CESU-8 pair.
        DecodeCase{StringEncoding::UTF8, "\xED\xA0\x80", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xED\xBF\xBF", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xED\xA0\xBD\xED\xB8\x80", std::nullopt},
        // Bytes that never occur, a stray continuation, beyond U+10FFFF.
        DecodeCase{StringEncoding::UTF8, "\xFF", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xFE", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "ok\x80", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xF4\x90\x80\x80", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "\xF8\x88\x80\x80\x80", std::nullopt},
        // ASCII is taken eight bytes at a time: a multi-byte character or a
        // bad byte on either side of a block edge.
        DecodeCase{StringEncoding::UTF8, "1234567\xC3\xA9z", u"1234567\u00E9z"},
        DecodeCase{StringEncoding::UTF8, "12345678\xC3\xA9", u"12345678\u00E9"},
        DecodeCase{StringEncoding::UTF8, "\xC3\xA9" "12345678", u"\u00E9" "12345678"},
        DecodeCase{StringEncoding::UTF8, "1234567\xC3", std::nullopt},
        DecodeCase{StringEncoding::UTF8, "12345678abcdefgh\x80", std::nullopt}));

// The library decodes UTF-8 itself; ICU is the reference. Random strings
// over the bytes where the rules have their edges.
TEST(string_from_utf8, agrees_with_icu_on_random_bytes) {
  static constexpr unsigned char kBytes[] = {
      'a',  '~',  0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2,
      0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
  std::mt19937 random(20261121);
  std::uniform_int_distribution<std::size_t> pick(0, std::size(kBytes) - 1);
  std::uniform_int_distribution<int> length(0, 20);
  int valid = 0;
  for (int round = 0; round < 200000; ++round) {
    std::string bytes(static_cast<std::size_t>(length(random)), '\0');
    for (char& byte : bytes) byte = static_cast<char>(kBytes[pick(random)]);
    std::u16string expected(bytes.size(), u'\0');
    int32_t expectedLength = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(expected.data(), static_cast<int32_t>(expected.size()), &expectedLength,
                  bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    const std::optional<String> actual = StringFromUTF8(bytes);
    if (U_FAILURE(status)) {
      ASSERT_FALSE(actual.has_value()) << HexBytes(bytes);
      continue;
    }
    ++valid;
    expected.resize(static_cast<std::size_t>(expectedLength));
    ASSERT_TRUE(actual.has_value()) << HexBytes(bytes);
    ASSERT_EQ(*actual, expected) << HexBytes(bytes);
  }
  // The alphabet must give both outcomes, or the test proves little.
  EXPECT_GT(valid, 10000);
}

INSTANTIATE_TEST_SUITE_P(
    single_byte, string_from_bytes,
    ::testing::Values(
        DecodeCase{StringEncoding::ASCII, "", u""},
        DecodeCase{StringEncoding::ASCII, "BEGIN:VCARD", u"BEGIN:VCARD"},
        DecodeCase{StringEncoding::ASCII, "\x7F\x01", u"\x7F\x01"},
        DecodeCase{StringEncoding::ASCII, "a\0b"s, u"a\0b"s},
        DecodeCase{StringEncoding::ASCII, "\x80", std::nullopt},
        DecodeCase{StringEncoding::ASCII, "caf\xE9", std::nullopt},
        DecodeCase{StringEncoding::ASCII, "\xC3\xA9", std::nullopt},
        DecodeCase{StringEncoding::Latin1, "", u""},
        DecodeCase{StringEncoding::Latin1, "caf\xE9", u"caf\u00E9"},
        DecodeCase{StringEncoding::Latin1, "\x80\xFF", u"\u0080\u00FF"},
        // Latin-1 never fails: UTF-8 bytes read as two characters.
        DecodeCase{StringEncoding::Latin1, "\xC3\xA9", u"\u00C3\u00A9"}));

INSTANTIATE_TEST_SUITE_P(
    shift_jis, string_from_bytes,
    ::testing::Values(
        DecodeCase{StringEncoding::ShiftJIS, "", u""},
        DecodeCase{StringEncoding::ShiftJIS, "abc", u"abc"},
        DecodeCase{StringEncoding::ShiftJIS, "\x93\xFA\x96\x7B", u"\u65E5\u672C"},
        DecodeCase{StringEncoding::ShiftJIS, "\x82\xA0\x83\x41", u"\u3042\u30A2"},
        DecodeCase{StringEncoding::ShiftJIS, "\x81\x40", u"\u3000"},
        // Half-width katakana are single bytes.
        DecodeCase{StringEncoding::ShiftJIS, "\xB1\xB2", u"\uFF71\uFF72"},
        DecodeCase{StringEncoding::ShiftJIS, "Tel:\x93\xFA", u"Tel:\u65E5"},
        // A lead byte without its trail, a bad trail, unassigned codes: no
        // string at all, never U+FFFD.
        DecodeCase{StringEncoding::ShiftJIS, "\x93", std::nullopt},
        DecodeCase{StringEncoding::ShiftJIS, "ab\x93", std::nullopt},
        DecodeCase{StringEncoding::ShiftJIS, "\x81\x20", std::nullopt},
        DecodeCase{StringEncoding::ShiftJIS, "\x85\x40", std::nullopt},
        DecodeCase{StringEncoding::ShiftJIS, "\xA0", std::nullopt},
        DecodeCase{StringEncoding::ShiftJIS, "\x80", std::nullopt},
        DecodeCase{StringEncoding::ShiftJIS, "\xFD", std::nullopt}));

INSTANTIATE_TEST_SUITE_P(
    utf16, string_from_bytes,
    ::testing::Values(
        DecodeCase{StringEncoding::UTF16LE, "", u""},
        DecodeCase{StringEncoding::UTF16LE, "a\0b\0"s, u"ab"},
        DecodeCase{StringEncoding::UTF16LE, "\xE5\x65\x2C\x67", u"\u65E5\u672C"},
        DecodeCase{StringEncoding::UTF16LE, "\x3D\xD8\x00\xDE"s, u"\U0001F600"},
        // No byte-order mark handling: it stays as U+FEFF.
        DecodeCase{StringEncoding::UTF16LE, "\xFF\xFE\x41\x00"s, u"\uFEFFA"},
        DecodeCase{StringEncoding::UTF16LE, "a\0b"s, std::nullopt},
        DecodeCase{StringEncoding::UTF16LE, "\x00\xD8"s, std::nullopt},
        DecodeCase{StringEncoding::UTF16LE, "\x00\xDC\x41\x00"s, std::nullopt},
        DecodeCase{StringEncoding::UTF16LE, "A\0\x00\xD8"s, std::nullopt},
        DecodeCase{StringEncoding::UTF16BE, "", u""},
        DecodeCase{StringEncoding::UTF16BE, "\0a\0b"s, u"ab"},
        DecodeCase{StringEncoding::UTF16BE, "\xD8\x3D\xDE\x00"s, u"\U0001F600"},
        DecodeCase{StringEncoding::UTF16BE, "\xFE\xFF\x00\x41"s, u"\uFEFFA"},
        DecodeCase{StringEncoding::UTF16BE, "\0a\0"s, std::nullopt},
        DecodeCase{StringEncoding::UTF16BE, "\xD8\x00\x00\x41"s, std::nullopt},
        DecodeCase{StringEncoding::UTF16BE, "\xDE\x00\xD8\x3D", std::nullopt}));

TEST(string_from_bytes_size, decodes_exactly_the_given_count) {
  const char text[] = "ab\xC3\xA9";
  EXPECT_EQ(StringFromBytes(text, 2, StringEncoding::UTF8), u"ab");
  EXPECT_EQ(StringFromBytes(text, 3, StringEncoding::UTF8), std::nullopt);
  EXPECT_EQ(StringFromBytes(text, 3, StringEncoding::Latin1), u"ab\u00C3");
  EXPECT_EQ(StringFromBytes(nullptr, 0, StringEncoding::ShiftJIS), u"");
}

// --- Encoding ---

struct EncodeCase {
  StringEncoding encoding;
  String text;
  std::optional<std::string> expected;  // nothing: not representable
  friend void PrintTo(const EncodeCase& c, std::ostream* os) {
    *os << EncodingName(c.encoding) << " [" << HexUnits(c.text) << "]";
  }
};

class bytes_from_string : public ::testing::TestWithParam<EncodeCase> {};

TEST_P(bytes_from_string, encodes_or_reports_what_cannot_be_represented) {
  const EncodeCase& c = GetParam();
  const std::optional<std::string> encoded = BytesFromString(c.text, c.encoding);
  ASSERT_EQ(encoded.has_value(), c.expected.has_value())
      << (encoded ? "encoded as " + HexBytes(*encoded) : "no bytes");
  if (encoded) {
    EXPECT_EQ(*encoded, *c.expected) << HexBytes(*encoded);
  }
}

INSTANTIATE_TEST_SUITE_P(
    table, bytes_from_string,
    ::testing::Values(
        EncodeCase{StringEncoding::UTF8, u"", ""},
        EncodeCase{StringEncoding::UTF8, u"abc", "abc"},
        EncodeCase{StringEncoding::UTF8, u"a\0b"s, "a\0b"s},
        EncodeCase{StringEncoding::UTF8, u"\u00E9", "\xC3\xA9"},
        EncodeCase{StringEncoding::UTF8, u"\u65E5\u672C", "\xE6\x97\xA5\xE6\x9C\xAC"},
        EncodeCase{StringEncoding::UTF8, u"\U0001F600", "\xF0\x9F\x98\x80"},
        // Unpaired surrogates have no UTF-8 form.
        EncodeCase{StringEncoding::UTF8, u"\xD800", std::nullopt},
        EncodeCase{StringEncoding::UTF8, u"\xDC00", std::nullopt},
        EncodeCase{StringEncoding::UTF8, u"ok\xD83D", std::nullopt},
        EncodeCase{StringEncoding::UTF8, u"\xDE00\xD83D", std::nullopt},
        EncodeCase{StringEncoding::ASCII, u"", ""},
        EncodeCase{StringEncoding::ASCII, u"END:VCARD\r\n", "END:VCARD\r\n"},
        EncodeCase{StringEncoding::ASCII, u"\x7F", "\x7F"},
        EncodeCase{StringEncoding::ASCII, u"\x80", std::nullopt},
        EncodeCase{StringEncoding::ASCII, u"caf\u00E9", std::nullopt},
        EncodeCase{StringEncoding::Latin1, u"caf\u00E9", "caf\xE9"},
        EncodeCase{StringEncoding::Latin1, u"\u00FF", "\xFF"},
        EncodeCase{StringEncoding::Latin1, u"\u0100", std::nullopt},
        EncodeCase{StringEncoding::Latin1, u"\u20AC", std::nullopt},
        EncodeCase{StringEncoding::ShiftJIS, u"", ""},
        EncodeCase{StringEncoding::ShiftJIS, u"abc", "abc"},
        EncodeCase{StringEncoding::ShiftJIS, u"\u65E5\u672C", "\x93\xFA\x96\x7B"},
        EncodeCase{StringEncoding::ShiftJIS, u"\u3042\uFF71", "\x82\xA0\xB1"},
        EncodeCase{StringEncoding::ShiftJIS, u"\u20AC", std::nullopt},
        EncodeCase{StringEncoding::ShiftJIS, u"\u00E9", std::nullopt},
        EncodeCase{StringEncoding::ShiftJIS, u"\U0001F600", std::nullopt},
        EncodeCase{StringEncoding::ShiftJIS, u"\xD800", std::nullopt},
        EncodeCase{StringEncoding::UTF16LE, u"", ""},
        EncodeCase{StringEncoding::UTF16LE, u"ab", "a\0b\0"s},
        EncodeCase{StringEncoding::UTF16LE, u"\U0001F600", "\x3D\xD8\x00\xDE"s},
        EncodeCase{StringEncoding::UTF16LE, u"\xD800", std::nullopt},
        EncodeCase{StringEncoding::UTF16BE, u"ab", "\0a\0b"s},
        EncodeCase{StringEncoding::UTF16BE, u"\u65E5", "\x65\xE5"},
        EncodeCase{StringEncoding::UTF16BE, u"a\xDC00", std::nullopt}));

// --- Round trips ---

struct RoundTripCase {
  StringEncoding encoding;
  String text;
  friend void PrintTo(const RoundTripCase& c, std::ostream* os) {
    *os << EncodingName(c.encoding) << " [" << HexUnits(c.text) << "]";
  }
};

class encoding_round_trip : public ::testing::TestWithParam<RoundTripCase> {};

TEST_P(encoding_round_trip, gives_back_the_same_text) {
  const RoundTripCase& c = GetParam();
  const std::optional<std::string> bytes = BytesFromString(c.text, c.encoding);
  ASSERT_TRUE(bytes.has_value());
  EXPECT_EQ(StringFromBytes(bytes->data(), bytes->size(), c.encoding), c.text);
}

INSTANTIATE_TEST_SUITE_P(
    table, encoding_round_trip,
    ::testing::Values(
        RoundTripCase{StringEncoding::UTF8, u"N:\u5C71\u7530;\u592A\u90CE \U0001F600 \u00E9"},
        RoundTripCase{StringEncoding::ShiftJIS, u"\u65E5\u672C"},
        RoundTripCase{StringEncoding::ShiftJIS,
                      u"N:\u5C71\u7530;\u592A\u90CE \uFF83\uFF7D\uFF84 \u3042\u30A2"},
        RoundTripCase{StringEncoding::UTF16LE, u"\u65E5\U0001F600a"},
        RoundTripCase{StringEncoding::UTF16BE, u"\u65E5\U0001F600a"},
        RoundTripCase{StringEncoding::Latin1, u"Stra\u00DFe \u00FF\u0080"},
        RoundTripCase{StringEncoding::ASCII, u"BEGIN:VCARD\r\nVERSION:2.1\r\n"}));

// --- The UTF-8 shorthands ---

TEST(utf8_shorthands, agree_with_the_general_conversions) {
  EXPECT_EQ(StringFromUTF8("\xE6\x97\xA5"), u"\u65E5");
  EXPECT_EQ(StringFromUTF8(""), u"");
  EXPECT_EQ(StringFromUTF8("\xED\xA0\x80"), std::nullopt);
  EXPECT_EQ(StringFromUTF8(std::string_view("a\0b", 3)), u"a\0b"s);
  EXPECT_EQ(UTF8FromString(u"\U0001F600"), "\xF0\x9F\x98\x80");
  EXPECT_EQ(UTF8FromString(u"\xDBFF"), std::nullopt);
}

struct DisplayCase {
  String text;
  std::string expected;
};

class to_display_utf8 : public ::testing::TestWithParam<DisplayCase> {};

TEST_P(to_display_utf8, replaces_unpaired_surrogates_only) {
  EXPECT_EQ(ToDisplayUTF8(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    table, to_display_utf8,
    ::testing::Values(DisplayCase{u"", ""},
                      DisplayCase{u"abc", "abc"},
                      DisplayCase{u"\u65E5\U0001F600", "\xE6\x97\xA5\xF0\x9F\x98\x80"},
                      DisplayCase{u"a\xD800" u"b", "a\xEF\xBF\xBD" "b"},
                      DisplayCase{u"\xDC00\xD800", "\xEF\xBF\xBD\xEF\xBF\xBD"},
                      DisplayCase{u"x\xD83D", "x\xEF\xBF\xBD"},
                      DisplayCase{u"a\0b"s, "a\0b"s}));

TEST(string_from_ascii, widens_each_byte_as_latin1) {
  EXPECT_EQ(StringFromASCII("X-IRMC-LUID"), u"X-IRMC-LUID");
  EXPECT_EQ(StringFromASCII(""), u"");
  EXPECT_EQ(StringFromASCII(std::string_view("a\0\xE9\xFF", 4)), u"a\0\u00E9\u00FF"s);
}

}  // namespace
}  // namespace phonepim
