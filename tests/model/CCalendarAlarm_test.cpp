#include <gtest/gtest.h>

#include <memory>
#include <ostream>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/model/CCalendar.h"

namespace phonepim {
namespace {

using testing::ScopedDefaultZone;

constexpr double kStart = 1235210400.0;  // 2009-02-21 10:00:00 UTC
constexpr int kMin = CCalendar::kAlarmMinutes;
constexpr int kHour = CCalendar::kAlarmHours;
constexpr int kDay = CCalendar::kAlarmDays;
constexpr int kWeek = CCalendar::kAlarmWeeks;
constexpr int kDate = CCalendar::kAlarmAtDate;

void StartAt(CCalendar& entry, double start) {
  entry.setStartDate(CDateTime(start, CDateTime::kTimeZoneTypeGMT));
}

// Expects GetAlarm and GetAlarmDate to report kind and value (GetAlarmDate:
// kAlarmAtDate or kAlarmNone, value 0) and answers GetAlarm's date.
CDateTimeNull ReadBack(const CCalendar& entry, int kind, int value) {
  int gotKind = 99;
  int gotValue = 99;
  const CDateTimeNull date = entry.GetAlarm(gotKind, gotValue);
  EXPECT_EQ(gotKind, kind);
  EXPECT_EQ(gotValue, value);
  const CDateTimeNull asDate = entry.GetAlarmDate(gotKind, gotValue);
  EXPECT_EQ(gotKind, kind == CCalendar::kAlarmNone ? kind : kDate);
  EXPECT_EQ(gotValue, 0);
  EXPECT_EQ(asDate.GetStatus(), date.GetStatus());
  if (kind != CCalendar::kAlarmNone) {
    EXPECT_EQ(asDate.date(), date.date());  // without an alarm each is a new "now"
  }
  return date;
}

struct RoundTripCase {
  int kind;
  int value;
  double offset;  // seconds from the start to the run time
  int kindBack;
  int valueBack;
};

void PrintTo(const RoundTripCase& c, std::ostream* os) {
  *os << "kind " << c.kind << " value " << c.value;
}

class AlarmRoundTrip : public ::testing::TestWithParam<RoundTripCase> {};

TEST_P(AlarmRoundTrip, reads_back_in_the_largest_whole_unit) {
  const ScopedDefaultZone zone("Europe/Berlin");
  CCalendar entry;
  StartAt(entry, kStart);
  EXPECT_TRUE(entry.SetAlarm(GetParam().kind, GetParam().value, nullptr));
  ASSERT_EQ(entry.GetAlarmcount(), 1);
  const CDateTimeNull& runTime = entry.AudioReminder()->RunTime().value();
  EXPECT_EQ(runTime.date(), kStart + GetParam().offset);
  EXPECT_EQ(runTime.timeZoneType(), CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(runTime.GetStatus(), CDateTime::kStatusValid);
  EXPECT_EQ(ReadBack(entry, GetParam().kindBack, GetParam().valueBack).date(), runTime.date());
}

INSTANTIATE_TEST_SUITE_P(
    table, AlarmRoundTrip,
    ::testing::Values(
        RoundTripCase{kMin, 0, 0, kDate, 0}, RoundTripCase{kMin, 1, 60, kMin, 1},
        RoundTripCase{kMin, 59, 3540, kMin, 59}, RoundTripCase{kMin, 60, 3600, kHour, 1},
        RoundTripCase{kMin, 90, 5400, kDate, 0}, RoundTripCase{kMin, 120, 7200, kHour, 2},
        RoundTripCase{kMin, 1440, 86400, kDay, 1}, RoundTripCase{kMin, 1500, 90000, kDate, 0},
        RoundTripCase{kMin, 2880, 172800, kDay, 2}, RoundTripCase{kMin, 10080, 604800, kWeek, 1},
        RoundTripCase{kMin, 20160, 1209600, kWeek, 2},
        // The distance counts, not the direction.
        RoundTripCase{kMin, -30, -1800, kMin, 30}, RoundTripCase{kHour, -2, -7200, kHour, 2},
        RoundTripCase{kHour, 23, 82800, kHour, 23}, RoundTripCase{kHour, 24, 86400, kDay, 1},
        RoundTripCase{kHour, 25, 90000, kDate, 0}, RoundTripCase{kDay, 6, 518400, kDay, 6},
        RoundTripCase{kDay, 7, 604800, kWeek, 1}, RoundTripCase{kDay, 15, 1296000, kDay, 15},
        RoundTripCase{kWeek, 1, 604800, kWeek, 1}, RoundTripCase{kWeek, 52, 31449600, kWeek, 52},
        // Unknown kinds ring at the start.
        RoundTripCase{1, 5, 0, kDate, 0}, RoundTripCase{6, 5, 0, kDate, 0}));

TEST(CCalendarAlarm, at_date_keeps_the_date_and_reads_back_by_distance) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  CCalendar entry;
  StartAt(entry, kStart);
  const CDateTime at(kStart - 1234.0, CDateTime::kTimeZoneTypeGMT);
  entry.SetAlarm(kDate, 42, &at);
  EXPECT_TRUE(entry.AudioReminder()->RunTime()->IsEqual(at));
  EXPECT_TRUE(ReadBack(entry, kMin, 20).IsEqual(at));  // 20 whole minutes before

  const CDateTime close(kStart + 59.0, CDateTime::kTimeZoneTypeGMT);
  entry.SetAlarm(kDate, 0, &close);
  ReadBack(entry, kDate, 0);
  EXPECT_EQ(entry.GetAlarmcount(), 1);

  entry.SetAlarm(kDate, 0, nullptr);  // no date: no run time at all
  EXPECT_FALSE(entry.AudioReminder()->RunTime().has_value());
  ReadBack(entry, CCalendar::kAlarmNone, 0);
}

TEST(CCalendarAlarm, none_marks_the_run_time_null_and_a_later_alarm_replaces_it) {
  const ScopedDefaultZone zone("UTC");
  CCalendar entry;
  StartAt(entry, kStart);
  entry.SetAlarm(kHour, 2, nullptr);
  EXPECT_TRUE(entry.SetAlarm(CCalendar::kAlarmNone, 0, nullptr));
  EXPECT_EQ(entry.AudioReminder()->RunTime()->GetStatus(), CDateTime::kStatusNull);
  EXPECT_EQ(ReadBack(entry, CCalendar::kAlarmNone, 0).GetStatus(), CDateTime::kStatusNull);
  entry.SetAlarm(kDay, 1, nullptr);
  ReadBack(entry, kDay, 1);
  EXPECT_EQ(entry.GetAlarmcount(), 1);
}

TEST(CCalendarAlarm, a_null_start_sets_and_reads_no_alarm) {
  const ScopedDefaultZone zone("UTC");
  CCalendar absent;
  EXPECT_TRUE(absent.SetAlarm(kMin, 10, nullptr));
  EXPECT_EQ(absent.GetAlarmcount(), 0);
  ReadBack(absent, CCalendar::kAlarmNone, 0);

  CCalendar null;
  StartAt(null, kStart);
  null.dtStart->Null();
  EXPECT_TRUE(null.SetAlarm(kMin, 10, nullptr));
  EXPECT_EQ(null.GetAlarmcount(), 0);

  CCalendar later;  // the start became null after the alarm was set
  StartAt(later, kStart);
  later.SetAlarm(kMin, 10, nullptr);
  later.dtStart->Null();
  ReadBack(later, CCalendar::kAlarmNone, 0);
}

TEST(CCalendarAlarm, works_on_the_current_alarm_without_adding_one) {
  const ScopedDefaultZone zone("UTC");
  CCalendar entry;
  StartAt(entry, kStart);
  const CReminder* first = entry.addAlarm(std::make_unique<CReminder>());
  const CReminder* second = entry.addAlarm(std::make_unique<CReminder>());
  ReadBack(entry, CCalendar::kAlarmNone, 0);  // no run time yet
  entry.SetAlarm(kMin, 15, nullptr);
  EXPECT_EQ(entry.GetAlarmcount(), 2);
  EXPECT_FALSE(first->RunTime().has_value());
  EXPECT_EQ(second->RunTime().value().date(), kStart + 900.0);
}

}  // namespace
}  // namespace phonepim
