// Value decoding for the versit readers: charset and transfer encoding
// together, the backslash escapes of structured values, and the
// quoted-printable entry points the writers call.
#pragma once

#include <optional>

#include "phonepim/platform/String.h"

namespace phonepim {

/// Value-encoding codes, as the property handlers produce them.
inline constexpr int kEncodingNone = 0;
inline constexpr int kEncodingQuotedPrintable = 1;
inline constexpr int kEncodingBase64 = 2;
/// Quoted-printable while the vCalendar option UseCarrageReturn is on.
inline constexpr int kEncodingQuotedPrintableCR = 3;
/// An ENCODING word that is not recognised.
inline constexpr int kEncodingUnknown = -1;

/// Charset codes; any other value is read as UTF-8.
inline constexpr int kCharsetUTF8 = 1;
inline constexpr int kCharsetShiftJIS = 2;

/// The quoted-printable form of `s` (STL_QPEncode of its UTF-8 bytes: a
/// space is always "=20", CR and LF are escaped, soft breaks after 67
/// columns). Nothing for a string with no UTF-8 form.
std::optional<String> QPEncode(const String& s);
/// As QPEncode(s); `len` is ignored.
std::optional<String> QPEncode(const String& s, int len);
/// QPEncode of the NUL-terminated UTF-8 text `utf8`; `len` is ignored.
/// Nothing for a null pointer or invalid UTF-8.
std::optional<String> QPEncode(const char* utf8, int len);

/// Does nothing, and never will: kept because callers exist.
void QPDecode(const char* src, int len, String* out, int outLen);

/// Builds a string from a property value: charset kCharsetShiftJIS reads
/// Shift_JIS, anything else UTF-8. Encodings 1 and 3 are quoted-printable
/// decoded first (`_` reads as a space); every other encoding, BASE64
/// included, takes the bytes as they stand. Nothing when the bytes are not
/// valid in the charset or the quoted-printable cannot be decoded (a
/// trailing '='), and for a negative `len` or null `bytes` with a `len`.
/// Exactly `len` bytes are read; a NUL among them is a character.
std::optional<String> Decode(const void* bytes, int len, int charset, int encoding);

/// Puts a backslash before every `\` and `;`.
String EncodeEscapedCharString(const String& s);

/// Undoes escapes in a structured value's bytes the way phones expect: a
/// backslash is kept and the byte after it is dropped, whatever it is
/// ("a\;b" gives "a\b", "a\\b" gives "a\b"). A NUL ends the text, unless
/// it is the byte a backslash skips. A null `s` gives no bytes.
Bytes DecodeEscapedCharString(const char* s, unsigned long len);

/// The same rule on UTF-16 units, and every other unit is narrowed to its low
/// 8 bits, sign-extended (U+00E9 becomes U+FFE9, U+4E2D becomes U+002D).
/// Deliberate: the value handlers depend on it. Only U+005C itself escapes;
/// a unit that merely narrows to a backslash (U+015C) does not.
String DecodeEscapedCharString(const String& s);

}  // namespace phonepim
