#include "phonepim/model/RecurrenceData.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "datetime/DateTimeFixtures.h"

namespace phonepim {
namespace {

using testing::ScopedDefaultZone;

Array Ints(std::initializer_list<int> values) {
  Array array;
  for (int v : values) array.emplace_back(v);
  return array;
}

TEST(recurrence_data, kinds_start_with_their_type_every_once_without_count) {
  const std::vector<std::pair<std::unique_ptr<RecurrenceData>, int>> kinds = [] {
    std::vector<std::pair<std::unique_ptr<RecurrenceData>, int>> v;
    v.emplace_back(std::make_unique<DailyData>(), 1);
    v.emplace_back(std::make_unique<WeeklyData>(), 2);
    v.emplace_back(std::make_unique<MonthlyByPosData>(), 3);
    v.emplace_back(std::make_unique<MonthlyByDayData>(), 4);
    v.emplace_back(std::make_unique<YearlyByMonthData>(), 5);
    v.emplace_back(std::make_unique<YearlyByDayData>(), 6);
    v.emplace_back(std::make_unique<RecurrenceData>(9), 9);
    return v;
  }();
  for (const auto& [rule, type] : kinds) {
    EXPECT_EQ(type, rule->Type());
    EXPECT_EQ(1, rule->Interval());
    EXPECT_EQ(0, rule->duration());
    EXPECT_FALSE(rule->UntilDate());
    EXPECT_FALSE(rule->UntilDateComp());
    EXPECT_TRUE(rule->bydaydays().empty());
  }
}

struct NumberLists {
  std::vector<int> a, b;
  bool equal;
};

void PrintTo(const NumberLists& row, std::ostream* os) {
  *os << ::testing::PrintToString(row.a) << " in " << ::testing::PrintToString(row.b);
}

class is_equal_number_array_data : public ::testing::TestWithParam<NumberLists> {};

// Every number of the first list somewhere in the second, and nothing more.
const NumberLists kNumberLists[] = {
    {{}, {}, true},           {{}, {1, 2}, true},         {{1}, {}, false},
    {{1}, {1, 3}, true},      {{1, 3}, {1}, false},       {{3, 1}, {1, 3}, true},
    {{1, 1}, {1}, true},      {{2}, {1, 3}, false},       {{-5, 5}, {5, -5, 0}, true},
};

INSTANTIATE_TEST_SUITE_P(table, is_equal_number_array_data, ::testing::ValuesIn(kNumberLists));

TEST_P(is_equal_number_array_data, is_one_sided) {
  Array a;
  Array b;
  for (int v : GetParam().a) a.emplace_back(v);
  for (int v : GetParam().b) b.emplace_back(v);
  EXPECT_EQ(GetParam().equal, IsEqualNumberArrayData(a, b));
}

TEST(recurrence_data, is_equal_compares_type_interval_duration_and_end_date) {
  const ScopedDefaultZone zone("America/New_York");
  const DailyData base;
  const std::function<void(RecurrenceData&)> changes[] = {
      [](RecurrenceData& r) { r.setType(2); },
      [](RecurrenceData& r) { r.setInterval(2); },
      [](RecurrenceData& r) { r.setDuration(10); },
      [](RecurrenceData& r) { r.setUntilDate(CDateTime(0.0, CDateTime::kTimeZoneTypeGMT)); },
  };
  int index = 0;
  for (const auto& change : changes) {
    SCOPED_TRACE(index++);
    DailyData changed;
    change(changed);
    EXPECT_FALSE(base.IsEqual(changed));
    EXPECT_FALSE(changed.IsEqual(base));
  }
  // The codec's own fields do not take part.
  DailyData codecFields;
  codecFields.setWeeklyDayType(3);
  codecFields.setDayAtMonthly(12);
  codecFields.Setbydaydays(Ints({1, 2}));
  codecFields.Setbydayfreq(Ints({-1}));
  codecFields.setUntilDateComp(CalendarDate{5.0, u"GMT"});
  EXPECT_TRUE(base.IsEqual(codecFields));
  EXPECT_EQ(3, codecFields.WeeklyDayType());
  EXPECT_EQ(12, codecFields.dayAtMonthly());
  EXPECT_EQ(Ints({1, 2}), codecFields.bydaydays());
  EXPECT_EQ(Ints({-1}), codecFields.bydayfreq());
}

TEST(recurrence_data, end_dates_compare_by_instant_type_and_zone) {
  const ScopedDefaultZone zone("America/New_York");
  DailyData a;
  DailyData b;
  a.setUntilDate(CDateTime(1e9, CDateTime::kTimeZoneTypeLocal));
  b.setUntilDate(CDateTime(1e9, CDateTime::kTimeZoneTypeLocal));
  EXPECT_TRUE(a.IsEqual(b));
  b.setUntilDate(CDateTime(1e9, CDateTime::kTimeZoneTypeGMT));
  EXPECT_FALSE(a.IsEqual(b));
  b.setUntilDate(CDateTime(1e9 + 1, CDateTime::kTimeZoneTypeLocal));
  EXPECT_FALSE(a.IsEqual(b));
  // Each stored end date is valid, whatever the given one said.
  CDateTime nullDate(1e9, CDateTime::kTimeZoneTypeLocal);
  nullDate.SetStatus(CDateTime::kStatusNull);
  b.setUntilDate(nullDate);
  EXPECT_EQ(CDateTime::kStatusValid, b.UntilDate()->GetStatus());
  EXPECT_TRUE(a.IsEqual(b));
  // The given value's zone is not kept: the end date takes the default zone
  // of the moment it is set.
  const CDateTimeNull madeInTokyo = [] {
    const ScopedDefaultZone tokyo("Asia/Tokyo");
    return CDateTimeNull(1e9, CDateTime::kTimeZoneTypeLocal);
  }();
  b.setUntilDate(madeInTokyo);
  EXPECT_TRUE(a.IsEqual(b));
  {
    const ScopedDefaultZone tokyo("Asia/Tokyo");
    b.setUntilDate(CDateTime(1e9, CDateTime::kTimeZoneTypeLocal));
  }
  EXPECT_FALSE(a.IsEqual(b));
}

TEST(recurrence_data, lists_are_compared_own_list_first) {
  WeeklyData monday;
  monday.ArrayWeekday() = Ints({1});
  WeeklyData mondayWednesday;
  mondayWednesday.ArrayWeekday() = Ints({1, 3});
  EXPECT_TRUE(monday.IsEqual(mondayWednesday));
  EXPECT_FALSE(mondayWednesday.IsEqual(monday));

  MonthlyByPosData firstMonday;
  firstMonday.ArrayWeekPos() = Ints({1});
  firstMonday.ArrayWeekday() = Ints({1});
  MonthlyByPosData wider;
  wider.ArrayWeekPos() = Ints({1, -1});
  wider.ArrayWeekday() = Ints({1, 5});
  EXPECT_TRUE(firstMonday.IsEqual(wider));
  EXPECT_FALSE(wider.IsEqual(firstMonday));
  MonthlyByPosData otherPosition = firstMonday;
  otherPosition.ArrayWeekPos() = Ints({2});
  EXPECT_FALSE(firstMonday.IsEqual(otherPosition));
  MonthlyByPosData otherWeekday = firstMonday;
  otherWeekday.ArrayWeekday() = Ints({2});
  EXPECT_FALSE(firstMonday.IsEqual(otherWeekday));

  MonthlyByDayData fifteenth;
  fifteenth.ArrayMonthday() = Ints({15});
  MonthlyByDayData twoDays;
  twoDays.ArrayMonthday() = Ints({-1, 15});
  EXPECT_TRUE(fifteenth.IsEqual(twoDays));
  EXPECT_FALSE(twoDays.IsEqual(fifteenth));

  YearlyByMonthData june;
  june.ArrayMonth() = Ints({6});
  YearlyByMonthData december;
  december.ArrayMonth() = Ints({12});
  EXPECT_FALSE(june.IsEqual(december));
  EXPECT_TRUE(YearlyByMonthData().IsEqual(june));

  YearlyByDayData day100;
  day100.ArrayYearday() = Ints({100});
  YearlyByDayData day200;
  day200.ArrayYearday() = Ints({200});
  EXPECT_FALSE(day100.IsEqual(day200));
  EXPECT_TRUE(day100.IsEqual(day100));
}

TEST(recurrence_data, other_kinds_are_never_equal_to_a_kind_with_lists) {
  WeeklyData weekly;
  MonthlyByPosData byPos;
  byPos.setType(RecurrenceData::kWeekly);
  EXPECT_FALSE(weekly.IsEqual(byPos));
  DailyData daily;
  daily.setType(RecurrenceData::kWeekly);
  EXPECT_FALSE(weekly.IsEqual(daily));
  // A kind without lists only compares the shared fields.
  EXPECT_TRUE(daily.IsEqual(weekly));
}

TEST(recurrence_data, clone_copies_kind_and_lists) {
  MonthlyByPosData original;
  original.setInterval(3);
  original.ArrayWeekPos() = Ints({-1});
  original.ArrayWeekday() = Ints({5});
  const std::unique_ptr<RecurrenceData> clone = original.Clone();
  auto* copy = dynamic_cast<MonthlyByPosData*>(clone.get());
  ASSERT_NE(nullptr, copy);
  EXPECT_TRUE(copy->IsEqual(original));
  EXPECT_TRUE(original.IsEqual(*copy));
  copy->ArrayWeekday().emplace_back(6);
  EXPECT_EQ(1u, original.ArrayWeekday().size());

  const RecurrenceData plain(7);
  EXPECT_EQ(7, plain.Clone()->Type());
  EXPECT_NE(nullptr, dynamic_cast<const YearlyByDayData*>(YearlyByDayData().Clone().get()));
}

}  // namespace
}  // namespace phonepim
