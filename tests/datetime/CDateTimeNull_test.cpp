#include "phonepim/datetime/CDateTimeNull.h"

#include <gtest/gtest.h>

#include "datetime/DateTimeFixtures.h"

namespace phonepim {
namespace {

using testing::ScopedClock;
using testing::ScopedDefaultZone;

TEST(date_time_null, starts_null_at_now_and_set_date_time_keeps_the_status) {
  const ScopedDefaultZone zone("America/New_York");
  const ScopedClock clock(1246449600.0);
  CDateTimeNull value;
  EXPECT_EQ(value.GetStatus(), CDateTime::kStatusNull);
  EXPECT_EQ(value.date(), 1246449600.0);
  EXPECT_EQ(value.bias(), -14400);
  EXPECT_EQ(value.hour(), 8);
  const CDateTime given(MakeDateComponents(2009, 2, 21, 10, 0, 0), CDateTime::kTimeZoneTypeLocal);
  value.SetDateTime(given);
  EXPECT_EQ(value.GetStatus(), CDateTime::kStatusNull);
  EXPECT_TRUE(value.IsEqual(given));
  EXPECT_EQ(value.bias(), -18000);
  EXPECT_STREQ(value.timeZoneInformation().StandardName, "America/New_York");

  // The inherited constructors make valid values, and stay so.
  CDateTimeNull valid(0.0, CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(valid.GetStatus(), CDateTime::kStatusValid);
  CDateTime nullDate(5.0, CDateTime::kTimeZoneTypeGMT);
  nullDate.SetStatus(CDateTime::kStatusNull);
  valid.SetDateTime(nullDate);
  EXPECT_EQ(valid.GetStatus(), CDateTime::kStatusValid);
  EXPECT_EQ(valid.timeZoneType(), CDateTime::kTimeZoneTypeGMT);
  EXPECT_EQ(valid.date(), 5.0);
  CDateTime& plain = valid.CDateTime();
  EXPECT_EQ(&plain, static_cast<CDateTime*>(&valid));
  valid.Null();
  EXPECT_EQ(plain.GetStatus(), CDateTime::kStatusNull);
  EXPECT_EQ(CDateTimeNull(given).GetStatus(), CDateTime::kStatusValid);
}

}  // namespace
}  // namespace phonepim
