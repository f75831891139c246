// Text to bytes and back in every encoding the library speaks, and the kinds
// of dynamic values.
#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <climits>
#include <random>

#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {
namespace {

using namespace std::string_literals;
using E = StringEncoding;

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
    expected.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(expectedLength));
    const std::optional<String> actual = StringFromUTF8(bytes);
    ASSERT_EQ(actual, U_FAILURE(status) ? std::nullopt : std::optional(expected)) << round;
    valid += actual.has_value();
  }
  // The alphabet must give both outcomes, or the test proves little.
  EXPECT_GT(valid, 10000);
}

TEST(bytes_from_string, encodes_or_gives_nothing_for_what_the_encoding_lacks) {
  const struct { StringEncoding encoding; String text; std::optional<std::string> expected; } rows[] = {
      {E::UTF8, u"a\0\u00E9\u65E5\U0001F600"s, "a\0\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80"s},
      // Unpaired surrogates have no form in any encoding.
      {E::UTF8, u"ok\xD83D", std::nullopt},
      {E::ASCII, u"END:VCARD\r\n\x7F", "END:VCARD\r\n\x7F"},
      {E::ASCII, u"\x80", std::nullopt},
      {E::Latin1, u"caf\u00E9\u00FF", "caf\xE9\xFF"},
      {E::Latin1, u"\u0100", std::nullopt},
      {E::ShiftJIS, u"", ""},
      {E::ShiftJIS, u"a\u65E5\u3042\uFF71", "a\x93\xFA\x82\xA0\xB1"},
      {E::ShiftJIS, u"\u20AC", std::nullopt},
      {E::UTF16LE, u"a\U0001F600", "a\0\x3D\xD8\x00\xDE"s},
      {E::UTF16BE, u"a\u65E5", "\0a\x65\xE5"s},
      {E::UTF16BE, u"a\xDC00", std::nullopt},
  };
  for (const auto& r : rows) EXPECT_EQ(BytesFromString(r.text, r.encoding), r.expected) << &r - rows;
}

TEST(to_display_utf8, replaces_unpaired_surrogates_only) {
  EXPECT_EQ(ToDisplayUTF8(u"a\0\u65E5\U0001F600"s), "a\0\xE6\x97\xA5\xF0\x9F\x98\x80"s);
  EXPECT_EQ(ToDisplayUTF8(u"\xDC00\xD800"), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(ToDisplayUTF8(u"x\xD83Dy"), "x\xEF\xBF\xBDy");
  EXPECT_EQ(ToDisplayUTF8(u"x\xD83D"), "x\xEF\xBF\xBD");
  EXPECT_EQ(StringFromASCII(std::string_view("a\0\xE9\xFF", 4)), u"a\0\u00E9\u00FF"s);
}

// A narrow C string would otherwise turn into a boolean.
static_assert(!std::is_constructible_v<Value, const char*>);

TEST(value, names_its_kind_and_holds_every_integer_width_as_one) {
  const std::pair<Value, std::string_view> rows[] = {
      {Value(), "string"},       {Value(std::uint8_t{7}), "integer"}, {Value(0.5), "real"},  {Value(true), "boolean"},
      {Value(Date{1.5}), "date"}, {Value(Bytes{1}), "data"},           {Value(Array{}), "array"},
      {Value(Dictionary{}), "dictionary"}};
  for (const auto& [value, name] : rows) EXPECT_EQ(TypeName(value.type()), name);
  EXPECT_EQ(Value(UINT_MAX).get<std::int64_t>(), 4294967295LL);
  EXPECT_EQ(Value(char16_t{0xFFFF}), Value(0xFFFF));
}

}  // namespace
}  // namespace phonepim
