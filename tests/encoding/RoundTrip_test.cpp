// Property tests over random bytes with fixed seeds: what an encoder writes,
// its decoders give back, and the encoded lines keep their shape.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/encoding/base64.h"

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

}  // namespace
}  // namespace phonepim
