#include "phonepim/datetime/CTimeZoneInfo.h"

#include <gtest/gtest.h>

#include <functional>

#include "datetime/DateTimeFixtures.h"

namespace phonepim {
namespace {

using testing::ScopedDefaultZone;

CTimeZoneInfo FullInfo() {
  CTimeZoneInfo info;
  info.Bias = CDateTimeSpan(32400);
  info.DaylightBias = CDateTimeSpan(36000);
  info.DaylightBegin = CDateTime::dateWithYear(2009, 4, 1, 2, 0, 0);
  info.DaylightEnd = CDateTime::dateWithYear(2009, 10, 1, 2, 0, 0);
  info.StandardName = u"JST";
  info.DaylightName = u"JDT";
  info.mTimezone = u"GMT+09:00";
  return info;
}

TEST(time_zone_info, a_complete_info_equals_itself_only) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  const CTimeZoneInfo info = FullInfo();
  EXPECT_TRUE(info.IsEqual(info));
  // The spans are compared as objects, so a copy with equal contents is
  // another zone description.
  const CTimeZoneInfo copy = info;
  EXPECT_FALSE(info.IsEqual(copy));
  EXPECT_FALSE(copy.IsEqual(info));
  EXPECT_EQ(u"GMT+09:00", info.TimeZone());
}

TEST(time_zone_info, any_missing_compared_field_makes_it_unequal) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  const std::function<void(CTimeZoneInfo&)> drops[] = {
      [](CTimeZoneInfo& i) { i.Bias.reset(); },
      [](CTimeZoneInfo& i) { i.DaylightBias.reset(); },
      [](CTimeZoneInfo& i) { i.DaylightBegin.reset(); },
      [](CTimeZoneInfo& i) { i.DaylightEnd.reset(); },
      [](CTimeZoneInfo& i) { i.StandardName.reset(); },
      [](CTimeZoneInfo& i) { i.DaylightName.reset(); },
  };
  int index = 0;
  for (const auto& drop : drops) {
    SCOPED_TRACE(index++);
    CTimeZoneInfo info = FullInfo();
    drop(info);
    EXPECT_FALSE(info.IsEqual(info));
  }
  // The zone itself is not compared.
  CTimeZoneInfo noZone = FullInfo();
  noZone.mTimezone.reset();
  EXPECT_TRUE(noZone.IsEqual(noZone));
  EXPECT_FALSE(noZone.TimeZone());
  EXPECT_FALSE(CTimeZoneInfo().IsEqual(CTimeZoneInfo()));
}

}  // namespace
}  // namespace phonepim
