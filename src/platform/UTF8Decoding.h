// One step of strict UTF-8 decoding, shared by the plain decoder and by the
// readers that decode UTF-8 while undoing a transfer encoding. Private to the
// library.
#pragma once

#include <cstdint>
#include <cstring>

namespace phonepim::utf8 {

/// Writes the eight bytes of `word` (little-endian: its low byte first) as
/// eight UTF-16 units at `out`: the ASCII runs of the decoders, widened
/// without a loop.
inline void WidenEight(std::uint64_t word, char16_t* out) {
  const auto widenFour = [](std::uint64_t x) {
    x = (x | (x << 16)) & 0x0000FFFF0000FFFFULL;
    return (x | (x << 8)) & 0x00FF00FF00FF00FFULL;
  };
  const std::uint64_t low = widenFour(word & 0xFFFFFFFFULL);
  const std::uint64_t high = widenFour(word >> 32);
  std::memcpy(out, &low, sizeof low);
  std::memcpy(out + 4, &high, sizeof high);
}

/// Decodes the character whose lead byte `lead` (0x80 or above) has been
/// taken; `next(byte)` hands over each following byte and returns false
/// when there is none. Writes one or two UTF-16 units at `out` and advances
/// it. Returns false for a sequence the Unicode standard calls ill-formed:
/// a stray continuation byte, an overlong form, a surrogate, a value past
/// U+10FFFF, a sequence cut short. These are the rules ICU applies too.
template <class Next>
inline bool DecodeSequence(unsigned lead, Next&& next, char16_t*& out) {
  // The range of the first continuation byte depends on the lead byte:
  // that is where overlong forms, surrogates and values past U+10FFFF are
  // shut out. The other continuation bytes are always 80..BF.
  unsigned trail = 0;
  unsigned low = 0x80;
  unsigned high = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    trail = 1;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    trail = 2;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    trail = 3;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return false;
  }
  char32_t c = lead & (0x3Fu >> trail);
  for (unsigned k = 0; k < trail; ++k) {
    unsigned byte = 0;
    if (!next(byte) || byte < low || byte > high) return false;
    c = (c << 6) | (byte & 0x3F);
    low = 0x80;
    high = 0xBF;
  }
  if (c < 0x10000) {
    *out++ = static_cast<char16_t>(c);
  } else {
    *out++ = static_cast<char16_t>(0xD7C0 + (c >> 10));
    *out++ = static_cast<char16_t>(0xDC00 | (c & 0x3FF));
  }
  return true;
}

}  // namespace phonepim::utf8
