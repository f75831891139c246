#include "phonepim/encoding/Encoding.h"

#include <cstdint>
#include <cstring>

#include "phonepim/encoding/NGQuotedPrintableCoding.h"

namespace phonepim {

std::optional<String> QPEncode(const String& s) {
  return QPEncode(s, static_cast<int>(s.size()));
}

std::optional<String> QPEncode(const String& s, int /*len*/) {
  return stringByEncodingQuotedPrintable(s);
}

std::optional<String> QPEncode(const char* utf8, int /*len*/) {
  if (utf8 == nullptr) return std::nullopt;
  const std::optional<String> text = StringFromUTF8(utf8);
  if (!text) return std::nullopt;
  return stringByEncodingQuotedPrintable(*text);
}

void QPDecode(const char* /*src*/, int /*len*/, String* /*out*/, int /*outLen*/) {}

std::optional<String> Decode(const void* bytes, int len, int charset, int encoding) {
  if (len < 0 || (bytes == nullptr && len != 0)) return std::nullopt;
  const StringEncoding stringEncoding =
      charset == kCharsetShiftJIS ? StringEncoding::ShiftJIS : StringEncoding::UTF8;
  const auto size = static_cast<std::size_t>(len);
  if (encoding == kEncodingQuotedPrintable || encoding == kEncodingQuotedPrintableCR) {
    return stringByDecodingQuotedPrintable(static_cast<const char*>(bytes), size,
                                           stringEncoding);
  }
  // BASE64 is left to the caller: the value is binary, not text.
  return StringFromBytes(bytes, size, stringEncoding);
}

String EncodeEscapedCharString(const String& s) {
  String out;
  out.reserve(s.size() * 2 + 1);
  for (const char16_t unit : s) {
    if (unit == u'\\' || unit == u';') out.push_back(u'\\');
    out.push_back(unit);
  }
  return out;
}

Bytes DecodeEscapedCharString(const char* s, unsigned long len) {
  Bytes out;
  if (s == nullptr) return out;
  out.reserve(len);
  for (unsigned long i = 0; i < len; ++i) {
    const auto c = static_cast<std::uint8_t>(s[i]);
    out.push_back(c);
    // The escaped character is dropped and the backslash kept: the vCard
    // reader splits the structured value on what is left.
    if (c == '\\') ++i;
  }
  // The result ends at the first NUL, which may come from the input itself
  // (a NUL right after a backslash was skipped with it, so it does not).
  if (out.empty()) return out;
  const void* nul = std::memchr(out.data(), 0, out.size());
  if (nul != nullptr) {
    out.resize(static_cast<std::size_t>(static_cast<const std::uint8_t*>(nul) - out.data()));
  }
  return out;
}

String DecodeEscapedCharString(const String& s) {
  String out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    const char16_t unit = s[i];
    if (unit == u'\\') {
      out.push_back(u'\\');
      ++i;
      continue;
    }
    // The unit goes through a signed char: only its low byte survives, and
    // bytes from 0x80 up come back as U+FF80-U+FFFF.
    const auto narrowed = static_cast<signed char>(static_cast<unsigned char>(unit & 0xFF));
    out.push_back(static_cast<char16_t>(static_cast<std::int16_t>(narrowed)));
  }
  return out;
}

}  // namespace phonepim
