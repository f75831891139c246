// The recurrence-rule text: each row is a rule as phones send it, the model
// it must give ("-" when the model cannot hold it) and the text written back.
#include <gtest/gtest.h>

#include "phonepim/text/NSArrayCustom.h"
#include "vcalendar/vCalendarTestSupport.h"

namespace phonepim {
namespace {

std::string List(const char* key, const Array& values) {
  std::string out = std::string(" ") + key + "=";
  for (int i = 0; i < static_cast<int>(values.size()); ++i) {
    out += (i ? "," : "") + std::to_string(intValueAtIndex(values, i));
  }
  return out;
}

std::string Describe(const CRecurrence& rule) {
  const RecurrenceData* r = rule.GetRecurrenceData();
  if (r == nullptr) return "none";
  static const char* kKinds[] = {"?", "D", "W", "MP", "MD", "YM", "YD"};
  std::string out = std::string(kKinds[r->Type()]) + " i" + std::to_string(r->Interval()) +
                    " n" + std::to_string(r->duration());
  if (auto* w = dynamic_cast<const WeeklyData*>(r); w && !w->ArrayWeekday().empty()) {
    out += List("wd", w->ArrayWeekday());
  }
  if (auto* p = dynamic_cast<const MonthlyByPosData*>(r)) {
    out += List("pos", p->ArrayWeekPos()) + List("wd", p->ArrayWeekday());
  }
  if (auto* m = dynamic_cast<const MonthlyByDayData*>(r)) out += List("md", m->ArrayMonthday());
  if (r->UntilDate()) out += " until=" + testing_vcalendar::GMTFields(r->UntilDate()->date());
  if (r->WeeklyDayType() != 0) out += " form=" + std::to_string(r->WeeklyDayType());
  return out;
}

struct Row {
  const char* text;
  const char* model;    // "-": not held
  const char* written;  // with "#0" for open rules
};

constexpr Row kRows[] = {
    {"D1 #0", "D i1 n0", "D1 #0"},
    {"D1", "D i1 n0", "D1 #0"},  // no duration, no end: phones mean forever
    {"D1 20100131T000000", "D i1 n0 until=20100131T0000 form=1", "D1 20100131T000000"},
    {"D1 20100131", "D i1 n0 until=20100131T0000 form=3", "D1 20100131"}, {"D201 #1", "-", ""},
    {"W1 #0", "W i1 n0", "W1 #0"}, {"W1 FR MO FR #9", "W i1 n9 wd=1,5", "W1 MO FR #9"},
    {"  W1  MO \t #0  ", "W i1 n0 wd=1", "W1 MO #0"},
    {"MP1 1+ SU 3+ SU #0", "MP i1 n0 pos=1,3 wd=0", "MP1 1+ 3+ SU #0"},
    {"MP1 1+ SU 2- MO #0", "-", ""},  // weekdays differ per position
    {"MP1 6+ SU #0", "-", ""}, {"MP1 1+ #0", "-", ""},
    {"MD1 13+ #0", "MD i1 n0 md=13 form=4", "MD1 13+ #0"}, {"MD1 32 #0", "-", ""},
    {"MD1 #0", "-", ""}, {"YM1 13 #0", "-", ""}, {"YM1 #0", "-", ""}, {"D1 #0 #1", "-", ""},
    {"D1 #0 trailing", "-", ""}, {"X1 #0", "-", ""}, {"D1 00000000T000000Z", "-", ""},
    {"", "none", ""},
};

class RecurrenceRuleRows : public ::testing::TestWithParam<Row> {};

TEST_P(RecurrenceRuleRows, ReadsTheModelAndWritesTheRuleBack) {
  const Row& row = GetParam();
  testing_vcalendar::ScopedCalendarDefaults defaults;
  CRecurrence rule;
  rule.SetDaily(1, 0, nullptr);  // a rule the reader must replace
  const bool held = ParseRecurrenceRule(row.text, &rule);
  EXPECT_EQ(held, std::string(row.model) != "-");
  EXPECT_EQ(Describe(rule), held ? row.model : "none");
  const RecurrenceData* data = rule.GetRecurrenceData();
  EXPECT_EQ(data ? ToDisplayUTF8(RecurrenceRuleText(*data, 1)) : "", row.written);
}

INSTANTIATE_TEST_SUITE_P(table, RecurrenceRuleRows, ::testing::ValuesIn(kRows));

}  // namespace
}  // namespace phonepim
