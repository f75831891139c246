// The recurrence rules: the setters' bounds, the kinds they build, and the
// rule data's equality, which compares day lists one-sidedly.
#include "phonepim/model/CRecurrence.h"

#include <gtest/gtest.h>

#include <functional>

#include "datetime/DateTimeFixtures.h"
#include "model/AssertionPattern.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace {

Array Ints(std::initializer_list<int> values) {
  Array array;
  for (int v : values) array.emplace_back(v);
  return array;
}

// Each row is one call that builds a rule of `type` or stops at the named
// assertion, leaving the rule it had alone.
TEST(recurrence, setters_accept_their_bounds_or_stop_with_the_exact_text) {
  const CDateTime untilDate(1262304000.0, CDateTime::kTimeZoneTypeGMT);
  const CDateTime* until = &untilDate;
  const Array none, one = Ints({1});
  const char* const kDayBound = "[num intValue]>= -31 && [num intValue]<= 31 && [num intValue]!= 0";
  const char* const kPosBound = "[num intValue] >= -5 && [num intValue] <= 5 && [num intValue] != 0";
  const char* const kWeekday = "[num intValue] >= 0 && [num intValue] < 7";
  const char* const kPosWeekday = "[num intValue] >= 0 &&[num intValue] < 7";
  const char* const kMonth = "[num intValue] >= 1 && [num intValue] <= 12";
  const char* const kYearday = "[num intValue] >= 1 && [num intValue] <= 366";
  // Each row: the call, the kind it builds, and the text it stops with (nullptr: none).
  const std::tuple<std::function<void(CRecurrence&)>, int, const char*> rows[] = {
      {[](CRecurrence& r) { r.SetDaily(200, 9, nullptr); }, 1, nullptr},
      {[](CRecurrence& r) { r.SetDaily(201, 0, nullptr); }, 1, "nDayInterval > 0 && nDayInterval <= 200"},
      // The interval is checked first.
      {[&](CRecurrence& r) { r.SetDaily(0, -1, until); }, 1, "nDayInterval > 0 && nDayInterval <= 200"},
      {[](CRecurrence& r) { r.SetDaily(1, -1, nullptr); }, 1, "nDuration >= 0"},
      {[&](CRecurrence& r) { r.SetDaily(1, 0, until); }, 1, "pUntilDate == NULL"},
      {[](CRecurrence& r) { r.SetWeekly(1000, 0, nullptr, nullptr); }, 2, nullptr},
      {[&](CRecurrence& r) { const Array days = Ints({0, 6}); r.SetWeekly(1, 0, nullptr, &days); }, 2, nullptr},
      {[](CRecurrence& r) { r.SetWeekly(0, 0, nullptr, nullptr); }, 2, "nWeekInterval > 0"},
      {[](CRecurrence& r) { r.SetWeekly(1, -5, nullptr, nullptr); }, 2, "nDuration >= 0"},
      {[&](CRecurrence& r) { r.SetWeekly(1, 0, until, nullptr); }, 2, "pUntilDate == NULL"},
      {[&](CRecurrence& r) { r.SetWeekly(1, 0, nullptr, &none); }, 2, "pWeekdays == NULL || [pWeekdays count] > 0"},
      {[](CRecurrence& r) { const Array days = Ints({1, 7}); r.SetWeekly(1, 0, nullptr, &days); }, 2, kWeekday},
      {[](CRecurrence& r) { const Array days = Ints({-1}); r.SetWeekly(1, 0, nullptr, &days); }, 2, kWeekday},
      {[](CRecurrence& r) { r.SetMonthlyByPos(1, Ints({5, -5}), Ints({6, 0}), 0, nullptr); }, 3, nullptr},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(0, one, one, 0, nullptr); }, 3, "nMonthInterval > 0"},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(1, none, one, 0, nullptr); }, 3, "[weekposes count] > 0"},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(1, one, none, 0, nullptr); }, 3, "[weekdays count] > 0"},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(1, one, one, -1, nullptr); }, 3, "nDuration >= 0"},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(1, one, one, 0, until); }, 3, "pUntilDate == NULL"},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(1, Ints({0}), one, 0, nullptr); }, 3, kPosBound},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(1, Ints({1, 6}), one, 0, nullptr); }, 3, kPosBound},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(1, Ints({-6}), one, 0, nullptr); }, 3, kPosBound},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(1, one, Ints({7}), 0, nullptr); }, 3, kPosWeekday},
      {[&](CRecurrence& r) { r.SetMonthlyByPos(1, one, Ints({-1}), 0, nullptr); }, 3, kPosWeekday},
      {[](CRecurrence& r) { r.SetMonthlyByDay(1, Ints({31, -31}), 0, nullptr); }, 4, nullptr},
      {[&](CRecurrence& r) { r.SetMonthlyByDay(0, one, 0, nullptr); }, 4, "nMonthInterval > 0"},
      {[&](CRecurrence& r) { r.SetMonthlyByDay(1, none, 0, nullptr); }, 4, "[monthdays count] > 0"},
      {[&](CRecurrence& r) { r.SetMonthlyByDay(1, one, -1, nullptr); }, 4, "nDuration >= 0"},
      {[&](CRecurrence& r) { r.SetMonthlyByDay(1, one, 0, until); }, 4, "pUntilDate == NULL"},
      {[&](CRecurrence& r) { r.SetMonthlyByDay(1, Ints({0}), 0, nullptr); }, 4, kDayBound},
      {[&](CRecurrence& r) { r.SetMonthlyByDay(1, Ints({32}), 0, nullptr); }, 4, kDayBound},
      {[&](CRecurrence& r) { r.SetMonthlyByDay(1, Ints({-32}), 0, nullptr); }, 4, kDayBound},
      {[](CRecurrence& r) { r.SetYearlyByMonth(1, Ints({12, 1}), 0, nullptr); }, 5, nullptr},
      {[&](CRecurrence& r) { r.SetYearlyByMonth(0, one, 0, nullptr); }, 5, "nYearInterval > 0"},
      {[&](CRecurrence& r) { r.SetYearlyByMonth(1, none, 0, nullptr); }, 5, "[months count] > 0"},
      {[&](CRecurrence& r) { r.SetYearlyByMonth(1, one, -1, nullptr); }, 5, "nDuration >= 0"},
      {[&](CRecurrence& r) { r.SetYearlyByMonth(1, one, 0, until); }, 5, "pUntilDate == NULL"},
      {[&](CRecurrence& r) { r.SetYearlyByMonth(1, Ints({0}), 0, nullptr); }, 5, kMonth},
      {[&](CRecurrence& r) { r.SetYearlyByMonth(1, Ints({13}), 0, nullptr); }, 5, kMonth},
      // Yearly by day takes an empty list and an end date.
      {[](CRecurrence& r) { r.SetYearlyByDay(1, Ints({366, 1}), 0, nullptr); }, 6, nullptr},
      {[&](CRecurrence& r) { r.SetYearlyByDay(3, none, 2, until); }, 6, nullptr},
      {[&](CRecurrence& r) { r.SetYearlyByDay(0, one, 0, nullptr); }, 6, "nYearInterval > 0"},
      {[&](CRecurrence& r) { r.SetYearlyByDay(1, one, -1, nullptr); }, 6, "nDuration >= 0"},
      {[&](CRecurrence& r) { r.SetYearlyByDay(1, Ints({0}), 0, nullptr); }, 6, kYearday},
      {[&](CRecurrence& r) { r.SetYearlyByDay(1, Ints({5, 367}), 0, nullptr); }, 6, kYearday},
  };
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CRecurrence before;
  const Array days = Ints({2, 4});
  before.SetWeekly(3, 7, nullptr, &days);
  for (const auto& row : rows) {
    const auto& [call, type, text] = row;
    SCOPED_TRACE(&row - rows);
    CRecurrence recurrence = before;
    if (text != nullptr) {
      EXPECT_DEATH(call(recurrence), testing_support::AssertionPattern(text));
    }
    const ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
    std::string failure;
    try {
      call(recurrence);
    } catch (const AssertionFailure& e) {
      failure = e.text();
    }
    const bool unchanged = recurrence.IsEqual(before) && before.IsEqual(recurrence);
    EXPECT_EQ(std::tuple(failure, recurrence.GetRecurrenceData()->Type(), text == nullptr || unchanged),
              std::tuple(std::string(text != nullptr ? text : ""), text != nullptr ? 2 : type, true));
  }
}

TEST(recurrence, copies_are_deep) {
  CRecurrence original;
  original.SetMonthlyByDay(1, Ints({1, 15}), 0, nullptr);
  CRecurrence copy = original;
  AddSorted(dynamic_cast<MonthlyByDayData&>(*copy.GetRecurrenceData()).ArrayMonthday(), 20);
  const auto& kept = dynamic_cast<const MonthlyByDayData&>(*original.GetRecurrenceData());
  EXPECT_EQ(kept.ArrayMonthday(), Ints({1, 15}));
  CRecurrence assigned;
  assigned.SetDaily(1, 0, nullptr);
  assigned = original;
  EXPECT_TRUE(assigned.IsEqual(original));
  assigned = CRecurrence();
  EXPECT_EQ(assigned.GetRecurrenceData(), nullptr);
  MonthlyByPosData byPos;
  byPos.ArrayWeekPos() = Ints({-1});
  const std::unique_ptr<RecurrenceData> clone = byPos.Clone();
  dynamic_cast<MonthlyByPosData&>(*clone).ArrayWeekPos().emplace_back(6);
  EXPECT_EQ(std::pair(byPos.ArrayWeekPos().size(), RecurrenceData(7).Clone()->Type()), std::pair(std::size_t{1}, 7));
  EXPECT_NE(dynamic_cast<const YearlyByDayData*>(YearlyByDayData().Clone().get()), nullptr);
}

TEST(recurrence_data, is_equal_compares_type_interval_duration_end_date_and_lists) {
  const testing::ScopedDefaultZone zone("America/New_York");
  DailyData base;
  base.setUntilDate(CDateTime(1e9, CDateTime::kTimeZoneTypeLocal));
  const std::function<void(RecurrenceData&)> changes[] = {
      [](RecurrenceData& r) { r.setType(2); }, [](RecurrenceData& r) { r.setInterval(2); },
      [](RecurrenceData& r) { r.setDuration(10); },
      [](RecurrenceData& r) { r.setUntilDate(CDateTime(1e9, CDateTime::kTimeZoneTypeGMT)); },
      [](RecurrenceData& r) { r.setUntilDate(CDateTime(1e9 + 1, CDateTime::kTimeZoneTypeLocal)); },
      // The given value's zone is not kept: the end date takes the default
      // zone of the moment it is set.
      [](RecurrenceData& r) {
        const testing::ScopedDefaultZone tokyo("Asia/Tokyo");
        r.setUntilDate(CDateTime(1e9, CDateTime::kTimeZoneTypeLocal));
      },
  };
  EXPECT_EQ(std::pair(base.IsEqual(DailyData()), DailyData().IsEqual(base)), std::pair(false, false));
  for (const auto& change : changes) {
    DailyData changed = base;
    change(changed);
    EXPECT_EQ(std::pair(base.IsEqual(changed), changed.IsEqual(base)), std::pair(false, false)) << &change - changes;
  }
  // The codec's end date does not take part; a stored end date is valid,
  // whatever the given one said, and made in the zone of the moment.
  DailyData same;
  same.setUntilDateComp(CalendarDate{5.0, u"GMT"});
  const CDateTimeNull madeInTokyo = [] {
    const testing::ScopedDefaultZone tokyo("Asia/Tokyo");
    CDateTimeNull date(1e9, CDateTime::kTimeZoneTypeLocal);
    date.SetStatus(CDateTime::kStatusNull);
    return date;
  }();
  same.setUntilDate(madeInTokyo);
  EXPECT_EQ(std::pair(same.UntilDate()->GetStatus(), base.IsEqual(same)), std::pair(CDateTime::kStatusValid, true));

  // Each kind compares its own lists first, one-sidedly; a kind with lists
  // is never equal to another kind, a kind without lists compares the
  // shared fields only.
  MonthlyByPosData firstMonday, wider, otherWeekday, byPosAsWeekly;
  firstMonday.ArrayWeekPos() = wider.ArrayWeekPos() = otherWeekday.ArrayWeekPos() = Ints({1});
  firstMonday.ArrayWeekday() = Ints({1});
  wider.ArrayWeekPos().emplace_back(-1);
  wider.ArrayWeekday() = Ints({1, 5});
  otherWeekday.ArrayWeekday() = Ints({2});
  MonthlyByDayData fifteenth, twoDays;
  fifteenth.ArrayMonthday() = Ints({15});
  twoDays.ArrayMonthday() = Ints({-1, 15});
  YearlyByMonthData june, december, noMonth;
  june.ArrayMonth() = Ints({6});
  december.ArrayMonth() = Ints({12});
  YearlyByDayData day100, day200, alsoDay100, day100EveryOther;
  day100.ArrayYearday() = alsoDay100.ArrayYearday() = day100EveryOther.ArrayYearday() = Ints({100});
  day200.ArrayYearday() = Ints({200});
  day100EveryOther.setInterval(2);
  WeeklyData weekly;
  DailyData dailyAsWeekly;
  dailyAsWeekly.setType(RecurrenceData::kWeekly);
  byPosAsWeekly.setType(RecurrenceData::kWeekly);
  const std::tuple<const RecurrenceData&, const RecurrenceData&, bool> rows[] = {
      {firstMonday, wider, true},       {wider, firstMonday, false},  {firstMonday, otherWeekday, false},
      {fifteenth, twoDays, true},       {twoDays, fifteenth, false},  {june, december, false},
      {noMonth, june, true},            {day100, day200, false},      {day100, december, false},
      {day100, alsoDay100, true},       {day100, day100EveryOther, false}, {weekly, byPosAsWeekly, false},
      {weekly, dailyAsWeekly, false},   {dailyAsWeekly, weekly, true}};
  for (const auto& row : rows) EXPECT_EQ(std::get<0>(row).IsEqual(std::get<1>(row)), std::get<2>(row)) << &row - rows;
  // CRecurrence compares rules, or their absence.
  CRecurrence noRule, daily;
  daily.SetDaily(1, 0, nullptr);
  EXPECT_EQ(std::tuple(noRule.IsEqual(CRecurrence()), noRule.IsEqual(daily), daily.IsEqual(noRule)),
            std::tuple(true, false, false));
}

}  // namespace
}  // namespace phonepim
