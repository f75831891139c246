// The alarm of a calendar entry: set as a kind and a count before the start,
// read back in the largest whole unit.
#include <gtest/gtest.h>

#include <memory>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/model/CCalendar.h"

namespace phonepim {
namespace {

using testing::ScopedDefaultZone;

constexpr double kStart = 1235210400.0;  // 2009-02-21 10:00:00 UTC
constexpr int kMin = CCalendar::kAlarmMinutes, kHour = CCalendar::kAlarmHours, kDay = CCalendar::kAlarmDays,
              kWeek = CCalendar::kAlarmWeeks, kDate = CCalendar::kAlarmAtDate, kNone = CCalendar::kAlarmNone;

void StartAt(CCalendar& entry) { entry.setStartDate(CDateTime(kStart, CDateTime::kTimeZoneTypeGMT)); }

// Expects GetAlarm and GetAlarmDate (kAlarmAtDate or kAlarmNone, value 0) to
// report kind and value, and answers GetAlarm's date.
CDateTimeNull ReadBack(const CCalendar& entry, int kind, int value) {
  int gotKind = 99, gotValue = 99;
  const CDateTimeNull date = entry.GetAlarm(gotKind, gotValue);
  EXPECT_EQ(std::pair(gotKind, gotValue), std::pair(kind, value));
  const CDateTimeNull asDate = entry.GetAlarmDate(gotKind, gotValue);
  EXPECT_EQ(std::pair(gotKind, gotValue), std::pair(kind == kNone ? kind : kDate, 0));
  EXPECT_EQ(asDate.GetStatus(), date.GetStatus());
  if (kind != kNone) {  // without an alarm each is a new "now"
    EXPECT_EQ(asDate.date(), date.date());
  }
  return date;
}

TEST(calendar_alarm, reads_back_in_the_largest_whole_unit) {
  const ScopedDefaultZone zone("Europe/Berlin");
  const struct {
    int kind, value;
    double offset;  // seconds from the start to the run time
    int kindBack, valueBack;
  } rows[] = {
      {kMin, 0, 0, kDate, 0},          {kMin, 59, 3540, kMin, 59},        {kMin, 60, 3600, kHour, 1},
      {kMin, 90, 5400, kDate, 0},      {kMin, 1500, 90000, kDate, 0},     {kMin, 2880, 172800, kDay, 2},
      {kMin, 20160, 1209600, kWeek, 2},
      // The distance counts, not the direction.
      {kMin, -30, -1800, kMin, 30},    {kHour, -2, -7200, kHour, 2},      {kHour, 24, 86400, kDay, 1},
      {kHour, 25, 90000, kDate, 0},    {kDay, 6, 518400, kDay, 6},        {kDay, 7, 604800, kWeek, 1},
      {kDay, 15, 1296000, kDay, 15},   {kWeek, 52, 31449600, kWeek, 52},
      // Unknown kinds ring at the start.
      {1, 5, 0, kDate, 0},             {6, 5, 0, kDate, 0},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(&r - rows);
    CCalendar entry;
    StartAt(entry);
    EXPECT_TRUE(entry.SetAlarm(r.kind, r.value, nullptr));
    ASSERT_EQ(entry.GetAlarmcount(), 1);
    const CDateTimeNull& runTime = entry.AudioReminder()->RunTime().value();
    EXPECT_EQ(runTime.date(), kStart + r.offset);
    EXPECT_EQ(runTime.timeZoneType(), CDateTime::kTimeZoneTypeLocal);
    EXPECT_EQ(runTime.GetStatus(), CDateTime::kStatusValid);
    EXPECT_EQ(ReadBack(entry, r.kindBack, r.valueBack).date(), runTime.date());
  }
}

TEST(calendar_alarm, at_date_none_and_a_later_alarm_replace_the_current_one) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  CCalendar entry;
  StartAt(entry);
  const CReminder* first = entry.addAlarm(std::make_unique<CReminder>());
  const CReminder* current = entry.addAlarm(std::make_unique<CReminder>());
  ReadBack(entry, kNone, 0);  // no run time yet
  const CDateTime at(kStart - 1234.0, CDateTime::kTimeZoneTypeGMT);
  entry.SetAlarm(kDate, 42, &at);
  EXPECT_TRUE(current->RunTime()->IsEqual(at));
  EXPECT_TRUE(ReadBack(entry, kMin, 20).IsEqual(at));  // 20 whole minutes before
  const CDateTime close(kStart + 59.0, CDateTime::kTimeZoneTypeGMT);
  entry.SetAlarm(kDate, 0, &close);
  ReadBack(entry, kDate, 0);
  entry.SetAlarm(kDate, 0, nullptr);  // no date: no run time at all
  EXPECT_FALSE(current->RunTime().has_value());
  entry.SetAlarm(kHour, 2, nullptr);
  EXPECT_TRUE(entry.SetAlarm(kNone, 0, nullptr));
  EXPECT_EQ(current->RunTime()->GetStatus(), CDateTime::kStatusNull);
  EXPECT_EQ(ReadBack(entry, kNone, 0).GetStatus(), CDateTime::kStatusNull);
  entry.SetAlarm(kMin, 15, nullptr);
  EXPECT_EQ(current->RunTime()->date(), kStart + 900.0);
  EXPECT_EQ(entry.GetAlarmcount(), 2);
  EXPECT_FALSE(first->RunTime().has_value());
}

TEST(calendar_alarm, a_null_start_sets_and_reads_no_alarm) {
  const ScopedDefaultZone zone("UTC");
  CCalendar absent;
  EXPECT_TRUE(absent.SetAlarm(kMin, 10, nullptr));
  EXPECT_EQ(absent.GetAlarmcount(), 0);
  ReadBack(absent, kNone, 0);
  CCalendar null;
  StartAt(null);
  null.dtStart->Null();
  EXPECT_TRUE(null.SetAlarm(kMin, 10, nullptr));
  EXPECT_EQ(null.GetAlarmcount(), 0);
  CCalendar later;  // the start became null after the alarm was set
  StartAt(later);
  later.SetAlarm(kMin, 10, nullptr);
  later.dtStart->Null();
  ReadBack(later, kNone, 0);
}

}  // namespace
}  // namespace phonepim
