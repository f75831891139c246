#include "phonepim/datetime/CTimeZoneInfo.h"

#include <gtest/gtest.h>

#include <functional>

#include "datetime/DateTimeFixtures.h"

namespace phonepim {
namespace {

TEST(time_zone_info, is_equal_only_to_itself_and_only_when_complete) {
  const testing::ScopedDefaultZone zone("Asia/Tokyo");
  CTimeZoneInfo full;
  full.Bias = CDateTimeSpan(32400);
  full.DaylightBias = CDateTimeSpan(36000);
  full.DaylightBegin = CDateTime::dateWithYear(2009, 4, 1, 2, 0, 0);
  full.DaylightEnd = CDateTime::dateWithYear(2009, 10, 1, 2, 0, 0);
  full.StandardName = u"JST";
  full.DaylightName = u"JDT";
  EXPECT_TRUE(full.IsEqual(full));
  // The spans are compared as objects: an equal copy is another zone.
  EXPECT_FALSE(full.IsEqual(CTimeZoneInfo(full)));
  EXPECT_FALSE(full.TimeZone());
  full.mTimezone = u"GMT+09:00";
  EXPECT_EQ(full.TimeZone(), u"GMT+09:00");
  const std::function<void(CTimeZoneInfo&)> drops[] = {
      [](CTimeZoneInfo& i) { i.Bias.reset(); },          [](CTimeZoneInfo& i) { i.DaylightBias.reset(); },
      [](CTimeZoneInfo& i) { i.DaylightBegin.reset(); }, [](CTimeZoneInfo& i) { i.DaylightEnd.reset(); },
      [](CTimeZoneInfo& i) { i.StandardName.reset(); },  [](CTimeZoneInfo& i) { i.DaylightName.reset(); },
  };
  for (const auto& drop : drops) {
    CTimeZoneInfo info = full;
    drop(info);
    EXPECT_FALSE(info.IsEqual(info)) << &drop - drops;
  }
}

}  // namespace
}  // namespace phonepim
