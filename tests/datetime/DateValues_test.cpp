// CDateTime and the date values around it: spans, time-zone records, the
// free date functions, the zone names and the fields of instants read in
// "GMT".
#include "phonepim/datetime/CDateTime.h"

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

using testing::ScopedClock;
using testing::ScopedDefaultZone;
using testing::U16;
using Fields = std::vector<std::int64_t>;
constexpr auto kGMT = CDateTime::kTimeZoneTypeGMT;
constexpr auto kLocal = CDateTime::kTimeZoneTypeLocal;

// Two moments to pin "now" at: one in northern winter, one in summer.
constexpr double kWinterNow = 1235210400.0;  // 2009-02-21 10:00:00Z
constexpr double kSummerNow = 1246449600.0;  // 2009-07-01 12:00:00Z

struct Zone {
  std::string name;
  double feb21At1000;  // 2009-02-21 10:00 wall clock in the zone
  int winterOffset, summerOffset;
  int lmtOffset;  // local mean time, in force in year 0
};

void PrintTo(const Zone& zone, std::ostream* os) { *os << zone.name; }

Fields FieldsOf(const CDateTime& v) { return {v.year(), v.month(), v.day(), v.hour(), v.minute(), v.second()}; }

// The mirror as {year, month, weekday, day, hour, minute, second, ms}.
Fields MirrorOf(const _SYSTEMTIME& t) {
  return {t.wYear, t.wMonth, t.wDayOfWeek, t.wDay, t.wHour, t.wMinute, t.wSecond, t.wMilliseconds};
}

class date_time_in_zone : public ::testing::TestWithParam<Zone> {
 protected:
  const Zone& zone() const { return GetParam(); }
  String zoneName() const { return U16(GetParam().name); }
  ScopedDefaultZone defaultZone_{GetParam().name};
};

INSTANTIATE_TEST_SUITE_P(zones, date_time_in_zone,
                         ::testing::Values(Zone{"UTC", 1235210400, 0, 0, 0},
                                           Zone{"Asia/Tokyo", 1235178000, 32400, 32400, 33539},
                                           Zone{"America/New_York", 1235228400, -18000, -14400, -17762}),
                         [](const auto& info) { return std::to_string(info.index); });

TEST_P(date_time_in_zone, system_and_local_time_shift_by_the_offset_of_now_and_intervals_by_the_wall_clock) {
  const CDateTime local(1235210400.0, kLocal);
  const CDateTime typedGMT = CDateTime::dateWithYear(2009, 2, 21, 10, 0, 0);
  for (const auto& [now, offset] : {std::pair{kWinterNow, zone().winterOffset},
                                    std::pair{kSummerNow, zone().summerOffset}}) {
    const ScopedClock clock(now);
    const CDateTime gmt = local.SystemTime();
    EXPECT_EQ(std::tuple(gmt.date(), gmt.timeZoneType(), gmt.timeZone(), gmt.bias()),
              std::tuple(1235210400.0 + offset, kGMT, String(u"GMT"), 0));
    const CDateTime back = typedGMT.LocalTime();
    EXPECT_EQ(std::tuple(back.date(), back.timeZoneType(), back.timeZone(), back.bias()),
              std::tuple(zone().feb21At1000 - offset, kLocal, zoneName(), 0));
  }
  // A value in the zone "GMT" has no offset to take off.
  EXPECT_EQ(CDateTime(5000.0, kGMT).LocalTime().date(), 5000.0);
  // Conversion to the own type is a copy, status and all.
  const ScopedClock clock(kSummerNow);
  CDateTime nullGMT = typedGMT;
  nullGMT.SetStatus(CDateTime::kStatusNull);
  const CDateTime same = nullGMT.SystemTime();
  EXPECT_TRUE(same.IsEqual(nullGMT));
  EXPECT_EQ(same.GetStatus(), CDateTime::kStatusNull);
  const CDateTime summer(MakeDateComponents(2009, 7, 1, 12, 0, 0), kLocal);
  EXPECT_EQ(summer.LocalTime().bias(), zone().summerOffset);
  // Intervals give local values read on the wall clock: 86400 seconds after
  // midnight of the spring-forward day is 01:00 in New York, and before
  // midnight after the fall-back day too.
  const int hourAfter = zone().name == "America/New_York" ? 1 : 0;
  const CDateTime midnight(MakeDateComponents(2009, 3, 8, 0, 0, 0), kGMT);
  const CDateTime later = midnight.dateAfterTimeInterval(86400);
  EXPECT_EQ(std::tuple(later.date(), later.timeZoneType(), later.bias()),
            std::tuple(midnight.date() + 86400, kLocal, 0));
  EXPECT_EQ(FieldsOf(later), (Fields{2009, 3, 9, hourAfter, 0, 0}));
  const CDateTime earlier = CDateTime(MakeDateComponents(2009, 11, 2, 0, 0, 0), kLocal).dateBeforeTimeInterval(86400);
  EXPECT_EQ(FieldsOf(earlier), (Fields{2009, 11, 1, hourAfter, 0, 0}));
}

TEST_P(date_time_in_zone, reset_goes_to_day_zero_and_reset_with_takes_instant_and_type) {
  CDateTime value(1235210400.0, kGMT);
  const _TIME_ZONE_INFORMATION before = value.timeZoneInformation();
  value.reset();
  EXPECT_EQ(FieldsOf(value), Fields(6, 0));
  // Month 0, day 0 of year 0 is 30 November of the year before.
  EXPECT_DOUBLE_EQ(value.daysSinceEra(), -32.0);
  EXPECT_EQ(MirrorOf(value.systemTime()), Fields(8, 0));
  EXPECT_EQ(std::memcmp(&before, &value.timeZoneInformation(), sizeof before), 0);

  value.setWeekday(4);
  value.SetStatus(CDateTime::kStatusNull);
  value.resetWithDateTime(CDateTime::dateWithYear(2009, 7, 1, 12, 0, 0));
  EXPECT_EQ(std::tuple(value.timeZoneType(), value.bias(), value.timeZone(), value.GetStatus()),
            std::tuple(kGMT, 0, zoneName(), CDateTime::kStatusNull));
  EXPECT_EQ(MirrorOf(value.systemTime()), (Fields{2009, 7, 0xFFFF, 1, 12, 0, 0, 0}));
  EXPECT_STREQ(value.timeZoneInformation().StandardName, zone().name.c_str());
  value.resetWithDateTime(CDateTime(MakeDateComponents(2009, 7, 1, 12, 0, 0), kLocal));
  EXPECT_EQ(std::tuple(value.timeZoneType(), value.bias(), value.timeZoneInformation().Bias),
            std::tuple(kLocal, zone().summerOffset, zone().summerOffset));
  // The calendar left "GMT" for the default zone with the rest.
  EXPECT_DOUBLE_EQ(value.daysSinceEra(), 719530.0 + (zone().lmtOffset + value.date()) / 86400.0);
}

TEST(date_time, spans_differences_and_order_go_by_instant_equality_also_by_type_and_zone) {
  const ScopedDefaultZone zone("UTC");
  const CDateTime early(1000.5, kLocal);
  const CDateTime late(4600.0, kGMT);
  EXPECT_EQ(std::pair(late.DiffFromDate(early), early.DiffFromDate(late)), std::pair(3599.5, -3599.5));
  EXPECT_EQ(std::pair(late.spanFromDate(early).GetTotalSeconds(), early.spanFromDate(late).GetTotalSeconds()),
            std::pair(std::int64_t{3599}, std::int64_t{3599}));
  EXPECT_EQ((Fields{early.compare(late), late.compare(early), early.compare(CDateTime(1000.5, kGMT))}),
            (Fields{-1, 1, 0}));
  // Equality takes the type and the zone as well.
  EXPECT_EQ(std::pair(early.IsEqual(CDateTime(1000.5, kLocal)), early.IsEqual(CDateTime(1000.5, kGMT))),
            std::pair(true, false));
  const ScopedDefaultZone tokyo("Asia/Tokyo");
  EXPECT_FALSE(early.IsEqual(CDateTime(1000.5, kLocal)));
}

TEST(date_time, equality_to_components_takes_eight_fields) {
  const ScopedDefaultZone zone("UTC");
  DateComponents comps = MakeDateComponents(1, 2, 3, 4, 5, 6);
  comps.era = 0;
  comps.week = 7;
  comps.weekday = 8;
  CDateTime value(comps, kLocal);
  EXPECT_TRUE(value.isEqualToDateComponents(comps));
  for (auto field : {&DateComponents::year, &DateComponents::month, &DateComponents::day, &DateComponents::hour,
                     &DateComponents::minute, &DateComponents::second, &DateComponents::week,
                     &DateComponents::weekday}) {
    DateComponents changed = comps;
    changed.*field += 1;
    EXPECT_FALSE(value.isEqualToDateComponents(changed));
  }
  comps.era = 1;
  comps.weekdayOrdinal = 3;
  EXPECT_TRUE(value.isEqualToDateComponents(comps));
  // reset() recomputes from the fields it zeroes and the ones it keeps.
  value.reset();
  EXPECT_EQ(value.weekday(), 8);
}

TEST(date_time, with_calendar_date_puts_the_weekday_in_the_day) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  // Saturday 2009-02-21 10:30 GMT: weekday 6 becomes the day, read in Tokyo.
  const CalendarDate saturday{1235212200.0, u"GMT"};
  const CDateTime value = CDateTime::dateTimeWithCalendarDate(saturday);
  EXPECT_EQ(FieldsOf(value), (Fields{2009, 2, 6, 10, 30, 0}));
  EXPECT_EQ(std::pair(value.date(), value.timeZone()), std::pair(1233883800.0, String(u"Asia/Tokyo")));
  // A Sunday gives day 0: the last day of the month before.
  EXPECT_EQ(CDateTime::dateTimeWithCalendarDate(CalendarDate{1235298600.0, u"GMT"}).date(), 1233365400.0);
  EXPECT_FALSE(CDateTime::dateTimeWithCalendarDate(std::optional<CalendarDate>()));
  EXPECT_TRUE(CDateTime::dateTimeWithCalendarDate(std::optional(saturday))->IsEqual(value));
  // GMT-typed only when the date is in the system zone.
  const String system = SystemTimeZoneName();
  const CDateTime inSystem = CDateTime::dateTimeWithCalendarDate(CalendarDate{0.0, system});
  EXPECT_EQ(std::pair(inSystem.timeZoneType(), inSystem.bias()), std::pair(kGMT, 0));
  const String other = system == u"Asia/Tokyo" ? u"Europe/Berlin" : u"Asia/Tokyo";
  EXPECT_EQ(CDateTime::dateTimeWithCalendarDate(CalendarDate{0.0, other}).timeZoneType(), kLocal);
}

TEST(date_time, odd_instants_and_extreme_fields_stay_defined) {
  const ScopedDefaultZone zone("America/New_York");
  for (double date : {std::nan(""), -std::numeric_limits<double>::infinity()}) {
    const CDateTime value(date, kLocal);
    EXPECT_EQ(value.dateComponents(), DateComponents{});
    EXPECT_EQ(MirrorOf(value.systemTime()), (Fields{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0}));
    EXPECT_EQ(value.bias(), 0);
    EXPECT_EQ(value.dateAfterTimeInterval(60).dateComponents(), DateComponents{});
    const ScopedClock clock(date);
    EXPECT_EQ(CDateTime().bias(), 0);
  }
  for (std::int64_t v : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1},
                         std::int64_t{std::numeric_limits<std::int32_t>::max()}, kUndefinedComponent - 1}) {
    EXPECT_TRUE(std::isfinite(CDateTime(MakeDateComponents(v, v, v, v, v, v), kLocal).date())) << v;
    CDateTime set(0.0, kLocal);
    set.SetYear(static_cast<int>(v), static_cast<int>(v), 1, 1, 1, 1);
    EXPECT_TRUE(std::isfinite(set.date())) << v;
    EXPECT_TRUE(std::isfinite(set.daysSinceEra())) << v;
  }
  for (double date : {1e300, -1e300}) {
    const CDateTime value(date, kGMT);
    EXPECT_EQ(value.date(), date);
    EXPECT_NE(value.year(), kUndefinedComponent);
    EXPECT_TRUE(std::isfinite(value.calendarDate().date));
  }
}

Fields FieldsOf(const CDateTimeSpan& s) {
  return {s.GetDays(),       s.GetHours(),         s.GetMinutes(),          s.GetSeconds(),
          s.GetTotalHours(), s.GetTotalMinutes(), s.GetTotalSeconds()};
}

TEST(span, sums_the_parts_without_overflow_saturates_and_compares_whole_seconds) {
  CDateTimeSpan span(7.5);
  span.SetDateTimeSpan(1, -1, 0, 0);
  EXPECT_EQ(FieldsOf(span), (Fields{0, 23, 0, 0, 23, 1380, 82800}));
  constexpr int kMax = std::numeric_limits<int>::max();
  span.SetDateTimeSpan(kMax, kMax, kMax, kMax);
  EXPECT_EQ(span.GetTotalSeconds(), 193404524732467);
  span.SetDateTimeSpan(std::numeric_limits<int>::min(), 0, 0, 0);
  EXPECT_EQ(span.GetTotalSeconds(), -185542587187200);
  const CDateTimeSpan huge(1e300);
  EXPECT_EQ(std::pair(huge.GetTotalSeconds(), huge.GetDays()),
            std::pair(std::numeric_limits<std::int64_t>::max(), std::numeric_limits<long>::max()));
  (void)FieldsOf(huge);  // no undefined conversions, for the sanitizers
  EXPECT_EQ(CDateTimeSpan(-1e300).GetTotalMinutes(), std::numeric_limits<std::int64_t>::min());
  const CDateTimeSpan notANumber(std::nan(""));
  EXPECT_EQ(FieldsOf(notANumber), Fields(7, 0));
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

  const ScopedClock clock(1246449600.0);
  const CDateTime gmt = CDateTime::dateWithYear(2009, 2, 21, 10, 0, 0);
  EXPECT_TRUE(LocalTime(gmt, false).IsEqual(gmt));
  EXPECT_EQ(LocalTime(gmt, true).date(), gmt.date() + 14400);
  const CDateTime local(1235210400.0, kLocal);
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
  for (const auto& [name, canonical] : rows) EXPECT_EQ(TimeZoneWithName(U16(name)), canonical) << name;
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
  const std::pair<double, Fields> rows[] = {
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
    EXPECT_EQ((Fields{f.era, f.year, f.month, f.day, f.hour, f.minute, f.second, f.weekday}), expected) << instant;
  }
}

}  // namespace
}  // namespace phonepim
