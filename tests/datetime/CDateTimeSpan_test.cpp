#include "phonepim/datetime/CDateTimeSpan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace phonepim {
namespace {

using Parts = std::vector<std::int64_t>;

Parts PartsOf(const CDateTimeSpan& s) {
  return {s.GetDays(), s.GetHours(), s.GetMinutes(), s.GetSeconds(),
          s.GetTotalHours(), s.GetTotalMinutes(), s.GetTotalSeconds()};
}

TEST(span, set_date_time_span_sums_the_parts_without_overflow) {
  CDateTimeSpan span(7.5);
  span.SetDateTimeSpan(1, -1, 0, 0);
  EXPECT_EQ(PartsOf(span), (Parts{0, 23, 0, 0, 23, 1380, 82800}));
  constexpr int kMax = std::numeric_limits<int>::max();
  span.SetDateTimeSpan(kMax, kMax, kMax, kMax);
  EXPECT_EQ(span.GetTotalSeconds(), 193404524732467);
  span.SetDateTimeSpan(std::numeric_limits<int>::min(), 0, 0, 0);
  EXPECT_EQ(span.GetTotalSeconds(), -185542587187200);
}

TEST(span, huge_and_nan_spans_saturate) {
  const CDateTimeSpan huge(1e300);
  EXPECT_EQ(huge.GetTotalSeconds(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(huge.GetDays(), std::numeric_limits<long>::max());
  (void)PartsOf(huge);  // no undefined conversions, for the sanitizers
  EXPECT_EQ(CDateTimeSpan(-1e300).GetTotalMinutes(), std::numeric_limits<std::int64_t>::min());
  const CDateTimeSpan notANumber(std::nan(""));
  EXPECT_EQ(PartsOf(notANumber), Parts(7, 0));
  EXPECT_FALSE(notANumber.IsEqual(notANumber));
}

TEST(span, is_equal_compares_the_others_whole_seconds_with_the_exact_length) {
  const struct {
    double self, other;
    bool equal;
  } rows[] = {{5, 5, true},     {5, 6, false},       {5, 5.7, true},    {5.7, 5, false},
              {5.5, 5.5, false}, {-90, -90.5, true}, {-90, 90, false},  {0, -0.9, true}};
  for (const auto& r : rows) {
    EXPECT_EQ(CDateTimeSpan(r.self).IsEqual(CDateTimeSpan(r.other)), r.equal) << r.self << " " << r.other;
  }
}

}  // namespace
}  // namespace phonepim
