// The recurrence-rule text: each row is a rule as phones send it, the model
// it must give ("-" when the model cannot hold it) and the text written back.
#include <gtest/gtest.h>

#include <string>

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
  if (auto* y = dynamic_cast<const YearlyByMonthData*>(r)) out += List("m", y->ArrayMonth());
  if (auto* y = dynamic_cast<const YearlyByDayData*>(r)) out += List("yd", y->ArrayYearday());
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
    {"D3 #50", "D i3 n50", "D3 #50"},
    {"D1", "D i1 n0", "D1 #0"},  // no duration, no end: phones mean forever
    {"D1 20100131T000000", "D i1 n0 until=20100131T0000 form=1", "D1 20100131T000000"},
    {"D2 21001230T000000Z", "D i2 n0 until=21001230T0000", "D2 21001230T000000Z"},
    {"D1 20100131", "D i1 n0 until=20100131T0000 form=3", "D1 20100131"},
    {"D200 #1", "D i200 n1", "D200 #1"},
    {"D201 #1", "-", ""},
    {"D0 #1", "-", ""},
    {"D1 1200 1600 #5", "-", ""},  // times of day
    {"W1 TU #0", "W i1 n0 wd=2", "W1 TU #0"},
    {"W1 MO TU WE TH FR #0", "W i1 n0 wd=1,2,3,4,5", "W1 MO TU WE TH FR #0"},
    {"W2 TU TH #27", "W i2 n27 wd=2,4", "W2 TU TH #27"},
    {"W1 TH 20090226T000000Z", "W i1 n0 wd=4 until=20090226T0000", "W1 TH 20090226T000000Z"},
    {"W3 TU FR SU 20090317T120000", "W i3 n0 wd=0,2,5 until=20090317T1200 form=1",
     "W3 SU TU FR 20090317T120000"},
    {"W1 #0", "W i1 n0", "W1 #0"},
    {"W1 FR MO FR #9", "W i1 n9 wd=1,5", "W1 MO FR #9"},
    {"w1 mo tu #0", "W i1 n0 wd=1,2", "W1 MO TU #0"},
    {"  W1  MO \t #0  ", "W i1 n0 wd=1", "W1 MO #0"},
    {"W1 XX #0", "-", ""},
    {"W1 MO$ #0", "-", ""},
    {"MP1 2+ TU #0", "MP i1 n0 pos=2 wd=2", "MP1 2+ TU #0"},
    {"MP3 2- FR #17", "MP i3 n17 pos=-2 wd=5", "MP3 2- FR #17"},
    {"MP1 1+ SU #2", "MP i1 n2 pos=1 wd=0", "MP1 1+ SU #2"},
    {"MP2 1+ 1- FR #10", "MP i2 n10 pos=-1,1 wd=5", "MP2 1- 1+ FR #10"},
    {"MP1 1+ SU 3+ SU #0", "MP i1 n0 pos=1,3 wd=0", "MP1 1+ 3+ SU #0"},
    {"MP1 1+ MO WE #0", "MP i1 n0 pos=1 wd=1,3", "MP1 1+ MO WE #0"},
    {"MP2 2+ WE 20090708T000000", "MP i2 n0 pos=2 wd=3 until=20090708T0000 form=1",
     "MP2 2+ WE 20090708T000000"},
    {"MP1 1+ SU 2- MO #0", "-", ""},  // weekdays differ per position
    {"MP1 5- SU #0", "MP i1 n0 pos=-5 wd=0", "MP1 5- SU #0"},
    {"MP1 6+ SU #0", "-", ""},
    {"MP1 0+ SU #0", "-", ""},
    {"MP1 1+ #0", "-", ""},
    {"MD1 13+ #0", "MD i1 n0 md=13 form=4", "MD1 13+ #0"},
    {"MD3 20 #17", "MD i3 n17 md=20", "MD3 20 #17"},
    {"MD1 1- #0", "MD i1 n0 md=-1", "MD1 1- #0"},
    {"MD1 LD #0", "MD i1 n0 md=-1 form=8", "MD1 LD #0"},
    {"MD1 15 1 ld", "MD i1 n0 md=-1,1,15 form=8", "MD1 LD 1 15 #0"},
    {"MD1 31- 31 #0", "MD i1 n0 md=-31,31", "MD1 31- 31 #0"},
    {"MD1 32 #0", "-", ""},
    {"MD1 #0", "-", ""},
    {"YM1 1 #0", "YM i1 n0 m=1", "YM1 1 #0"},
    {"YM1 7 6 #10", "YM i1 n10 m=6,7", "YM1 6 7 #10"},
    {"YM1 1 20150113T000000Z", "YM i1 n0 m=1 until=20150113T0000", "YM1 1 20150113T000000Z"},
    {"YM1 13 #0", "-", ""},
    {"YM1 #0", "-", ""},
    {"YD1 #0", "YD i1 n0 yd=", "YD1 #0"},
    {"YD2 1 100 366 #5", "YD i2 n5 yd=1,100,366", "YD2 1 100 366 #5"},
    {"YD1 367", "-", ""},
    {"W1 MO #3 20100101T000000Z", "W i1 n3 wd=1 until=20100101T0000",
     "W1 MO #3 20100101T000000Z"},
    {"W1 MO 20100101T000000Z #3", "W i1 n3 wd=1 until=20100101T0000",
     "W1 MO #3 20100101T000000Z"},
    {"D1 #0 20100101T000000Z", "D i1 n0 until=20100101T0000", "D1 20100101T000000Z"},
    {"YM1 6 #10 MD1 1", "-", ""},  // a second rule nested in the first
    {"D1 #0 #1", "-", ""},
    {"D1 #0 trailing", "-", ""},
    {"D1 #", "-", ""},
    {"X1 #0", "-", ""},
    {"D1 00000000T000000Z", "-", ""},
    {"", "none", ""},
    {"   ", "none", ""},
};

class RecurrenceRuleRows : public ::testing::TestWithParam<Row> {
  testing_vcalendar::ScopedCalendarDefaults defaults_;
};

TEST_P(RecurrenceRuleRows, ReadsTheModelAndWritesTheRuleBack) {
  const Row& row = GetParam();
  CRecurrence rule;
  rule.SetDaily(1, 0, nullptr);  // a rule the reader must replace
  const bool held = ParseRecurrenceRule(row.text, &rule);
  EXPECT_EQ(held, std::string(row.model) != "-");
  EXPECT_EQ(Describe(rule), held ? row.model : "none");
  const std::string written =
      rule.GetRecurrenceData() ? ToDisplayUTF8(RecurrenceRuleText(*rule.GetRecurrenceData(), 1))
                               : "";
  EXPECT_EQ(written, row.written);
}

INSTANTIATE_TEST_SUITE_P(table, RecurrenceRuleRows, ::testing::ValuesIn(kRows));

TEST(RecurrenceRuleText, OpenRulesWithoutW0HaveNoDuration) {
  CRecurrence rule;
  for (const auto& [text, written] : {std::pair{"D1 #0", "D1"}, std::pair{"D1 #4", "D1 #4"}}) {
    ASSERT_TRUE(ParseRecurrenceRule(text, &rule));
    EXPECT_EQ(ToDisplayUTF8(RecurrenceRuleText(*rule.GetRecurrenceData(), 0)), written);
  }
}

}  // namespace
}  // namespace phonepim
