// Base64 over counted text, for readers that hold a value with its length
// rather than a terminated string. Private to the library.
#pragma once

#include <cstddef>

namespace phonepim {

/// Decodes the leading alphabet bytes of `text` (of `n` bytes) into `out`,
/// in one pass, as Base64decode does (a last group of one character gives
/// nothing), and returns the number of bytes written, at most
/// n / 4 * 3 + 2. No terminator is written.
std::size_t Base64DecodePrefix(const char* text, std::size_t n, unsigned char* out);

}  // namespace phonepim
