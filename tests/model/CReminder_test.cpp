#include "phonepim/model/CReminder.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

#include "datetime/DateTimeFixtures.h"

namespace phonepim {
namespace {

using testing::ScopedDefaultZone;

constexpr double kRing = 1235209500.0;  // 2009-02-21 09:45:00 UTC

struct Row {
  std::string name;
  std::function<void(CReminder&)> change;
  bool equal;
};

void PrintTo(const Row& c, std::ostream* os) { *os << c.name; }

class ReminderEquality : public ::testing::TestWithParam<Row> {};

TEST_P(ReminderEquality, compares_both_ways_alike) {
  const ScopedDefaultZone zone("Asia/Tokyo");
  CReminder base;
  base.SetType(CReminder::kTypeWAVE);
  base.SetValueType(CReminder::kValueTypeContentID);
  base.SetRunTime(CDateTime(kRing, CDateTime::kTimeZoneTypeGMT));
  base.SetSnoozeTimeSpan(CDateTimeSpan(300.0));
  base.SetRepeatCount(2);
  base.SetContent(u"ring.wav");
  CReminder changed = base;
  GetParam().change(changed);
  EXPECT_EQ(base.IsEqual(&changed), GetParam().equal);
  EXPECT_EQ(changed.IsEqual(&base), GetParam().equal);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(table, ReminderEquality, ::testing::Values(
    Row{"type", [](CReminder& r) { r.SetType(CReminder::kTypeAIFF); }, false},
    Row{"value_type", [](CReminder& r) { r.SetValueType(0); }, false},
    Row{"repeat_count", [](CReminder& r) { r.SetRepeatCount(3); }, false},
    Row{"run_time_moved", [](CReminder& r) { r.SetRunTime(CDateTime(kRing + 1, 1)); }, false},
    Row{"run_time_null", [](CReminder& r) { r.RunTime()->Null(); }, false},
    Row{"run_time_absent", [](CReminder& r) { r.SetRunTime(std::nullopt); }, false},
    Row{"snooze_absent", [](CReminder& r) { r.SetSnoozeTimeSpan(std::nullopt); }, false},
    Row{"snooze_longer", [](CReminder& r) { r.SetSnoozeTimeSpan(CDateTimeSpan(301.0)); }, false},
    Row{"content", [](CReminder& r) { r.SetContent(u"Ring.wav"); }, false},
    Row{"run_time_local", [](CReminder& r) { r.SetRunTime(CDateTime(kRing, 0)); }, true},
    Row{"snooze_fraction", [](CReminder& r) { r.SetSnoozeTimeSpan(CDateTimeSpan(300.5)); }, true},
    Row{"alarm_time", [](CReminder& r) { r.SetRunTimeComp(CalendarDate{kRing, u"GMT"}); }, true}),
    [](const ::testing::TestParamInfo<Row>& info) { return info.param.name; });
// clang-format on

TEST(ReminderEqualityEdges, null_and_absent_run_times_both_do_not_ring) {
  const ScopedDefaultZone zone("UTC");
  CReminder absent;
  CReminder null;
  null.SetRunTime(CDateTimeNull());
  null.SetContent(u"");
  EXPECT_TRUE(absent.IsEqual(&null));
  EXPECT_TRUE(null.IsEqual(&absent));
  EXPECT_FALSE(absent.IsEqual(nullptr));
}

}  // namespace
}  // namespace phonepim
