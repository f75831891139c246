// The one-pass quoted-printable UTF-8 decoder against the two steps it
// stands in for: NGDecodeQuotedPrintableX, then strict UTF-8.
#include "encoding/QuotedPrintableUTF8.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

#include "phonepim/encoding/NGQuotedPrintableCoding.h"

namespace phonepim {
namespace {

std::optional<String> TwoSteps(const std::string& text) {
  std::string terminated = text;  // an escape cut short reads the NUL after it
  std::string bytes(text.size() + 2, '\0');
  const auto n = static_cast<unsigned int>(text.size());
  const int written = NGDecodeQuotedPrintableX(terminated.c_str(), n, bytes.data(), n, 1);
  if (written < 0) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(written));
  return StringFromUTF8(bytes);
}

struct FastCase {
  std::string text;
  std::optional<String> expected;  // nothing: the one-pass decoder declines
};

class quoted_printable_utf8 : public ::testing::TestWithParam<FastCase> {};

TEST_P(quoted_printable_utf8, decodes_or_declines) {
  String out;
  const FastCase& c = GetParam();
  const bool decoded = DecodeQuotedPrintableUTF8(c.text.data(), c.text.size(), &out);
  ASSERT_EQ(decoded, c.expected.has_value());
  if (decoded) {
    EXPECT_EQ(out, *c.expected);
  }
}

INSTANTIATE_TEST_SUITE_P(
    cases, quoted_printable_utf8,
    ::testing::Values(
        FastCase{"", u""}, FastCase{"plain", u"plain"},
        FastCase{"M=C3=BCller", u"M\u00FCller"},
        FastCase{"m=c3=bcller", u"m\u00FCller"},               // lower-case digits
        FastCase{"a_b", u"a b"},                                // '_' is a space
        FastCase{"=5F", u"_"},                                  // an escaped one is not
        FastCase{"=E5=B1=B1=E7=94=B0", u"\u5C71\u7530"},
        FastCase{"=F0=9F=98=80", u"\U0001F600"},
        FastCase{"=C3\xA9", u"\u00E9"},                         // half escaped, half raw
        FastCase{"a=00b", std::u16string(u"a\0b", 3)},
        // Plain runs go eight bytes at a time; a stop at each place of a block.
        FastCase{"Treffen wegen der Schl=C3=BCssel in Z=C3=BCrich_um 12345678",
                 u"Treffen wegen der Schl\u00FCssel in Z\u00FCrich um 12345678"},
        FastCase{"1234567_abcdefgh=41", u"1234567 abcdefghA"},
        // Declined: the general rules decide these.
        FastCase{"a=\r\nb", std::nullopt}, FastCase{"a=", std::nullopt},
        FastCase{"a=4", std::nullopt}, FastCase{"=ZZ", std::nullopt},
        FastCase{"=C3", std::nullopt}, FastCase{"=ED=A0=80", std::nullopt},
        FastCase{"\xFF", std::nullopt}));

// Random texts of escapes, raw bytes and the troublesome tokens: whenever
// the one-pass decoder answers, the two steps give the same text.
TEST(quoted_printable_utf8_random, agrees_with_the_two_steps) {
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
    const std::optional<String> expected = TwoSteps(text);
    ASSERT_TRUE(expected.has_value()) << text;
    ASSERT_EQ(out, *expected) << text;
  }
  EXPECT_GT(answered, 5000);
}

}  // namespace
}  // namespace phonepim

namespace phonepim {
namespace {

// The one-pass writer against STL_QPEncode of the UTF-8 bytes (an unpaired
// surrogate as U+FFFD): random texts long enough to break lines at every
// column, with tabs around the column where they stop being literal.
TEST(quoted_printable_utf8_encode, agrees_with_stl_qpencode) {
  static constexpr char16_t kUnits[] = {u'a', u' ', u'\t', u'=', u'.', u'~', u'!', u'\r',
                                        u'\n', 0xE9, 0x3042, 0xD83D, 0xDE00, 0x7F};
  std::mt19937 random(68);
  std::uniform_int_distribution<std::size_t> pick(0, std::size(kUnits) - 1);
  std::uniform_int_distribution<int> length(0, 140);
  for (int round = 0; round < 20000; ++round) {
    String text;
    for (int i = length(random); i > 0; --i) text += kUnits[pick(random)];
    String paired = text;
    for (std::size_t i = 0; i < paired.size(); ++i) {
      const bool high = paired[i] >= 0xD800 && paired[i] <= 0xDBFF;
      const bool low = paired[i] >= 0xDC00 && paired[i] <= 0xDFFF;
      if (high && i + 1 < paired.size() && paired[i + 1] >= 0xDC00 && paired[i + 1] <= 0xDFFF) {
        ++i;
      } else if (high || low) {
        paired[i] = 0xFFFD;
      }
    }
    const std::string bytes = *BytesFromString(paired, StringEncoding::UTF8);
    unsigned long length = static_cast<unsigned long>(
        QPEncodeGetRequiredLength(static_cast<int>(bytes.size())));
    std::string expected(length, '\0');
    ASSERT_EQ(STL_QPEncode(bytes.data(), bytes.size(), expected.data(), &length, 0), 1);
    expected.resize(length);
    String actual;
    EncodeQuotedPrintableUTF8(text, &actual);
    ASSERT_EQ(actual, String(expected.begin(), expected.end())) << bytes;
  }
}

}  // namespace
}  // namespace phonepim
