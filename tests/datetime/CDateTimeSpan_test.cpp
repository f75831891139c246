#include "phonepim/datetime/CDateTimeSpan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace phonepim {
namespace {

struct SpanParts {
  double seconds;
  long days, hours, minutes, secondsLeft;
  std::int64_t totalHours, totalMinutes, totalSeconds;
};

void PrintTo(const SpanParts& row, std::ostream* os) { *os << row.seconds << " s"; }

class span_parts : public ::testing::TestWithParam<SpanParts> {};

// Every part truncates toward zero, so the parts of a negative span are all
// negative (or 0).
const SpanParts kParts[] = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {93784, 1, 2, 3, 4, 26, 1563, 93784},
    {-93784, -1, -2, -3, -4, -26, -1563, -93784},
    {-90, 0, 0, -1, -30, 0, -1, -90},
    {59.9, 0, 0, 0, 59, 0, 0, 59},
    {-59.9, 0, 0, 0, -59, 0, 0, -59},
    {86399.5, 0, 23, 59, 59, 23, 1439, 86399},
    {86400, 1, 0, 0, 0, 24, 1440, 86400},
    {3600, 0, 1, 0, 0, 1, 60, 3600},
    {-3601, 0, -1, 0, -1, -1, -60, -3601},
    {31622400, 366, 0, 0, 0, 8784, 527040, 31622400},
};

INSTANTIATE_TEST_SUITE_P(table, span_parts, ::testing::ValuesIn(kParts));

TEST_P(span_parts, splits_toward_zero) {
  const SpanParts& row = GetParam();
  const CDateTimeSpan span(row.seconds);
  EXPECT_EQ(row.days, span.GetDays());
  EXPECT_EQ(row.hours, span.GetHours());
  EXPECT_EQ(row.minutes, span.GetMinutes());
  EXPECT_EQ(row.secondsLeft, span.GetSeconds());
  EXPECT_EQ(row.totalHours, span.GetTotalHours());
  EXPECT_EQ(row.totalMinutes, span.GetTotalMinutes());
  EXPECT_EQ(row.totalSeconds, span.GetTotalSeconds());
}

TEST(span, set_date_time_span_adds_the_parts) {
  CDateTimeSpan span(7.5);
  span.SetDateTimeSpan(1, 2, 3, 4);
  EXPECT_EQ(93784, span.GetTotalSeconds());
  EXPECT_EQ(1, span.GetDays());
  EXPECT_EQ(2, span.GetHours());
  EXPECT_EQ(3, span.GetMinutes());
  EXPECT_EQ(4, span.GetSeconds());
  // Mixed signs are summed, not normalised part by part.
  span.SetDateTimeSpan(1, -1, 0, 0);
  EXPECT_EQ(82800, span.GetTotalSeconds());
  EXPECT_EQ(0, span.GetDays());
  EXPECT_EQ(23, span.GetHours());
  // Large parts do not overflow.
  span.SetDateTimeSpan(std::numeric_limits<int>::max(), std::numeric_limits<int>::max(),
                       std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
  EXPECT_EQ(193404524732467, span.GetTotalSeconds());
  span.SetDateTimeSpan(std::numeric_limits<int>::min(), 0, 0, 0);
  EXPECT_EQ(-185542587187200, span.GetTotalSeconds());
}

TEST(span, huge_and_nan_spans_saturate) {
  const CDateTimeSpan huge(1e300);
  EXPECT_EQ(std::numeric_limits<std::int64_t>::max(), huge.GetTotalSeconds());
  EXPECT_EQ(std::numeric_limits<std::int64_t>::max(), huge.GetTotalHours());
  EXPECT_EQ(std::numeric_limits<long>::max(), huge.GetDays());
  const CDateTimeSpan negative(-1e300);
  EXPECT_EQ(std::numeric_limits<std::int64_t>::min(), negative.GetTotalMinutes());
  const CDateTimeSpan notANumber(std::nan(""));
  EXPECT_EQ(0, notANumber.GetTotalSeconds());
  EXPECT_EQ(0, notANumber.GetSeconds());
  EXPECT_FALSE(notANumber.IsEqual(notANumber));
  // The parts of a huge span are computed without undefined conversions.
  (void)huge.GetHours();
  (void)huge.GetMinutes();
  (void)huge.GetSeconds();
}

struct SpanEquality {
  double self, other;
  bool equal;
};

void PrintTo(const SpanEquality& row, std::ostream* os) {
  *os << row.self << " vs " << row.other;
}

class span_is_equal : public ::testing::TestWithParam<SpanEquality> {};

// The other span's whole seconds against this span's exact length.
const SpanEquality kEqualities[] = {
    {0, 0, true},       {5, 5, true},         {5, 6, false},        {5, 5.7, true},
    {5.7, 5, false},    {5.5, 5.5, false},    {-90, -90.5, true},   {-90.5, -90, false},
    {-90, 90, false},   {0, 0.9, true},       {0, -0.9, true},      {86400, 86400, true},
};

INSTANTIATE_TEST_SUITE_P(table, span_is_equal, ::testing::ValuesIn(kEqualities));

TEST_P(span_is_equal, compares_the_others_whole_seconds) {
  const SpanEquality& row = GetParam();
  EXPECT_EQ(row.equal, CDateTimeSpan(row.self).IsEqual(CDateTimeSpan(row.other)));
}

}  // namespace
}  // namespace phonepim
