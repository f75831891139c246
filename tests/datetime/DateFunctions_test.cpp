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

struct ZoneDates {
  std::string zone;
  double feb21At1030;     // 2009-02-21 10:30 wall clock
  double secondSundayOfMarch;  // 2009-03-08 00:00 wall clock
  double yearOne;         // 0001-01-01 00:00 (Julian), local mean time
};

const ZoneDates kZoneDates[] = {
    {"UTC", 1235212200, 1236470400, -62135769600},
    {"Asia/Tokyo", 1235179800, 1236438000, -62135769600.0 - 33539},
    {"America/New_York", 1235230200, 1236488400, -62135769600.0 + 17762},
};

void PrintTo(const ZoneDates& row, std::ostream* os) { *os << row.zone; }

class date_from_components : public ::testing::TestWithParam<ZoneDates> {
 protected:
  ScopedDefaultZone zone_{GetParam().zone};
};

INSTANTIATE_TEST_SUITE_P(zones, date_from_components, ::testing::ValuesIn(kZoneDates));

TEST_P(date_from_components, reads_the_fields_as_default_zone_wall_clock) {
  const DateComponents comps = MakeDateComponents(2009, 2, 21, 10, 30, 0);
  EXPECT_EQ(GetParam().feb21At1030, DateFromComponents(comps));
  // Despite the name, FloorTime keeps the time of day.
  EXPECT_EQ(GetParam().feb21At1030, FloorTime(comps));
}

TEST_P(date_from_components, missing_fields_take_the_first_of_everything) {
  EXPECT_EQ(GetParam().yearOne, DateFromComponents(DateComponents{}));
  DateComponents yearOnly;
  yearOnly.year = 2009;
  yearOnly.month = 3;
  yearOnly.day = 8;
  EXPECT_EQ(GetParam().secondSundayOfMarch, DateFromComponents(yearOnly));
}

TEST_P(date_from_components, weekday_and_ordinal_place_a_day_without_one) {
  DateComponents comps;
  comps.year = 2009;
  comps.month = 3;
  comps.weekday = 1;  // Sunday
  comps.weekdayOrdinal = 2;
  EXPECT_EQ(GetParam().secondSundayOfMarch, DateFromComponents(comps));
  // With a day the weekday is ignored.
  comps.day = 8;
  comps.weekday = 4;
  EXPECT_EQ(GetParam().secondSundayOfMarch, DateFromComponents(comps));
}

TEST(date_functions, local_time_and_system_time_convert_only_when_asked) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  const ScopedClock clock(1246449600.0);
  const CDateTime gmt = CDateTime::dateWithYear(2009, 2, 21, 10, 0, 0);
  const CDateTime kept = LocalTime(gmt, false);
  EXPECT_TRUE(kept.IsEqual(gmt));
  EXPECT_EQ(CDateTime::kTimeZoneTypeGMT, kept.timeZoneType());
  const CDateTime local = LocalTime(gmt, true);
  EXPECT_EQ(gmt.date() - 32400, local.date());
  EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, local.timeZoneType());

  const CDateTime localValue(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  const CDateTime copy = vCalendar::SystemTime(localValue, 0);
  EXPECT_TRUE(copy.IsEqual(localValue));
  EXPECT_EQ(localValue.dateComponents(), copy.dateComponents());
  for (int convert : {1, -1, 2}) {
    const CDateTime system = vCalendar::SystemTime(localValue, convert);
    EXPECT_EQ(1235210400.0 + 32400, system.date());
    EXPECT_EQ(CDateTime::kTimeZoneTypeGMT, system.timeZoneType());
  }
}

TEST(date_functions, get_time_zone_information_writes_nothing) {
  _TIME_ZONE_INFORMATION info;
  std::memset(&info, 0xA5, sizeof info);
  _TIME_ZONE_INFORMATION before;
  std::memcpy(&before, &info, sizeof info);
  EXPECT_EQ(0u, GetTimeZoneInformation(&info));
  EXPECT_EQ(0, std::memcmp(&before, &info, sizeof info));
  EXPECT_EQ(0u, GetTimeZoneInformation(nullptr));
}

struct ZoneName {
  std::string name;
  std::optional<std::string> canonical;
};

void PrintTo(const ZoneName& row, std::ostream* os) { *os << '"' << row.name << '"'; }

class time_zone_with_name : public ::testing::TestWithParam<ZoneName> {};

const ZoneName kZoneNames[] = {
    {"Asia/Tokyo", "Asia/Tokyo"},
    {"GMT", "GMT"},
    {"UTC", "UTC"},
    {"GMT+09", "GMT+09:00"},
    {"GMT+9", "GMT+09:00"},
    {"GMT+0900", "GMT+09:00"},
    {"GMT-05:30", "GMT-05:30"},
    {"GMT+24", std::nullopt},
    {"GMT+09:60", std::nullopt},
    {"Mars/Olympus_Mons", std::nullopt},
    {"", std::nullopt},
};

INSTANTIATE_TEST_SUITE_P(table, time_zone_with_name, ::testing::ValuesIn(kZoneNames));

TEST_P(time_zone_with_name, knows_the_zone_or_says_nothing) {
  const std::optional<String> zone = TimeZoneWithName(U16(GetParam().name));
  if (GetParam().canonical) {
    ASSERT_TRUE(zone);
    EXPECT_EQ(U16(*GetParam().canonical), *zone);
  } else {
    EXPECT_FALSE(zone) << ToDisplayUTF8(*zone);
  }
}

TEST(time_zones, seconds_from_gmt_follows_daylight_saving) {
  EXPECT_EQ(-18000, SecondsFromGMT(u"America/New_York", 1236495599));
  EXPECT_EQ(-14400, SecondsFromGMT(u"America/New_York", 1236495600));
  EXPECT_EQ(-14400, SecondsFromGMT(u"America/New_York", 1257055199));
  EXPECT_EQ(-18000, SecondsFromGMT(u"America/New_York", 1257055200));
  EXPECT_EQ(32400, SecondsFromGMT(u"GMT+09", 0));
  EXPECT_EQ(-19800, SecondsFromGMT(u"GMT-05:30", 0));
  EXPECT_EQ(0, SecondsFromGMT(u"Mars/Olympus_Mons", 1e9));
  EXPECT_EQ(0, SecondsFromGMT(u"Asia/Tokyo", std::nan("")));
}

TEST(time_zones, default_zone_follows_the_scoped_default) {
  {
    const ScopedDefaultZone zone("Europe/Berlin");
    EXPECT_EQ(u"Europe/Berlin", DefaultTimeZoneName());
    {
      const ScopedDefaultZone inner("GMT+09");
      EXPECT_EQ(u"GMT+09:00", DefaultTimeZoneName());
    }
    EXPECT_EQ(u"Europe/Berlin", DefaultTimeZoneName());
  }
  EXPECT_EQ(u"GMT", GMTTimeZoneName());
}

TEST(calendar_date, fields_are_read_in_the_dates_zone) {
  const ScopedDefaultZone zone("America/New_York");
  const CalendarDate tokyo =
      CalendarDate::dateWithYear(2009, 2, 22, 0, 15, 30, u"Asia/Tokyo");
  EXPECT_EQ(1235229330.0, tokyo.date);
  EXPECT_EQ(2009, tokyo.yearOfCommonEra());
  EXPECT_EQ(2, tokyo.monthOfYear());
  EXPECT_EQ(22, tokyo.dayOfMonth());
  EXPECT_EQ(0, tokyo.dayOfWeek());  // Sunday
  EXPECT_EQ(0, tokyo.hourOfDay());
  EXPECT_EQ(15, tokyo.minuteOfHour());
  EXPECT_EQ(30, tokyo.secondOfMinute());

  const CalendarDate gmt{tokyo.date, u"GMT"};
  EXPECT_EQ(21, gmt.dayOfMonth());
  EXPECT_EQ(6, gmt.dayOfWeek());
  EXPECT_EQ(15, gmt.hourOfDay());

  // Lenient fields, and years before the era counted astronomically.
  const CalendarDate lenient = CalendarDate::dateWithYear(2008, 14, 1, 25, 0, 0, u"GMT");
  EXPECT_EQ(2009, lenient.yearOfCommonEra());
  EXPECT_EQ(2, lenient.monthOfYear());
  EXPECT_EQ(2, lenient.dayOfMonth());
  EXPECT_EQ(1, lenient.hourOfDay());
  EXPECT_EQ(0, CalendarDate::dateWithYear(0, 6, 1, 0, 0, 0, u"GMT").yearOfCommonEra());
  EXPECT_EQ(-99, CalendarDate::dateWithYear(-99, 6, 1, 0, 0, 0, u"GMT").yearOfCommonEra());
}

}  // namespace
}  // namespace phonepim
