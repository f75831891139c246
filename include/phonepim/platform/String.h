// Text and byte types shared by the whole library, and the conversions
// between Unicode strings and encoded bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace phonepim {

/// Unicode text. Lengths and indexes count UTF-16 code units, as phones and
/// the synchronisation store do.
using String = std::u16string;

/// A byte buffer (binary property values, encoded text).
using Bytes = std::vector<std::uint8_t>;

/// The byte encodings the library reads and writes text in.
enum class StringEncoding {
  ASCII,     ///< 7-bit ASCII; a byte above 0x7F is invalid.
  UTF8,      ///< UTF-8 (strict: overlong forms and lone surrogates are invalid).
  ShiftJIS,  ///< Shift_JIS as Japanese phones send it.
  UTF16LE,   ///< UTF-16, little endian, no byte-order mark.
  UTF16BE,   ///< UTF-16, big endian, no byte-order mark.
  Latin1,    ///< ISO 8859-1: every byte is a character, so it never fails.
             ///< This is the encoding of "plain C strings" in the library.
};

/// Decodes `size` bytes in `encoding`. Returns no string when the bytes are
/// not valid in that encoding (never a replacement character).
std::optional<String> StringFromBytes(const void* bytes, std::size_t size,
                                      StringEncoding encoding);

/// Encodes `text` in `encoding`. Returns nothing when a character cannot be
/// represented (for UTF-8 and UTF-16: an unpaired surrogate).
std::optional<std::string> BytesFromString(const String& text,
                                           StringEncoding encoding);

/// Strict UTF-8 decoding; no string for invalid input.
std::optional<String> StringFromUTF8(std::string_view utf8);

/// UTF-8 encoding; nothing for a string holding an unpaired surrogate.
std::optional<std::string> UTF8FromString(const String& text);

/// UTF-8 for messages and logs: an unpaired surrogate becomes U+FFFD.
/// Never use it for data that is written back to a phone.
std::string ToDisplayUTF8(const String& text);

/// Widens ASCII text (for literals and keys); bytes above 0x7F are taken as
/// Latin-1.
String StringFromASCII(std::string_view ascii);

}  // namespace phonepim
