#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/model/CCalendar.h"

namespace phonepim {
namespace {

using testing::ScopedDefaultZone;
using Change = std::function<void(CCalendar&)>;

constexpr double kStart = 1235210400.0;  // 2009-02-21 10:00:00 UTC

CDateTime At(double offset) { return CDateTime(kStart + offset, CDateTime::kTimeZoneTypeGMT); }
CalendarDate DayAt(double offset) { return CalendarDate{kStart + offset, u"GMT"}; }

const Array kMonday = {Value(1)};
const Array kMondayWednesday = {Value(1), Value(3)};

// Every deciding field set, except strLocation and the extension values,
// which rows add.
void Fill(CCalendar& e) {
  e.vCalendarType = 0x2;
  e.categories = 0x500;
  e.classification = 1;
  e.priority = 2;
  e.status = 2;
  e.bIsAllDay = true;
  e.strSummary = u"Planning";
  e.strDescription = u"Room 4";
  e.setStartDate(At(0));
  e.setEndDate(At(3600));
  e.setDueDate(At(7200));
  e.dtCompleted.emplace(At(5400));
  e.dtStartComp = DayAt(0);
  e.dtEndComp = DayAt(3600);
  e.dtDueComp = DayAt(7200);
  CReminder* alarm = e.addAlarm(std::make_unique<CReminder>());
  alarm->SetRunTime(At(-900));
  alarm->SetType(CReminder::kTypePCM);
  e.NewAttendee(u"ann@example.com", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_ACCEPTED, 0);
  e.NewAttendee(u"bob@example.com", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_TENTATIVE, 1);
  e.addRecurrence(std::make_unique<CRecurrence>())->SetWeekly(1, 10, nullptr, &kMonday);
  e.ExceptRule.emplace().SetDaily(2, 3, nullptr);
}

struct EqualityCase {
  std::string name;
  Change change;
  bool filledEqualsChanged;
  bool changedEqualsFilled;
};

void PrintTo(const EqualityCase& c, std::ostream* os) { *os << c.name; }

EqualityCase Decides(std::string name, Change change) { return {name, change, false, false}; }
EqualityCase Ignores(std::string name, Change change) { return {name, change, true, true}; }

class CalendarEquality : public ::testing::TestWithParam<EqualityCase> {};

TEST_P(CalendarEquality, decides_by_the_documented_fields) {
  const ScopedDefaultZone zone("Europe/Berlin");
  CCalendar filled;
  CCalendar changed;
  Fill(filled);
  Fill(changed);
  ASSERT_TRUE(filled.IsEqual(&changed));
  GetParam().change(changed);
  EXPECT_EQ(filled.IsEqual(&changed), GetParam().filledEqualsChanged);
  EXPECT_EQ(changed.IsEqual(&filled), GetParam().changedEqualsFilled);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(table, CalendarEquality, ::testing::Values(
    Decides("kind", [](CCalendar& e) { e.vCalendarType = 0x40; }),
    Decides("categories", [](CCalendar& e) { e.categories = 0x400; }),
    Decides("classification", [](CCalendar& e) { e.classification = 2; }),
    Decides("priority", [](CCalendar& e) { e.priority = 1; }),
    Decides("status", [](CCalendar& e) { e.status = 5; }),
    Decides("all_day", [](CCalendar& e) { e.bIsAllDay = false; }),
    Decides("holiday", [](CCalendar& e) { e.bIsHoliday = true; }),
    Decides("no_time", [](CCalendar& e) { e.bIsNoTime = true; }),
    Decides("lunar", [](CCalendar& e) { e.bIsLunar = true; }),
    Decides("summary", [](CCalendar& e) { e.strSummary = u"planning"; }),
    Decides("description_absent", [](CCalendar& e) { e.strDescription.reset(); }),
    Decides("location", [](CCalendar& e) { e.strLocation = u"Berlin"; }),
    Decides("start_moved", [](CCalendar& e) { e.setStartDate(At(60)); }),
    Decides("start_absent", [](CCalendar& e) { e.dtStart.reset(); }),
    Decides("end_null", [](CCalendar& e) { e.dtEnd->Null(); }),
    Decides("due_moved", [](CCalendar& e) { e.setDueDate(At(7201)); }),
    Decides("completed_absent", [](CCalendar& e) { e.dtCompleted.reset(); }),
    Decides("start_comp_moved", [](CCalendar& e) { e.dtStartComp = DayAt(1); }),
    Decides("end_comp_absent", [](CCalendar& e) { e.dtEndComp.reset(); }),
    Decides("due_comp_moved", [](CCalendar& e) { e.dtDueComp = DayAt(-86400); }),
    Decides("alarm_run_time", [](CCalendar& e) { e.GetAlarm(0)->SetRunTime(At(-600)); }),
    Decides("alarm_sound", [](CCalendar& e) { e.GetAlarm(0)->SetType(CReminder::kTypeWAVE); }),
    Decides("second_alarm", [](CCalendar& e) { e.addAlarm(std::make_unique<CReminder>()); }),
    Decides("attendee_address", [](CCalendar& e) { e.GetAttendee(1)->setDataWithString(u"bo"); }),
    Decides("attendee_status", [](CCalendar& e) { e.GetAttendee(0)->setStatus(6); }),
    Decides("third_attendee", [](CCalendar& e) { e.NewAttendee(u"cy@example.com", 1, 0, 2); }),
    Decides("interval", [](CCalendar& e) { e.Recurrence()->SetWeekly(2, 10, nullptr, &kMonday); }),
    Decides("second_rule", [](CCalendar& e) { e.addRecurrence(std::make_unique<CRecurrence>()); }),
    Decides("except_rule_absent", [](CCalendar& e) { e.ExceptRule.reset(); }),
    Decides("except_rule_count", [](CCalendar& e) { e.ExceptRule->SetDaily(2, 4, nullptr); }),
    Decides("expiry", [](CCalendar& e) { e.SetExpiry(30); }),
    Decides("alarm_tone", [](CCalendar& e) { e.SetAlarmTone(2); }),
    Decides("alarm_tone_path", [](CCalendar& e) { e.SetAlarmTonePath(u"/a.wav"); }),
    // The rules compare their day lists one-sidedly, and so does the entry.
    EqualityCase{"rule_with_more_weekdays",
                 [](CCalendar& e) { e.Recurrence()->SetWeekly(1, 10, nullptr, &kMondayWednesday); },
                 true, false},
    Ignores("location_empty", [](CCalendar& e) { e.strLocation = u""; }),
    Ignores("start_same_instant_local", [](CCalendar& e) { e.setStartDate(CDateTime(kStart, 0)); }),
    Ignores("start_comp_other_zone", [](CCalendar& e) { e.dtStartComp->timeZone = u"Japan"; }),
    Ignores("alarm_tone_none", [](CCalendar& e) { e.SetAlarmTone(-1); }),
    Ignores("alarm_tone_path_empty", [](CCalendar& e) { e.SetAlarmTonePath(u""); }),
    Ignores("attendee_id_and_mask", [](CCalendar& e) {
      e.GetAttendee(0)->setThisID(7); e.GetAttendee(0)->setParam(3); }),
    Ignores("alarm_time_comp", [](CCalendar& e) { e.GetAlarm(0)->SetAlarmTime(DayAt(9)); }),
    Ignores("identity", [](CCalendar& e) {
      e.setUserID(u"acct"); e.mVcalID = 12; e.UID = u"uid-1"; e.setThisID(4); e.mState = 3; }),
    Ignores("bookkeeping", [](CCalendar& e) {
      e.LMT = u"20090221T100000Z"; e.dtModified.emplace(At(1)); e.dtCreate.emplace(At(2));
      e.dtStartOrg.emplace(At(3)); e.Originaldate.emplace(At(5)); e.isdtStartisUTC = true;
      e.TimeZoneInfo.emplace(); e.Account = u"work"; e.NewXItem("X-PBOEXTENSION", "1", 0, -1); }),
    Ignores("store_forms", [](CCalendar& e) {
      e.strAttendees = u"ann"; e.setAttendeeArray(Array{}); e.setAlarmTriggerduration(-900);
      e.setRecurrenceFrequency(u"weekly"); e.mMetaDictionary.emplace_back(1); })),
    [](const ::testing::TestParamInfo<EqualityCase>& info) { return info.param.name; });
// clang-format on

TEST(CalendarClone, copies_every_field_and_shares_nothing) {
  const ScopedDefaultZone zone("Europe/Berlin");
  CCalendar original;
  EXPECT_FALSE(original.IsEqual(nullptr));
  Fill(original);
  original.setUserID(u"acct");
  original.UID = u"uid-1";
  original.setThisID(4);
  original.TimeZoneInfo.emplace().StandardName = u"CET";
  original.setAlarmTriggerduration(-900);
  original.SetExpiry(30);
  original.NewXItem("X-PBOEXTENSION", "1", 5, 2);

  const std::unique_ptr<CCalendar> copy = original.Clone();
  EXPECT_TRUE(copy->IsEqual(&original));
  EXPECT_TRUE(original.IsEqual(copy.get()));
  EXPECT_EQ(copy->mDBRecordID, u"acct_Calendar");
  EXPECT_EQ(copy->UID, u"uid-1");
  EXPECT_EQ(copy->thisID(), 4);
  EXPECT_EQ(copy->TimeZoneInfo->StandardName, u"CET");
  EXPECT_EQ(copy->AlarmTriggerduration, -900);
  ASSERT_EQ(copy->GetXItemCount(), 2);
  EXPECT_EQ(copy->GetXItem(1)->Param(), 5u);
  // The copy's current elements are its own.
  EXPECT_EQ(copy->Attendee(), copy->GetAttendee(1));
  EXPECT_EQ(copy->AudioReminder(), copy->GetAlarm(0));
  EXPECT_EQ(copy->Recurrence(), copy->GetRecurrence(0));

  original.GetAttendee(0)->setDataWithString(u"changed");
  original.AudioReminder()->SetRunTime(At(-60));
  original.Recurrence()->SetDaily(1, 0, nullptr);
  original.ExceptRule->ResetRecurrenceData();
  original.dtStart->Null();
  original.GetXItem(0)->setDataWithString(u"99");
  original.NewAttendee(u"new", 0, 0, 3);
  EXPECT_EQ(copy->GetAttendee(0)->Data(), u"ann@example.com");
  EXPECT_EQ(copy->AudioReminder()->RunTime()->date(), kStart - 900);
  EXPECT_EQ(copy->Recurrence()->GetRecurrenceData()->Type(), RecurrenceData::kWeekly);
  EXPECT_NE(copy->ExceptRule->GetRecurrenceData(), nullptr);
  EXPECT_EQ(copy->dtStart->GetStatus(), CDateTime::kStatusValid);
  EXPECT_EQ(copy->GetExpiry(), 30);
  EXPECT_EQ(copy->GetAttendeecount(), 2);

  const std::unique_ptr<CCalendar> empty = CCalendar().Clone();
  EXPECT_EQ(empty->Attendee(), nullptr);
  EXPECT_EQ(empty->AudioReminder(), nullptr);
  EXPECT_EQ(empty->Recurrence(), nullptr);
}

}  // namespace
}  // namespace phonepim
