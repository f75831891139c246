// Small text helpers the vCalendar reader's files share. Private to the
// library.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/vcard/vCard.h"

namespace phonepim::vcalendar_text {

/// Whether names and parameter words are matched in any case: the lenient
/// reading of both codecs.
inline bool LenientNames() { return vCard::sm_fLenientReading; }

inline char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

/// `text` equals the upper-case `word` in any case.
inline bool EqualsIgnoringCase(std::string_view text, std::string_view word) {
  if (text.size() != word.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (AsciiUpper(text[i]) != word[i]) return false;
  }
  return true;
}

/// The C string `text` begins with `word` (upper case; `text` in any case
/// when `anyCase`), and equals it when `whole`.
inline bool SameWord(std::string_view word, const char* text, bool anyCase, bool whole = true) {
  std::size_t i = 0;
  for (; i < word.size(); ++i) {
    if (text[i] == '\0' || (anyCase ? AsciiUpper(text[i]) : text[i]) != word[i]) return false;
  }
  return !whole || text[i] == '\0';
}

/// yyyymmdd, then Thhmmss unless `dateOnly`, of the date's fields in its
/// own zone.
inline std::string DateTimeText(const CalendarDate& date, bool dateOnly = false) {
  char text[96];
  std::snprintf(text, sizeof text, "%04lld%02lld%02lld", static_cast<long long>(date.yearOfCommonEra()),
                static_cast<long long>(date.monthOfYear()), static_cast<long long>(date.dayOfMonth()));
  std::string out = text;
  if (dateOnly) return out;
  std::snprintf(text, sizeof text, "T%02lld%02lld%02lld", static_cast<long long>(date.hourOfDay()),
                static_cast<long long>(date.minuteOfHour()),
                static_cast<long long>(date.secondOfMinute()));
  return out + text;
}

inline bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

inline std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// The ';'-separated piece of `text` that starts at `pos`, moving `pos`
/// past it: a value with n separators has n + 1 pieces, and pieces asked
/// for beyond them are empty.
inline std::string_view Field(std::string_view text, std::size_t& pos) {
  if (pos > text.size()) return {};
  const std::size_t end = text.find(';', pos);
  const std::size_t stop = end == std::string_view::npos ? text.size() : end;
  const std::string_view piece = text.substr(pos, stop - pos);
  pos = stop + 1;
  return piece;
}

/// atoi of the text: blanks, a sign, digits; 0 without digits. Digits
/// beyond the eighteenth are not read, so nothing overflows.
inline std::int64_t LeadingInt(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  std::int64_t n = 0;
  for (int digits = 0; i < text.size() && text[i] >= '0' && text[i] <= '9' && digits < 18;
       ++i, ++digits) {
    n = n * 10 + (text[i] - '0');
  }
  return negative ? -n : n;
}

}  // namespace phonepim::vcalendar_text
