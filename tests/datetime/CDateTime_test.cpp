#include "phonepim/datetime/CDateTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/datetime/TimeZones.h"

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

TEST_P(date_time_in_zone, system_and_local_time_shift_by_the_offset_of_now) {
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

TEST_P(date_time_in_zone, intervals_give_local_values_read_on_the_wall_clock) {
  // 86400 seconds after midnight of the spring-forward day is 01:00 in New
  // York, and before midnight after the fall-back day too.
  const int hourAfter = zone().name == "America/New_York" ? 1 : 0;
  const CDateTime midnight(MakeDateComponents(2009, 3, 8, 0, 0, 0), kGMT);
  const CDateTime later = midnight.dateAfterTimeInterval(86400);
  EXPECT_EQ(std::tuple(later.date(), later.timeZoneType(), later.bias()),
            std::tuple(midnight.date() + 86400, kLocal, 0));
  EXPECT_EQ(FieldsOf(later), (Fields{2009, 3, 9, hourAfter, 0, 0}));
  const CDateTime earlier = CDateTime(MakeDateComponents(2009, 11, 2, 0, 0, 0), kLocal).dateBeforeTimeInterval(86400);
  EXPECT_EQ(FieldsOf(earlier), (Fields{2009, 11, 1, hourAfter, 0, 0}));
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

}  // namespace
}  // namespace phonepim
