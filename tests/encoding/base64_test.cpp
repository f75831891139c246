#include "phonepim/encoding/base64.h"

#include "encoding/Base64Internal.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace phonepim {
namespace {

using namespace std::string_literals;

const std::string kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

struct DecodeResult {
  int count;
  std::string bytes;
};

// Decodes into a buffer of exactly Base64decode_len bytes.
DecodeResult DecodeBase64(const std::string& text) {
  std::vector<char> dst(static_cast<std::size_t>(Base64decode_len(text.c_str())), '#');
  const int count = Base64decode(dst.data(), text.c_str());
  EXPECT_GE(count, 0);
  EXPECT_LT(static_cast<std::size_t>(count), dst.size());
  EXPECT_EQ(dst[static_cast<std::size_t>(count)], '\0') << "no NUL after the bytes";
  return {count, std::string(dst.data(), static_cast<std::size_t>(count))};
}

TEST(base64_encode, writes_padded_groups_and_counts_the_nul) {
  const struct {
    std::string in;
    std::string expected;
  } cases[] = {
      {"", ""},
      {"M", "TQ=="},
      {"Ma", "TWE="},
      {"Man", "TWFu"},
      {"foobar", "Zm9vYmFy"},
      {"fooba", "Zm9vYmE="},
      {"\0\0\0"s, "AAAA"},
      {"\xFF\xFE\xFD", "//79"},
      {"\xFB\xFF", "+/8="},
      {"\xFF", "/w=="},
  };
  for (const auto& c : cases) {
    const int len = static_cast<int>(c.in.size());
    std::vector<char> dst(static_cast<std::size_t>(Base64encode_len(len)), '#');
    const int written = Base64encode(dst.data(), c.in.data(), len);
    EXPECT_EQ(written, Base64encode_len(len)) << c.expected;
    EXPECT_EQ(std::string(dst.data()), c.expected);
    EXPECT_EQ(static_cast<std::size_t>(written), c.expected.size() + 1);
  }
}

TEST(base64_encode_len, rounds_up_to_groups_plus_nul) {
  const int expected[] = {1, 5, 5, 5, 9, 9, 9, 13};
  for (int len = 0; len < 8; ++len) EXPECT_EQ(Base64encode_len(len), expected[len]) << len;
}

TEST(base64_decode, stops_at_the_first_byte_outside_the_alphabet) {
  const struct {
    std::string in;
    int count;
    std::string expected;
  } cases[] = {
      {"TWFu", 3, "Man"},
      {"TQ==", 1, "M"},
      {"TWE=", 2, "Ma"},
      {"TW Fu", 1, "M"},
      {"TWFu\r\nTWFu", 3, "Man"},
      {"Zm9vYmFy", 6, "foobar"},
      {"//79", 3, "\xFF\xFE\xFD"},
      {"+/8=", 2, "\xFB\xFF"},
      {"", 0, ""},
      {"=TWFu", 0, ""},
      {"T", 0, ""},
      {"TWFuT", 3, "Man"},
      {"TWFuTQ", 4, "ManM"},
      {"TWFuTWE", 5, "ManMa"},
      // Bits left over in the last character are dropped, not checked.
      {"TR", 1, "M"},
      {"TR==", 1, "M"},
      // URL-safe and high bytes are not in the alphabet.
      {"-_AA", 0, ""},
      {"\x80TWFu", 0, ""},
      {"TWFu\x80TWFu", 3, "Man"},
  };
  for (const auto& c : cases) {
    const DecodeResult result = DecodeBase64(c.in);
    EXPECT_EQ(result.count, c.count) << c.in;
    EXPECT_EQ(result.bytes, c.expected) << c.in;
  }
}

TEST(base64_decode_len, counts_leading_alphabet_bytes) {
  const struct {
    const char* in;
    int expected;
  } cases[] = {{"", 1},       {"T", 4},          {"TWFu", 4},    {"TWFuT", 7},
               {"TQ==", 4},   {"TWFuTWFu", 7},   {"TW Fu", 4},   {"=AAAAAAAA", 1}};
  for (const auto& c : cases) EXPECT_EQ(Base64decode_len(c.in), c.expected) << c.in;
}

// Every byte value: exactly the 64 alphabet bytes carry data.
TEST(base64_decode, alphabet_is_exactly_the_64_characters) {
  for (int b = 1; b < 256; ++b) {
    const std::string text = std::string(1, static_cast<char>(b)) + "AAA";
    const bool inAlphabet = kAlphabet.find(static_cast<char>(b)) != std::string::npos;
    EXPECT_EQ(Base64decode_len(text.c_str()), inAlphabet ? 4 : 1) << b;
    if (inAlphabet) {
      const auto value = static_cast<unsigned>(kAlphabet.find(static_cast<char>(b)));
      const DecodeResult result = DecodeBase64(text);
      ASSERT_EQ(result.count, 3);
      EXPECT_EQ(static_cast<unsigned char>(result.bytes[0]), value << 2) << b;
    }
  }
}

TEST(base64_decode, null_text_is_empty) {
  char dst[1] = {'#'};
  EXPECT_EQ(Base64decode_len(nullptr), 1);
  EXPECT_EQ(Base64decode(dst, nullptr), 0);
  EXPECT_EQ(dst[0], '\0');
}

// The bytes of the leading alphabet characters of `text`, the plain way: six
// bits a character, a byte whenever eight have gathered.
std::string ReferenceDecode(const std::string& text) {
  std::string bytes;
  unsigned bits = 0;
  int count = 0;
  for (const char c : text) {
    const std::size_t value = kAlphabet.find(c);
    if (value == std::string::npos) break;
    bits = (bits << 6) | static_cast<unsigned>(value);
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes += static_cast<char>((bits >> count) & 0xFF);
    }
  }
  return bytes;
}

// Both decoders, the terminated one and the counted one the vCard reader
// uses, against the plain way: random texts where the data stops at every
// place of a group.
TEST(base64_decode_prefix, agrees_with_the_plain_decoding) {
  static constexpr char kBytes[] = "AZaz09+/=\r\n -";
  std::mt19937 random(64);
  std::uniform_int_distribution<std::size_t> pick(0, sizeof kBytes - 2);
  std::uniform_int_distribution<int> alphabetRun(0, 14);
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (int i = alphabetRun(random); i > 0; --i) text += kAlphabet[pick(random) * 5 % 64];
    for (int i = alphabetRun(random) % 4; i > 0; --i) text += kBytes[pick(random)];
    const std::string expected = ReferenceDecode(text);
    std::vector<char> terminated(text.size() + 4);
    const int count = Base64decode(terminated.data(), text.c_str());
    ASSERT_EQ(std::string(terminated.data(), static_cast<std::size_t>(count)), expected) << text;
    std::vector<unsigned char> counted(text.size() / 4 * 3 + 2);
    const std::size_t written = Base64DecodePrefix(text.data(), text.size(), counted.data());
    ASSERT_EQ(std::string(counted.begin(), counted.begin() + static_cast<std::ptrdiff_t>(written)),
              expected)
        << text;
  }
}

}  // namespace
}  // namespace phonepim
