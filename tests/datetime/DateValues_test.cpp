// The date values around CDateTime: spans, time-zone records, the free date
// functions, the zone names and the fields of instants read in "GMT".
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/datetime/CDateTimeSpan.h"
#include "phonepim/datetime/CTimeZoneInfo.h"
#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/datetime/DateFunctions.h"
#include "phonepim/datetime/TimeZones.h"
#include "phonepim/datetime/vCalendarSystemTime.h"

namespace phonepim {
namespace {

using testing::ScopedDefaultZone;
using Parts = std::vector<std::int64_t>;

Parts PartsOf(const CDateTimeSpan& s) {
  return {s.GetDays(),       s.GetHours(),         s.GetMinutes(),          s.GetSeconds(),
          s.GetTotalHours(), s.GetTotalMinutes(), s.GetTotalSeconds()};
}

TEST(span, sums_the_parts_without_overflow_saturates_and_compares_whole_seconds) {
  CDateTimeSpan span(7.5);
  span.SetDateTimeSpan(1, -1, 0, 0);
  EXPECT_EQ(PartsOf(span), (Parts{0, 23, 0, 0, 23, 1380, 82800}));
  constexpr int kMax = std::numeric_limits<int>::max();
  span.SetDateTimeSpan(kMax, kMax, kMax, kMax);
  EXPECT_EQ(span.GetTotalSeconds(), 193404524732467);
  span.SetDateTimeSpan(std::numeric_limits<int>::min(), 0, 0, 0);
  EXPECT_EQ(span.GetTotalSeconds(), -185542587187200);
  const CDateTimeSpan huge(1e300);
  EXPECT_EQ(std::pair(huge.GetTotalSeconds(), huge.GetDays()),
            std::pair(std::numeric_limits<std::int64_t>::max(), std::numeric_limits<long>::max()));
  (void)PartsOf(huge);  // no undefined conversions, for the sanitizers
  EXPECT_EQ(CDateTimeSpan(-1e300).GetTotalMinutes(), std::numeric_limits<std::int64_t>::min());
  const CDateTimeSpan notANumber(std::nan(""));
  EXPECT_EQ(PartsOf(notANumber), Parts(7, 0));
  EXPECT_FALSE(notANumber.IsEqual(notANumber));
  // IsEqual takes the other's whole seconds against this one's exact length.
  const double pairs[][3] = {{5, 5, 1},   {5, 6, 0},      {5, 5.7, 1}, {5.7, 5, 0},
                             {5.5, 5.5, 0}, {-90, -90.5, 1}, {-90, 90, 0}, {0, -0.9, 1}};
  for (const auto& [self, other, equal] : pairs) {
    EXPECT_EQ(CDateTimeSpan(self).IsEqual(CDateTimeSpan(other)), equal != 0) << self << " " << other;
  }
}

TEST(time_zone_info, is_equal_only_to_itself_and_only_when_complete) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  CTimeZoneInfo full;
  full.Bias = CDateTimeSpan(32400);
  full.DaylightBias = CDateTimeSpan(36000);
  full.DaylightBegin = CDateTime::dateWithYear(2009, 4, 1, 2, 0, 0);
  full.DaylightEnd = CDateTime::dateWithYear(2009, 10, 1, 2, 0, 0);
  full.StandardName = u"JST";
  full.DaylightName = u"JDT";
  EXPECT_TRUE(full.IsEqual(full));
  // The spans are compared as objects: an equal copy is another zone.
  EXPECT_FALSE(full.IsEqual(CTimeZoneInfo(full)));
  EXPECT_FALSE(full.TimeZone());
  full.mTimezone = u"GMT+09:00";
  EXPECT_EQ(full.TimeZone(), u"GMT+09:00");
  const std::function<void(CTimeZoneInfo&)> drops[] = {
      [](CTimeZoneInfo& i) { i.Bias.reset(); },          [](CTimeZoneInfo& i) { i.DaylightBias.reset(); },
      [](CTimeZoneInfo& i) { i.DaylightBegin.reset(); }, [](CTimeZoneInfo& i) { i.DaylightEnd.reset(); },
      [](CTimeZoneInfo& i) { i.StandardName.reset(); },  [](CTimeZoneInfo& i) { i.DaylightName.reset(); },
  };
  for (const auto& drop : drops) {
    CTimeZoneInfo info = full;
    drop(info);
    EXPECT_FALSE(info.IsEqual(info)) << &drop - drops;
  }
}

TEST(date_functions, read_default_zone_wall_clock_and_convert_only_when_asked) {
  const ScopedDefaultZone zone("America/New_York");
  const DateComponents comps = MakeDateComponents(2009, 2, 21, 10, 30, 0);
  // Despite the name, FloorTime keeps the time of day.
  EXPECT_EQ(std::pair(DateFromComponents(comps), FloorTime(comps)), std::pair(1235230200.0, 1235230200.0));
  // The first of everything missing, in the local mean time of year 1.
  EXPECT_EQ(DateFromComponents(DateComponents{}), -62135769600.0 + 17762);
  // Weekday and ordinal place a day without one; with a day they are ignored.
  DateComponents sunday;
  sunday.year = 2009;
  sunday.month = 3;
  sunday.weekday = 1;
  sunday.weekdayOrdinal = 2;
  EXPECT_EQ(DateFromComponents(sunday), 1236488400);
  sunday.day = 8;
  sunday.weekday = 4;
  EXPECT_EQ(DateFromComponents(sunday), 1236488400);

  const testing::ScopedClock clock(1246449600.0);
  const CDateTime gmt = CDateTime::dateWithYear(2009, 2, 21, 10, 0, 0);
  EXPECT_TRUE(LocalTime(gmt, false).IsEqual(gmt));
  EXPECT_EQ(LocalTime(gmt, true).date(), gmt.date() + 14400);
  const CDateTime local(1235210400.0, CDateTime::kTimeZoneTypeLocal);
  EXPECT_TRUE(vCalendar::SystemTime(local, 0).IsEqual(local));
  for (int convert : {1, -1}) EXPECT_EQ(vCalendar::SystemTime(local, convert).date(), 1235210400.0 - 14400);
  _TIME_ZONE_INFORMATION info, before;
  std::memset(&info, 0xA5, sizeof info);
  std::memcpy(&before, &info, sizeof info);
  EXPECT_EQ(GetTimeZoneInformation(&info), 0u);
  EXPECT_EQ(std::memcmp(&before, &info, sizeof info), 0);
  // Years before the era count astronomically.
  EXPECT_EQ(CalendarDate::dateWithYear(-99, 6, 1, 0, 0, 0, u"GMT").yearOfCommonEra(), -99);
}

TEST(time_zones, know_the_zone_or_say_nothing) {
  const std::pair<const char*, std::optional<String>> rows[] = {
      {"Asia/Tokyo", u"Asia/Tokyo"}, {"GMT+9", u"GMT+09:00"},  {"GMT+0900", u"GMT+09:00"}, {"GMT+24", std::nullopt},
      {"GMT+09:60", std::nullopt},   {"Mars/Olympus_Mons", std::nullopt}, {"", std::nullopt}};
  for (const auto& [name, canonical] : rows) EXPECT_EQ(TimeZoneWithName(testing::U16(name)), canonical) << name;
  EXPECT_EQ(TimeZoneWithName(String(300, u'A')), std::nullopt);
  EXPECT_EQ(SecondsFromGMT(u"America/New_York", 1236495599), -18000);
  EXPECT_EQ(SecondsFromGMT(u"America/New_York", 1236495600), -14400);
  EXPECT_EQ(SecondsFromGMT(u"GMT-05:30", 0), -19800);
  EXPECT_EQ(SecondsFromGMT(u"Mars/Olympus_Mons", 1e9), 0);
  EXPECT_EQ(SecondsFromGMT(u"Asia/Tokyo", std::nan("")), 0);
  const ScopedDefaultZone zone("GMT+09");
  EXPECT_EQ(DefaultTimeZoneName(), u"GMT+09:00");
}

// Fields come from day arithmetic within the Gregorian range and from ICU
// outside it: each row is a boundary of that split.
TEST(gmt_fields, match_the_calendar_on_both_sides_of_each_boundary) {
  // Era, year, month, day, hour, minute, second, weekday.
  const std::pair<double, Parts> rows[] = {
      {-12219292800.0, {1, 1582, 10, 15, 0, 0, 0, 6}},      // the first Gregorian day
      {-12219292800.001, {1, 1582, 10, 4, 23, 59, 59, 5}},  // the Julian day before it
      {-1e-300, {1, 1969, 12, 31, 23, 59, 59, 4}},          // rounds to midnight in the arithmetic
      {-0.5, {1, 1969, 12, 31, 23, 59, 59, 4}},
      {951782400.0, {1, 2000, 2, 29, 0, 0, 0, 3}},
      {4107542400.0, {1, 2100, 3, 1, 0, 0, 0, 2}},  // 2100 has no leap day
      {253402300799.0, {1, 9999, 12, 31, 23, 59, 59, 6}},
      {253402300800.0, {1, 10000, 1, 1, 0, 0, 0, 7}},
  };
  for (const auto& [instant, expected] : rows) {
    const DateComponents f = gregorian::ComponentsInZone(
        instant, u"GMT", gregorian::kEraUnit | gregorian::kDateAndTimeUnits | gregorian::kWeekdayUnit);
    EXPECT_EQ((Parts{f.era, f.year, f.month, f.day, f.hour, f.minute, f.second, f.weekday}), expected) << instant;
  }
}

}  // namespace
}  // namespace phonepim
