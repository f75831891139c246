// The store records a calendar entry becomes: the event, its attendees,
// alarms and recurrence rules.

#include <gtest/gtest.h>

#include <functional>

#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/sync/AlarmContainer.h"
#include "phonepim/sync/AttendeeContainer.h"
#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/RecurrenceContainer.h"
#include "phonepim/sync/SyncRecordSchema.h"

namespace phonepim {
namespace {

const String kEntity = ISyncRecordEntityNameKey;
constexpr double kStart = 1700000000.0;

std::unique_ptr<CCalendar> Entry(std::int32_t typeBits) {
  auto entry = std::make_unique<CCalendar>();
  entry->vCalendarType = typeBits;
  entry->strSummary = u"Review";
  entry->strLocation = u"";  // empty texts are left out
  entry->setStartDate(CDateTime(kStart, 0));
  entry->setEndDate(CDateTime(kStart + 3600, 0));
  entry->setDueDate(CDateTime(kStart + 7200, 0));
  entry->dtModified = CDateTimeNull(CDateTime(kStart - 60, 0));
  entry->classification = 1;
  entry->status = 2;
  entry->priority = 1;
  entry->categories = 0x40;
  entry->UID = u"uid-1";
  entry->NewAttendee(u"ann@example.jp", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_DECLIENED, -1);
  entry->NewAttendee(u"bob", ATTENDEE_ROLE_ATTENDEE, 99, -1);
  entry->addAlarm(std::make_unique<CReminder>())->SetRunTime(CDateTime(kStart - 600, 0));
  entry->addAlarm(std::make_unique<CReminder>());  // no run time: no record
  return entry;
}

TEST(calendar_records, event_and_task_carry_their_fields) {
  for (const bool task : {false, true}) {
    const auto owned = Entry(task ? 0x40 : 0);
    CCalendar& entry = *owned;
    auto table = std::make_shared<CalendarIDMappingTable>();
    entry.resolveIdentity(7, u"35", std::nullopt, table);
    entry.createMetaData(u"CAL");
    Dictionary event = entry.eventRecord();
    EXPECT_EQ(event.at(u"attendees").get<Array>().size(), 2u);
    EXPECT_EQ(event.at(u"audio alarms").get<Array>().size(), 1u);
    event.erase(u"attendees");
    event.erase(u"audio alarms");
    Dictionary expected{{kEntity, u"com.apple.calendars.Event"},
                        {u"summary", u"Review"},
                        {u"start date", Date{kStart}},
                        {u"all day", false},
                        {u"classification", u"private"},
                        {u"status", u"accepted"},
                        {u"categories", std::int64_t{0x40}},
                        {u"external id", u"uid-1"},
                        {u"date modified", Date{kStart - 60}},
                        {u"calendar", Array{Value(u"CAL")}}};
    if (task) {
      expected.emplace(u"due date", Date{kStart + 7200});
      expected.emplace(u"priority", std::int64_t{1});
    } else {
      expected.emplace(u"end date", Date{kStart + 3600});
    }
    EXPECT_EQ(event, expected);

    const Array owner{Value(*entry.vCalRecordID())};
    EXPECT_EQ(entry.attendeeMapper()->recordAtIndex(0),
              (Dictionary{{kEntity, u"com.apple.calendars.Attendee"},
                          {u"common name", u"ann@example.jp"},
                          {u"status", u"declined"},
                          {u"owner", owner}}));
    EXPECT_EQ(entry.attendeeMapper()->recordAtIndex(1).at(u"status"), Value(u"needsaction"));
    EXPECT_EQ(entry.alarmMapper()->recordAtIndex(0),
              (Dictionary{{kEntity, u"com.apple.calendars.AudioAlarm"},
                          {u"triggerdate", Date{kStart - 600}},
                          {u"owner", owner}}));
  }
  CCalendar plain;
  plain.status = 10;
  plain.classification = 7;
  plain.createMetaData(u"CAL");  // no identity: the event alone
  EXPECT_EQ(plain.eventRecord(), (Dictionary{{kEntity, u"com.apple.calendars.Event"},
                                             {u"all day", false},
                                             {u"classification", u"public"},
                                             {u"calendar", Array{Value(u"CAL")}}}));
  EXPECT_EQ(calendar_record::NewCalendarRecord(u"N9"),
            (Dictionary{{kEntity, u"com.apple.calendars.Calendar"}, {u"title", u"N9"}}));
}

Array Numbers(std::initializer_list<std::int64_t> numbers) {
  return Array(numbers.begin(), numbers.end());
}

struct Rule {
  const char* name;
  std::function<void(CRecurrence&)> set;
  Dictionary keys;  // besides the entity name and the owner
};

void PrintTo(const Rule& rule, std::ostream* out) { *out << rule.name; }

const Rule kRules[] = {
    {"daily_until",
     [](CRecurrence& r) {
       r.SetDaily(2, 0, nullptr);
       r.GetRecurrenceData()->setUntilDate(CDateTime(kStart + 86400 * 10, 0));
     },
     {{u"frequency", u"daily"}, {u"interval", std::int64_t{2}}, {u"until", Date{kStart + 864000}}}},
    {"weekly_days",
     [](CRecurrence& r) {
       const Array days = Numbers({0, 3});
       r.SetWeekly(1, 5, nullptr, &days);
     },
     {{u"frequency", u"weekly"},
      {u"interval", std::int64_t{1}},
      {u"weekstartday", std::int64_t{1}},
      {u"sunday", Numbers({0})},
      {u"wednesday", Numbers({0})}}},
    {"monthly_by_position",
     [](CRecurrence& r) { r.SetMonthlyByPos(3, Numbers({-1, 2}), Numbers({5}), 0, nullptr); },
     {{u"frequency", u"monthly"}, {u"interval", std::int64_t{3}}, {u"friday", Numbers({-1, 2})}}},
    {"monthly_by_day",
     [](CRecurrence& r) { r.SetMonthlyByDay(1, Numbers({-1, 15}), 0, nullptr); },
     {{u"frequency", u"monthly"}, {u"interval", std::int64_t{1}}, {u"bymonthday", Numbers({-1, 15})}}},
    {"yearly_by_month",
     [](CRecurrence& r) { r.SetYearlyByMonth(1, Numbers({6}), 0, nullptr); },
     {{u"frequency", u"yearly"}, {u"interval", std::int64_t{1}}}},
};

class calendar_recurrence_record : public testing::TestWithParam<Rule> {};

TEST_P(calendar_recurrence_record, has_the_keys_of_its_kind) {
  CRecurrence rule;
  GetParam().set(rule);
  RecurrenceContainer container(u"V_Appointment", nullptr, u"S-1");
  Dictionary expected = GetParam().keys;
  expected.emplace(kEntity, u"com.apple.calendars.Recurrence");
  expected.emplace(u"owner", Array{Value(u"S-1")});
  EXPECT_EQ(container.createRecurrenceDataForDB(*rule.GetRecurrenceData()), expected);
}

INSTANTIATE_TEST_SUITE_P(rules, calendar_recurrence_record, testing::ValuesIn(kRules),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim
