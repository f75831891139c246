#include "phonepim/platform/String.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>

#include "platform/UTF8Decoding.h"

namespace phonepim {
namespace {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, ConverterCloser>;

const char* IcuConverterName(StringEncoding encoding) {
  switch (encoding) {
    case StringEncoding::ShiftJIS: return "Shift_JIS";
    case StringEncoding::UTF16LE: return "UTF-16LE";
    case StringEncoding::UTF16BE: return "UTF-16BE";
    case StringEncoding::Latin1: return "ISO-8859-1";
    case StringEncoding::ASCII: return "US-ASCII";
    case StringEncoding::UTF8: return "UTF-8";
  }
  return "UTF-8";
}

// A converter that stops at the first byte sequence it cannot map, so that
// bad input gives no string instead of U+FFFD.
ConverterPtr OpenStrictConverter(StringEncoding encoding) {
  UErrorCode status = U_ZERO_ERROR;
  ConverterPtr converter(ucnv_open(IcuConverterName(encoding), &status));
  if (U_FAILURE(status)) return nullptr;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr,
                      nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr,
                        nullptr, nullptr, &status);
  if (U_FAILURE(status)) return nullptr;
  return converter;
}

std::optional<String> DecodeWithConverter(const char* bytes, std::size_t size,
                                          StringEncoding encoding) {
  ConverterPtr converter = OpenStrictConverter(encoding);
  if (!converter) return std::nullopt;
  // Every supported encoding yields at most one UTF-16 unit per byte.
  String out(size, u'\0');
  UChar* target = out.data();
  const char* source = bytes;
  UErrorCode status = U_ZERO_ERROR;
  ucnv_toUnicode(converter.get(), &target, out.data() + out.size(), &source,
                 bytes + size, nullptr, /*flush=*/true, &status);
  if (U_FAILURE(status)) return std::nullopt;
  out.resize(static_cast<std::size_t>(target - out.data()));
  return out;
}

}  // namespace

std::optional<String> StringFromUTF8(std::string_view utf8) {
  // Hand-written rather than ICU's u_strFromUTF8: phone text is mostly
  // ASCII, taken here eight bytes at a time, and the reader converts every
  // value it keeps, so this loop is a large share of reading a card. The
  // rules are the strict ones of the Unicode standard (no overlong forms,
  // no surrogates, nothing above U+10FFFF, no truncated sequence), the same
  // that ICU applies; a test compares the two on random bytes.
  String out(utf8.size(), u'\0');
  const auto* s = reinterpret_cast<const unsigned char*>(utf8.data());
  const unsigned char* const end = s + utf8.size();
  char16_t* d = out.data();
  while (s != end) {
    if (std::endian::native == std::endian::little && end - s >= 8) {
      // All eight units are written (the output is as long as the input,
      // and never ahead of it), but only the ASCII run before the first
      // byte with its top bit set counts.
      std::uint64_t word;
      std::memcpy(&word, s, 8);
      const std::uint64_t high = word & 0x8080808080808080ULL;
      const int run = high == 0 ? 8 : std::countr_zero(high) / 8;
      utf8::WidenEight(word, d);
      s += run;
      d += run;
      if (run == 8) continue;
    }
    const unsigned lead = *s;
    if (lead < 0x80) {
      *d++ = static_cast<char16_t>(lead);
      ++s;
      continue;
    }
    if (lead >= 0xC2 && lead <= 0xDF && end - s >= 2 && (s[1] & 0xC0) == 0x80) {
      // Two bytes, the common case of accented Latin, Greek and Cyrillic.
      *d++ = static_cast<char16_t>(((lead & 0x1F) << 6) | (s[1] & 0x3F));
      s += 2;
      continue;
    }
    ++s;
    const auto next = [&s, end](unsigned& byte) {
      if (s == end) return false;
      byte = *s++;
      return true;
    };
    if (!utf8::DecodeSequence(lead, next, d)) return std::nullopt;
  }
  out.resize(static_cast<std::size_t>(d - out.data()));
  return out;
}

std::optional<std::string> UTF8FromString(const String& text) {
  if (text.empty()) return std::string();
  if (text.size() > static_cast<std::size_t>(INT32_MAX / 3)) return std::nullopt;
  std::string out(text.size() * 3, '\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8(out.data(), static_cast<int32_t>(out.size()), &length, text.data(),
              static_cast<int32_t>(text.size()), &status);
  if (U_FAILURE(status)) return std::nullopt;
  out.resize(static_cast<std::size_t>(length));
  return out;
}

std::string ToDisplayUTF8(const String& text) {
  std::string out;
  out.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    UChar32 c;
    U16_NEXT(text.data(), i, text.size(), c);
    if (U_IS_SURROGATE(c)) c = 0xFFFD;
    uint8_t buffer[4];
    int32_t n = 0;
    U8_APPEND_UNSAFE(buffer, n, c);
    out.append(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(n));
  }
  return out;
}

String StringFromASCII(std::string_view ascii) {
  String out(ascii.size(), u'\0');
  for (std::size_t i = 0; i < ascii.size(); ++i) {
    out[i] = static_cast<unsigned char>(ascii[i]);
  }
  return out;
}

std::optional<String> StringFromBytes(const void* bytes, std::size_t size,
                                      StringEncoding encoding) {
  const char* data = static_cast<const char*>(bytes);
  if (size == 0) return String();
  switch (encoding) {
    case StringEncoding::UTF8:
      return StringFromUTF8(std::string_view(data, size));
    case StringEncoding::ASCII:
      for (std::size_t i = 0; i < size; ++i) {
        if (static_cast<unsigned char>(data[i]) > 0x7F) return std::nullopt;
      }
      return StringFromASCII(std::string_view(data, size));
    case StringEncoding::Latin1:
      return StringFromASCII(std::string_view(data, size));
    case StringEncoding::ShiftJIS:
    case StringEncoding::UTF16LE:
    case StringEncoding::UTF16BE:
      if (size > static_cast<std::size_t>(INT32_MAX)) return std::nullopt;
      return DecodeWithConverter(data, size, encoding);
  }
  return std::nullopt;
}

std::optional<std::string> BytesFromString(const String& text,
                                           StringEncoding encoding) {
  switch (encoding) {
    case StringEncoding::UTF8:
      return UTF8FromString(text);
    case StringEncoding::ASCII:
    case StringEncoding::Latin1: {
      const char16_t limit = encoding == StringEncoding::ASCII ? 0x7F : 0xFF;
      std::string out(text.size(), '\0');
      for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] > limit) return std::nullopt;
        out[i] = static_cast<char>(text[i]);
      }
      return out;
    }
    case StringEncoding::ShiftJIS:
    case StringEncoding::UTF16LE:
    case StringEncoding::UTF16BE: {
      if (text.empty()) return std::string();
      if (text.size() > static_cast<std::size_t>(INT32_MAX / 4)) return std::nullopt;
      ConverterPtr converter = OpenStrictConverter(encoding);
      if (!converter) return std::nullopt;
      std::string out(text.size() * 4, '\0');
      char* target = out.data();
      const UChar* source = text.data();
      UErrorCode status = U_ZERO_ERROR;
      ucnv_fromUnicode(converter.get(), &target, out.data() + out.size(), &source,
                       text.data() + text.size(), nullptr, /*flush=*/true, &status);
      if (U_FAILURE(status)) return std::nullopt;
      out.resize(static_cast<std::size_t>(target - out.data()));
      return out;
    }
  }
  return std::nullopt;
}

}  // namespace phonepim
