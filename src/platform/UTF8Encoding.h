// One step of UTF-8 encoding from UTF-16, shared by the writers. Private to
// the library.
#pragma once

#include <cstddef>

namespace phonepim::utf8 {

inline bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
inline bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// Encodes the character at `units[*i]` (of `count` units) into `out` and
/// returns the number of bytes (1 to 4); `*i` is left on the character's
/// last unit. A surrogate pair is one character; an unpaired surrogate,
/// which has no UTF-8 form, is written as U+FFFD.
inline int EncodeCharacter(const char16_t* units, std::size_t count, std::size_t* i,
                           unsigned char* out) {
  char32_t c = units[*i];
  if (c < 0x80) {
    out[0] = static_cast<unsigned char>(c);
    return 1;
  }
  if (c < 0x800) {
    out[0] = static_cast<unsigned char>(0xC0 | (c >> 6));
    out[1] = static_cast<unsigned char>(0x80 | (c & 0x3F));
    return 2;
  }
  if (IsHighSurrogate(units[*i]) && *i + 1 < count && IsLowSurrogate(units[*i + 1])) {
    ++*i;
    c = 0x10000 + ((c - 0xD800) << 10) + (units[*i] - 0xDC00u);
    out[0] = static_cast<unsigned char>(0xF0 | (c >> 18));
    out[1] = static_cast<unsigned char>(0x80 | ((c >> 12) & 0x3F));
    out[2] = static_cast<unsigned char>(0x80 | ((c >> 6) & 0x3F));
    out[3] = static_cast<unsigned char>(0x80 | (c & 0x3F));
    return 4;
  }
  if (IsHighSurrogate(units[*i]) || IsLowSurrogate(units[*i])) c = 0xFFFD;
  out[0] = static_cast<unsigned char>(0xE0 | (c >> 12));
  out[1] = static_cast<unsigned char>(0x80 | ((c >> 6) & 0x3F));
  out[2] = static_cast<unsigned char>(0x80 | (c & 0x3F));
  return 3;
}

}  // namespace phonepim::utf8
