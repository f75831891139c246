// The vCard reader's value readers: structured values, dates, codes, lists,
// the speed dial and the photo.
#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/model/CContact.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "encoding/Base64Internal.h"
#include "encoding/QuotedPrintableUTF8.h"
#include "vcard/vCardReaderInternal.h"

namespace phonepim {

using vcard_reader::Atoi;
using vcard_reader::DecodeComponent;
using vcard_reader::ForEachComponent;
using vcard_reader::StrNEqual;

namespace {

// A null text reads as empty; a negative length as zero.
std::size_t Length(const char* text, int len) {
  return text == nullptr || len < 0 ? 0 : static_cast<std::size_t>(len);
}

// Whether a component holds a '\\' or a NUL. Components are short and
// many: eight bytes at a time (a zero byte of the word, or of the word xor
// '\\', is one of them), where two library scans would cost more in calls.
bool HasBackslashOrNul(const char* text, std::size_t len) {
  constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
  constexpr std::uint64_t kHighs = 0x8080808080808080ULL;
  std::size_t i = 0;
  for (; len - i >= 8; i += 8) {
    std::uint64_t word;
    std::memcpy(&word, text + i, 8);
    const std::uint64_t backslashes = word ^ (kOnes * '\\');
    if ((((word - kOnes) & ~word) | ((backslashes - kOnes) & ~backslashes)) & kHighs) {
      return true;
    }
  }
  for (; i < len; ++i) {
    if (text[i] == '\\' || text[i] == '\0') return true;
  }
  return false;
}

// The part of a value a C string would see: up to the first NUL.
std::string_view CText(const char* text, int len) {
  const std::size_t n = Length(text, len);
  if (n == 0) return {};
  const void* nul = std::memchr(text, '\0', n);
  return {text, nul ? static_cast<std::size_t>(static_cast<const char*>(nul) - text) : n};
}

// Decode buffers larger than this are given back after the value.
constexpr std::size_t kKeptDecodeBuffer = 64 * 1024;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

bool IsSemicolon(const char* text, int index) {
  return text[index] == ';' && (index == 0 || text[index - 1] != '\\');
}

namespace vcard_reader {

bool StrNEqual(const char* text, std::size_t len, const char* word, std::size_t n,
               bool ignoreCase) {
  for (std::size_t i = 0; i < n; ++i) {
    auto a = static_cast<unsigned char>(i < len ? text[i] : '\0');
    auto b = static_cast<unsigned char>(word[i]);
    if (ignoreCase) {
      if (a >= 'A' && a <= 'Z') a = static_cast<unsigned char>(a - 'A' + 'a');
      if (b >= 'A' && b <= 'Z') b = static_cast<unsigned char>(b - 'A' + 'a');
    }
    if (a != b) return false;
    if (a == '\0') return true;
  }
  return true;
}

std::int32_t Atoi(const char* text, std::size_t len) {
  std::size_t i = 0;
  while (i < len && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
  bool negative = false;
  if (i < len && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  // Accumulate towards the sign so that LONG_MIN itself is reachable.
  long value = 0;
  bool saturated = false;
  for (; i < len && IsDigit(text[i]); ++i) {
    const int digit = text[i] - '0';
    if (saturated) continue;
    if (negative) {
      if (value < (LONG_MIN + digit) / 10) {
        value = LONG_MIN;
        saturated = true;
      } else {
        value = value * 10 - digit;
      }
    } else if (value > (LONG_MAX - digit) / 10) {
      value = LONG_MAX;
      saturated = true;
    } else {
      value = value * 10 + digit;
    }
  }
  // glibc's atoi is (int)strtol: the saturated long is cut to its low bits.
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<unsigned long>(value)));
}

std::optional<String> DecodeValue(const char* text, std::size_t len, int charset,
                                  int encoding) {
  const StringEncoding target =
      charset == kCharsetShiftJIS ? StringEncoding::ShiftJIS : StringEncoding::UTF8;
  if (encoding != kEncodingQuotedPrintable && encoding != kEncodingQuotedPrintableCR) {
    return StringFromBytes(text, len, target);
  }
  if (len > std::numeric_limits<unsigned int>::max()) return std::nullopt;
  if (target == StringEncoding::UTF8) {
    String text16;
    if (DecodeQuotedPrintableUTF8(text, len, &text16)) return text16;
  }
  struct Buffers {
    std::string source;
    std::string decoded;
  };
  thread_local Buffers buffers;
  // An escape or a soft break cut short by the end of the value reads the
  // byte after it, which must be a NUL, not the next component: such a
  // value is decoded from a terminated copy. Only a '=' among the last two
  // bytes reaches past the end.
  const char* source = text;
  if ((len >= 1 && text[len - 1] == '=') || (len >= 2 && text[len - 2] == '=')) {
    buffers.source.assign(text, len);
    source = buffers.source.c_str();
  }
  buffers.decoded.resize(len + 2);
  const auto srcLen = static_cast<unsigned int>(len);
  const int n = NGDecodeQuotedPrintableX(source, srcLen, buffers.decoded.data(), srcLen, 1);
  std::optional<String> result =
      n < 0 ? std::nullopt
            : StringFromBytes(buffers.decoded.data(), static_cast<std::size_t>(n), target);
  // A long note must not pin its size for the rest of the address book.
  if (buffers.decoded.capacity() > kKeptDecodeBuffer) buffers = Buffers();
  return result;
}

std::optional<String> DecodeComponent(const char* text, std::size_t len, int charset,
                                      int encoding) {
  if (len == 0) return String();
  // Without a backslash or a NUL the unescaping copy would equal the input.
  if (!HasBackslashOrNul(text, len)) return DecodeValue(text, len, charset, encoding);
  const Bytes unescaped = DecodeEscapedCharString(text, len);
  return DecodeValue(reinterpret_cast<const char*>(unescaped.data()), unescaped.size(), charset,
                     encoding);
}

}  // namespace vcard_reader

void vCard::ParseName(const char* text, int len, int charset, int encoding, CName* name) {
  if (name == nullptr) return;
  ForEachComponent(text, static_cast<int>(Length(text, len)),
                   [&](int index, const char* part, std::size_t n) {
                     name->SetName(DecodeComponent(part, n, charset, encoding).value_or(String()),
                                   static_cast<unsigned int>(index));
                     return index < 7;
                   });
}

void vCard::ParseRName(const char* text, int len, int charset, int encoding,
                       std::optional<String>* lastName, std::optional<String>* firstName) {
  std::optional<String>* outputs[] = {lastName, firstName};
  for (std::optional<String>* out : outputs) {
    if (out != nullptr) out->reset();
  }
  ForEachComponent(text, static_cast<int>(Length(text, len)),
                   [&](int index, const char* part, std::size_t n) {
                     if (index < 2 && n != 0 && outputs[index] != nullptr) {
                       *outputs[index] = DecodeComponent(part, n, charset, encoding);
                     }
                     return index < 2;
                   });
}

void vCard::ParseRName(const char* text, int len, int charset, int encoding,
                       std::optional<String>* lastName) {
  ParseRName(text, len, charset, encoding, lastName, nullptr);
}

void vCard::ParseBloodType(const char* text, int len, std::uint32_t* bloodType) {
  const std::size_t n = Length(text, len);
  std::uint32_t type = 0;
  if (StrNEqual(text, n, "A", std::min<std::size_t>(n, 2))) {
    type = 1;
  } else if (StrNEqual(text, n, "B", n)) {
    type = 2;
  } else if (StrNEqual(text, n, "O", n)) {
    type = 4;
  } else if (StrNEqual(text, n, "AB", n)) {
    type = 3;
  }
  if (bloodType != nullptr) *bloodType = type;
}

std::optional<DateComponents> vCard::ParseBirthdate(const char* text, int len,
                                                    std::uint32_t* dateType) {
  std::size_t n = Length(text, len);
  std::uint32_t type = 0;
  if (n != 0 && (text[n - 1] == 'L' || text[n - 1] == 'Y')) {
    type = text[n - 1] == 'L' ? 1 : 2;
    --n;
  }
  if (dateType != nullptr) *dateType = type;
  if (n != 8 && n != 10) return std::nullopt;
  std::int64_t number = 0;
  for (std::size_t i = 0; i < n; ++i) {
    if (n == 10 && (i == 4 || i == 7)) {
      if (text[i] != '-') return std::nullopt;
      continue;
    }
    if (!IsDigit(text[i])) return std::nullopt;
    number = number * 10 + (text[i] - '0');
  }
  DateComponents date;
  date.year = number / 10000;
  date.month = number / 100 % 100;
  date.day = number % 100;
  return date;
}

void vCard::ParseAddress(const char* text, int len, int charset, int encoding,
                         CPostalAddress* address) {
  if (address == nullptr) return;
  ForEachComponent(
      text, static_cast<int>(Length(text, len)), [&](int index, const char* part, std::size_t n) {
        address->SetAddress(DecodeComponent(part, n, charset, encoding).value_or(String()),
                            static_cast<unsigned int>(index));
        return index < static_cast<int>(kPostalAddressMax) - 1;
      });
}

void vCard::ParseOrg(const char* text, int len, int charset, int encoding, COrganization* org) {
  if (org == nullptr) return;
  ForEachComponent(text, static_cast<int>(Length(text, len)),
                   [&](int index, const char* part, std::size_t n) {
                     if (index > 2 && n == 0) return true;
                     std::optional<String> decoded = DecodeComponent(part, n, charset, encoding);
                     switch (index) {
                       case 0:
                         org->SetName(std::move(decoded).value_or(String()));
                         break;
                       case 1:
                         org->SetUnit(std::move(decoded).value_or(String()));
                         break;
                       case 2:
                         org->SetPosition(std::move(decoded).value_or(String()));
                         break;
                       default:
                         if (decoded) org->Additional().push_back(std::move(*decoded));
                     }
                     return true;
                   });
}

void vCard::ParseGroupType(const char* text, int len, std::uint32_t* groupType) {
  const std::size_t n = Length(text, len);
  std::uint32_t type = 0;
  if (StrNEqual(text, n, "Normal", n)) {
    type = 1;
  } else if (StrNEqual(text, n, "Smart", n)) {
    type = 2;
  } else if (StrNEqual(text, n, "SYSTEM", n)) {
    type = 3;
  }
  if (groupType != nullptr) *groupType = type;
}

std::optional<DateComponents> vCard::ParseLastRevision(const char* text, int len) {
  const std::optional<CalendarDate> date =
      vCalendar::ParseDateTimeComponent(CText(text, len), nullptr);
  if (!date) return std::nullopt;
  return MakeDateComponents(date->yearOfCommonEra(), date->monthOfYear(), date->dayOfMonth(),
                            date->hourOfDay(), date->minuteOfHour(), date->secondOfMinute());
}

void vCard::ParseGroups(const char* text, int len, std::vector<std::int32_t>* groups) {
  if (groups == nullptr) return;
  groups->clear();
  const std::string_view value = CText(text, len);
  std::size_t start = 0;
  for (;;) {
    const std::size_t comma = value.find(',', start);
    const std::string_view piece =
        value.substr(start, comma == std::string_view::npos ? std::string_view::npos
                                                            : comma - start);
    groups->push_back(Atoi(piece.data(), piece.size()));
    if (comma == std::string_view::npos) break;
    start = comma + 1;
  }
}

void vCard::ParseSpeedDial(const char* text, int len, std::int32_t* speedDial) {
  PHONEPIM_ASSERT(len < 256, "len < 256");
  // ", " + value, split as strtok(buffer, ",") splits: runs of commas
  // separate, and leading and trailing ones yield nothing.
  std::string buffer = ", ";
  buffer += CText(text, len);
  std::size_t at = 0;
  for (int slot = 0; slot < CContact::kSpeedDialCount; ++slot) {
    at = buffer.find_first_not_of(',', at);
    if (at == std::string::npos) break;
    std::size_t end = buffer.find(',', at);
    if (end == std::string::npos) end = buffer.size();
    const std::string_view piece(buffer.data() + at, end - at);
    if (speedDial != nullptr) speedDial[slot] = piece == " " ? -1 : Atoi(piece.data(), piece.size());
    at = end;
  }
}

Bytes vCard::ParsePhoto(const char* text, int len, int /*charset*/, int /*encoding*/) {
  // Decoding ends at the first byte outside the alphabet (the '=' padding,
  // a line end the tokenizer left, a NUL).
  const std::size_t n = Length(text, len);
  Bytes photo(n / 4 * 3 + 2);
  photo.resize(Base64DecodePrefix(text, n, photo.data()));
  return photo;
}

void vCard::ParseAssistant(const char* text, int len, int charset, int encoding,
                           std::optional<String>* name, std::optional<String>* number) {
  std::optional<String>* outputs[] = {name, number};
  for (std::optional<String>* out : outputs) {
    if (out != nullptr) out->reset();
  }
  ForEachComponent(text, static_cast<int>(Length(text, len)),
                   [&](int index, const char* part, std::size_t n) {
                     if (outputs[index] != nullptr) {
                       *outputs[index] = DecodeComponent(part, n, charset, encoding);
                     }
                     return index < 1;
                   });
}

}  // namespace phonepim
