#include "phonepim/datetime/CDateTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/datetime/TimeZones.h"

namespace phonepim {
namespace {

using testing::ScopedClock;
using testing::ScopedDefaultZone;
using testing::U16;

// Two moments to pin "now" at: one in northern winter, one in summer.
constexpr double kWinterNow = 1235210400.0;  // 2009-02-21 10:00:00Z
constexpr double kSummerNow = 1246449600.0;  // 2009-07-01 12:00:00Z

struct Zone {
  std::string name;
  double feb21At1000;  // 2009-02-21 10:00 wall clock in the zone
  int winterOffset;
  int summerOffset;
  int hourAt1000Z;  // the zone's hour at 2009-02-21 10:00:00Z
  int lmtOffset;    // local mean time, in force in year 0
};

const Zone kZones[] = {
    {"UTC", 1235210400, 0, 0, 10, 0},
    {"Asia/Tokyo", 1235178000, 32400, 32400, 19, 33539},
    {"America/New_York", 1235228400, -18000, -14400, 5, -17762},
};

void PrintTo(const Zone& zone, std::ostream* os) { *os << zone.name; }

std::string ZoneTestName(const ::testing::TestParamInfo<Zone>& info) {
  std::string name = info.param.name;
  for (char& c : name) {
    if (c == '/') c = '_';
  }
  return name;
}

_SYSTEMTIME Mirror(int year, int month, int dayOfWeek, int day, int hour, int minute,
                   int second) {
  return _SYSTEMTIME{static_cast<std::uint16_t>(year),   static_cast<std::uint16_t>(month),
                     static_cast<std::uint16_t>(dayOfWeek), static_cast<std::uint16_t>(day),
                     static_cast<std::uint16_t>(hour),   static_cast<std::uint16_t>(minute),
                     static_cast<std::uint16_t>(second), 0};
}

void ExpectSameMirror(const _SYSTEMTIME& expected, const _SYSTEMTIME& actual) {
  EXPECT_EQ(0, std::memcmp(&expected, &actual, sizeof expected))
      << actual.wYear << "-" << actual.wMonth << "-" << actual.wDay << " " << actual.wHour
      << ":" << actual.wMinute << ":" << actual.wSecond << " dow " << actual.wDayOfWeek
      << " ms " << actual.wMilliseconds;
}

bool IsAllZero(const _TIME_ZONE_INFORMATION& info) {
  const _TIME_ZONE_INFORMATION zero{};
  return std::memcmp(&zero, &info, sizeof info) == 0;
}

void ExpectFields(const CDateTime& value, std::int64_t year, std::int64_t month,
                  std::int64_t day, std::int64_t hour, std::int64_t minute,
                  std::int64_t second) {
  EXPECT_EQ(year, value.year());
  EXPECT_EQ(month, value.month());
  EXPECT_EQ(day, value.day());
  EXPECT_EQ(hour, value.hour());
  EXPECT_EQ(minute, value.minute());
  EXPECT_EQ(second, value.second());
}

class date_time_in_zone : public ::testing::TestWithParam<Zone> {
 protected:
  const Zone& zone() const { return GetParam(); }
  String zoneName() const { return U16(GetParam().name); }
  ScopedDefaultZone defaultZone_{GetParam().name};
};

INSTANTIATE_TEST_SUITE_P(zones, date_time_in_zone, ::testing::ValuesIn(kZones), ZoneTestName);

TEST_P(date_time_in_zone, date_with_year_is_gmt_typed_but_read_in_the_default_zone) {
  const CDateTime value = CDateTime::dateWithYear(2009, 2, 21, 10, 0, 0);
  EXPECT_EQ(CDateTime::kTimeZoneTypeGMT, value.timeZoneType());
  EXPECT_EQ(0, value.bias());
  EXPECT_EQ(zone().feb21At1000, value.date());
  EXPECT_EQ(zoneName(), value.timeZone());
  ExpectFields(value, 2009, 2, 21, 10, 0, 0);
  EXPECT_EQ(kUndefinedComponent, value.weekday());
  EXPECT_EQ(CDateTime::kStatusValid, value.GetStatus());
  ExpectSameMirror(Mirror(2009, 2, 0xFFFF, 21, 10, 0, 0), value.systemTime());
  EXPECT_TRUE(IsAllZero(value.timeZoneInformation()));
}

TEST_P(date_time_in_zone, components_with_a_weekday_show_it_in_the_mirror) {
  DateComponents comps = MakeDateComponents(2009, 2, 21, 10, 0, 0);
  comps.weekday = 7;
  const CDateTime value(comps, CDateTime::kTimeZoneTypeLocal);
  ExpectSameMirror(Mirror(2009, 2, 7, 21, 10, 0, 0), value.systemTime());
  EXPECT_TRUE(IsAllZero(value.timeZoneInformation()));
  EXPECT_EQ(comps, value.dateComponents());
}

TEST_P(date_time_in_zone, local_components_take_the_offset_at_their_own_instant) {
  const CDateTime winter(MakeDateComponents(2009, 2, 21, 10, 0, 0),
                         CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(zone().winterOffset, winter.bias());
  const CDateTime summer(MakeDateComponents(2009, 7, 1, 12, 0, 0),
                         CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(zone().summerOffset, summer.bias());
  EXPECT_EQ(zoneName(), summer.timeZone());
}

TEST_P(date_time_in_zone, local_instant_has_bias_zero_and_full_mirrors) {
  const CDateTime value(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(0, value.bias());
  EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, value.timeZoneType());
  EXPECT_EQ(zoneName(), value.timeZone());
  ExpectFields(value, 2009, 2, 21, zone().hourAt1000Z, 0, 0);
  EXPECT_EQ(kUndefinedComponent, value.era());
  EXPECT_EQ(kUndefinedComponent, value.week());
  EXPECT_EQ(kUndefinedComponent, value.weekday());
  EXPECT_EQ(kUndefinedComponent, value.weekdayOrdinal());

  const _SYSTEMTIME expected = Mirror(2009, 2, 0xFFFF, 21, zone().hourAt1000Z, 0, 0);
  ExpectSameMirror(expected, value.systemTime());
  const _TIME_ZONE_INFORMATION& info = value.timeZoneInformation();
  EXPECT_EQ(0, info.Bias);
  EXPECT_STREQ(zone().name.c_str(), info.StandardName);
  ExpectSameMirror(expected, info.StandardDate);
  EXPECT_EQ(0, info.StandardBias);
  EXPECT_STREQ(zone().name.c_str(), info.DaylightName);
  ExpectSameMirror(_SYSTEMTIME{}, info.DaylightDate);
  EXPECT_EQ(0, info.DaylightBias);
}

TEST_P(date_time_in_zone, gmt_instant_keeps_gmt_but_reads_its_fields_in_the_default_zone) {
  const CDateTime value(1235210400.0, CDateTime::kTimeZoneTypeGMT);
  EXPECT_EQ(u"GMT", value.timeZone());
  EXPECT_EQ(0, value.bias());
  ExpectFields(value, 2009, 2, 21, zone().hourAt1000Z, 0, 0);
  EXPECT_STREQ("GMT", value.timeZoneInformation().StandardName);
  EXPECT_STREQ("GMT", value.timeZoneInformation().DaylightName);
}

TEST_P(date_time_in_zone, now_takes_the_zone_offset_as_bias) {
  const ScopedClock clock(kSummerNow + 0.75);
  const CDateTime now;
  EXPECT_EQ(kSummerNow + 0.75, now.date());
  EXPECT_EQ(zone().summerOffset, now.bias());
  EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, now.timeZoneType());
  const CDateTime sameMoment(kSummerNow, CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(sameMoment.dateComponents(), now.dateComponents());
  EXPECT_EQ(zone().summerOffset, now.timeZoneInformation().Bias);
  EXPECT_EQ(zone().summerOffset, now.timeZoneInformation().StandardBias);
  EXPECT_EQ(0xFFFF, now.systemTime().wDayOfWeek);
}

TEST_P(date_time_in_zone, set_year_reads_the_fields_as_gmt_wall_clock) {
  CDateTime value(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  const _TIME_ZONE_INFORMATION before = value.timeZoneInformation();
  value.setWeekday(3);
  value.SetYear(2009, 2, 21, 10, 30, 0);
  EXPECT_EQ(1235212200.0, value.date());
  EXPECT_EQ(u"GMT", value.timeZone());
  EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, value.timeZoneType());
  EXPECT_EQ(3, value.weekday());
  // The short refresh writes no weekday and leaves the zone record alone.
  ExpectSameMirror(Mirror(2009, 2, 0, 21, 10, 30, 0), value.systemTime());
  EXPECT_EQ(0, std::memcmp(&before, &value.timeZoneInformation(), sizeof before));
}

TEST_P(date_time_in_zone, set_year_keeps_type_and_bias) {
  CDateTime value(MakeDateComponents(2009, 7, 1, 12, 0, 0), CDateTime::kTimeZoneTypeLocal);
  value.SetYear(2010, 13, 1, 0, 0, 0);  // lenient: January 2011
  EXPECT_EQ(zone().summerOffset, value.bias());
  EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, value.timeZoneType());
  EXPECT_EQ(1293840000.0, value.date());
  EXPECT_EQ(13, value.month());
}

TEST_P(date_time_in_zone, days_since_era_counts_from_year_zero_in_the_calendar_zone) {
  const CDateTime epoch(0.0, CDateTime::kTimeZoneTypeLocal);
  // 1 January of year 0 (Julian) is 719530 days before 1970; the zone's
  // local mean time of that era moves the start.
  EXPECT_DOUBLE_EQ(719530.0 + zone().lmtOffset / 86400.0, epoch.daysSinceEra());

  CDateTime gmt = epoch;
  gmt.SetYear(1970, 1, 1, 0, 0, 0);
  EXPECT_EQ(719530.0, gmt.daysSinceEra());
  gmt.SetYear(1970, 1, 1, 18, 0, 0);
  EXPECT_EQ(719530.75, gmt.daysSinceEra());
}

TEST_P(date_time_in_zone, value_keeps_the_calendar_of_its_zone) {
  const CDateTime epoch(0.0, CDateTime::kTimeZoneTypeLocal);
  const ScopedDefaultZone elsewhere("Asia/Kolkata");
  EXPECT_DOUBLE_EQ(719530.0 + zone().lmtOffset / 86400.0, epoch.daysSinceEra());
  EXPECT_EQ(zoneName(), epoch.timeZone());
}

TEST_P(date_time_in_zone, system_time_adds_the_zone_offset_of_now) {
  const CDateTime local(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  for (const auto& [now, offset] : {std::pair{kWinterNow, zone().winterOffset},
                                    std::pair{kSummerNow, zone().summerOffset}}) {
    SCOPED_TRACE(now);
    const ScopedClock clock(now);
    const CDateTime gmt = local.SystemTime();
    EXPECT_EQ(1235210400.0 + offset, gmt.date());
    EXPECT_EQ(CDateTime::kTimeZoneTypeGMT, gmt.timeZoneType());
    EXPECT_EQ(u"GMT", gmt.timeZone());
    EXPECT_EQ(0, gmt.bias());
  }
}

TEST_P(date_time_in_zone, local_time_subtracts_the_zone_offset_of_now) {
  const CDateTime typedGMT = CDateTime::dateWithYear(2009, 2, 21, 10, 0, 0);
  for (const auto& [now, offset] : {std::pair{kWinterNow, zone().winterOffset},
                                    std::pair{kSummerNow, zone().summerOffset}}) {
    SCOPED_TRACE(now);
    const ScopedClock clock(now);
    const CDateTime local = typedGMT.LocalTime();
    EXPECT_EQ(zone().feb21At1000 - offset, local.date());
    EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, local.timeZoneType());
    EXPECT_EQ(zoneName(), local.timeZone());
    EXPECT_EQ(0, local.bias());
  }
  // A value in the zone "GMT" has no offset to take off.
  const CDateTime inGMT(5000.0, CDateTime::kTimeZoneTypeGMT);
  EXPECT_EQ(5000.0, inGMT.LocalTime().date());
}

TEST_P(date_time_in_zone, conversion_to_the_own_type_is_a_copy) {
  const ScopedClock clock(kSummerNow);
  CDateTime gmt = CDateTime::dateWithYear(2009, 2, 21, 10, 0, 0);
  gmt.SetStatus(CDateTime::kStatusNull);
  const CDateTime sameGMT = gmt.SystemTime();
  EXPECT_TRUE(sameGMT.IsEqual(gmt));
  EXPECT_EQ(gmt.dateComponents(), sameGMT.dateComponents());
  EXPECT_EQ(CDateTime::kStatusNull, sameGMT.GetStatus());
  EXPECT_TRUE(IsAllZero(sameGMT.timeZoneInformation()));

  const CDateTime local(MakeDateComponents(2009, 7, 1, 12, 0, 0), CDateTime::kTimeZoneTypeLocal);
  const CDateTime sameLocal = local.LocalTime();
  EXPECT_TRUE(sameLocal.IsEqual(local));
  EXPECT_EQ(zone().summerOffset, sameLocal.bias());
}

TEST_P(date_time_in_zone, calendar_date_reads_the_fields_in_the_values_zone) {
  // A GMT-typed instant keeps the default zone's fields but the zone "GMT":
  // its calendar date is that wall clock read as GMT.
  const CDateTime gmt(1235210400.0, CDateTime::kTimeZoneTypeGMT);
  const CalendarDate shifted = gmt.calendarDate();
  EXPECT_EQ(u"GMT", shifted.timeZone);
  EXPECT_EQ(1235210400.0 + zone().winterOffset, shifted.date);

  const CDateTime local(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  const CalendarDate same = local.calendarDate();
  EXPECT_EQ(zoneName(), same.timeZone);
  EXPECT_EQ(1235210400.0, same.date);
}

TEST_P(date_time_in_zone, reset_goes_to_day_zero_of_year_zero) {
  CDateTime value(1235210400.0, CDateTime::kTimeZoneTypeGMT);
  const _TIME_ZONE_INFORMATION before = value.timeZoneInformation();
  value.reset();
  ExpectFields(value, 0, 0, 0, 0, 0, 0);
  // Month 0, day 0 of year 0 is 30 November of the year before: 32 days
  // before the era's start, in the same calendar.
  EXPECT_DOUBLE_EQ(-32.0, value.daysSinceEra());
  ExpectSameMirror(_SYSTEMTIME{}, value.systemTime());
  EXPECT_EQ(0, std::memcmp(&before, &value.timeZoneInformation(), sizeof before));
  EXPECT_EQ(u"GMT", value.timeZone());
  EXPECT_EQ(CDateTime::kTimeZoneTypeGMT, value.timeZoneType());
}

TEST_P(date_time_in_zone, reset_with_date_time_takes_instant_and_type_only) {
  const CDateTime summerGMT = CDateTime::dateWithYear(2009, 7, 1, 12, 0, 0);
  const CDateTime summerLocal(MakeDateComponents(2009, 7, 1, 12, 0, 0),
                              CDateTime::kTimeZoneTypeLocal);
  CDateTime value(0.0, CDateTime::kTimeZoneTypeGMT);
  value.SetYear(1990, 5, 5, 5, 5, 5);
  value.setWeekday(4);
  value.SetStatus(CDateTime::kStatusNull);

  value.resetWithDateTime(summerGMT);
  EXPECT_EQ(summerGMT.date(), value.date());
  EXPECT_EQ(CDateTime::kTimeZoneTypeGMT, value.timeZoneType());
  EXPECT_EQ(0, value.bias());
  EXPECT_EQ(zoneName(), value.timeZone());
  EXPECT_EQ(CDateTime::kStatusNull, value.GetStatus());
  ExpectFields(value, 2009, 7, 1, 12, 0, 0);
  EXPECT_EQ(kUndefinedComponent, value.weekday());
  ExpectSameMirror(Mirror(2009, 7, 0xFFFF, 1, 12, 0, 0), value.systemTime());
  EXPECT_STREQ(zone().name.c_str(), value.timeZoneInformation().StandardName);

  value.resetWithDateTime(summerLocal);
  EXPECT_EQ(zone().summerOffset, value.bias());
  EXPECT_EQ(zone().summerOffset, value.timeZoneInformation().Bias);
  EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, value.timeZoneType());
  // The calendar left "GMT" for the default zone with the rest.
  EXPECT_DOUBLE_EQ(719530.0 + (zone().lmtOffset + value.date()) / 86400.0,
                   value.daysSinceEra());
}

TEST_P(date_time_in_zone, reset_with_itself_keeps_the_instant) {
  CDateTime value(MakeDateComponents(2009, 7, 1, 12, 0, 0), CDateTime::kTimeZoneTypeLocal);
  const double date = value.date();
  value.resetWithDateTime(value);
  EXPECT_EQ(date, value.date());
  ExpectFields(value, 2009, 7, 1, 12, 0, 0);
}

TEST_P(date_time_in_zone, intervals_give_local_values_read_on_the_wall_clock) {
  // A day of 86400 seconds after midnight of the spring-forward day ends at
  // 01:00 in New York.
  const int hourAfter = zone().name == "America/New_York" ? 1 : 0;
  const CDateTime midnight(MakeDateComponents(2009, 3, 8, 0, 0, 0),
                           CDateTime::kTimeZoneTypeGMT);
  const CDateTime later = midnight.dateAfterTimeInterval(86400);
  EXPECT_EQ(midnight.date() + 86400, later.date());
  EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, later.timeZoneType());
  EXPECT_EQ(0, later.bias());
  ExpectFields(later, 2009, 3, 9, hourAfter, 0, 0);

  // And a day before midnight after the fall-back day is 01:00 again.
  const CDateTime afterFallBack(MakeDateComponents(2009, 11, 2, 0, 0, 0),
                                CDateTime::kTimeZoneTypeLocal);
  const CDateTime earlier = afterFallBack.dateBeforeTimeInterval(86400);
  EXPECT_EQ(afterFallBack.date() - 86400, earlier.date());
  ExpectFields(earlier, 2009, 11, 1, hourAfter, 0, 0);
}

struct WallClock {
  std::string zone;
  int year, month, day, hour, minute, second;
  double instant;
  int bias;
};

void PrintTo(const WallClock& row, std::ostream* os) {
  *os << row.zone << " " << row.year << "-" << row.month << "-" << row.day << " " << row.hour
      << ":" << row.minute << ":" << row.second;
}

class date_time_wall_clock : public ::testing::TestWithParam<WallClock> {};

// Components and instants both ways, across New York's daylight-saving
// changes of 2009 and the usual calendar corners.
const WallClock kWallClocks[] = {
    {"UTC", 2009, 3, 8, 1, 59, 59, 1236477599, 0},
    {"UTC", 2008, 2, 29, 23, 59, 59, 1204329599, 0},
    {"UTC", 2038, 1, 19, 3, 14, 8, 2147483648, 0},
    {"Asia/Tokyo", 2009, 3, 8, 3, 0, 0, 1236448800, 32400},
    {"Asia/Tokyo", 1999, 12, 31, 23, 0, 0, 946648800, 32400},
    {"Asia/Tokyo", 2008, 2, 29, 23, 59, 59, 1204297199, 32400},
    {"America/New_York", 2009, 3, 8, 1, 59, 59, 1236495599, -18000},
    {"America/New_York", 2009, 3, 8, 3, 0, 0, 1236495600, -14400},
    {"America/New_York", 2009, 11, 1, 0, 30, 0, 1257049800, -14400},
    {"America/New_York", 2009, 11, 1, 2, 0, 0, 1257058800, -18000},
    {"America/New_York", 1999, 12, 31, 23, 0, 0, 946699200, -18000},
    {"America/New_York", 2038, 1, 19, 3, 14, 8, 2147501648, -18000},
};

INSTANTIATE_TEST_SUITE_P(table, date_time_wall_clock, ::testing::ValuesIn(kWallClocks));

TEST_P(date_time_wall_clock, components_and_instants_agree) {
  const WallClock& row = GetParam();
  const ScopedDefaultZone zone(row.zone);
  const DateComponents comps =
      MakeDateComponents(row.year, row.month, row.day, row.hour, row.minute, row.second);
  const CDateTime fromFields(comps, CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(row.instant, fromFields.date());
  EXPECT_EQ(row.bias, fromFields.bias());

  const CDateTime fromInstant(row.instant, CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(comps, fromInstant.dateComponents());
  EXPECT_TRUE(fromInstant.isEqualToDateComponents(comps));
}

TEST(date_time_daylight_saving, wall_clock_times_that_do_not_exist_or_repeat) {
  const ScopedDefaultZone zone("America/New_York");
  // 02:30 on the spring-forward day does not exist: it is read with the
  // offset before the change and lands on 03:30.
  const CDateTime skipped(MakeDateComponents(2009, 3, 8, 2, 30, 0),
                          CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(1236497400.0, skipped.date());
  EXPECT_EQ(-14400, skipped.bias());
  // 01:30 on the fall-back day happens twice; the calendar takes the
  // second, in standard time.
  const CDateTime repeated(MakeDateComponents(2009, 11, 1, 1, 30, 0),
                           CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(1257057000.0, repeated.date());
  EXPECT_EQ(-18000, repeated.bias());
  // The first one still reads back as 01:30.
  const CDateTime firstTime(1257057000.0 - 3600, CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(1, firstTime.hour());
  EXPECT_EQ(30, firstTime.minute());
}

TEST(date_time, spans_and_differences) {
  const ScopedDefaultZone zone("UTC");
  const CDateTime early(1000.5, CDateTime::kTimeZoneTypeLocal);
  const CDateTime late(4600.0, CDateTime::kTimeZoneTypeGMT);
  EXPECT_EQ(3599.5, late.DiffFromDate(early));
  EXPECT_EQ(-3599.5, early.DiffFromDate(late));
  EXPECT_EQ(3599, late.spanFromDate(early).GetTotalSeconds());
  EXPECT_EQ(3599, early.spanFromDate(late).GetTotalSeconds());
  const CDateTime whole(4600.0 - 3600, CDateTime::kTimeZoneTypeLocal);
  EXPECT_TRUE(late.spanFromDate(whole).IsEqual(whole.spanFromDate(late)));
  EXPECT_EQ(1, late.spanFromDate(whole).GetHours());
}

TEST(date_time, compare_orders_by_instant_only) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  const CDateTime a(100.0, CDateTime::kTimeZoneTypeLocal);
  const CDateTime b(100.5, CDateTime::kTimeZoneTypeGMT);
  EXPECT_EQ(-1, a.compare(b));
  EXPECT_EQ(1, b.compare(a));
  EXPECT_EQ(0, a.compare(CDateTime(100.0, CDateTime::kTimeZoneTypeGMT)));
}

TEST(date_time, is_equal_needs_instant_type_and_zone) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  const CDateTime base(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  EXPECT_TRUE(base.IsEqual(base));
  EXPECT_TRUE(base.IsEqual(CDateTime(1235210400.0, CDateTime::kTimeZoneTypeLocal)));
  EXPECT_FALSE(base.IsEqual(CDateTime(1235210401.0, CDateTime::kTimeZoneTypeLocal)));
  EXPECT_FALSE(base.IsEqual(CDateTime(1235210400.0, CDateTime::kTimeZoneTypeGMT)));
  // Same instant and type, other zone.
  CDateTime gmtZone(MakeDateComponents(2009, 2, 21, 19, 0, 0), CDateTime::kTimeZoneTypeLocal);
  ASSERT_EQ(base.date(), gmtZone.date());
  EXPECT_TRUE(base.IsEqual(gmtZone));
  gmtZone.SetYear(2009, 2, 21, 10, 0, 0);
  ASSERT_EQ(base.date(), gmtZone.date());
  EXPECT_FALSE(base.IsEqual(gmtZone));
  EXPECT_FALSE(gmtZone.IsEqual(base));
  // Fields, bias and status do not take part.
  CDateTime other = base;
  other.setHour(3);
  other.SetStatus(CDateTime::kStatusNull);
  EXPECT_TRUE(base.IsEqual(other));
  EXPECT_TRUE(base.isEqualToDate(1235210400.0));
  EXPECT_FALSE(base.isEqualToDate(1235210400.001));
}

TEST(date_time, is_equal_to_date_components_compares_eight_fields) {
  const ScopedDefaultZone zone("UTC");
  DateComponents comps = MakeDateComponents(2009, 2, 21, 10, 30, 15);
  comps.week = 8;
  comps.weekday = 7;
  const CDateTime value(comps, CDateTime::kTimeZoneTypeLocal);
  EXPECT_TRUE(value.isEqualToDateComponents(comps));

  std::int64_t DateComponents::*const compared[] = {
      &DateComponents::year, &DateComponents::month,  &DateComponents::day,
      &DateComponents::hour, &DateComponents::minute, &DateComponents::second,
      &DateComponents::week, &DateComponents::weekday};
  for (auto field : compared) {
    DateComponents changed = comps;
    changed.*field += 1;
    EXPECT_FALSE(value.isEqualToDateComponents(changed));
  }
  DateComponents ignored = comps;
  ignored.era = 0;
  ignored.weekdayOrdinal = 3;
  EXPECT_TRUE(value.isEqualToDateComponents(ignored));
}

TEST(date_time, field_setters_leave_instant_and_mirrors_alone) {
  const ScopedDefaultZone zone("UTC");
  CDateTime value(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  const _SYSTEMTIME before = value.systemTime();
  value.setEra(0);
  value.setYear(1);
  value.setMonth(2);
  value.setDay(3);
  value.setHour(4);
  value.setMinute(5);
  value.setSecond(6);
  value.setWeek(7);
  value.setWeekday(8);
  value.setWeekdayOrdinal(9);
  EXPECT_EQ(1235210400.0, value.date());
  ExpectSameMirror(before, value.systemTime());
  DateComponents expected;
  expected.era = 0;
  expected.year = 1;
  expected.month = 2;
  expected.day = 3;
  expected.hour = 4;
  expected.minute = 5;
  expected.second = 6;
  expected.week = 7;
  expected.weekday = 8;
  expected.weekdayOrdinal = 9;
  EXPECT_EQ(expected, value.dateComponents());
  // reset() then recomputes from the fields it zeroes and the ones it keeps.
  value.reset();
  EXPECT_EQ(8, value.weekday());
}

TEST(date_time, copies_are_independent) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  const CDateTime original(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  CDateTime copy = original;
  copy.SetYear(2000, 1, 1, 0, 0, 0);
  copy.SetStatus(CDateTime::kStatusNull);
  EXPECT_EQ(1235210400.0, original.date());
  EXPECT_EQ(19, original.hour());
  EXPECT_EQ(U16("Asia/Tokyo"), original.timeZone());
  EXPECT_EQ(CDateTime::kStatusValid, original.GetStatus());
  EXPECT_EQ(19, original.systemTime().wHour);
}

TEST(date_time, date_time_with_calendar_date_puts_the_weekday_in_the_day) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  // Saturday 2009-02-21 10:30 GMT: weekday 6 becomes the day.
  const CalendarDate saturday{1235212200.0, u"GMT"};
  const CDateTime value = CDateTime::dateTimeWithCalendarDate(saturday);
  ExpectFields(value, 2009, 2, 6, 10, 30, 0);
  EXPECT_EQ(1233883800.0, value.date());  // 2009-02-06 10:30 in Tokyo
  EXPECT_EQ(U16("Asia/Tokyo"), value.timeZone());

  // A Sunday gives day 0: the last day of the month before.
  const CalendarDate sunday{1235298600.0, u"GMT"};
  const CDateTime fromSunday = CDateTime::dateTimeWithCalendarDate(sunday);
  EXPECT_EQ(0, fromSunday.day());
  EXPECT_EQ(1233365400.0, fromSunday.date());  // 2009-01-31 10:30 in Tokyo

  EXPECT_FALSE(CDateTime::dateTimeWithCalendarDate(std::optional<CalendarDate>()));
  const auto some = CDateTime::dateTimeWithCalendarDate(std::optional<CalendarDate>(saturday));
  ASSERT_TRUE(some);
  EXPECT_TRUE(some->IsEqual(value));
}

TEST(date_time, date_time_with_calendar_date_is_gmt_typed_in_the_system_zone) {
  const ScopedDefaultZone zone("UTC");
  const String system = SystemTimeZoneName();
  const String other = system == u"Asia/Tokyo" ? u"Europe/Berlin" : u"Asia/Tokyo";
  const CDateTime inSystem = CDateTime::dateTimeWithCalendarDate(CalendarDate{0.0, system});
  EXPECT_EQ(CDateTime::kTimeZoneTypeGMT, inSystem.timeZoneType());
  EXPECT_EQ(0, inSystem.bias());
  const CDateTime inOther = CDateTime::dateTimeWithCalendarDate(CalendarDate{0.0, other});
  EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, inOther.timeZoneType());
}

TEST(date_time, long_zone_names_are_cut_to_the_record_field) {
  const std::string longName = "America/Argentina/ComodRivadavia";  // 32 bytes
  const ScopedDefaultZone zone(longName);
  ASSERT_EQ(U16(longName), DefaultTimeZoneName());
  const CDateTime value(0.0, CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(longName.substr(0, 31), value.timeZoneInformation().StandardName);
  EXPECT_EQ(longName.substr(0, 31), value.timeZoneInformation().DaylightName);
  EXPECT_EQ(0, value.timeZoneInformation().StandardDate.wSecond);
}

TEST(date_time, instants_without_fields_show_undefined_everywhere) {
  const ScopedDefaultZone zone("UTC");
  for (double date : {std::nan(""), std::numeric_limits<double>::infinity(),
                      -std::numeric_limits<double>::infinity()}) {
    const CDateTime value(date, CDateTime::kTimeZoneTypeLocal);
    EXPECT_EQ(DateComponents{}, value.dateComponents());
    ExpectSameMirror(Mirror(0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF),
                     value.systemTime());
    EXPECT_EQ(0, value.bias());
    const CDateTime moved = value.dateAfterTimeInterval(60);
    EXPECT_EQ(DateComponents{}, moved.dateComponents());
    const ScopedClock clock(date);
    EXPECT_EQ(0, CDateTime().bias());
  }
}

TEST(date_time, extreme_fields_and_instants_stay_finite) {
  const ScopedDefaultZone zone("America/New_York");
  const std::int64_t extremes[] = {std::numeric_limits<std::int64_t>::min(),
                                   std::numeric_limits<std::int32_t>::min(), -1,
                                   std::numeric_limits<std::int32_t>::max(),
                                   kUndefinedComponent - 1};
  for (std::int64_t v : extremes) {
    const CDateTime value(MakeDateComponents(v, v, v, v, v, v), CDateTime::kTimeZoneTypeLocal);
    EXPECT_TRUE(std::isfinite(value.date())) << v;
    CDateTime set(0.0, CDateTime::kTimeZoneTypeLocal);
    set.SetYear(static_cast<int>(v), static_cast<int>(v), 1, 1, 1, 1);
    EXPECT_TRUE(std::isfinite(set.date())) << v;
    EXPECT_TRUE(std::isfinite(set.daysSinceEra())) << v;
  }
  for (double date : {1e300, -1e300, 1e17}) {
    const CDateTime value(date, CDateTime::kTimeZoneTypeGMT);
    EXPECT_EQ(date, value.date());
    EXPECT_NE(kUndefinedComponent, value.year());
    EXPECT_TRUE(std::isfinite(value.calendarDate().date));
  }
}

}  // namespace
}  // namespace phonepim
