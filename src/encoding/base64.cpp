#include "phonepim/encoding/base64.h"

#include "encoding/Base64Internal.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace phonepim {
namespace {

constexpr char basis_64[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Inverse of basis_64: 0-63 for the alphabet, 64 for every other byte, so a
// single "< 64" test both validates and ends the data ('=' padding, line
// ends, white space and the terminating NUL all stop it).
constexpr std::array<unsigned char, 256> MakePr2six() {
  std::array<unsigned char, 256> table{};
  for (auto& entry : table) entry = 64;
  for (unsigned char i = 0; i < 64; ++i) {
    table[static_cast<unsigned char>(basis_64[i])] = i;
  }
  return table;
}
constexpr std::array<unsigned char, 256> pr2six = MakePr2six();

// Leading alphabet bytes of `src`.
std::size_t CountAlphabetBytes(const unsigned char* src) {
  const unsigned char* p = src;
  while (pr2six[*p] < 64) ++p;
  return static_cast<std::size_t>(p - src);
}

}  // namespace

int Base64encode_len(int len) { return ((len + 2) / 3) * 4 + 1; }

int Base64encode(char* dst, const char* src, int len) {
  const auto* in = reinterpret_cast<const unsigned char*>(src);
  char* p = dst;
  int i = 0;
  for (; i < len - 2; i += 3) {
    p[0] = basis_64[in[i] >> 2];
    p[1] = basis_64[((in[i] & 0x03) << 4) | (in[i + 1] >> 4)];
    p[2] = basis_64[((in[i + 1] & 0x0F) << 2) | (in[i + 2] >> 6)];
    p[3] = basis_64[in[i + 2] & 0x3F];
    p += 4;
  }
  if (i < len) {
    *p++ = basis_64[in[i] >> 2];
    if (i == len - 1) {
      *p++ = basis_64[(in[i] & 0x03) << 4];
      *p++ = '=';
    } else {
      *p++ = basis_64[((in[i] & 0x03) << 4) | (in[i + 1] >> 4)];
      *p++ = basis_64[(in[i + 1] & 0x0F) << 2];
    }
    *p++ = '=';
  }
  *p++ = '\0';
  return static_cast<int>(p - dst);
}

int Base64decode_len(const char* src) {
  if (src == nullptr) return 1;
  const std::size_t n = CountAlphabetBytes(reinterpret_cast<const unsigned char*>(src));
  return static_cast<int>(((n + 3) / 4) * 3 + 1);
}

namespace {

// The six bits of each byte already in their place in a group's 24 bits,
// one table per place, and kNotAlphabet (above the 24 bits) for the bytes
// outside the alphabet: a group is four loads and three ORs.
constexpr std::uint32_t kNotAlphabet = 1u << 24;
constexpr std::array<std::uint32_t, 256> MakePlacedSextets(int shift) {
  std::array<std::uint32_t, 256> table{};
  for (std::size_t c = 0; c < 256; ++c) {
    table[c] = pr2six[c] < 64 ? static_cast<std::uint32_t>(pr2six[c]) << shift : kNotAlphabet;
  }
  return table;
}
constexpr std::array<std::uint32_t, 256> kSextet0 = MakePlacedSextets(18);
constexpr std::array<std::uint32_t, 256> kSextet1 = MakePlacedSextets(12);
constexpr std::array<std::uint32_t, 256> kSextet2 = MakePlacedSextets(6);
constexpr std::array<std::uint32_t, 256> kSextet3 = MakePlacedSextets(0);

// The last group when it has fewer than four characters: two give one
// byte, three give two; one alone carries only six bits and gives nothing.
std::size_t DecodeShortGroup(const unsigned char* in, std::size_t n, unsigned char* out) {
  if (n < 2) return 0;
  out[0] = static_cast<unsigned char>((pr2six[in[0]] << 2) | (pr2six[in[1]] >> 4));
  if (n < 3) return 1;
  out[1] = static_cast<unsigned char>((pr2six[in[1]] << 4) | (pr2six[in[2]] >> 2));
  return 2;
}

}  // namespace

std::size_t Base64DecodePrefix(const char* text, std::size_t n, unsigned char* out) {
  const auto* in = reinterpret_cast<const unsigned char*>(text);
  unsigned char* const begin = out;
  std::size_t i = 0;
  // Whole groups while all four are alphabet bytes: finding where the data
  // ends and decoding it is one pass.
  while (n - i >= 4) {
    const std::uint32_t group = kSextet0[in[i]] | kSextet1[in[i + 1]] |
                                kSextet2[in[i + 2]] | kSextet3[in[i + 3]];
    if (group >= kNotAlphabet) break;
    out[0] = static_cast<unsigned char>(group >> 16);
    out[1] = static_cast<unsigned char>(group >> 8);
    out[2] = static_cast<unsigned char>(group);
    i += 4;
    out += 3;
  }
  std::size_t rest = 0;  // fewer than four
  while (i + rest < n && pr2six[in[i + rest]] < 64) ++rest;
  return static_cast<std::size_t>(out - begin) + DecodeShortGroup(in + i, rest, out);
}

int Base64decode(char* dst, const char* src) {
  if (src == nullptr) {
    *dst = '\0';
    return 0;
  }
  auto* out = reinterpret_cast<unsigned char*>(dst);
  const std::size_t written = Base64DecodePrefix(
      src, CountAlphabetBytes(reinterpret_cast<const unsigned char*>(src)), out);
  out[written] = '\0';
  return static_cast<int>(written);
}

}  // namespace phonepim
