// CCalendar: identity texts, kinds, priority and status words, extension
// values, the current elements, the alarm as kind and count, change
// detection and Clone; and the reminder's own equality.
#include "phonepim/model/CCalendar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>

#include "datetime/DateTimeFixtures.h"
#include "model/AssertionPattern.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;

TEST(calendar, identity_texts_vcal_ids_priority_levels_and_status_words) {
  CCalendar entry;
  entry.setUserID(u"acct-7");
  const String withSuffix = entry.mDBRecordID;
  entry.setUserIDWithType(2, u"rec");
  EXPECT_EQ(std::tuple(withSuffix, entry.mUserID, entry.mDBRecordID), std::tuple(u"acct-7_Calendar", u"rec", u"rec"));
  EXPECT_EQ(CCalendar::generateNewVCalIDWithNewLUID(42, u"35", 1), u"0000000000000042-Calendar-35_Appointment");
  EXPECT_EQ(CCalendar::generateNewVCalIDWithNewLUID(0, u"35", 2), u"0000000000000000-Calendar-35_Anniversary");
  EXPECT_EQ(CCalendar::generateNewVCalIDWithNewLUID(INT_MAX, u"35", 7), u"0000002147483647-Calendar-35_Task");
  EXPECT_EQ(CCalendar::generateNewVCalIDWithNewLUID(-42, u"35", 3), u"-000000000000042-Calendar-35_temp");
  EXPECT_EQ(std::pair(CCalendar::generateNewVCalID(1234), CCalendar::generateNewVCalIDWithType(-5, 2)),
            std::pair(String(u"1234"), String(u"-5")));
  for (const auto& [stored, level] : {std::pair{0, 10}, {1, 1}, {2, 5}, {3, 10}, {INT_MIN, 10}}) {
    entry.SetPriority(stored);
    EXPECT_EQ(entry.GetPriority(), level) << stored;
  }
  // Exact and case-sensitive; classification words are not in the table.
  const std::pair<std::u16string, std::int32_t> words[] = {
      {u"needsaction", 0}, {u"complete", 1},  {u"accepted", 2},  {u"sent", 3},     {u"tentative", 4},
      {u"Confirmed", 5},   {u"Declined", 6},  {u"Delegated", 7}, {u"Canceled", 8}, {u"Accepted", 0}};
  for (const auto& [word, number] : words) {
    entry.classification = -7;
    entry.setclassification(word);
    EXPECT_EQ(entry.classification, number) << number;
  }
}

TEST(calendar, kind_maps_the_type_mask_and_the_phone_numbering) {
  std::vector<std::int32_t> thirtyTwo(32, 5);
  thirtyTwo.back() = 9;
  // Each row: the type mask, the phone's list of kinds, and the kind and numbering read.
  const std::tuple<std::int32_t, std::vector<std::int32_t>, std::int32_t, std::int32_t> rows[] = {
      {0x0, {}, 1, 0},   {0x2, {}, 2, 1},     {0x4, {}, 3, 5},     {0x8, {}, 4, 6},    {0x10, {}, 5, 7},
      {0x20, {}, 6, 3},  {0x40, {}, 7, 2},    {0x80, {}, 8, 4},    {0x20000, {}, 9, 0}, {0x100, {}, 1, 0},
      // The lowest tested bit wins.
      {0x20040, {}, 7, 2}, {-1, {}, 2, 1},
      // Kinds missing from a list become appointments; the list ends at its
      // first 0 or after 32 entries.
      {0x40, {1, 2, 7}, 7, 2}, {0x4, {1, 2, 7}, 1, 0}, {0x4, {2, 0, 3}, 1, 0}, {0x20000, thirtyTwo, 9, 0},
  };
  const std::array<std::int32_t, 32> previous = ds_arrCalendar;
  for (const auto& [mask, supported, kind, orgType] : rows) {
    ds_arrCalendar.fill(0);
    std::copy(supported.begin(), supported.end(), ds_arrCalendar.begin());
    CCalendar entry;
    entry.vCalendarType = mask;
    EXPECT_EQ(std::tuple(CalendarType(mask), entry.GetType(), entry.GetOrgType()), std::tuple(kind, kind, orgType))
        << mask << " " << supported.size();
  }
  ds_arrCalendar = previous;
}

// Extension values are items read from the first of their name.
TEST(calendar, extension_values_and_current_elements) {
  CCalendar entry;
  EXPECT_EQ(entry.GetAlarmTone(), -1);
  entry.SetExpiry(30);
  entry.SetAlarmTone(0);
  entry.SetAlarmTonePath(u"/\u00e9t\u00e9.wav");
  entry.SetExpiry(-5);  // added behind the first: it does not show
  ASSERT_EQ(entry.GetXItemCount(), 4);
  EXPECT_EQ(std::tuple(entry.GetXItem(0)->Name(), entry.GetXItem(0)->Data(), entry.GetXItem(1)->Name(),
                       entry.GetXItem(2)->Name(), entry.GetXItem(3)->Data(), entry.GetExpiry(), entry.GetAlarmTone(),
                       entry.GetAlarmTonePath()),
            std::tuple(u"X-EXPIRY", u"30", u"X-ALARMTONE", u"X-ALARMTONEPATH", u"-5", 30, 0, u"/\u00e9t\u00e9.wav"));
  // Received text is read for its leading integer.
  const std::pair<const char*, int> received[] = {
      {"  +12days", 12}, {"- 4", 0}, {"99999999999999999999", INT_MAX}, {"-99999999999999999999", INT_MIN}};
  for (const auto& [text, value] : received) {
    CCalendar fromPhone;
    fromPhone.NewXItem("X-EXPIRY", text, 0, -1);
    fromPhone.NewXItem("X-ALARMTONE", text, 0, -1);
    EXPECT_EQ(std::pair(fromPhone.GetExpiry(), fromPhone.GetAlarmTone()), std::pair(value, value)) << text;
  }
  // The last element added is the current one.
  CAttendee* first = entry.NewAttendee(u"a@example.com", 1, 2, 4);
  CAttendee* second = entry.addAttendee(std::make_unique<CAttendee>());
  CReminder* alarm = entry.addAlarm(std::make_unique<CReminder>());
  CRecurrence* rule = entry.addRecurrence(std::make_unique<CRecurrence>());
  entry.addAlarm(std::make_unique<CReminder>());
  EXPECT_EQ(std::tuple(entry.addAttendee(nullptr), entry.addAlarm(nullptr), entry.addRecurrence(nullptr)),
            std::tuple(nullptr, nullptr, nullptr));
  EXPECT_EQ(std::tuple(entry.GetAttendeecount(), entry.GetAlarmcount(), entry.GetRecurrencecount(),
                       entry.GetAttendee(0), entry.Attendee(), entry.GetAlarm(0), entry.Recurrence()),
            std::tuple(2, 2, 1, first, second, alarm, rule));
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(entry.GetAttendee(2), AssertionPattern("nIndex < [self GetAttendeecount]"));
  EXPECT_DEATH(entry.GetAlarm(-1), AssertionPattern("nIndex < [self GetAlarmcount]"));
  EXPECT_DEATH(std::as_const(entry).GetRecurrence(1), AssertionPattern("nIndex < [self GetRecurrencecount]"));
}

constexpr double kStart = 1235210400.0;  // 2009-02-21 10:00:00 UTC
CDateTime At(double offset) { return CDateTime(kStart + offset, CDateTime::kTimeZoneTypeGMT); }
CalendarDate DayAt(double offset) { return CalendarDate{kStart + offset, u"GMT"}; }
const Array kMonday = {Value(1)};
constexpr int kMin = CCalendar::kAlarmMinutes, kHour = CCalendar::kAlarmHours, kDay = CCalendar::kAlarmDays,
              kWeek = CCalendar::kAlarmWeeks, kDate = CCalendar::kAlarmAtDate, kNone = CCalendar::kAlarmNone;

// Expects GetAlarm and GetAlarmDate (kAlarmAtDate or kAlarmNone, value 0) to
// report kind and value, and answers GetAlarm's date.
CDateTimeNull ReadBack(const CCalendar& entry, int kind, int value) {
  int gotKind = 99, gotValue = 99, dateKind = 99, dateValue = 99;
  const CDateTimeNull date = entry.GetAlarm(gotKind, gotValue), asDate = entry.GetAlarmDate(dateKind, dateValue);
  // Without an alarm each is a new "now": only the status compares.
  EXPECT_EQ(std::tuple(gotKind, gotValue, dateKind, dateValue, asDate.GetStatus(),
                       kind == kNone || asDate.date() == date.date()),
            std::tuple(kind, value, kind == kNone ? kind : kDate, 0, date.GetStatus(), true));
  return date;
}

TEST(calendar_alarm, reads_back_in_the_largest_whole_unit) {
  const testing::ScopedDefaultZone zone("Europe/Berlin");
  // Each row: the kind and value set, the seconds from the start to the run
  // time, and the kind and value read back.
  const std::tuple<int, int, double, int, int> rows[] = {
      {kMin, 0, 0, kDate, 0},         {kMin, 59, 3540, kMin, 59},      {kMin, 60, 3600, kHour, 1},
      {kMin, 90, 5400, kDate, 0},     {kMin, 2880, 172800, kDay, 2},   {kMin, 20160, 1209600, kWeek, 2},
      // The distance counts, not the direction.
      {kHour, -2, -7200, kHour, 2},   {kHour, 24, 86400, kDay, 1},     {kHour, 25, 90000, kDate, 0},
      {kDay, 6, 518400, kDay, 6},     {kDay, 7, 604800, kWeek, 1},     {kWeek, 52, 31449600, kWeek, 52},
      {6, 5, 0, kDate, 0},  // an unknown kind rings at the start
  };
  for (const auto& [kind, value, offset, kindBack, valueBack] : rows) {
    SCOPED_TRACE(::testing::Message() << kind << " " << value);
    CCalendar entry;
    entry.setStartDate(At(0));
    EXPECT_TRUE(entry.SetAlarm(kind, value, nullptr));
    ASSERT_EQ(entry.GetAlarmcount(), 1);
    const CDateTimeNull& runTime = entry.AudioReminder()->RunTime().value();
    EXPECT_EQ(std::tuple(runTime.date(), runTime.timeZoneType(), ReadBack(entry, kindBack, valueBack).date()),
              std::tuple(kStart + offset, CDateTime::kTimeZoneTypeLocal, kStart + offset));
  }
}

TEST(calendar_alarm, at_date_none_and_a_null_start_replace_or_skip_the_current_one) {
  const testing::ScopedDefaultZone zone("Asia/Tokyo");
  CCalendar entry;
  entry.setStartDate(At(0));
  const CReminder* first = entry.addAlarm(std::make_unique<CReminder>());
  const CReminder* current = entry.addAlarm(std::make_unique<CReminder>());
  const CDateTime at = At(-1234.0);
  entry.SetAlarm(kDate, 42, &at);
  EXPECT_TRUE(ReadBack(entry, kMin, 20).IsEqual(at));  // 20 whole minutes before
  entry.SetAlarm(kDate, 0, nullptr);  // no date: no run time at all
  EXPECT_FALSE(current->RunTime().has_value());
  entry.SetAlarm(kHour, 2, nullptr);
  EXPECT_TRUE(entry.SetAlarm(kNone, 0, nullptr));
  EXPECT_EQ(ReadBack(entry, kNone, 0).GetStatus(), CDateTime::kStatusNull);
  entry.SetAlarm(kMin, 15, nullptr);
  EXPECT_EQ(std::tuple(current->RunTime()->date(), entry.GetAlarmcount(), first->RunTime().has_value()),
            std::tuple(kStart + 900.0, 2, false));
  // Without a start no alarm is set or read.
  entry.dtStart->Null();
  ReadBack(entry, kNone, 0);
  EXPECT_TRUE(entry.SetAlarm(kMin, 10, nullptr));
  EXPECT_EQ(current->RunTime()->date(), kStart + 900.0);
}

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

TEST(calendar, is_equal_decides_by_the_documented_fields_and_clone_copies_them) {
  const testing::ScopedDefaultZone zone("Europe/Berlin");
  using Change = std::function<void(CCalendar&)>;
  const Change decides[] = {
      [](CCalendar& e) { e.vCalendarType = 0x40; },   [](CCalendar& e) { e.categories = 0x400; },
      [](CCalendar& e) { e.classification = 2; },     [](CCalendar& e) { e.priority = 1; },
      [](CCalendar& e) { e.status = 5; },             [](CCalendar& e) { e.bIsAllDay = false; },
      [](CCalendar& e) { e.bIsHoliday = true; },      [](CCalendar& e) { e.bIsNoTime = true; },
      [](CCalendar& e) { e.bIsLunar = true; },        [](CCalendar& e) { e.strSummary = u"planning"; },
      [](CCalendar& e) { e.strDescription.reset(); }, [](CCalendar& e) { e.strLocation = u"Berlin"; },
      [](CCalendar& e) { e.setStartDate(At(60)); },   [](CCalendar& e) { e.dtStart.reset(); },
      [](CCalendar& e) { e.dtEnd->Null(); },          [](CCalendar& e) { e.setDueDate(At(7201)); },
      [](CCalendar& e) { e.dtCompleted.reset(); },    [](CCalendar& e) { e.dtStartComp = DayAt(1); },
      [](CCalendar& e) { e.dtEndComp.reset(); },      [](CCalendar& e) { e.dtDueComp = DayAt(-86400); },
      [](CCalendar& e) { e.GetAlarm(0)->SetRunTime(At(-600)); }, [](CCalendar& e) { e.SetAlarmTonePath(u"/a.wav"); },
      [](CCalendar& e) { e.addAlarm(std::make_unique<CReminder>()); },
      [](CCalendar& e) { e.GetAttendee(1)->setDataWithString(u"bo"); },
      [](CCalendar& e) { e.GetAttendee(0)->setStatus(6); }, [](CCalendar& e) { e.NewAttendee(u"cy@x.org", 1, 0, 2); },
      [](CCalendar& e) { e.Recurrence()->SetWeekly(2, 10, nullptr, &kMonday); },
      [](CCalendar& e) { e.addRecurrence(std::make_unique<CRecurrence>()); },
      [](CCalendar& e) { e.ExceptRule.reset(); },     [](CCalendar& e) { e.ExceptRule->SetDaily(2, 4, nullptr); },
      [](CCalendar& e) { e.SetExpiry(30); },          [](CCalendar& e) { e.SetAlarmTone(2); },
  };
  const Change ignores[] = {
      [](CCalendar& e) { e.strLocation = u""; },      [](CCalendar& e) { e.setStartDate(CDateTime(kStart, 0)); },
      [](CCalendar& e) { e.SetAlarmTone(-1); },       [](CCalendar& e) { e.SetAlarmTonePath(u""); },
      [](CCalendar& e) { e.dtStartComp->timeZone = u"Japan"; },
      [](CCalendar& e) { e.GetAttendee(0)->setThisID(7); }, [](CCalendar& e) { e.UID = u"uid-1"; },
      [](CCalendar& e) { e.dtModified.emplace(At(1)); }, [](CCalendar& e) { e.NewXItem("X-PBOEXTENSION", "", 0, -1); },
  };
  const auto compare = [](const Change& change) {
    CCalendar filled, changed;
    Fill(filled);
    Fill(changed);
    EXPECT_TRUE(filled.IsEqual(&changed));
    change(changed);
    return std::pair{filled.IsEqual(&changed), changed.IsEqual(&filled)};
  };
  for (const Change& change : decides) EXPECT_EQ(compare(change), std::pair(false, false)) << &change - decides;
  for (const Change& change : ignores) EXPECT_EQ(compare(change), std::pair(true, true)) << &change - ignores;
  // The rules compare their day lists one-sidedly, and so does the entry.
  const Array mondayWednesday = {Value(1), Value(3)};
  EXPECT_EQ(compare([&](CCalendar& e) { e.Recurrence()->SetWeekly(1, 10, nullptr, &mondayWednesday); }),
            std::pair(true, false));
  EXPECT_FALSE(CCalendar().IsEqual(nullptr));

  // A copy equals a second filled entry after the original changed: it
  // shares nothing, and its current elements are its own.
  CCalendar original, fresh;
  Fill(original);
  Fill(fresh);
  original.setUserID(u"id");
  original.TimeZoneInfo.emplace().StandardName = u"CET";
  original.NewXItem("X-PBOEXTENSION", "1", 5, 2);
  const std::unique_ptr<CCalendar> copy = original.Clone();
  EXPECT_EQ(std::tuple(copy->mDBRecordID, copy->TimeZoneInfo->StandardName, copy->GetXItem(0)->Param(),
                       copy->GetXItem(0)->thisID(), copy->Attendee(), copy->AudioReminder(), copy->Recurrence()),
            std::tuple(u"id_Calendar", u"CET", 5u, 2, copy->GetAttendee(1), copy->GetAlarm(0), copy->GetRecurrence(0)));
  original.GetAttendee(0)->setDataWithString(u"changed");
  original.AudioReminder()->SetRunTime(At(-60));
  original.Recurrence()->SetDaily(1, 0, nullptr);
  original.ExceptRule->ResetRecurrenceData();
  original.dtStart->Null();
  original.NewAttendee(u"new", 0, 0, 3);
  EXPECT_EQ(std::pair(copy->IsEqual(&fresh), fresh.IsEqual(copy.get())), std::pair(true, true));
}

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
  const std::pair<void (*)(CReminder&), bool> rows[] = {
      {[](CReminder& r) { r.SetType(CReminder::kTypeAIFF); }, false},
      {[](CReminder& r) { r.SetValueType(0); }, false}, {[](CReminder& r) { r.SetRepeatCount(3); }, false},
      {[](CReminder& r) { r.SetRunTime(CDateTime(kRing + 1, 1)); }, false},
      {[](CReminder& r) { r.RunTime()->Null(); }, false}, {[](CReminder& r) { r.SetRunTime(std::nullopt); }, false},
      {[](CReminder& r) { r.SetSnoozeTimeSpan(std::nullopt); }, false},
      {[](CReminder& r) { r.SetSnoozeTimeSpan(CDateTimeSpan(301.0)); }, false},
      {[](CReminder& r) { r.SetContent(u"Ring.wav"); }, false},
      {[](CReminder& r) { r.SetRunTime(CDateTime(kRing, 0)); }, true},
      {[](CReminder& r) { r.SetSnoozeTimeSpan(CDateTimeSpan(300.5)); }, true},
      {[](CReminder& r) { r.SetRunTimeComp(CalendarDate{kRing, u"GMT"}); }, true},
  };
  for (const auto& row : rows) {
    CReminder changed = base;
    row.first(changed);
    EXPECT_EQ(std::pair(base.IsEqual(&changed), changed.IsEqual(&base)), std::pair(row.second, row.second))
        << &row - rows;
  }
  // Null and absent run times both do not ring.
  CReminder absent, null;
  null.SetRunTime(CDateTimeNull());
  null.SetContent(u"");
  EXPECT_EQ(std::tuple(absent.IsEqual(&null), null.IsEqual(&absent), absent.IsEqual(nullptr)),
            std::tuple(true, true, false));
}

}  // namespace
}  // namespace phonepim
