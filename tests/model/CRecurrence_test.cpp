#include "phonepim/model/CRecurrence.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace {

using testing::ScopedDefaultZone;

Array Ints(std::initializer_list<int> values) {
  Array array;
  for (int v : values) array.emplace_back(v);
  return array;
}

std::vector<std::int64_t> Numbers(const Array& array) {
  std::vector<std::int64_t> numbers;
  for (const Value& v : array) numbers.push_back(v.get<std::int64_t>());
  return numbers;
}

// The death-test pattern for an assertion text: every regex character in it
// is taken literally.
std::string FailurePattern(const std::string& text) {
  std::string pattern = "Assertion failed: \\(";
  for (char c : text) {
    if (std::string("\\^$.|?*+()[]{}").find(c) != std::string::npos) pattern += '\\';
    pattern += c;
  }
  return pattern + "\\)";
}

const CDateTime& AnUntilDate() {
  static const CDateTime until(1262304000.0, CDateTime::kTimeZoneTypeGMT);
  return until;
}

struct SetterCase {
  std::string name;
  std::function<void(CRecurrence&)> call;
  int type;             // the kind built when accepted
  const char* failure;  // the assertion text, nullptr when accepted
};

void PrintTo(const SetterCase& c, std::ostream* os) { *os << c.name; }

const Array kNoList;
const CDateTime* const kOpen = nullptr;

// The bounds of every setter: each row is one call that is accepted (it
// builds a rule of `type`) or stops at the named assertion.
std::vector<SetterCase> SetterCases() {
  const CDateTime* until = &AnUntilDate();
  const Array one = Ints({1});
  return {
      // Daily: 1 to 200 days.
      {"DailyInterval1", [](CRecurrence& r) { r.SetDaily(1, 0, kOpen); }, 1, nullptr},
      {"DailyInterval200", [](CRecurrence& r) { r.SetDaily(200, 9, kOpen); }, 1, nullptr},
      {"DailyInterval0", [](CRecurrence& r) { r.SetDaily(0, 0, kOpen); }, 1,
       "nDayInterval > 0 && nDayInterval <= 200"},
      {"DailyInterval201", [](CRecurrence& r) { r.SetDaily(201, 0, kOpen); }, 1,
       "nDayInterval > 0 && nDayInterval <= 200"},
      {"DailyIntervalNegative", [](CRecurrence& r) { r.SetDaily(INT_MIN, 0, kOpen); }, 1,
       "nDayInterval > 0 && nDayInterval <= 200"},
      {"DailyDurationNegative", [](CRecurrence& r) { r.SetDaily(1, -1, kOpen); }, 1,
       "nDuration >= 0"},
      {"DailyUntilDate", [until](CRecurrence& r) { r.SetDaily(1, 0, until); }, 1,
       "pUntilDate == NULL"},
      {"DailyIntervalCheckedFirst", [until](CRecurrence& r) { r.SetDaily(0, -1, until); }, 1,
       "nDayInterval > 0 && nDayInterval <= 200"},

      // Weekly: no upper bound on the interval; weekdays 0 to 6 or no list.
      {"WeeklyNoList", [](CRecurrence& r) { r.SetWeekly(1, 0, kOpen, nullptr); }, 2, nullptr},
      {"WeeklyInterval1000",
       [](CRecurrence& r) {
         const Array days = Ints({0, 6});
         r.SetWeekly(1000, 0, kOpen, &days);
       },
       2, nullptr},
      {"WeeklyInterval0", [](CRecurrence& r) { r.SetWeekly(0, 0, kOpen, nullptr); }, 2,
       "nWeekInterval > 0"},
      {"WeeklyDurationNegative", [](CRecurrence& r) { r.SetWeekly(1, -5, kOpen, nullptr); },
       2, "nDuration >= 0"},
      {"WeeklyUntilDate", [until](CRecurrence& r) { r.SetWeekly(1, 0, until, nullptr); }, 2,
       "pUntilDate == NULL"},
      {"WeeklyEmptyList", [](CRecurrence& r) { r.SetWeekly(1, 0, kOpen, &kNoList); }, 2,
       "pWeekdays == NULL || [pWeekdays count] > 0"},
      {"WeeklyDay7",
       [](CRecurrence& r) {
         const Array days = Ints({1, 7});
         r.SetWeekly(1, 0, kOpen, &days);
       },
       2, "[num intValue] >= 0 && [num intValue] < 7"},
      {"WeeklyDayNegative",
       [](CRecurrence& r) {
         const Array days = Ints({-1});
         r.SetWeekly(1, 0, kOpen, &days);
       },
       2, "[num intValue] >= 0 && [num intValue] < 7"},

      // Monthly by position: -5..5 without 0, weekdays 0..6, both lists set.
      {"ByPosEdges",
       [](CRecurrence& r) { r.SetMonthlyByPos(1, Ints({5, -5}), Ints({6, 0}), 0, kOpen); }, 3,
       nullptr},
      {"ByPosInterval0",
       [one](CRecurrence& r) { r.SetMonthlyByPos(0, one, one, 0, kOpen); }, 3,
       "nMonthInterval > 0"},
      {"ByPosNoPositions",
       [one](CRecurrence& r) { r.SetMonthlyByPos(1, kNoList, one, 0, kOpen); }, 3,
       "[weekposes count] > 0"},
      {"ByPosNoWeekdays",
       [one](CRecurrence& r) { r.SetMonthlyByPos(1, one, kNoList, 0, kOpen); }, 3,
       "[weekdays count] > 0"},
      {"ByPosDurationNegative",
       [one](CRecurrence& r) { r.SetMonthlyByPos(1, one, one, -1, kOpen); }, 3,
       "nDuration >= 0"},
      {"ByPosUntilDate",
       [one, until](CRecurrence& r) { r.SetMonthlyByPos(1, one, one, 0, until); }, 3,
       "pUntilDate == NULL"},
      {"ByPosPosition0",
       [one](CRecurrence& r) { r.SetMonthlyByPos(1, Ints({0}), one, 0, kOpen); }, 3,
       "[num intValue] >= -5 && [num intValue] <= 5 && [num intValue] != 0"},
      {"ByPosPosition6",
       [one](CRecurrence& r) { r.SetMonthlyByPos(1, Ints({1, 6}), one, 0, kOpen); }, 3,
       "[num intValue] >= -5 && [num intValue] <= 5 && [num intValue] != 0"},
      {"ByPosPositionMinus6",
       [one](CRecurrence& r) { r.SetMonthlyByPos(1, Ints({-6}), one, 0, kOpen); }, 3,
       "[num intValue] >= -5 && [num intValue] <= 5 && [num intValue] != 0"},
      {"ByPosWeekday7",
       [one](CRecurrence& r) { r.SetMonthlyByPos(1, one, Ints({7}), 0, kOpen); }, 3,
       "[num intValue] >= 0 &&[num intValue] < 7"},
      {"ByPosWeekdayNegative",
       [one](CRecurrence& r) { r.SetMonthlyByPos(1, one, Ints({-1}), 0, kOpen); }, 3,
       "[num intValue] >= 0 &&[num intValue] < 7"},
      {"ByPosPositionsCheckedBeforeWeekdays",
       [](CRecurrence& r) { r.SetMonthlyByPos(1, Ints({9}), Ints({9}), 0, kOpen); }, 3,
       "[num intValue] >= -5 && [num intValue] <= 5 && [num intValue] != 0"},

      // Monthly by day: -31..31 without 0.
      {"ByDayEdges", [](CRecurrence& r) { r.SetMonthlyByDay(1, Ints({31, -31}), 0, kOpen); },
       4, nullptr},
      {"ByDayInterval0", [one](CRecurrence& r) { r.SetMonthlyByDay(0, one, 0, kOpen); }, 4,
       "nMonthInterval > 0"},
      {"ByDayNoDays", [](CRecurrence& r) { r.SetMonthlyByDay(1, kNoList, 0, kOpen); }, 4,
       "[monthdays count] > 0"},
      {"ByDayDurationNegative", [one](CRecurrence& r) { r.SetMonthlyByDay(1, one, -1, kOpen); },
       4, "nDuration >= 0"},
      {"ByDayUntilDate",
       [one, until](CRecurrence& r) { r.SetMonthlyByDay(1, one, 0, until); }, 4,
       "pUntilDate == NULL"},
      {"ByDayDay0", [](CRecurrence& r) { r.SetMonthlyByDay(1, Ints({0}), 0, kOpen); }, 4,
       "[num intValue]>= -31 && [num intValue]<= 31 && [num intValue]!= 0"},
      {"ByDayDay32", [](CRecurrence& r) { r.SetMonthlyByDay(1, Ints({32}), 0, kOpen); }, 4,
       "[num intValue]>= -31 && [num intValue]<= 31 && [num intValue]!= 0"},
      {"ByDayDayMinus32", [](CRecurrence& r) { r.SetMonthlyByDay(1, Ints({-32}), 0, kOpen); },
       4, "[num intValue]>= -31 && [num intValue]<= 31 && [num intValue]!= 0"},

      // Yearly by month: 1..12.
      {"ByMonthEdges", [](CRecurrence& r) { r.SetYearlyByMonth(1, Ints({12, 1}), 0, kOpen); },
       5, nullptr},
      {"ByMonthInterval0", [one](CRecurrence& r) { r.SetYearlyByMonth(0, one, 0, kOpen); }, 5,
       "nYearInterval > 0"},
      {"ByMonthNoMonths", [](CRecurrence& r) { r.SetYearlyByMonth(1, kNoList, 0, kOpen); }, 5,
       "[months count] > 0"},
      {"ByMonthDurationNegative",
       [one](CRecurrence& r) { r.SetYearlyByMonth(1, one, -1, kOpen); }, 5, "nDuration >= 0"},
      {"ByMonthUntilDate",
       [one, until](CRecurrence& r) { r.SetYearlyByMonth(1, one, 0, until); }, 5,
       "pUntilDate == NULL"},
      {"ByMonthMonth0", [](CRecurrence& r) { r.SetYearlyByMonth(1, Ints({0}), 0, kOpen); }, 5,
       "[num intValue] >= 1 && [num intValue] <= 12"},
      {"ByMonthMonth13", [](CRecurrence& r) { r.SetYearlyByMonth(1, Ints({13}), 0, kOpen); },
       5, "[num intValue] >= 1 && [num intValue] <= 12"},

      // Yearly by day: 1..366; an empty list and an end date are taken.
      {"ByYearDayEdges",
       [](CRecurrence& r) { r.SetYearlyByDay(1, Ints({366, 1}), 0, kOpen); }, 6, nullptr},
      {"ByYearDayEmpty", [](CRecurrence& r) { r.SetYearlyByDay(3, kNoList, 2, kOpen); }, 6,
       nullptr},
      {"ByYearDayUntilDate",
       [one, until](CRecurrence& r) { r.SetYearlyByDay(1, one, 0, until); }, 6, nullptr},
      {"ByYearDayInterval0", [one](CRecurrence& r) { r.SetYearlyByDay(0, one, 0, kOpen); }, 6,
       "nYearInterval > 0"},
      {"ByYearDayDurationNegative",
       [one](CRecurrence& r) { r.SetYearlyByDay(1, one, -1, kOpen); }, 6, "nDuration >= 0"},
      {"ByYearDayDay0", [](CRecurrence& r) { r.SetYearlyByDay(1, Ints({0}), 0, kOpen); }, 6,
       "[num intValue] >= 1 && [num intValue] <= 366"},
      {"ByYearDayDay367",
       [](CRecurrence& r) { r.SetYearlyByDay(1, Ints({5, 367}), 0, kOpen); }, 6,
       "[num intValue] >= 1 && [num intValue] <= 366"},
  };
}

class recurrence_setter : public ::testing::TestWithParam<SetterCase> {};

INSTANTIATE_TEST_SUITE_P(bounds, recurrence_setter, ::testing::ValuesIn(SetterCases()),
                         [](const auto& info) { return info.param.name; });

TEST_P(recurrence_setter, accepts_or_stops_with_the_exact_text) {
  const SetterCase& c = GetParam();
  CRecurrence recurrence;
  if (c.failure == nullptr) {
    c.call(recurrence);
    ASSERT_NE(nullptr, recurrence.GetRecurrenceData());
    EXPECT_EQ(c.type, recurrence.GetRecurrenceData()->Type());
  } else {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(c.call(recurrence), FailurePattern(c.failure));
  }
}

TEST_P(recurrence_setter, only_an_accepted_call_replaces_the_rule) {
  const SetterCase& c = GetParam();
  const ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  CRecurrence recurrence;
  const Array days = Ints({2, 4});
  recurrence.SetWeekly(3, 7, nullptr, &days);
  if (c.failure == nullptr) {
    c.call(recurrence);
    ASSERT_NE(nullptr, recurrence.GetRecurrenceData());
    EXPECT_EQ(c.type, recurrence.GetRecurrenceData()->Type());
    if (c.type != RecurrenceData::kWeekly) {
      EXPECT_EQ(nullptr, dynamic_cast<const WeeklyData*>(recurrence.GetRecurrenceData()));
    }
    return;
  }
  try {
    c.call(recurrence);
    FAIL() << "no assertion";
  } catch (const AssertionFailure& failure) {
    EXPECT_EQ(c.failure, failure.text());
  }
  const auto* weekly = dynamic_cast<const WeeklyData*>(recurrence.GetRecurrenceData());
  ASSERT_NE(nullptr, weekly);
  EXPECT_EQ(3, weekly->Interval());
  EXPECT_EQ(7, weekly->duration());
  EXPECT_EQ((std::vector<std::int64_t>{2, 4}), Numbers(weekly->ArrayWeekday()));
}

TEST(recurrence, setters_fill_the_rule_in_ascending_order) {
  CRecurrence recurrence;
  recurrence.SetDaily(200, 12, nullptr);
  const RecurrenceData* daily = recurrence.GetRecurrenceData();
  ASSERT_NE(nullptr, dynamic_cast<const DailyData*>(daily));
  EXPECT_EQ(200, daily->Interval());
  EXPECT_EQ(12, daily->duration());
  EXPECT_FALSE(daily->UntilDate());

  const Array weekdays = Ints({5, 1, 3, 1});
  recurrence.SetWeekly(2, 0, nullptr, &weekdays);
  const auto* weekly = dynamic_cast<const WeeklyData*>(recurrence.GetRecurrenceData());
  ASSERT_NE(nullptr, weekly);
  EXPECT_EQ((std::vector<std::int64_t>{1, 3, 5}), Numbers(weekly->ArrayWeekday()));
  EXPECT_EQ(2, weekly->Interval());
  EXPECT_EQ(0, weekly->duration());

  recurrence.SetWeekly(1, 0, nullptr, nullptr);
  weekly = dynamic_cast<const WeeklyData*>(recurrence.GetRecurrenceData());
  ASSERT_NE(nullptr, weekly);
  EXPECT_TRUE(weekly->ArrayWeekday().empty());

  recurrence.SetMonthlyByPos(4, Ints({-1, 2, -5, 2}), Ints({6, 0}), 3, nullptr);
  const auto* byPos = dynamic_cast<const MonthlyByPosData*>(recurrence.GetRecurrenceData());
  ASSERT_NE(nullptr, byPos);
  EXPECT_EQ((std::vector<std::int64_t>{-5, -1, 2}), Numbers(byPos->ArrayWeekPos()));
  EXPECT_EQ((std::vector<std::int64_t>{0, 6}), Numbers(byPos->ArrayWeekday()));
  EXPECT_EQ(4, byPos->Interval());
  EXPECT_EQ(3, byPos->duration());

  recurrence.SetMonthlyByDay(1, Ints({31, -31, 15}), 0, nullptr);
  const auto* byDay = dynamic_cast<const MonthlyByDayData*>(recurrence.GetRecurrenceData());
  ASSERT_NE(nullptr, byDay);
  EXPECT_EQ((std::vector<std::int64_t>{-31, 15, 31}), Numbers(byDay->ArrayMonthday()));

  recurrence.SetYearlyByMonth(1, Ints({12, 1, 12}), 0, nullptr);
  const auto* byMonth = dynamic_cast<const YearlyByMonthData*>(recurrence.GetRecurrenceData());
  ASSERT_NE(nullptr, byMonth);
  EXPECT_EQ((std::vector<std::int64_t>{1, 12}), Numbers(byMonth->ArrayMonth()));
}

TEST(recurrence, yearly_by_day_keeps_its_end_date) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  CDateTime until(MakeDateComponents(2010, 1, 1, 9, 0, 0), CDateTime::kTimeZoneTypeLocal);
  until.SetStatus(CDateTime::kStatusNull);
  CRecurrence recurrence;
  recurrence.SetYearlyByDay(2, Ints({366, 100, 1}), 5, &until);
  const auto* byYearDay = dynamic_cast<const YearlyByDayData*>(recurrence.GetRecurrenceData());
  ASSERT_NE(nullptr, byYearDay);
  EXPECT_EQ((std::vector<std::int64_t>{1, 100, 366}), Numbers(byYearDay->ArrayYearday()));
  EXPECT_EQ(2, byYearDay->Interval());
  EXPECT_EQ(5, byYearDay->duration());
  ASSERT_TRUE(byYearDay->UntilDate());
  const CDateTimeNull& stored = *byYearDay->UntilDate();
  // Made from the instant and the type: valid, and without the local bias.
  EXPECT_EQ(CDateTime::kStatusValid, stored.GetStatus());
  EXPECT_EQ(1262304000.0, stored.date());
  EXPECT_EQ(CDateTime::kTimeZoneTypeLocal, stored.timeZoneType());
  EXPECT_EQ(32400, until.bias());
  EXPECT_EQ(0, stored.bias());
}

TEST(recurrence, reset_drops_the_rule) {
  CRecurrence recurrence;
  recurrence.SetDaily(1, 0, nullptr);
  recurrence.ResetRecurrenceData();
  EXPECT_EQ(nullptr, recurrence.GetRecurrenceData());
  EXPECT_EQ(nullptr, recurrence.GetNestedRecurrenceData());
}

TEST(recurrence, copies_are_deep) {
  CRecurrence original;
  original.SetMonthlyByDay(1, Ints({1, 15}), 0, nullptr);
  CRecurrence copy = original;
  auto* copied = dynamic_cast<MonthlyByDayData*>(copy.GetRecurrenceData());
  ASSERT_NE(nullptr, copied);
  ASSERT_NE(original.GetRecurrenceData(), copy.GetRecurrenceData());
  AddSorted(copied->ArrayMonthday(), 20);
  copied->setInterval(6);
  const auto* kept = dynamic_cast<const MonthlyByDayData*>(original.GetRecurrenceData());
  EXPECT_EQ((std::vector<std::int64_t>{1, 15}), Numbers(kept->ArrayMonthday()));
  EXPECT_EQ(1, kept->Interval());

  CRecurrence assigned;
  assigned.SetDaily(1, 0, nullptr);
  assigned = original;
  EXPECT_NE(nullptr, dynamic_cast<const MonthlyByDayData*>(assigned.GetRecurrenceData()));
  assigned = CRecurrence();
  EXPECT_EQ(nullptr, assigned.GetRecurrenceData());
}

TEST(recurrence, is_equal_with_and_without_rules) {
  CRecurrence none;
  CRecurrence otherNone;
  EXPECT_TRUE(none.IsEqual(otherNone));

  CRecurrence daily;
  daily.SetDaily(1, 0, nullptr);
  EXPECT_FALSE(none.IsEqual(daily));
  EXPECT_FALSE(daily.IsEqual(none));

  CRecurrence sameDaily;
  sameDaily.SetDaily(1, 0, nullptr);
  EXPECT_TRUE(daily.IsEqual(sameDaily));
  sameDaily.SetDaily(2, 0, nullptr);
  EXPECT_FALSE(daily.IsEqual(sameDaily));

  // The one-sided list comparison shows through.
  const Array monday = Ints({1});
  const Array mondayWednesday = Ints({3, 1});
  CRecurrence onMonday;
  onMonday.SetWeekly(1, 0, nullptr, &monday);
  CRecurrence onTwoDays;
  onTwoDays.SetWeekly(1, 0, nullptr, &mondayWednesday);
  EXPECT_TRUE(onMonday.IsEqual(onTwoDays));
  EXPECT_FALSE(onTwoDays.IsEqual(onMonday));
}

struct SortedCase {
  std::vector<int> start;
  std::vector<int> added;
  std::vector<std::int64_t> expected;
};

void PrintTo(const SortedCase& row, std::ostream* os) {
  *os << ::testing::PrintToString(row.start) << " + " << ::testing::PrintToString(row.added);
}

class add_sorted : public ::testing::TestWithParam<SortedCase> {};

const SortedCase kSortedCases[] = {
    {{}, {3, 1, 3, 2}, {1, 2, 3}},
    {{}, {}, {}},
    {{}, {5}, {5}},
    {{}, {1, 2, 3}, {1, 2, 3}},
    {{}, {3, 2, 1}, {1, 2, 3}},
    {{}, {2, 2, 2}, {2}},
    {{}, {-5, 5, -1, 0, -1}, {-5, -1, 0, 5}},
    {{}, {INT_MAX, INT_MIN, 0, INT_MIN}, {INT_MIN, 0, INT_MAX}},
    {{1, 5}, {3}, {1, 3, 5}},
    {{1, 5}, {0, 6}, {0, 1, 5, 6}},
    // An unsorted list: the walk from the end decides, not the sorted place.
    {{5, 1}, {3}, {5, 1, 3}},
    {{5, 1}, {5}, {5, 1, 5}},
    {{5, 1}, {0}, {0, 5, 1}},
    {{5, 1}, {1}, {5, 1}},
};

INSTANTIATE_TEST_SUITE_P(table, add_sorted, ::testing::ValuesIn(kSortedCases));

TEST_P(add_sorted, walks_from_the_end) {
  Array array;
  for (int v : GetParam().start) array.emplace_back(v);
  for (int v : GetParam().added) AddSorted(array, v);
  EXPECT_EQ(GetParam().expected, Numbers(array));
}

}  // namespace
}  // namespace phonepim
