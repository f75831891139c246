// Property tests over random bytes with fixed seeds: what an encoder writes,
// its decoders give back, and the encoded lines keep their shape; the
// one-pass quoted-printable UTF-8 codec agrees with the two steps it stands
// in for; BASE64 decoding stops at the first byte outside the alphabet.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/encoding/base64.h"
#include "encoding/QuotedPrintableUTF8.h"

namespace phonepim {
namespace {

// Random bytes, half of them from the characters the codecs treat
// specially, so that dots at line starts, '=' and line ends are common;
// mostly short, some long enough for many soft breaks.
std::string RandomBytes(std::mt19937& engine) {
  auto pick = [&engine](std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(engine);
  };
  static const char kSpecial[] = {'.', '=', '\r', '\n', ' ', '\t', '_', '\0', '\x7F', '\x80', '\xFF', 'a', 'F', '3'};
  std::string out(pick(10) == 0 ? pick(1200) : pick(160), '\0');
  for (char& c : out) c = pick(2) == 0 ? kSpecial[pick(sizeof kSpecial)] : static_cast<char>(pick(256));
  return out;
}

// Soft breaks are the only line ends; each line holds at most 70 characters
// before its '=', all printable ASCII or TAB.
bool WellFormed(const std::string& qp) {
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = qp.find("\r\n", start);
    const std::string line = qp.substr(start, end == std::string::npos ? end : end - start);
    for (const char c : line) {
      if (c != '\t' && (c < ' ' || c > '~')) return false;
    }
    if (end == std::string::npos) return line.size() <= 70;
    if (line.empty() || line.back() != '=' || line.size() > 71) return false;
    start = end + 2;
  }
}

// The decoders read src[length]; c_str() provides the NUL.
std::optional<std::string> DecodeSTL(const std::string& qp, unsigned flags) {
  std::vector<char> dst(qp.size() + 1);
  unsigned long length = 0;
  if (STL_QPDecode(qp.c_str(), qp.size(), dst.data(), &length, kEncodingQuotedPrintable, flags) != 1) {
    return std::nullopt;
  }
  return std::string(dst.data(), length);
}

std::optional<std::string> DecodeNG(const std::string& qp, signed char underscoreIsSpace) {
  std::vector<char> dst(qp.size() + 1);
  const auto length = static_cast<unsigned>(qp.size());
  const int n = NGDecodeQuotedPrintableX(qp.c_str(), length, dst.data(), length, underscoreIsSpace);
  if (n < 0) return std::nullopt;
  return std::string(dst.data(), static_cast<std::size_t>(n));
}

TEST(round_trip, quoted_printable_encoders_then_decoders) {
  std::mt19937 engine(20240601);
  for (int i = 0; i < 3000; ++i) {
    const std::string in = RandomBytes(engine);
    const std::string show = ::testing::PrintToString(in);
    for (unsigned flags = 0; flags < 4; ++flags) {
      auto capacity = static_cast<unsigned long>(QPEncodeGetRequiredLength(static_cast<int>(in.size())));
      std::string stl(capacity, '\0');
      ASSERT_EQ(STL_QPEncode(in.data(), in.size(), stl.data(), &capacity, flags), 1);
      stl.resize(capacity);
      int capacity2 = QPEncodeGetRequiredLength(static_cast<int>(in.size()));
      std::string two(static_cast<std::size_t>(capacity2), '\0');
      ASSERT_EQ(QPEncode2(reinterpret_cast<const unsigned char*>(in.data()), static_cast<int>(in.size()),
                          two.data(), &capacity2, flags),
                1);
      two.resize(static_cast<std::size_t>(capacity2));
      ASSERT_TRUE(WellFormed(stl) && WellFormed(two)) << show;
      ASSERT_EQ(stl.find(' '), std::string::npos) << show;
      ASSERT_EQ(DecodeSTL(stl, flags & kQPDotStuffing), in) << flags << show;
      ASSERT_EQ(DecodeSTL(two, flags & kQPDotStuffing), in) << flags << show;
      if ((flags & kQPDotStuffing) == 0) {
        ASSERT_EQ(DecodeNG(stl, 0), in) << show;
        ASSERT_EQ(DecodeNG(two, 0), in) << show;
      }
    }
    std::vector<char> header(3 * in.size() + 1);
    const int n = NGEncodeQuotedPrintable(in.data(), static_cast<unsigned>(in.size()), header.data(),
                                          3 * static_cast<unsigned>(in.size()));
    ASSERT_GE(n, 0);
    const std::string qp(header.data(), static_cast<std::size_t>(n));
    ASSERT_EQ(qp.find('_'), std::string::npos);
    ASSERT_EQ(DecodeNG(qp, 1), in) << show;

    const int len = static_cast<int>(in.size());
    std::vector<char> text(static_cast<std::size_t>(Base64encode_len(len)));
    ASSERT_EQ(Base64encode(text.data(), in.data(), len), Base64encode_len(len));
    std::vector<char> out(static_cast<std::size_t>(Base64decode_len(text.data())));
    const int decoded = Base64decode(out.data(), text.data());
    ASSERT_LT(decoded, static_cast<int>(out.size()));
    ASSERT_EQ(std::string(out.data(), static_cast<std::size_t>(decoded)), in);
  }
}


const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

TEST(base64, decodes_up_to_the_first_byte_outside_the_alphabet) {
  const struct {
    std::string in, expected;
  } rows[] = {
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
  EXPECT_EQ(Base64decode_len(nullptr), 1);
  EXPECT_EQ(Base64decode(dst, nullptr), 0);
  EXPECT_EQ(dst[0], '\0');
  // Every byte value: exactly the 64 alphabet bytes carry data.
  for (int b = 1; b < 256; ++b) {
    const std::size_t value = kAlphabet.find(static_cast<char>(b));
    const std::string text = std::string(1, static_cast<char>(b)) + "AAA";
    EXPECT_EQ(Base64decode_len(text.c_str()), value == std::string::npos ? 1 : 4) << b;
    char out[4] = {};
    Base64decode(out, text.c_str());
    if (value != std::string::npos) {
      EXPECT_EQ(static_cast<unsigned char>(out[0]), value << 2) << b;
    }
  }
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
