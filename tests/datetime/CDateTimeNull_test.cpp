#include "phonepim/datetime/CDateTimeNull.h"

#include <gtest/gtest.h>

#include "datetime/DateTimeFixtures.h"

namespace phonepim {
namespace {

using testing::ScopedClock;
using testing::ScopedDefaultZone;

TEST(date_time_null, starts_null_at_now) {
  const ScopedDefaultZone zone("America/New_York");
  const ScopedClock clock(1246449600.0);
  const CDateTimeNull value;
  EXPECT_EQ(CDateTime::kStatusNull, value.GetStatus());
  EXPECT_EQ(1246449600.0, value.date());
  EXPECT_EQ(-14400, value.bias());
  EXPECT_EQ(8, value.hour());
  EXPECT_EQ(0xFFFF, value.systemTime().wDayOfWeek);
}

TEST(date_time_null, inherited_constructors_make_valid_values) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  const CDateTimeNull fromDate(1235210400.0, CDateTime::kTimeZoneTypeGMT);
  EXPECT_EQ(CDateTime::kStatusValid, fromDate.GetStatus());
  EXPECT_EQ(u"GMT", fromDate.timeZone());
  const CDateTimeNull fromFields(MakeDateComponents(2009, 2, 21, 10, 0, 0),
                                 CDateTime::kTimeZoneTypeLocal);
  EXPECT_EQ(CDateTime::kStatusValid, fromFields.GetStatus());
  EXPECT_EQ(32400, fromFields.bias());
}

TEST(date_time_null, set_date_time_takes_the_date_but_stays_null) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  CDateTimeNull value;
  const CDateTime given(MakeDateComponents(2009, 2, 21, 10, 0, 0), CDateTime::kTimeZoneTypeLocal);
  value.SetDateTime(given);
  EXPECT_EQ(CDateTime::kStatusNull, value.GetStatus());
  EXPECT_TRUE(value.IsEqual(given));
  EXPECT_EQ(32400, value.bias());
  EXPECT_STREQ("Asia/Tokyo", value.timeZoneInformation().StandardName);

  CDateTimeNull valid(0.0, CDateTime::kTimeZoneTypeLocal);
  CDateTime nullDate(5.0, CDateTime::kTimeZoneTypeGMT);
  nullDate.SetStatus(CDateTime::kStatusNull);
  valid.SetDateTime(nullDate);
  EXPECT_EQ(CDateTime::kStatusValid, valid.GetStatus());
  EXPECT_EQ(CDateTime::kTimeZoneTypeGMT, valid.timeZoneType());
  EXPECT_EQ(5.0, valid.date());
}

TEST(date_time_null, null_and_the_plain_date_time_view) {
  const ScopedDefaultZone zone("UTC");
  CDateTimeNull value(100.0, CDateTime::kTimeZoneTypeLocal);
  CDateTime& plain = value.CDateTime();
  EXPECT_EQ(static_cast<CDateTime*>(&value), &plain);
  plain.SetYear(2009, 1, 1, 0, 0, 0);
  EXPECT_EQ(1230768000.0, value.date());
  value.Null();
  EXPECT_EQ(CDateTime::kStatusNull, plain.GetStatus());

  CDateTime valid(7.0, CDateTime::kTimeZoneTypeLocal);
  const CDateTimeNull wrapped(valid);
  EXPECT_EQ(CDateTime::kStatusValid, wrapped.GetStatus());
  EXPECT_TRUE(wrapped.IsEqual(valid));
}

}  // namespace
}  // namespace phonepim
