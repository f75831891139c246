// Calendar entries through the calendar table: identity in every branch, the
// store records an entry becomes, and a whole synchronisation of one.

#include <gtest/gtest.h>

#include "mapping/MappingTestSupport.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/sync/AlarmContainer.h"
#include "phonepim/sync/AttendeeContainer.h"
#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/RecurrenceContainer.h"
#include "phonepim/sync/SyncRecordSchema.h"

namespace phonepim {
namespace {

using testing_support::ScratchFolder;
using testing_support::Text;
using Table = CalendarIDMappingTable;
const String kEntity = ISyncRecordEntityNameKey;
const String kKnown = u"0000000000000012-Calendar-35_Appointment";
constexpr double kStart = 1700000000.0;

TEST(calendar_identity, resolves_in_every_branch_through_the_table_on_disk) {
  ScratchFolder base;
  {
    Table table(u"N9", u"35", base.path());
    table.addCalendar(kKnown, u"S-12", Dictionary{});
    ASSERT_TRUE(table.save());
  }
  const String kNew = u"0000000000000013-Calendar-35_Appointment";
  const struct {
    std::optional<std::uint16_t> vCalID;
    std::optional<String> dbRecordID;
    std::int32_t state;
    std::optional<String> vCalRecordID;
    String dbRecordIDAfter;
    std::uint16_t vcalIDAfter;
  } rows[] = {
      {12, std::nullopt, 3, kKnown, u"S-12", 12},      // phone ID known
      {13, std::nullopt, 2, kNew, kNew, 13},           // phone ID new
      {std::nullopt, u"S-12", 3, kKnown, u"S-12", 12},  // store ID known
      {5, u"S-99", 1, std::nullopt, u"S-99", 1},        // store ID new: a temporary number
      {std::nullopt, std::nullopt, 0, std::nullopt, u"123456789ID_Calendar", 0},
  };
  auto table = std::make_shared<Table>(u"N9", u"35", base.path());
  for (const auto& row : rows) {
    CCalendar entry;
    entry.resolveIdentity(row.vCalID, u"35", row.dbRecordID, table);
    EXPECT_EQ(std::tie(entry.mState, entry.mDBRecordID, entry.mVcalID),
              std::tie(row.state, row.dbRecordIDAfter, row.vcalIDAfter));
    EXPECT_EQ(entry.vCalRecordID(), row.vCalRecordID);
    ASSERT_EQ(entry.attendeeMapper() != nullptr, row.vCalRecordID.has_value());
    if (row.vCalRecordID) {
      EXPECT_EQ(entry.attendeeMapper()->vObjectID(), *row.vCalRecordID);
      EXPECT_EQ(entry.attendeeMapper()->ownerID(), row.dbRecordIDAfter);
    }
  }
}

TEST(calendar_records, an_entry_without_identity_is_the_event_alone) {
  CCalendar plain;  // a task with out-of-range status, classification and priority
  plain.vCalendarType = 0x40;
  plain.status = 10;
  plain.classification = 7;
  plain.priority = 0;
  plain.createMetaData(u"CAL");
  EXPECT_EQ(plain.eventRecord(), (Dictionary{{kEntity, u"com.apple.calendars.Event"},
                                             {u"all day", false}, {u"classification", u"public"},
                                             {u"priority", std::int64_t{10}},
                                             {u"calendar", Array{Value(u"CAL")}}}));
  EXPECT_EQ(calendar_record::NewCalendarRecord(u"N9"),
            (Dictionary{{kEntity, u"com.apple.calendars.Calendar"}, {u"title", u"N9"}}));
}

// "State/Link" of the sub-records' meta entries, list by list.
constexpr const char16_t* kLists[] = {u"attendees", u"audio alarms", u"recurrences"};

std::vector<std::string> States(const Table& table, const String& vCalID) {
  std::vector<std::string> states;
  for (const char16_t* list : kLists) {
    const Array* items = FindAs<Array>(*table.meta(vCalID), list);
    for (const Value& item : items ? *items : Array{}) {
      const Dictionary& fields = item.get<Dictionary>();
      states.push_back(ToDisplayUTF8(fields.at(u"State").get<String>()) + "/" +
                       ToDisplayUTF8(fields.at(u"Link").get<String>()));
    }
  }
  return states;
}

// The phone's appointment number 4, as the reader would have filled it.
std::unique_ptr<CCalendar> ReadPhone(bool changed, const std::shared_ptr<Table>& table) {
  auto entry = std::make_unique<CCalendar>();
  entry->strSummary = u"Standup";
  entry->strLocation = u"";  // empty texts are left out
  entry->setStartDate(CDateTime(kStart, 0));
  entry->setEndDate(CDateTime(kStart + 3600, 0));
  entry->setDueDate(CDateTime(kStart + 7200, 0));
  entry->dtModified = CDateTimeNull(CDateTime(kStart - 60, 0));
  entry->classification = entry->status = 2;
  entry->priority = 1;
  entry->categories = 0x40;
  entry->UID = u"uid-1";
  entry->NewAttendee(u"ann@example.jp", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_DECLIENED, -1);
  entry->NewAttendee(changed ? u"cy@example.jp" : u"bob@example.jp", 1, 99, -1);
  entry->addAlarm(std::make_unique<CReminder>())
      ->SetRunTime(CDateTime(kStart - (changed ? 1000 : 600), 0));
  entry->addAlarm(std::make_unique<CReminder>());  // no run time: no record
  const Array monday{Value(std::int64_t{1})};
  CRecurrence* rule = entry->addRecurrence(std::make_unique<CRecurrence>());
  changed ? rule->SetMonthlyByDay(1, monday, 0, nullptr) : rule->SetWeekly(1, 0, nullptr, &monday);
  entry->resolveIdentity(4, u"35", std::nullopt, table);
  entry->createMetaData(u"CAL");
  return entry;
}

// The records an entry becomes, and what a second sync of it changed
// replaces (an unchanged one is the session's to test).
TEST(calendar_sync, an_entry_becomes_an_event_and_sub_records) {
  ScratchFolder base;
  auto table = std::make_shared<Table>(u"N9", u"35", base.path());
  auto entry = ReadPhone(false, table);
  const String vCalID = *entry->vCalRecordID();
  EXPECT_EQ(States(*table, vCalID), std::vector<std::string>(4, "New/Linked"));
  EXPECT_TRUE(entry->eventChanged());
  Dictionary event = entry->eventRecord();
  for (const char16_t* list : kLists) event.erase(list);
  EXPECT_EQ(Text(event),
            "{all day=false, calendar=['CAL'], categories=64, classification='confidential', "
            "entity='com.apple.calendars.Event', date modified=@1699999940, end date=@1700003600, "
            "external id='uid-1', start date=@1700000000, status='accepted', summary='Standup'}");
  const std::string owner = "owner=['" + ToDisplayUTF8(vCalID) + "']";
  EXPECT_EQ(Text(entry->attendeeMapper()->recordAtIndex(0)),
            "{entity='com.apple.calendars.Attendee', common name='ann@example.jp', " + owner +
                ", status='declined'}");
  EXPECT_EQ(entry->attendeeMapper()->recordAtIndex(1).at(u"status"), Value(u"needsaction"));
  EXPECT_EQ(Text(entry->alarmMapper()->recordAtIndex(0)),
            "{entity='com.apple.calendars.AudioAlarm', " + owner + ", triggerdate=@1699999400}");
  EXPECT_EQ(Text(entry->recurrenceMapper()->recordAtIndex(0)),
            "{entity='com.apple.calendars.Recurrence', frequency='weekly', interval=1, monday=[0], " +
                owner + ", weekstartday=1}");
  // bob, the old alarm and the weekly rule go; cy, the new ones come.
  table->addCalendar(vCalID, u"S-4", entry->eventRecord());
  const auto changed = ReadPhone(true, table);
  EXPECT_TRUE(changed->eventChanged());
  EXPECT_EQ(States(*table, vCalID),
            (std::vector<std::string>{"NoChange/Linked", "Delete/Unlinked", "New/Linked", "Delete/Unlinked",
                                      "New/Linked", "Delete/Unlinked", "New/Linked"}));
  // The identifiers went to the store data.
  const Dictionary& data = table->meta(vCalID)->at(u"Data").get<Dictionary>();
  for (const char16_t* list : kLists) EXPECT_EQ(data.at(list), changed->eventRecord().at(list));
}

}  // namespace
}  // namespace phonepim
