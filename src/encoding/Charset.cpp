#include "phonepim/encoding/Charset.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>

#include "phonepim/encoding/Encoding.h"
#include "encoding/Base64Internal.h"
#include "encoding/QuotedPrintableUTF8.h"

namespace phonepim {
namespace {

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

char UpperASCII(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool SameWordNoCase(std::string_view text, std::string_view word) {
  if (text.size() != word.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (UpperASCII(text[i]) != word[i]) return false;
  }
  return true;
}

// Legacy code pages substitute their own SUB control character, which a
// reader would take for text: U+FFFD says what it is.
void ReplaceWithFFFD(const void* /*context*/, UConverterToUnicodeArgs* args,
                     const char* /*bytes*/, int32_t /*length*/, UConverterCallbackReason reason,
                     UErrorCode* error) {
  if (reason > UCNV_IRREGULAR) return;  // reset, close, clone
  static constexpr UChar kReplacement = 0xFFFD;
  *error = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(args, &kReplacement, 1, 0, error);
}

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

// The bytes through ICU's converter for `charset`, bad sequences as U+FFFD;
// nothing when ICU does not know the name.
std::optional<String> ConvertWithICU(std::string_view bytes, const std::string& charset,
                                     bool* replaced) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, ConverterCloser> converter(
      ucnv_open(charset.c_str(), &status));
  if (U_FAILURE(status)) return std::nullopt;
  // First strictly, to learn whether anything needs replacing.
  for (const bool strict : {true, false}) {
    status = U_ZERO_ERROR;
    ucnv_reset(converter.get());
    if (strict) {
      ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                          &status);
    } else {
      ucnv_setToUCallBack(converter.get(), ReplaceWithFFFD, nullptr, nullptr, nullptr, &status);
    }
    // A byte can give at most two UTF-16 units (a supplementary character).
    String out(bytes.size() * 2 + 1, u'\0');
    UChar* target = out.data();
    const char* source = bytes.data();
    ucnv_toUnicode(converter.get(), &target, out.data() + out.size(), &source,
                   bytes.data() + bytes.size(), nullptr, true, &status);
    if (U_SUCCESS(status)) {
      out.resize(static_cast<std::size_t>(target - out.data()));
      *replaced = !strict;
      return out;
    }
  }
  *replaced = true;
  return String();
}

}  // namespace

int EncodingOfWord(std::string_view word) {
  if (SameWordNoCase(word, "QUOTED-PRINTABLE") || SameWordNoCase(word, "QUOTEDPRINTABLE")) {
    return kEncodingQuotedPrintable;
  }
  if (SameWordNoCase(word, "BASE64") || SameWordNoCase(word, "B")) return kEncodingBase64;
  return kEncodingUnknown;
}

bool NamesUTF8(std::string_view word) {
  return SameWordNoCase(word, "UTF-8") || SameWordNoCase(word, "UTF8");
}

Bytes DecodeBase64Text(std::string_view text) {
  // Photos are long, and the tokenizer has most often taken the folding out
  // already: eight bytes at a time while none is a control or a space (the
  // alphabet and the padding all lie above), then decoded where they are.
  // Only text with white space left in it is packed first, without a branch
  // per byte.
  constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
  constexpr std::uint64_t kHighs = 0x8080808080808080ULL;
  const auto plainWord = [](const char* at) {
    std::uint64_t word;
    std::memcpy(&word, at, 8);
    return std::endian::native == std::endian::little &&
           ((word - kOnes * 0x21) & ~word & kHighs) == 0;
  };
  const char* s = text.data();
  const char* const end = s + text.size();
  while (end - s >= 8 && plainWord(s)) s += 8;
  while (s != end && static_cast<unsigned char>(*s) > ' ') ++s;
  std::string packed;
  std::string_view alphabet = text;
  if (s != end) {
    packed.assign(text.data(), s);
    packed.resize(text.size());
    char* d = packed.data() + (s - text.data());
    while (s != end) {
      if (end - s >= 8 && plainWord(s)) {
        std::memcpy(d, s, 8);
        s += 8;
        d += 8;
        continue;
      }
      const char* const stop = s + std::min<std::ptrdiff_t>(end - s, 8);
      for (; s != stop; ++s) {
        const char c = *s;
        *d = c;
        d += c != ' ' && c != '\t' && c != '\r' && c != '\n' ? 1 : 0;
      }
    }
    packed.resize(static_cast<std::size_t>(d - packed.data()));
    alphabet = packed;
  }
  Bytes bytes(alphabet.size() / 4 * 3 + 2);
  bytes.resize(Base64DecodePrefix(alphabet.data(), alphabet.size(), bytes.data()));
  return bytes;
}

std::string DecodeQuotedPrintableValue(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    // Plain runs are copied whole; only an '=' needs a look.
    const std::size_t equals = std::min(text.find('=', i), text.size());
    out.append(text, i, equals - i);
    i = equals;
    if (i + 1 >= text.size()) {
      if (i < text.size()) out.push_back('=');
      break;
    }
    if (text[i + 1] == '\r' || text[i + 1] == '\n') {
      i += text[i + 1] == '\r' && i + 2 < text.size() && text[i + 2] == '\n' ? 3 : 2;
      continue;
    }
    const int high = HexValue(text[i + 1]);
    const int low = i + 2 < text.size() ? HexValue(text[i + 2]) : -1;
    if (high < 0 || low < 0) {
      out.push_back('=');
      ++i;
      continue;
    }
    out.push_back(static_cast<char>(high * 16 + low));
    i += 3;
  }
  return out;
}

std::string CharsetNote(const CharsetText& decoded, std::string_view charset) {
  if (decoded.unknownCharset) return "charset " + std::string(charset) + " unknown, read as UTF-8";
  if (decoded.replaced) return "bytes not valid in its charset kept as Latin-1 or U+FFFD";
  return {};
}

CharsetText DecodeCharset(std::string_view bytes, std::string_view charset, int encoding) {
  CharsetText result;
  DecodeCharsetInto(bytes, charset, encoding, &result);
  return result;
}

void DecodeCharsetInto(std::string_view bytes, std::string_view charset, int encoding,
                       CharsetText* out) {
  const bool utf8 = charset.empty() || NamesUTF8(charset);
  CharsetText& result = *out;
  result.replaced = false;
  result.unknownCharset = false;
  // Quoted-printable UTF-8, the common case, in one pass when every escape
  // is whole and the bytes are UTF-8; the steps below decide the rest.
  if (utf8 && (encoding == kEncodingQuotedPrintable || encoding == kEncodingQuotedPrintableCR) &&
      DecodeQuotedPrintableUTF8(bytes.data(), bytes.size(), &result.text, false)) {
    return;
  }
  std::string decoded;
  if (encoding == kEncodingQuotedPrintable || encoding == kEncodingQuotedPrintableCR) {
    decoded = DecodeQuotedPrintableValue(bytes);
    bytes = decoded;
  } else if (encoding == kEncodingBase64) {
    const Bytes binary = DecodeBase64Text(bytes);
    decoded.assign(binary.begin(), binary.end());
    bytes = decoded;
  }
  if (!utf8) {
    if (std::optional<String> text = ConvertWithICU(bytes, std::string(charset),
                                                    &result.replaced)) {
      result.text = std::move(*text);
      return;
    }
    result.unknownCharset = true;
  }
  if (std::optional<String> text = StringFromBytes(bytes.data(), bytes.size(),
                                                   StringEncoding::UTF8)) {
    result.text = std::move(*text);
  } else {
    // Phones that claim UTF-8 for Latin-1 text: every byte is a character.
    result.text = *StringFromBytes(bytes.data(), bytes.size(), StringEncoding::Latin1);
    result.replaced = true;
  }
}

String UnescapeValue(std::u16string_view text) {
  // Most parts of a name or an address have no backslash: copied whole.
  const std::size_t first = text.find(u'\\');
  if (first == std::u16string_view::npos) return String(text);
  String out;
  out.reserve(text.size());
  out.append(text.substr(0, first));
  for (std::size_t i = first; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (unit != u'\\' || i + 1 >= text.size()) {
      out.push_back(unit);
      continue;
    }
    switch (const char16_t next = text[i + 1]) {
      case u';':
      case u'\\':
      case u',':
      case u':':
        out.push_back(next);
        ++i;
        break;
      case u'n':
      case u'N':
        out.push_back(u'\n');
        ++i;
        break;
      default:
        out.push_back(unit);
    }
  }
  return out;
}

std::vector<String> SplitStructuredValue(std::u16string_view value, bool unescape) {
  std::vector<String> components;
  SplitStructuredValueInto(value, unescape, &components);
  return components;
}

void SplitStructuredValueInto(std::u16string_view value, bool unescape,
                              std::vector<String>* out) {
  std::vector<String>& components = *out;
  components.clear();
  // Names and addresses have several parts: room for them at once.
  components.reserve(static_cast<std::size_t>(std::count(value.begin(), value.end(), u';')) + 1);
  const auto component = [&](std::u16string_view text) {
    components.push_back(unescape ? UnescapeValue(text) : String(text));
  };
  std::size_t start = 0;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == u'\\') {
      ++i;
    } else if (value[i] == u';') {
      component(value.substr(start, i - start));
      start = i + 1;
    }
  }
  component(value.substr(start));
}

}  // namespace phonepim
