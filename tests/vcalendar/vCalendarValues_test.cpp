// The value readers on their own, with the options that change them, and
// the weekday correction Parse applies to rules read in the phone's zone.
#include <gtest/gtest.h>

#include <string>

#include "phonepim/datetime/DateComponents.h"
#include "phonepim/vcalendar/CalendarEntries.h"
#include "vcalendar/vCalendarTestSupport.h"

namespace phonepim {
namespace {

using namespace testing_vcalendar;

// The fields are read as GMT wall-clock time, so converting a text without
// "Z" into GMT keeps the instant and makes the value a GMT one.
TEST(vcalendar_values, date_times_are_gmt_values_unless_use_local_time) {
  ScopedCalendarDefaults defaults("Asia/Tokyo");
  for (bool local : {false, true}) {
    vCalendar::UseLocalTime(local);
    const CDateTime plain = *vCalendar::ParseDateTime("20090221T103059");
    const CDateTime utc = *vCalendar::ParseDateTime("20090221T103059Z");
    EXPECT_EQ(GMTFields(plain.date()), "20090221T1030");
    EXPECT_EQ(plain.timeZoneType(), local ? 0 : 1);
    EXPECT_EQ(GMTFields(utc.date()), "20090221T1030");
    EXPECT_EQ(utc.timeZoneType(), 0);
  }
  bool utc = true;
  EXPECT_FALSE(vCalendar::ParseDateTime("00000000T103000Z"));
  EXPECT_FALSE(vCalendar::ParseDateTimeComponent("", &utc));
  EXPECT_TRUE(utc);  // left alone
  EXPECT_EQ(GMTFields(vCalendar::ParseDateTimeComponent("20090221", &utc)->date),
            "20090221T0000");
  EXPECT_FALSE(utc);
}

TEST(vcalendar_values, rev_of_a_vcard_through_the_date_time_reader) {
  ScopedCalendarDefaults defaults("Asia/Tokyo");
  const char rev[] = "20090221T103059Z";
  EXPECT_EQ(vCard::ParseLastRevision(rev, 16), MakeDateComponents(2009, 2, 21, 10, 30, 0));
  EXPECT_EQ(vCard::ParseLastRevision(rev, 8), MakeDateComponents(2009, 2, 21, 0, 0, 0));
  EXPECT_FALSE(vCard::ParseLastRevision("x", 1));
}

TEST(vcalendar_values, bias_in_minutes) {
  const std::pair<const char*, int> rows[] = {
      {"+09", 540}, {"-05:30", -330}, {"+05:45", 345}, {"-00:30", 30}, {"", 0},
      {"+2777777777777777777", 60000000}};  // bounded, not overflowing
  for (const auto& [text, minutes] : rows) {
    EXPECT_EQ(vCalendar::ParseBias(text).GetTotalMinutes(), minutes) << text;
  }
}

TEST(vcalendar_values, categories_with_and_without_special_occasion_conversion) {
  ScopedCalendarDefaults defaults;
  for (bool convert : {false, true}) {
    vCalendar::AnniversaryConvertToSpecialOccasion(convert);
    EXPECT_EQ(vCalendar::ParseCategories("SPECIAL OCCASION"), convert ? 0x2u : 0x4000u);
    EXPECT_EQ(vCalendar::ParseCategory("special occasion"), convert ? 0x2u : 0u);
    EXPECT_EQ(vCalendar::ParseCategories(" "), convert ? 0x200000u : 0u);
    EXPECT_EQ(vCalendar::ParseCategories("SCHEDULE;;HOLIDAY"), 0x5u);
  }
}

TEST(vcalendar_values, audio_reminder_parameters) {
  struct Row {
    std::vector<const char*> params;
    std::uint32_t bits;
  };
  const Row rows[] = {
      {{"TYPE", "AIFF", "VALUE", "CONTENT-ID"}, 0x41},
      {{"TYPE", "=pcm "}, 0x10},
      {{"TYPEWAVE", nullptr, "VALUE", "URL"}, 0x20},
      {{"TYPE", "MP3", "X-VALUE", "CONTENT-ID"}, 0x0},
  };
  for (const Row& row : rows) {
    std::vector<char*> params;
    for (const char* p : row.params) params.push_back(const_cast<char*>(p));
    params.insert(params.end(), {nullptr, nullptr});
    EXPECT_EQ(vCalendar::ParseAudioReminderParams(params.data()), row.bits) << row.params[1];
  }
}

// TZ:+09 in a phone whose zone is GMT+09:00 names its weekdays one day
// later than GMT does; TZ:-05 one day earlier.
TEST(vcalendar_values, use_timezone_moves_weekdays_of_rules_read_in_the_phones_zone) {
  struct Row {
    const char* zone;
    const char* tz;
    bool on;
    const char* rules;
  };
  const Row rows[] = {
      {"GMT+09:00", "+09", false, "rrule=W1 MO WE #0; rrule=MP1 2+ TU #0"},
      {"GMT+09:00", "+09", true, "rrule=W1 SU TU #0; rrule=MP1 1+ SU #0"},
      {"GMT-05:00", "-05", true, "rrule=W1 TU TH #0; rrule=MP1 4+ SA #0"},
      {"Asia/Tokyo", "+09", true, "rrule=W1 MO WE #0; rrule=MP1 2+ TU #0"},  // other zone
  };
  for (const Row& row : rows) {
    ScopedCalendarDefaults defaults(row.zone);
    vCalendar::UseTimezone(row.on);
    const std::string text = Describe(*Read(Event(
        std::string("TZ:") + row.tz +
        "\r\nDTSTART:20090301T000000Z\r\nRRULE:W1 MO WE #0\r\nRRULE:MP1 2+ TU #0\r\n")));
    EXPECT_EQ(text.substr(text.find("rrule")), row.rules) << row.zone << row.on;
  }
}

TEST(calendar_entries, one_calendar_per_entry_with_the_calendars_own_lines) {
  const auto entries = SplitCalendarEntries(
      "BEGIN:VCALENDAR\r\nVERSION:1.0\r\n\r\nBEGIN:VEVENT\r\nSUMMARY:a\r\n"
      "BEGIN:VALARM\r\nEND:VALARM\r\nEND:VEVENT\r\nbegin:vtodo\r\nSUMMARY:b\r\n"
      " folded\r\nEND:VTODO\r\nTZ:+01\r\nBEGIN:VEVENT\r\nSUMMARY:open");
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(entries[0].text,
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:+01\r\nBEGIN:VEVENT\r\nSUMMARY:a\r\n"
            "BEGIN:VALARM\r\nEND:VALARM\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
  EXPECT_EQ(entries[1].text,
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:+01\r\nbegin:vtodo\r\nSUMMARY:b\r\n"
            " folded\r\nEND:VTODO\r\nEND:VCALENDAR\r\n");
  EXPECT_EQ(entries[2].text,
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:+01\r\nBEGIN:VEVENT\r\nSUMMARY:open\r\n"
            "END:VEVENT\r\nEND:VCALENDAR\r\n");
  EXPECT_EQ((std::vector<bool>{entries[0].todo, entries[1].todo, entries[2].todo}),
            (std::vector<bool>{false, true, false}));
  EXPECT_EQ(entries[1].firstLine, 9u);
  EXPECT_TRUE(SplitCalendarEntries("BEGIN:VCALENDAR\nVERSION:1.0\nEND:VCALENDAR\n").empty());
}

}  // namespace
}  // namespace phonepim
