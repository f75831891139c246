// The one-pass quoted-printable UTF-8 codec against the two steps it stands
// in for: NGDecodeQuotedPrintableX then strict UTF-8, and STL_QPEncode of
// the UTF-8 bytes.
#include "encoding/QuotedPrintableUTF8.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

#include "phonepim/encoding/NGQuotedPrintableCoding.h"

namespace phonepim {
namespace {

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
    String paired = text;
    for (std::size_t i = 0; i < paired.size(); ++i) {
      const bool high = paired[i] >= 0xD800 && paired[i] <= 0xDBFF;
      if (high && i + 1 < paired.size() && paired[i + 1] >= 0xDC00 && paired[i + 1] <= 0xDFFF) {
        ++i;
      } else if (high || (paired[i] >= 0xDC00 && paired[i] <= 0xDFFF)) {
        paired[i] = 0xFFFD;
      }
    }
    const std::string bytes = *BytesFromString(paired, StringEncoding::UTF8);
    auto capacity = static_cast<unsigned long>(QPEncodeGetRequiredLength(static_cast<int>(bytes.size())));
    std::string expected(capacity, '\0');
    ASSERT_EQ(STL_QPEncode(bytes.data(), bytes.size(), expected.data(), &capacity, 0), 1);
    expected.resize(capacity);
    String actual;
    EncodeQuotedPrintableUTF8(text, &actual);
    ASSERT_EQ(actual, String(expected.begin(), expected.end())) << bytes;
  }
}

}  // namespace
}  // namespace phonepim
