// Fields of instants read in "GMT", which come from day arithmetic within
// the Gregorian range and from ICU outside it: each row is a boundary of
// that split, and both sides must give the calendar's own fields.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "datetime/Gregorian.h"

namespace phonepim {
namespace {

struct Row {
  double instant;
  const char* fields;  // era year-month-day hour:minute:second weekday
};

std::string FieldsInGMT(double instant) {
  const DateComponents f = gregorian::ComponentsInZone(
      instant, u"GMT",
      gregorian::kEraUnit | gregorian::kDateAndTimeUnits | gregorian::kWeekdayUnit);
  char text[96];
  std::snprintf(text, sizeof text, "%lld %lld-%02lld-%02lld %02lld:%02lld:%02lld %lld",
                static_cast<long long>(f.era), static_cast<long long>(f.year),
                static_cast<long long>(f.month), static_cast<long long>(f.day),
                static_cast<long long>(f.hour), static_cast<long long>(f.minute),
                static_cast<long long>(f.second), static_cast<long long>(f.weekday));
  return text;
}

TEST(gmt_fields, match_the_calendar_on_both_sides_of_each_boundary) {
  const Row rows[] = {
      {-12219292800.0, "1 1582-10-15 00:00:00 6"},    // the first Gregorian day
      {-12219292800.001, "1 1582-10-04 23:59:59 5"},  // the Julian day before it
      {-1e-300, "1 1969-12-31 23:59:59 4"},  // rounds to midnight in the arithmetic
      {-0.5, "1 1969-12-31 23:59:59 4"},
      {951782400.0, "1 2000-02-29 00:00:00 3"},
      {4107542400.0, "1 2100-03-01 00:00:00 2"},  // 2100 has no leap day
      {253402300799.0, "1 9999-12-31 23:59:59 6"},
      {253402300800.0, "1 10000-01-01 00:00:00 7"},
  };
  for (const Row& row : rows) EXPECT_EQ(FieldsInGMT(row.instant), row.fields) << row.instant;
}

}  // namespace
}  // namespace phonepim
