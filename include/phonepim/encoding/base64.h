// Base64 for binary property values (pictures, keys).
#pragma once

namespace phonepim {

/// Characters Base64encode writes for `len` bytes, NUL included:
/// ((len + 2) / 3) * 4 + 1.
int Base64encode_len(int len);

/// Encodes `len` bytes of `src` into `dst` with '=' padding and a NUL.
/// Returns the characters written, NUL included.
int Base64encode(char* dst, const char* src, int len);

/// Bytes Base64decode writes for `src`, NUL included: ((n + 3) / 4) * 3 + 1,
/// n being the count of leading Base64 alphabet bytes. 1 for a null `src`.
int Base64decode_len(const char* src);

/// Decodes the leading alphabet bytes of the NUL-terminated `src`; the first
/// other byte ('=', white space, a line end, anything) ends the data. A lone
/// last character gives nothing. Writes a NUL after the bytes and returns
/// their count (without the NUL), at most Base64decode_len(src) - 1, the
/// size `dst` must have. Never fails; a null `src` decodes as empty.
int Base64decode(char* dst, const char* src);

}  // namespace phonepim
