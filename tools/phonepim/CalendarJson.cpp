#include "CalendarJson.h"

#include <phonepim/datetime/TimeZones.h>
#include <phonepim/model/RecurrenceData.h>
#include <phonepim/vcalendar/RecurrenceRule.h>
#include <phonepim/vcalendar/vCalendar.h>

#include <cmath>
#include <cstdio>
#include <span>

#include "ContactJson.h"
#include "TypeWords.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

// A word from a table indexed by the code, or the code itself when the
// table has none: a phone's odd value is shown, not hidden.
Json CodeWord(std::span<const char* const> words, std::int64_t code) {
  if (code >= 0 && static_cast<std::size_t>(code) < words.size()) {
    return words[static_cast<std::size_t>(code)];
  }
  return code;
}

// The writer's words for the status numbers.
constexpr const char* kStatusWords[] = {"NEEDS ACTION", "COMPLETED", "ACCEPTED", "SENT",
                                        "TENTATIVE",    "CONFIRMED", "DECLINED", "DELEGATED",
                                        "CANCELED",     "INPROCESS", "NONE"};
constexpr const char* kClassWords[] = {"PUBLIC", "PRIVATE", "CONFIDENTIAL"};
// The attendee's words as the reader matches them, misspellings included.
constexpr const char* kAttendeeStatusWords[] = {"NEEDSACTION", "COMPLETE",  "ACCEPTED",
                                                "SEND",        "TENTATIVE", "CONFIRMED",
                                                "DECLIENED",   "DELEGATED"};
constexpr const char* kRoleWords[] = {"NONE", "ATTENDEE"};
constexpr const char* kFrequencyWords[] = {"",
                                           "daily",
                                           "weekly",
                                           "monthlyByPosition",
                                           "monthlyByDay",
                                           "yearlyByMonth",
                                           "yearlyByDay"};
constexpr const char* kWeekdayWords[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

// The instant of a date of the model, in GMT; null when it is absent or
// marked null.
Json InstantJson(const std::optional<CDateTimeNull>& date) {
  if (!date || date->GetStatus() == CDateTime::kStatusNull) return nullptr;
  return DateText(CalendarDate{date->date(), u"GMT"}, true);
}

Json CalendarDateJson(const std::optional<CalendarDate>& date, bool utc) {
  return date ? Json(DateText(*date, utc)) : Json(nullptr);
}

std::string Offset(const std::optional<CDateTimeSpan>& span) {
  const std::int64_t minutes = span->GetTotalMinutes();
  char text[32];
  const std::int64_t size = minutes < 0 ? -minutes : minutes;
  std::snprintf(text, sizeof text, "%c%02lld:%02lld", minutes < 0 ? '-' : '+',
                static_cast<long long>(size / 60), static_cast<long long>(size % 60));
  return text;
}

Json TimeZoneJson(const std::optional<CTimeZoneInfo>& info) {
  if (!info) return nullptr;
  const auto instant = [](const std::optional<CDateTime>& date) {
    return date ? Json(DateText(CalendarDate{date->date(), u"GMT"}, true)) : Json(nullptr);
  };
  return Json{{"zone", OptionalText(info->mTimezone)},
              {"bias", info->Bias ? Json(Offset(info->Bias)) : Json(nullptr)},
              {"daylightBias", info->DaylightBias ? Json(Offset(info->DaylightBias)) : Json()},
              {"daylightBegin", instant(info->DaylightBegin)},
              {"daylightEnd", instant(info->DaylightEnd)},
              {"standardName", OptionalText(info->StandardName)},
              {"daylightName", OptionalText(info->DaylightName)}};
}

Json Numbers(const Array& array) {
  Json list = Json::array();
  for (const Value& value : array) list.push_back(value.get<std::int64_t>());
  return list;
}

Json Weekdays(const Array& array) {
  Json list = Json::array();
  for (const Value& value : array) list.push_back(CodeWord(kWeekdayWords, value.get<std::int64_t>()));
  return list;
}

Json RuleJson(const CRecurrence& recurrence) {
  const RecurrenceData* rule = recurrence.GetRecurrenceData();
  if (!rule) return nullptr;
  Json j{{"text", JsonText(RecurrenceRuleText(*rule, vCalendar::sm_nUseW0))},
         {"frequency", CodeWord(kFrequencyWords, rule->Type())},
         {"interval", rule->Interval()},
         {"count", rule->duration() == 0 ? Json(nullptr) : Json(rule->duration())},
         {"until", InstantJson(rule->UntilDate())}};
  if (const auto* weekly = dynamic_cast<const WeeklyData*>(rule)) {
    j["weekdays"] = Weekdays(weekly->ArrayWeekday());
  } else if (const auto* byPos = dynamic_cast<const MonthlyByPosData*>(rule)) {
    j["weekPositions"] = Numbers(byPos->ArrayWeekPos());
    j["weekdays"] = Weekdays(byPos->ArrayWeekday());
  } else if (const auto* byDay = dynamic_cast<const MonthlyByDayData*>(rule)) {
    j["monthDays"] = Numbers(byDay->ArrayMonthday());
  } else if (const auto* byMonth = dynamic_cast<const YearlyByMonthData*>(rule)) {
    j["months"] = Numbers(byMonth->ArrayMonth());
  } else if (const auto* byYearDay = dynamic_cast<const YearlyByDayData*>(rule)) {
    j["yearDays"] = Numbers(byYearDay->ArrayYearday());
  }
  return j;
}

Json AlarmJson(const CReminder& alarm, bool utc) {
  // The time as the reader read it; the run time is the same instant after
  // the local-time conversion, which depends on the machine's zone.
  Json runTime = alarm.AlarmTime() ? Json(DateText(*alarm.AlarmTime(), utc))
                                   : InstantJson(alarm.RunTime());
  const std::uint32_t type = alarm.Type();
  return Json{{"runTime", std::move(runTime)},
              {"type", type == CReminder::kTypePCM    ? Json("PCM")
                       : type == CReminder::kTypeWAVE ? Json("WAVE")
                       : type == CReminder::kTypeAIFF ? Json("AIFF")
                       : type == 0                    ? Json(nullptr)
                                                      : Json(type)},
              {"contentId", (alarm.ValueType() & CReminder::kValueTypeContentID) != 0},
              {"snoozeSeconds", alarm.SnoozeTimeSpan()
                                    ? Json(alarm.SnoozeTimeSpan()->GetTotalSeconds())
                                    : Json(nullptr)},
              {"repeatCount", alarm.RepeatCount()},
              {"content", OptionalText(alarm.Content())}};
}

// The start, end and due dates as the reader read them, else as a host set
// them.
Json EntryDate(const std::optional<CalendarDate>& comp, bool utc,
               const std::optional<CDateTimeNull>& date) {
  return comp ? CalendarDateJson(comp, utc) : InstantJson(date);
}

}  // namespace

const char* KindWord(unsigned int kind) {
  switch (kind) {
    case vCalendar::kKindAnniversary:
      return "anniversary";
    case vCalendar::kKindHoliday:
      return "holiday";
    case vCalendar::kKindToDo:
      return "to-do";
    default:
      return "appointment";
  }
}

std::string DateText(const CalendarDate& date, bool utc) {
  // Fields by arithmetic on the zone's offset: a calendar per field would
  // cost more than reading the entry. The reader's zone is GMT.
  const double offset = date.timeZone == u"GMT" ? 0 : SecondsFromGMT(date.timeZone, date.date);
  const auto local = static_cast<std::int64_t>(std::floor(date.date + offset));
  const std::int64_t seconds = (local % 86400 + 86400) % 86400;
  // Days since 1970-01-01 to a proleptic Gregorian date (Hinnant's
  // civil_from_days).
  const std::int64_t z = (local - seconds) / 86400 + 719468;
  const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const std::int64_t doe = z - era * 146097;
  const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const std::int64_t mp = (5 * doy + 2) / 153;
  const std::int64_t day = doy - (153 * mp + 2) / 5 + 1;
  const std::int64_t month = mp < 10 ? mp + 3 : mp - 9;
  const std::int64_t year = yoe + era * 400 + (month <= 2 ? 1 : 0);
  char text[64];
  std::snprintf(text, sizeof text, "%04lld-%02lld-%02lldT%02lld:%02lld:%02lld%s",
                static_cast<long long>(year), static_cast<long long>(month),
                static_cast<long long>(day), static_cast<long long>(seconds / 3600),
                static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60),
                utc ? "Z" : "");
  return text;
}

Json CalendarToJson(const CCalendar& c, unsigned int kind, std::size_t objectNumber,
                    std::size_t line, const String& imei) {
  Json j;
  j["object"] = objectNumber;
  j["line"] = line;
  j["kind"] = KindWord(kind);
  j["recordId"] = JsonText(CCalendar::generateNewVCalIDWithNewLUID(
      static_cast<std::int32_t>(c.mVcalID), imei, static_cast<std::int32_t>(kind)));
  j["uid"] = OptionalText(c.UID);
  j["summary"] = OptionalText(c.strSummary);
  j["description"] = OptionalText(c.strDescription);
  j["location"] = OptionalText(c.strLocation);
  j["start"] = EntryDate(c.dtStartComp, c.isdtStartisUTC, c.dtStart);
  j["end"] = EntryDate(c.dtEndComp, c.isdtEndisUTC, c.dtEnd);
  j["due"] = EntryDate(c.dtDueComp, c.isdtDueisUTC, c.dtDue);
  j["allDay"] = c.bIsAllDay;
  j["holiday"] = c.bIsHoliday;
  // The reader marks a to-do with 0x40, which is no category word: the
  // kind says it.
  constexpr std::uint32_t kToDoMark = 0x40;
  j["categories"] = TypeWords(ElementKind::kCalendarCategory,
                              kind == vCalendar::kKindToDo ? c.categories & ~kToDoMark
                                                           : c.categories);
  j["classification"] = CodeWord(kClassWords, c.classification);
  j["status"] = CodeWord(kStatusWords, c.status);
  j["priority"] = c.priority;
  j["created"] = InstantJson(c.dtCreate);
  j["completed"] = InstantJson(c.dtCompleted);
  j["lastModified"] = OptionalText(c.LMT);
  j["timeZone"] = TimeZoneJson(c.TimeZoneInfo);
  j["alarms"] = ListOf(c.GetAlarmcount(), [&](int i) {
    return AlarmJson(*c.GetAlarm(i), c.isdtRecurrenceisUTC);
  });
  j["attendees"] = ListOf(c.GetAttendeecount(), [&](int i) {
    const CAttendee& a = *c.GetAttendee(i);
    return Json{{"name", JsonText(a.Data())},
                {"role", CodeWord(kRoleWords, a.mRole_t())},
                {"status", CodeWord(kAttendeeStatusWords, a.mStatus_t())}};
  });
  j["recurrence"] =
      ListOf(c.GetRecurrencecount(), [&](int i) { return RuleJson(*c.GetRecurrence(i)); });
  j["exceptRule"] = c.ExceptRule ? RuleJson(*c.ExceptRule) : Json(nullptr);
  j["account"] = OptionalText(c.Account);
  j["accountName"] = OptionalText(c.AccountName);
  j["accountType"] = OptionalText(c.AccountType);
  j["extensions"] = ExtensionsJson(c);
  return j;
}

}  // namespace phonepim::tool
