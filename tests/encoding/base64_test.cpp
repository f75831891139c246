#include "phonepim/encoding/base64.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace phonepim {
namespace {

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

}  // namespace
}  // namespace phonepim
