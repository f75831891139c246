// Reading and writing calendar entries in tests, with every class-wide
// option of both codecs restored afterwards.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/model/RecurrenceData.h"
#include "phonepim/vcalendar/RecurrenceRule.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace phonepim::testing_vcalendar {

/// Defaults (as a host that sets nothing) for the lifetime of the object,
/// in the zone "UTC" unless another is given.
class ScopedCalendarDefaults {
 public:
  explicit ScopedCalendarDefaults(const std::string& zone = "UTC") : zone_(zone) { Reset(); }
  ~ScopedCalendarDefaults() { Reset(); }
  ScopedCalendarDefaults(const ScopedCalendarDefaults&) = delete;
  ScopedCalendarDefaults& operator=(const ScopedCalendarDefaults&) = delete;

  static void Reset() {
    vCalendar::SupportSetHoliday(false);
    vCalendar::UseLocalTime(false);
    vCalendar::TaskUseLocalTime(false);
    vCalendar::AlarmUseLocalTime(false);
    vCalendar::HolidayUseLocalTime(false);
    vCalendar::AnniversaryUseLocalTime(0);
    vCalendar::sm_fMemoUseLocalTime = false;
    vCalendar::SetTimezoneBias(0);
    vCalendar::UseCarrageReturn(false);
    vCalendar::UseTimezone(false);
    vCalendar::UseW0(1);
    vCalendar::AnniversaryConvertToSpecialOccasion(false);
    vCalendar::ScheduleUseCategoryType(false);
    vCard::NonstandardEscChar(false);
    vCard::LenientReading(false);
  }

 private:
  testing::ScopedDefaultZone zone_;
};

inline vObject MakeObject(std::string_view text) {
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  return object;
}

/// `lines` (each ending in CRLF) inside a VCALENDAR 1.0 with one VEVENT.
inline std::string Event(std::string_view lines) {
  return "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\n" + std::string(lines) +
         "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

inline std::unique_ptr<CCalendar> Read(std::string_view text) {
  auto calendar = std::make_unique<CCalendar>();
  const vObject object = MakeObject(text);
  vCalendar::Parse(calendar.get(), &object);
  return calendar;
}

inline std::string Write(const CCalendar& calendar, unsigned int kind = 1, bool reduced = false) {
  vObject object;
  reduced ? vCalendar::Generate(&calendar, &object, kind, 0) : vCalendar::Generate(&calendar, &object, kind);
  const auto* data = object.object()->GetData();
  return data == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(data), object.object()->GetSize());
}

/// yyyymmddThhmm of an instant in GMT.
inline std::string GMTFields(double instant) {
  const CalendarDate d{instant, u"GMT"};
  char text[40];
  std::snprintf(text, sizeof text, "%04lld%02lld%02lldT%02lld%02lld", static_cast<long long>(d.yearOfCommonEra()),
                static_cast<long long>(d.monthOfYear()), static_cast<long long>(d.dayOfMonth()),
                static_cast<long long>(d.hourOfDay()), static_cast<long long>(d.minuteOfHour()));
  return text;
}

inline double Instant(const CalendarDate& d) { return d.date; }
template <typename DateTime>
double Instant(const DateTime& d) {
  return d.date();
}

/// What a record holds beyond a new one read from BEGIN:VEVENT, as
/// "key=value" items separated by "; ": categories in hex (when not 1),
/// texts, dates in GMT with "Z" for a UTC text form, alarms, attendees,
/// rules as written back, extension items.
inline std::string Describe(const CCalendar& c) {
  std::string out;
  auto item = [&](const std::string& key, const std::string& value) {
    out += (out.empty() ? "" : "; ") + key + "=" + value;
  };
  auto text = [&](const char* key, const std::optional<String>& v) {
    if (v) item(key, ToDisplayUTF8(*v));
  };
  auto date = [&](const char* key, const auto& d, bool utc) {
    if (d) item(key, GMTFields(Instant(*d)) + (utc ? "Z" : ""));
  };
  auto rule = [&](const char* key, const CRecurrence* r) {
    const RecurrenceData* data = r->GetRecurrenceData();
    item(key, data ? ToDisplayUTF8(RecurrenceRuleText(*data, 1)) : "-");
  };
  char hex[16];
  std::snprintf(hex, sizeof hex, "%x", c.categories);
  if (c.categories != 1) item("cat", hex);
  if (c.classification != 0) item("class", std::to_string(c.classification));
  if (c.priority != 0) item("prio", std::to_string(c.priority));
  if (c.status != 10) item("status", std::to_string(c.status));
  if (c.bIsAllDay) item("allday", "1");
  if (c.bIsHoliday) item("holiday", "1");
  for (const auto& [key, v] : {std::pair{"summary", &c.strSummary}, {"desc", &c.strDescription},
                               {"loc", &c.strLocation}, {"account", &c.Account},
                               {"accountN", &c.AccountName}, {"accountType", &c.AccountType},
                               {"uid", &c.UID}, {"lmt", &c.LMT}}) {
    text(key, *v);
  }
  date("modified", c.dtModifiedComp, c.isdtModifiedisUTC);
  date("start", c.dtStartComp, c.isdtStartisUTC);
  date("end", c.dtEndComp, c.isdtEndisUTC);
  date("due", c.dtDueComp, c.isdtDueisUTC);
  date("created", c.dtCreate, false);
  date("completed", c.dtCompleted, false);
  if (const auto& tz = c.TimeZoneInfo) {
    text("tz", tz->mTimezone);
    if (tz->Bias) item("bias", std::to_string(tz->Bias->GetTotalMinutes()));
    if (tz->DaylightBias) item("dlbias", std::to_string(tz->DaylightBias->GetTotalMinutes()));
    date("dlbegin", tz->DaylightBegin, false);
    date("dlend", tz->DaylightEnd, false);
    text("std", tz->StandardName);
    text("dl", tz->DaylightName);
  }
  for (int i = 0; i < c.GetAlarmcount(); ++i) {
    const CReminder* a = c.GetAlarm(i);
    item("alarm", (a->RunTime() ? GMTFields(a->RunTime()->date()) : "-") + "/" +
                      std::to_string(a->Type()) + "/" + std::to_string(a->ValueType()) +
                      (c.isdtRecurrenceisUTC ? "Z" : ""));
  }
  for (int i = 0; i < c.GetAttendeecount(); ++i) {
    const CAttendee* a = c.GetAttendee(i);
    item("attendee", ToDisplayUTF8(a->Data()) + "/" + std::to_string(a->mRole_t()) + "/" +
                         std::to_string(a->mStatus_t()));
  }
  for (int i = 0; i < c.GetRecurrencecount(); ++i) rule("rrule", c.GetRecurrence(i));
  if (c.ExceptRule) rule("xrule", &*c.ExceptRule);
  for (int i = 0; i < c.GetXItemCount(); ++i) {
    item("x:" + ToDisplayUTF8(c.GetXItem(i)->Name()), ToDisplayUTF8(c.GetXItem(i)->Data()));
  }
  return out;
}

}  // namespace phonepim::testing_vcalendar
