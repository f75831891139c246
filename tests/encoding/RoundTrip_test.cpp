// Property tests over random bytes with fixed seeds: what an encoder writes,
// its decoder gives back, and the encoded lines keep their shape.
#include <gtest/gtest.h>

#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/encoding/base64.h"

namespace phonepim {
namespace {

constexpr int kCases = 3000;

// Random bytes, half of them from the characters the codecs treat
// specially, so that dots at line starts, '=' and line ends are common.
class ByteSource {
 public:
  explicit ByteSource(unsigned seed) : engine_(seed) {}

  std::string Next() {
    // Mostly short values, some long enough for many soft breaks.
    const std::size_t length = Pick(10) == 0 ? Pick(1200) : Pick(160);
    std::string out(length, '\0');
    static const char kSpecial[] = {'.', '=', '\r', '\n', ' ', '\t', '_', '\0',
                                    '\x7F', '\x80', '\xFF', 'a', 'F', '3'};
    for (char& c : out) {
      c = Pick(2) == 0 ? kSpecial[Pick(sizeof kSpecial)] : static_cast<char>(Pick(256));
    }
    return out;
  }

  std::size_t Pick(std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(engine_);
  }

 private:
  std::mt19937 engine_;
};

std::string EncodeSTL(const std::string& in, unsigned int flags) {
  unsigned long capacity =
      static_cast<unsigned long>(QPEncodeGetRequiredLength(static_cast<int>(in.size())));
  std::vector<char> dst(capacity);
  EXPECT_EQ(STL_QPEncode(in.data(), in.size(), dst.data(), &capacity, flags), 1);
  return std::string(dst.data(), capacity);
}

std::string Encode2(const std::string& in, unsigned int flags) {
  int capacity = QPEncodeGetRequiredLength(static_cast<int>(in.size()));
  std::vector<char> dst(static_cast<std::size_t>(capacity));
  EXPECT_EQ(QPEncode2(reinterpret_cast<const unsigned char*>(in.data()),
                      static_cast<int>(in.size()), dst.data(), &capacity, flags),
            1);
  return std::string(dst.data(), static_cast<std::size_t>(capacity));
}

// The decoders read src[length]; c_str() provides the NUL.
std::optional<std::string> DecodeSTL(const std::string& qp, unsigned int flags) {
  std::vector<char> dst(qp.size() + 1);
  unsigned long length = 0;
  if (STL_QPDecode(qp.c_str(), qp.size(), dst.data(), &length, kEncodingQuotedPrintable,
                   flags) != 1) {
    return std::nullopt;
  }
  return std::string(dst.data(), length);
}

std::optional<std::string> DecodeNG(const std::string& qp, signed char underscoreIsSpace) {
  std::vector<char> dst(qp.size() + 1);
  const auto length = static_cast<unsigned int>(qp.size());
  const int n = NGDecodeQuotedPrintableX(qp.c_str(), length, dst.data(), length,
                                         underscoreIsSpace);
  if (n < 0) return std::nullopt;
  return std::string(dst.data(), static_cast<std::size_t>(n));
}

// Soft breaks are the only line ends; each line holds at most 70
// characters before its '=', all printable ASCII or TAB.
void ExpectWellFormedLines(const std::string& qp, const std::string& source) {
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = qp.find("\r\n", start);
    const std::string line = qp.substr(start, end == std::string::npos ? end : end - start);
    if (end != std::string::npos) {
      ASSERT_FALSE(line.empty()) << testing::PrintToString(source);
      ASSERT_EQ(line.back(), '=') << testing::PrintToString(source);
      ASSERT_LE(line.size(), 71u) << testing::PrintToString(source);
    } else {
      ASSERT_LE(line.size(), 70u) << testing::PrintToString(source);
    }
    for (const char c : line) {
      ASSERT_TRUE(c == '\t' || (c >= ' ' && c <= '~'))
          << static_cast<int>(c) << " in " << testing::PrintToString(source);
    }
    if (end == std::string::npos) break;
    start = end + 2;
  }
}

TEST(qp_round_trip, stl_encode_then_stl_decode) {
  ByteSource source(20240601);
  for (int i = 0; i < kCases; ++i) {
    const std::string in = source.Next();
    for (unsigned int flags = 0; flags < 4; ++flags) {
      const std::string qp = EncodeSTL(in, flags);
      ASSERT_NO_FATAL_FAILURE(ExpectWellFormedLines(qp, in));
      EXPECT_EQ(qp.find(' '), std::string::npos);
      ASSERT_EQ(DecodeSTL(qp, flags & kQPDotStuffing), in)
          << "flags " << flags << " " << testing::PrintToString(in);
    }
  }
}

TEST(qp_round_trip, stl_encode_then_ng_decode_without_underscore_rule) {
  ByteSource source(7);
  for (int i = 0; i < kCases; ++i) {
    const std::string in = source.Next();
    for (const unsigned int flags : {0u, kQPFinalSoftBreak}) {
      ASSERT_EQ(DecodeNG(EncodeSTL(in, flags), 0), in) << testing::PrintToString(in);
    }
  }
}

TEST(qp_round_trip, qpencode2_then_both_decoders) {
  ByteSource source(99991);
  for (int i = 0; i < kCases; ++i) {
    const std::string in = source.Next();
    for (unsigned int flags = 0; flags < 4; ++flags) {
      const std::string qp = Encode2(in, flags);
      ASSERT_NO_FATAL_FAILURE(ExpectWellFormedLines(qp, in));
      ASSERT_EQ(DecodeSTL(qp, flags & kQPDotStuffing), in) << testing::PrintToString(in);
      if ((flags & kQPDotStuffing) == 0) {
        ASSERT_EQ(DecodeNG(qp, 0), in) << testing::PrintToString(in);
      }
    }
  }
}

TEST(qp_round_trip, header_encoder_then_ng_decode_with_underscore_rule) {
  ByteSource source(31337);
  for (int i = 0; i < kCases; ++i) {
    const std::string in = source.Next();
    const auto length = static_cast<unsigned int>(in.size());
    std::vector<char> dst(3 * in.size() + 1);
    const int n = NGEncodeQuotedPrintable(in.data(), length, dst.data(), 3 * length);
    ASSERT_GE(n, 0);
    const std::string qp(dst.data(), static_cast<std::size_t>(n));
    EXPECT_EQ(qp.find('_'), std::string::npos);
    ASSERT_EQ(DecodeNG(qp, 1), in) << testing::PrintToString(in);
  }
}

// Value level: what the writer produces, the reader gives back, except that
// every '_' reads back as a space.
TEST(qp_round_trip, qpencode_then_decode_turns_underscores_into_spaces) {
  std::mt19937 engine(4242);
  std::uniform_int_distribution<int> pick(0, 9);
  const char16_t kUnits[] = {u'a', u'_', u' ', u';', u'\\', u'.', u'=', u'\r', u'\n',
                             u'\u00E9', u'\u3042', u'\uFF76', u'\u0000'};
  for (int i = 0; i < kCases; ++i) {
    String text;
    const int length = pick(engine) * 15;
    for (int k = 0; k < length; ++k) {
      if (pick(engine) == 0) {
        text += u"\U0001F600";
      } else {
        text += kUnits[static_cast<std::size_t>(pick(engine)) % std::size(kUnits)];
      }
    }
    const std::optional<String> qp = QPEncode(text);
    ASSERT_TRUE(qp.has_value());
    const std::optional<std::string> ascii = BytesFromString(*qp, StringEncoding::ASCII);
    ASSERT_TRUE(ascii.has_value());
    String expected = text;
    for (char16_t& unit : expected) {
      if (unit == u'_') unit = u' ';
    }
    EXPECT_EQ(Decode(ascii->data(), static_cast<int>(ascii->size()), kCharsetUTF8,
                     kEncodingQuotedPrintable),
              expected);
  }
}

TEST(base64_round_trip, encode_then_decode) {
  ByteSource source(555);
  for (int i = 0; i < kCases; ++i) {
    const std::string in = source.Next();
    const int len = static_cast<int>(in.size());
    std::vector<char> text(static_cast<std::size_t>(Base64encode_len(len)));
    ASSERT_EQ(Base64encode(text.data(), in.data(), len), Base64encode_len(len));
    const int decodeLen = Base64decode_len(text.data());
    std::vector<char> out(static_cast<std::size_t>(decodeLen));
    const int n = Base64decode(out.data(), text.data());
    ASSERT_EQ(n, len);
    ASSERT_LE(n, decodeLen - 1);
    ASSERT_EQ(std::string(out.data(), static_cast<std::size_t>(n)), in);
  }
}

}  // namespace
}  // namespace phonepim
