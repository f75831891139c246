#include "phonepim/datetime/DateFunctions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <optional>
#include <string>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/datetime/TimeZones.h"
#include "phonepim/datetime/vCalendarSystemTime.h"

namespace phonepim {
namespace {

using testing::ScopedClock;
using testing::ScopedDefaultZone;
using testing::U16;

TEST(date_from_components, reads_default_zone_wall_clock_with_the_first_of_everything_missing) {
  const struct {
    const char* zone;
    double feb21At1030;          // 2009-02-21 10:30 wall clock
    double secondSundayOfMarch;  // 2009-03-08 00:00 wall clock
    double yearOne;              // 0001-01-01 00:00 (Julian), local mean time
  } rows[] = {{"UTC", 1235212200, 1236470400, -62135769600},
              {"Asia/Tokyo", 1235179800, 1236438000, -62135769600.0 - 33539},
              {"America/New_York", 1235230200, 1236488400, -62135769600.0 + 17762}};
  for (const auto& r : rows) {
    const ScopedDefaultZone zone(r.zone);
    const DateComponents comps = MakeDateComponents(2009, 2, 21, 10, 30, 0);
    EXPECT_EQ(DateFromComponents(comps), r.feb21At1030) << r.zone;
    // Despite the name, FloorTime keeps the time of day.
    EXPECT_EQ(FloorTime(comps), r.feb21At1030) << r.zone;
    EXPECT_EQ(DateFromComponents(DateComponents{}), r.yearOne) << r.zone;
    // Weekday and ordinal place a day without one; with a day they are ignored.
    DateComponents sunday;
    sunday.year = 2009;
    sunday.month = 3;
    sunday.weekday = 1;
    sunday.weekdayOrdinal = 2;
    EXPECT_EQ(DateFromComponents(sunday), r.secondSundayOfMarch) << r.zone;
    sunday.day = 8;
    sunday.weekday = 4;
    EXPECT_EQ(DateFromComponents(sunday), r.secondSundayOfMarch) << r.zone;
  }
}

TEST(date_functions, local_time_and_system_time_convert_only_when_asked) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  const ScopedClock clock(1246449600.0);
  const CDateTime gmt = CDateTime::dateWithYear(2009, 2, 21, 10, 0, 0);
  EXPECT_EQ(LocalTime(gmt, false).timeZoneType(), CDateTime::kTimeZoneTypeGMT);
  EXPECT_TRUE(LocalTime(gmt, false).IsEqual(gmt));
  EXPECT_EQ(LocalTime(gmt, true).date(), gmt.date() - 32400);
  EXPECT_EQ(LocalTime(gmt, true).timeZoneType(), CDateTime::kTimeZoneTypeLocal);
  const CDateTime local(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(vCalendar::SystemTime(local, 0).dateComponents(), local.dateComponents());
  EXPECT_TRUE(vCalendar::SystemTime(local, 0).IsEqual(local));
  for (int convert : {1, -1}) {
    EXPECT_EQ(vCalendar::SystemTime(local, convert).date(), 1235210400.0 + 32400);
    EXPECT_EQ(vCalendar::SystemTime(local, convert).timeZoneType(), CDateTime::kTimeZoneTypeGMT);
  }
  _TIME_ZONE_INFORMATION info, before;
  std::memset(&info, 0xA5, sizeof info);
  std::memcpy(&before, &info, sizeof info);
  EXPECT_EQ(GetTimeZoneInformation(&info), 0u);
  EXPECT_EQ(std::memcmp(&before, &info, sizeof info), 0);
  EXPECT_EQ(GetTimeZoneInformation(nullptr), 0u);
}

TEST(time_zones, know_the_zone_or_say_nothing) {
  const struct {
    const char* name;
    std::optional<String> canonical;
  } rows[] = {{"Asia/Tokyo", u"Asia/Tokyo"}, {"GMT", u"GMT"},         {"GMT+9", u"GMT+09:00"},
              {"GMT+0900", u"GMT+09:00"},    {"GMT-05:30", u"GMT-05:30"}, {"GMT+24", std::nullopt},
              {"GMT+09:60", std::nullopt},   {"Mars/Olympus_Mons", std::nullopt}, {"", std::nullopt}};
  for (const auto& r : rows) EXPECT_EQ(TimeZoneWithName(U16(r.name)), r.canonical) << r.name;
  EXPECT_EQ(SecondsFromGMT(u"America/New_York", 1236495599), -18000);
  EXPECT_EQ(SecondsFromGMT(u"America/New_York", 1236495600), -14400);
  EXPECT_EQ(SecondsFromGMT(u"America/New_York", 1257055199), -14400);
  EXPECT_EQ(SecondsFromGMT(u"America/New_York", 1257055200), -18000);
  EXPECT_EQ(SecondsFromGMT(u"GMT-05:30", 0), -19800);
  EXPECT_EQ(SecondsFromGMT(u"Mars/Olympus_Mons", 1e9), 0);
  EXPECT_EQ(SecondsFromGMT(u"Asia/Tokyo", std::nan("")), 0);
  {
    const ScopedDefaultZone zone("GMT+09");
    EXPECT_EQ(DefaultTimeZoneName(), u"GMT+09:00");
  }
  EXPECT_EQ(GMTTimeZoneName(), u"GMT");
}

TEST(calendar_date, fields_are_read_in_the_dates_zone) {
  const ScopedDefaultZone zone("America/New_York");
  const CalendarDate tokyo = CalendarDate::dateWithYear(2009, 2, 22, 0, 15, 30, u"Asia/Tokyo");
  EXPECT_EQ(tokyo.date, 1235229330.0);
  const auto fields = [](const CalendarDate& d) {
    return std::vector<std::int64_t>{d.yearOfCommonEra(), d.monthOfYear(), d.dayOfMonth(), d.dayOfWeek(),
                            d.hourOfDay(), d.minuteOfHour(), d.secondOfMinute()};
  };
  EXPECT_EQ(fields(tokyo), (std::vector<std::int64_t>{2009, 2, 22, 0, 0, 15, 30}));
  EXPECT_EQ(fields(CalendarDate{tokyo.date, u"GMT"}), (std::vector<std::int64_t>{2009, 2, 21, 6, 15, 15, 30}));
  // Lenient fields, and years before the era counted astronomically.
  EXPECT_EQ(fields(CalendarDate::dateWithYear(2008, 14, 1, 25, 0, 0, u"GMT")),
            (std::vector<std::int64_t>{2009, 2, 2, 1, 1, 0, 0}));
  EXPECT_EQ(CalendarDate::dateWithYear(-99, 6, 1, 0, 0, 0, u"GMT").yearOfCommonEra(), -99);
}

}  // namespace
}  // namespace phonepim
