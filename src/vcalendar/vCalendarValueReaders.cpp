// The vCalendar value readers: dates, categories, status words, alarm and
// attendee parameters, time zones, alarms and recurrence rules.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string>
#include <string_view>

#include "phonepim/datetime/TimeZones.h"
#include "phonepim/encoding/Encoding.h"
#include "phonepim/model/CAttendee.h"
#include "phonepim/model/CRecurrence.h"
#include "phonepim/vcalendar/RecurrenceRule.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "vcalendar/vCalendarText.h"

namespace phonepim {
namespace {

using vcalendar_text::EqualsIgnoringCase;
using vcalendar_text::Field;
using vcalendar_text::SameWord;
using vcalendar_text::LenientNames;
using vcalendar_text::LeadingInt;
using vcalendar_text::Trim;

struct Fields {
  std::int64_t year, month, day, hour, minute;
  bool utc;
};

// yyyymmdd, then "T" and hhmmss, each read as an integer; nothing for a
// date of 0 or out of range. The seconds are never kept: phones do not set them.
std::optional<Fields> DateTimeFields(std::string_view text) {
  const std::int64_t date = LeadingInt(text);
  if (date == 0) return std::nullopt;
  std::int64_t time = 0;
  const std::size_t t = text.find('T');
  if (t != std::string_view::npos) time = LeadingInt(text.substr(t + 1));
  const Fields f{date / 10000, date / 100 % 100, date % 100, time / 10000, time / 100 % 100,
                 text.find('Z') != std::string_view::npos};
  // A date the text form cannot hold (year 0, month 0, a year past 9999 or
  // before the era, a time past 24:59) is no date: it could only be
  // written back as another.
  if (f.year < 1 || f.year > 9999 || f.month < 1 || f.month > 12 || f.day < 1 || f.day > 31 ||
      f.hour < 0 || f.hour > 24 || f.minute < 0 || f.minute > 59) {
    return std::nullopt;
  }
  return f;
}

struct Word {
  std::string_view word;
  std::uint32_t value;
};

constexpr Word kCategories[] = {
    {"APPOINTMENT", 0x1},         {"SCHEDULE", 0x1},          {"ANNIVERSARY", 0x2},
    {"HOLIDAY", 0x4},             {"IMPORTANT", 0x8},         {"PRIVATE", 0x10},
    {"MISCELLANEOUS", 0x20},      {"MEMO", 0x80},             {"BUSINESS", 0x100},
    {"EDUCATION", 0x200},         {"MEETING", 0x400},         {"PERSONAL", 0x800},
    {"PHONE CALL", 0x1000},       {"SICK DAY", 0x2000},       {"SPECIAL OCCASION", 0x4000},
    {"TRAVEL", 0x8000},           {"VACATION", 0x10000},      {"BIRTHDAY", 0x20000},
    {"DATE", 0x40000},            {"SHOPPING", 0x80000},      {"ACCOUNT", 0x100000},
    {"NOCATEGORY", 0x200000},
};

constexpr Word kStatusWords[] = {
    {"COMPLETED", 1}, {"ACCEPTED", 2},  {"SENT", 3},     {"TENTATIVE", 4}, {"CONFIRMED", 5},
    {"DECLINED", 6},  {"DELEGATED", 7}, {"CANCELED", 8}, {"INPROCESS", 9},
};

constexpr Word kAttendeeStatusWords[] = {
    {"NEEDSACTION", ATTENDEE_STATUS_NEEDSACTION}, {"COMPLETE", ATTENDEE_STATUS_COMPLETE},
    {"ACCEPTED", ATTENDEE_STATUS_ACCEPTED},       {"SEND", ATTENDEE_STATUS_SEND},
    {"TENTATIVE", ATTENDEE_STATUS_TENTATIVE},     {"CONFIRMED", ATTENDEE_STATUS_CONFIRMED},
    {"DECLIENED", ATTENDEE_STATUS_DECLIENED},     {"DELEGATED", ATTENDEE_STATUS_DELEGATED},
};

// strncmp(text, word, n) == 0 with `text` not terminated: the first n bytes
// agree, a text shorter than n reading as ended.
bool SameOver(std::string_view text, std::string_view word, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) {
    const char a = i < text.size() ? text[i] : '\0';
    const char b = i < word.size() ? word[i] : '\0';
    if (a != b) return false;
    if (a == '\0') return true;
  }
  return true;
}

// The text after a parameter's key ("TYPE", "VALUE"): the rest of the name
// and the value, upper-cased, without leading '=' and blanks, trimmed.
std::string ParameterRest(const char* name, std::size_t keyLength, const char* value) {
  std::string rest(name + keyLength);
  if (value != nullptr) rest.append("=").append(value);
  for (char& c : rest) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  std::size_t start = 0;
  while (start < rest.size() && (rest[start] == '=' || rest[start] == ' ')) ++start;
  return std::string(Trim(std::string_view(rest).substr(start)));
}

}  // namespace

std::optional<CDateTime> vCalendar::ParseDateTime(std::string_view text) {
  const std::optional<Fields> f = DateTimeFields(text);
  if (!f) return std::nullopt;
  CDateTime value(0.0, CDateTime::kTimeZoneTypeLocal);
  value.SetYear(static_cast<int>(f->year), static_cast<int>(f->month), static_cast<int>(f->day),
                static_cast<int>(f->hour), static_cast<int>(f->minute), 0);
  if (f->utc) return value;
  return SystemTime(value, sm_fUseLocalTime ? 0 : 1);
}

std::optional<CalendarDate> vCalendar::ParseDateTimeComponent(std::string_view text,
                                                              bool* isUTC) {
  const std::optional<Fields> f = DateTimeFields(text);
  if (!f) return std::nullopt;
  if (isUTC != nullptr) *isUTC = f->utc;
  return CalendarDate::dateWithYear(f->year, f->month, f->day, f->hour, f->minute, 0,
                                    GMTTimeZoneName());
}

std::uint32_t vCalendar::ParseCategory(std::string_view word) {
  if (sm_fAnniversaryConvertToSpecialOccasion && EqualsIgnoringCase(word, "SPECIAL OCCASION")) {
    return 2;
  }
  for (const Word& entry : kCategories) {
    if (entry.word == word) return entry.value;
  }
  return 0;
}

std::uint32_t vCalendar::ParseCategories(std::string_view text) {
  if (Trim(text).empty() && sm_fAnniversaryConvertToSpecialOccasion) return 0x200000;
  std::uint32_t categories = 0;
  for (std::size_t i = 0; i <= text.size();) {
    const std::string_view piece = Field(text, i);
    categories |= ParseCategory(Trim(piece));
  }
  return categories;
}

std::int32_t vCalendar::ParseStatus(std::string_view text) {
  for (const Word& entry : kStatusWords) {
    if (SameOver(text, entry.word, text.size())) return static_cast<std::int32_t>(entry.value);
  }
  return 10;
}

std::int32_t vCalendar::ParseClassification(std::string_view text) {
  if (SameOver(text, "PRIVATE", std::min<std::size_t>(text.size(), 8))) return 1;
  if (text == "CONFIDENTIAL") return 2;
  return 0;
}

std::uint32_t vCalendar::ParseAudioReminderParams(char** params) {
  std::uint32_t bits = 0;
  if (params == nullptr) return bits;
  const bool anyCase = LenientNames();
  for (char** pair = params; pair[0] != nullptr; pair += 2) {
    if (SameWord("TYPE", pair[0], anyCase, false)) {
      const std::string rest = ParameterRest(pair[0], 4, pair[1]);
      bits |= rest == "PCM" ? 16u : rest == "WAVE" ? 32u : rest == "AIFF" ? 64u : 0u;
    } else if (SameWord("VALUE", pair[0], anyCase, false)) {
      bits |= ParameterRest(pair[0], 5, pair[1]) == "CONTENT-ID" ? 1u : 0u;
    }
  }
  return bits;
}

void vCalendar::ParseAttendeesParams(char** params, std::uint32_t* role, std::uint32_t* status) {
  if (params == nullptr) return;
  const bool anyCase = LenientNames();
  auto same = [anyCase](const char* text, std::string_view word) {
    return SameWord(word, text, anyCase);
  };
  for (char** pair = params; pair[0] != nullptr; pair += 2) {
    if (pair[1] == nullptr) continue;
    if (same(pair[0], "ROLE") && same(pair[1], "ATTENDEE")) *role = ATTENDEE_ROLE_ATTENDEE;
    if (!same(pair[0], "STATUS")) continue;
    for (const Word& entry : kAttendeeStatusWords) {
      if (same(pair[1], entry.word)) *status = entry.value;
    }
  }
}

CDateTimeSpan vCalendar::ParseBias(std::string_view text) {
  std::int64_t hours = LeadingInt(text);
  std::int64_t minutes = 0;
  if (const std::size_t colon = text.find(':'); colon != std::string_view::npos) {
    minutes = LeadingInt(text.substr(colon + 1));
  }
  if (hours < 0) minutes = -minutes;
  // No zone is a million hours off; the bound keeps the arithmetic exact.
  constexpr std::int64_t kLimit = 1'000'000;
  hours = std::clamp(hours, -kLimit, kLimit);
  minutes = std::clamp(minutes, -kLimit, kLimit);
  return CDateTimeSpan(static_cast<double>((hours * 60 + minutes) * 60));
}

CTimeZoneInfo vCalendar::ParseTimeZone(std::string_view text) {
  CTimeZoneInfo info;
  const String name = u"GMT" + StringFromASCII(Trim(text));
  info.mTimezone = TimeZoneWithName(name).value_or(name);
  info.Bias = ParseBias(text);
  return info;
}

void vCalendar::ParseDaylight(std::string_view text, int charset, int encoding,
                              CTimeZoneInfo* info) {
  std::size_t i = 0;
  Field(text, i);  // TRUE or FALSE: the dates say it already
  info->DaylightBias = ParseBias(Field(text, i));
  info->DaylightBegin = ParseDateTime(Field(text, i));
  info->DaylightEnd = ParseDateTime(Field(text, i));
  const std::string_view standard = Field(text, i);
  const std::string_view daylight = Field(text, i);
  info->StandardName = Decode(standard.data(), static_cast<int>(standard.size()), charset,
                              encoding);
  info->DaylightName = Decode(daylight.data(), static_cast<int>(daylight.size()), charset,
                              encoding);
}

CReminder vCalendar::ParseReminder(std::string_view text, bool* isUTC) {
  std::size_t i = 0;
  const std::string_view runTime = Field(text, i);
  CReminder reminder;
  reminder.SetRunTime(ParseDateTime(runTime));
  reminder.SetRunTimeComp(ParseDateTimeComponent(runTime, isUTC));
  return reminder;
}

bool vCalendar::ParseRecurrence(std::string_view text, CRecurrence* rule) {
  return ParseRecurrenceRule(text, rule);
}

}  // namespace phonepim
