// Reading and writing calendar entries in tests, with every class-wide
// option of both codecs restored afterwards.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/model/CCalendar.h"
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

inline std::string Write(const CCalendar& calendar, unsigned int kind = 1) {
  vObject object;
  vCalendar::Generate(&calendar, &object, kind);
  const auto* data = object.object()->GetData();
  return data == nullptr ? std::string()
                         : std::string(reinterpret_cast<const char*>(data),
                                       object.object()->GetSize());
}

}  // namespace phonepim::testing_vcalendar

#include <cstdio>

#include "phonepim/model/RecurrenceData.h"
#include "phonepim/vcalendar/RecurrenceRule.h"

namespace phonepim::testing_vcalendar {

/// yyyymmddThhmm of an instant in GMT.
inline std::string GMTFields(double instant) {
  const CalendarDate d{instant, u"GMT"};
  char text[40];
  std::snprintf(text, sizeof text, "%04lld%02lld%02lldT%02lld%02lld",
                static_cast<long long>(d.yearOfCommonEra()),
                static_cast<long long>(d.monthOfYear()), static_cast<long long>(d.dayOfMonth()),
                static_cast<long long>(d.hourOfDay()), static_cast<long long>(d.minuteOfHour()));
  return text;
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
  auto comp = [&](const char* key, const std::optional<CalendarDate>& d, bool utc) {
    if (d) item(key, GMTFields(d->date) + (utc ? "Z" : ""));
  };
  auto date = [&](const char* key, const std::optional<CDateTimeNull>& d) {
    if (d) item(key, GMTFields(d->date()));
  };
  if (c.categories != 1) {
    char hex[16];
    std::snprintf(hex, sizeof hex, "%x", c.categories);
    item("cat", hex);
  }
  if (c.classification != 0) item("class", std::to_string(c.classification));
  if (c.priority != 0) item("prio", std::to_string(c.priority));
  if (c.status != 10) item("status", std::to_string(c.status));
  if (c.bIsAllDay) item("allday", "1");
  if (c.bIsHoliday) item("holiday", "1");
  text("summary", c.strSummary);
  text("desc", c.strDescription);
  text("loc", c.strLocation);
  text("account", c.Account);
  text("accountN", c.AccountName);
  text("accountType", c.AccountType);
  text("uid", c.UID);
  text("lmt", c.LMT);
  comp("modified", c.dtModifiedComp, c.isdtModifiedisUTC);
  comp("start", c.dtStartComp, c.isdtStartisUTC);
  comp("end", c.dtEndComp, c.isdtEndisUTC);
  comp("due", c.dtDueComp, c.isdtDueisUTC);
  date("created", c.dtCreate);
  date("completed", c.dtCompleted);
  if (const auto& tz = c.TimeZoneInfo) {
    text("tz", tz->mTimezone);
    if (tz->Bias) item("bias", std::to_string(tz->Bias->GetTotalMinutes()));
    if (tz->DaylightBias) item("dlbias", std::to_string(tz->DaylightBias->GetTotalMinutes()));
    if (tz->DaylightBegin) item("dlbegin", GMTFields(tz->DaylightBegin->date()));
    if (tz->DaylightEnd) item("dlend", GMTFields(tz->DaylightEnd->date()));
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
  for (int i = 0; i < c.GetRecurrencecount(); ++i) {
    const RecurrenceData* r = c.GetRecurrence(i)->GetRecurrenceData();
    item("rrule", r ? ToDisplayUTF8(RecurrenceRuleText(*r, 1)) : "-");
  }
  if (c.ExceptRule) {
    const RecurrenceData* r = c.ExceptRule->GetRecurrenceData();
    item("xrule", r ? ToDisplayUTF8(RecurrenceRuleText(*r, 1)) : "-");
  }
  for (int i = 0; i < c.GetXItemCount(); ++i) {
    item("x:" + ToDisplayUTF8(c.GetXItem(i)->Name()), ToDisplayUTF8(c.GetXItem(i)->Data()));
  }
  return out;
}

}  // namespace phonepim::testing_vcalendar
