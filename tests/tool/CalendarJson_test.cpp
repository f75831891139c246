// The JSON of `calendar show --json` against what vCalendar::Parse itself
// makes of each entry; how rules read; what `calendar check` calls a loss.
#include <gtest/gtest.h>

#include <phonepim/model/RecurrenceData.h>
#include <phonepim/platform/Assert.h>
#include <phonepim/vcalendar/CalendarEntries.h>
#include <phonepim/vcalendar/RecurrenceRule.h>
#include <phonepim/vcalendar/vCalendar.h>
#include <phonepim/vcard/vCard.h>
#include <phonepim/versit/ObjectSplitter.h>
#include <phonepim/versit/vObject.h>

#include <cstdio>
#include <sstream>

#include "CalendarCheck.h"
#include "CalendarJson.h"
#include "CalendarShow.h"
#include "ToolTestSupport.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

// The tool reads leniently; so does this test, and puts the flag back.
struct ScopedLenientReading {
  ScopedLenientReading() { vCard::LenientReading(true); }
  ~ScopedLenientReading() { vCard::LenientReading(false); }
};

Json Text(const std::optional<String>& text) {
  return text ? Json(ToDisplayUTF8(*text)) : Json();
}

TEST(calendar_json, every_entry_reads_back_as_the_library_read_it) {
  ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  ScopedLenientReading lenient;
  const std::string text = ReadFile(PHONEPIM_TOOL_DATA "/calendar.vcs");
  std::ostringstream out, err;
  ASSERT_EQ(ShowCalendar(text, "calendar.vcs", {}, true, out, err), 0) << err.str();
  const Json file = Json::parse(out.str());
  EXPECT_EQ(file["failed"], 0);

  // Two calendars, the first around two entries.
  std::vector<CalendarEntry> entries;
  for (const VersitObjectSpan& span : FindVersitObjects(text)) {
    for (CalendarEntry& e : SplitCalendarEntries(text.substr(span.offset, span.length))) {
      entries.push_back(std::move(e));
    }
  }
  ASSERT_EQ(file["entries"].size(), entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    SCOPED_TRACE("entry " + std::to_string(i + 1));
    vObject object;
    object.object()->SetData(reinterpret_cast<const unsigned char*>(entries[i].text.data()),
                             entries[i].text.size());
    CCalendar c;
    vCalendar::Parse(&c, &object);
    const Json& j = file["entries"][i];
    EXPECT_EQ(j["kind"], entries[i].todo ? "to-do" : i == 1 ? "anniversary" : "appointment");
    EXPECT_EQ(j["summary"], Text(c.strSummary));
    EXPECT_EQ(j["start"], c.dtStartComp ? Json(DateText(*c.dtStartComp, c.isdtStartisUTC)) : Json());
    EXPECT_EQ(j["due"], c.dtDueComp ? Json(DateText(*c.dtDueComp, c.isdtDueisUTC)) : Json());
    EXPECT_EQ(j["allDay"], c.bIsAllDay);
    EXPECT_EQ(j["priority"], c.priority);
    ASSERT_EQ(j["recurrence"].size(), static_cast<std::size_t>(c.GetRecurrencecount()));
    for (int r = 0; r < c.GetRecurrencecount(); ++r) {
      EXPECT_EQ(j["recurrence"][r]["text"],
                ToDisplayUTF8(RecurrenceRuleText(*c.GetRecurrence(r)->GetRecurrenceData(), 1)));
    }
    ASSERT_EQ(j["alarms"].size(), static_cast<std::size_t>(c.GetAlarmcount()));
    ASSERT_EQ(j["attendees"].size(), static_cast<std::size_t>(c.GetAttendeecount()));
    for (int a = 0; a < c.GetAttendeecount(); ++a) {
      EXPECT_EQ(j["attendees"][a]["name"], ToDisplayUTF8(c.GetAttendee(a)->Data()));
    }
    ASSERT_EQ(j["extensions"].size(), static_cast<std::size_t>(c.GetXItemCount()));
  }
  EXPECT_EQ(file["entries"][0]["attendees"][0]["status"], "DECLIENED");
  EXPECT_EQ(file["entries"][0]["alarms"][0]["runTime"], "2026-12-08T09:50:00");
  EXPECT_EQ(file["entries"][2]["categories"], Json::array());  // no 0x40 on a to-do
}

TEST(calendar_json, dates_have_the_fields_the_library_calendar_gives) {
  const double instants[] = {0,           -1,          951782400,  951868800,  1709164800,
                             1709251199,  4107542400,  -86400 * 366.0 * 100, 1796000000.5};
  for (const char16_t* zone : {u"GMT", u"GMT+09:00", u"GMT-03:30", u"Europe/Berlin"}) {
    for (double instant : instants) {
      const CalendarDate date{instant, zone};
      char expected[64];
      std::snprintf(expected, sizeof expected, "%04lld-%02lld-%02lldT%02lld:%02lld:%02lld",
                    static_cast<long long>(date.yearOfCommonEra()),
                    static_cast<long long>(date.monthOfYear()),
                    static_cast<long long>(date.dayOfMonth()),
                    static_cast<long long>(date.hourOfDay()),
                    static_cast<long long>(date.minuteOfHour()),
                    static_cast<long long>(date.secondOfMinute()));
      EXPECT_EQ(DateText(date, false), expected) << ToDisplayUTF8(zone) << " " << instant;
    }
  }
}

TEST(calendar_show, rules_read_as_words) {
  const struct {
    const char* rule;
    const char* reads;
  } rows[] = {
      {R"({"frequency":"daily","interval":1,"count":null,"until":null})", "every day, forever"},
      {R"({"frequency":"weekly","interval":2,"count":10,"until":null,"weekdays":["MO","FR"]})",
       "every 2 weeks on MO, FR, 10 times"},
      {R"({"frequency":"monthlyByPosition","interval":1,"count":1,"until":null,
           "weekPositions":[-2,-1,1,2,3],"weekdays":["SU"]})",
       "every month on the 2nd last, last, 1st, 2nd, 3rd SU, 1 time"},
      {R"({"frequency":"monthlyByDay","interval":3,"count":null,"until":"2026-12-31T00:00:00Z",
           "monthDays":[11,12,13,21,22,111]})",
       "every 3 months on the 11th, 12th, 13th, 21st, 22nd, 111th day, until 2026-12-31 00:00 UTC"},
      {R"({"frequency":"yearlyByMonth","interval":1,"count":null,"until":null,"months":[1,6]})",
       "every year in month 1, 6, forever"},
      {R"({"frequency":"yearlyByDay","interval":1,"count":null,"until":"2027-01-01T00:00:00",
           "yearDays":[1]})",
       "every year on the 1st day of the year, until 2027-01-01 00:00"},
  };
  for (const auto& row : rows) EXPECT_EQ(RuleSummary(Json::parse(row.rule)), row.reads) << row.rule;
}

TEST(calendar_check, losses_and_changes_by_design) {
  CalendarOptions plain;
  CalendarOptions words;
  words.categoryWords = true;
  CalendarOptions reduced = words;
  reduced.reduced = true;
  CalendarOptions biased;
  biased.timezoneBias = 540;
  const Json tz = {{"name", "TZ"}, {"value", "+09:00"}};
  const unsigned int kEvent = 1;
  const struct {
    const char* path;
    Json before, after;
    unsigned int kind;
    bool allDay;
    const CalendarOptions& options;
    const char* reason;
  } rows[] = {
      {"summary", "a", "aZ", kEvent, false, plain, nullptr},
      {"alarms[0].runTime", "2026-12-08T09:50:00", "2026-12-08T09:50:00Z", kEvent, false, plain,
       "the writer's choice of UTC or local time"},
      {"uid", "x", nullptr, kEvent, false, plain, "not written"},
      {"start", "2026-12-08T10:00:00", "2026-12-08T10:00:00Z", kEvent, false, plain,
       "the writer's choice of UTC or local time"},
      {"start", "2026-12-08T10:00:00", "2026-12-08T11:00:00Z", kEvent, false, plain, nullptr},
      {"end", "2026-12-08T00:00:00Z", "2026-12-07T00:00:00Z", kEvent, true, plain,
       "an all-day end is written as the day before"},
      {"end", "2026-12-08T00:00:00Z", "2026-12-07T00:00:00Z", kEvent, false, plain, nullptr},
      {"due", "2026-12-08T00:00:00Z", nullptr, kEvent, false, plain, "DUE only for a to-do"},
      {"due", "2026-12-08T00:00:00Z", nullptr, vCalendar::kKindToDo, false, plain, nullptr},
      {"categories", Json::array({"BUSINESS"}), Json::array({"APPOINTMENT"}), kEvent, false, plain,
       "categories written only as APPOINTMENT, for none"},
      {"categories", Json::array({"BUSINESS"}), Json::array(), kEvent, false, words, nullptr},
      {"categories", Json::array({"BUSINESS"}), Json::array(), kEvent, false, reduced,
       "categories written only as APPOINTMENT, for none"},
      {"priority", 1, 0, kEvent, false, reduced, "not in the reduced form"},
      {"priority", 1, 0, kEvent, false, plain, nullptr},
      {"holiday", true, false, vCalendar::kKindHoliday, false, plain,
       "X-TYPE written only with --holiday"},
      {"alarms[1]", Json::object(), nullptr, kEvent, false, plain, "one alarm written"},
      {"alarms[0]", Json::object(), nullptr, kEvent, false, plain, nullptr},
      {"alarms[0].type", "PCM", nullptr, kEvent, false, plain, "only the alarm's time written"},
      {"alarms[0].runTime", "2026-12-08T09:50:00Z", nullptr, kEvent, false, plain, nullptr},
      {"extensions", nullptr, tz, kEvent, false, biased, "TZ written from --timezone-bias as well"},
      {"extensions", nullptr, tz, kEvent, false, plain, nullptr},
      {"extensions", tz, nullptr, kEvent, false, biased, nullptr},
  };
  for (const auto& row : rows) {
    const char* reason =
        ByDesignReason(row.path, row.before, row.after, row.kind, row.allDay, row.options);
    EXPECT_STREQ(reason, row.reason) << row.path << ": " << row.before << " -> " << row.after;
  }
}

}  // namespace
}  // namespace phonepim::tool
