#include "phonepim/model/CReminder.h"

#include <gtest/gtest.h>

#include <functional>

#include "datetime/DateTimeFixtures.h"

namespace phonepim {
namespace {

constexpr double kRing = 1235209500.0;  // 2009-02-21 09:45:00 UTC

TEST(reminder, equality_compares_both_ways_alike) {
  const testing::ScopedDefaultZone zone("Asia/Tokyo");
  CReminder base;
  base.SetType(CReminder::kTypeWAVE);
  base.SetValueType(CReminder::kValueTypeContentID);
  base.SetRunTime(CDateTime(kRing, CDateTime::kTimeZoneTypeGMT));
  base.SetSnoozeTimeSpan(CDateTimeSpan(300.0));
  base.SetRepeatCount(2);
  base.SetContent(u"ring.wav");
  const struct {
    std::function<void(CReminder&)> change;
    bool equal;
  } rows[] = {
      {[](CReminder& r) { r.SetType(CReminder::kTypeAIFF); }, false},
      {[](CReminder& r) { r.SetValueType(0); }, false},
      {[](CReminder& r) { r.SetRepeatCount(3); }, false},
      {[](CReminder& r) { r.SetRunTime(CDateTime(kRing + 1, 1)); }, false},
      {[](CReminder& r) { r.RunTime()->Null(); }, false},
      {[](CReminder& r) { r.SetRunTime(std::nullopt); }, false},
      {[](CReminder& r) { r.SetSnoozeTimeSpan(std::nullopt); }, false},
      {[](CReminder& r) { r.SetSnoozeTimeSpan(CDateTimeSpan(301.0)); }, false},
      {[](CReminder& r) { r.SetContent(u"Ring.wav"); }, false},
      {[](CReminder& r) { r.SetRunTime(CDateTime(kRing, 0)); }, true},
      {[](CReminder& r) { r.SetSnoozeTimeSpan(CDateTimeSpan(300.5)); }, true},
      {[](CReminder& r) { r.SetRunTimeComp(CalendarDate{kRing, u"GMT"}); }, true},
  };
  for (const auto& r : rows) {
    CReminder changed = base;
    r.change(changed);
    EXPECT_EQ(base.IsEqual(&changed), r.equal) << &r - rows;
    EXPECT_EQ(changed.IsEqual(&base), r.equal) << &r - rows;
  }
  // Null and absent run times both do not ring.
  CReminder absent, null;
  null.SetRunTime(CDateTimeNull());
  null.SetContent(u"");
  EXPECT_TRUE(absent.IsEqual(&null));
  EXPECT_TRUE(null.IsEqual(&absent));
  EXPECT_FALSE(absent.IsEqual(nullptr));
}

}  // namespace
}  // namespace phonepim
