#include "phonepim/encoding/base64.h"

#include "encoding/Base64Internal.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace phonepim {
namespace {

using namespace std::string_literals;

const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

TEST(base64, encodes_padded_groups_and_counts_the_nul) {
  const struct {
    std::string in, expected;
  } rows[] = {{"", ""}, {"M", "TQ=="}, {"Ma", "TWE="}, {"fooba", "Zm9vYmE="}, {"\0\0\0"s, "AAAA"},
              {"\xFF\xFE\xFD\xFB\xFF", "//79+/8="}};
  for (const auto& r : rows) {
    const int len = static_cast<int>(r.in.size());
    std::vector<char> dst(static_cast<std::size_t>(Base64encode_len(len)), '#');
    EXPECT_EQ(Base64encode(dst.data(), r.in.data(), len), static_cast<int>(r.expected.size()) + 1);
    EXPECT_EQ(std::string(dst.data()), r.expected);
  }
  const int lengths[] = {1, 5, 5, 5, 9};
  for (int len = 0; len < 5; ++len) EXPECT_EQ(Base64encode_len(len), lengths[len]) << len;
}

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

// Both decoders, the terminated one and the counted one the vCard reader
// uses, against plain decoding (six bits a character, a byte whenever eight
// have gathered): random texts where the data stops at every place of a group.
TEST(base64, decoders_agree_with_plain_decoding) {
  static constexpr char kBytes[] = "AZaz09+/=\r\n -";
  std::mt19937 random(64);
  std::uniform_int_distribution<std::size_t> pick(0, sizeof kBytes - 2);
  std::uniform_int_distribution<int> alphabetRun(0, 14);
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (int i = alphabetRun(random); i > 0; --i) text += kAlphabet[pick(random) * 5 % 64];
    for (int i = alphabetRun(random) % 4; i > 0; --i) text += kBytes[pick(random)];
    std::string expected;
    unsigned bits = 0;
    int count = 0;
    for (const char c : text) {
      const std::size_t value = kAlphabet.find(c);
      if (value == std::string::npos) break;
      bits = (bits << 6) | static_cast<unsigned>(value);
      if ((count += 6) >= 8) expected += static_cast<char>((bits >> (count -= 8)) & 0xFF);
    }
    std::vector<char> terminated(text.size() + 4);
    const int n = Base64decode(terminated.data(), text.c_str());
    ASSERT_EQ(std::string(terminated.data(), static_cast<std::size_t>(n)), expected) << text;
    std::vector<unsigned char> counted(text.size() / 4 * 3 + 2);
    const std::size_t written = Base64DecodePrefix(text.data(), text.size(), counted.data());
    ASSERT_EQ(std::string(counted.begin(), counted.begin() + static_cast<std::ptrdiff_t>(written)), expected) << text;
  }
}

}  // namespace
}  // namespace phonepim
