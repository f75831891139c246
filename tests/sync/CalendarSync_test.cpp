// Calendar entries through the calendar table: identity in every branch,
// and whole synchronisations of an event, a task and an anniversary.

#include <gtest/gtest.h>

#include "mapping/MappingTestSupport.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/sync/AttendeeContainer.h"

namespace phonepim {
namespace {

using testing_support::ScratchFolder;

const String kIMEI = u"35";
const String kKnown = u"0000000000000012-Calendar-35_Appointment";

struct Identity {
  const char* name;
  std::optional<std::uint16_t> vCalID;
  std::optional<String> dbRecordID;
  std::int32_t state;
  std::optional<String> vCalRecordID;
  String dbRecordIDAfter;
  std::uint16_t vcalIDAfter;
};

void PrintTo(const Identity& row, std::ostream* out) { *out << row.name; }

const Identity kIdentities[] = {
    {"phone_id_known", 12, std::nullopt, 3, kKnown, u"S-12", 12},
    {"phone_id_new", 13, std::nullopt, 2, u"0000000000000013-Calendar-35_Appointment",
     u"0000000000000013-Calendar-35_Appointment", 13},
    {"store_id_known", std::nullopt, u"S-12", 3, kKnown, u"S-12", 12},
    {"store_id_new", 5, u"S-99", 1, std::nullopt, u"S-99", 1},
    {"neither", std::nullopt, std::nullopt, 0, std::nullopt, u"123456789ID_Calendar", 0},
};

class calendar_identity : public testing::TestWithParam<Identity> {};

TEST_P(calendar_identity, resolves_through_the_table_on_disk) {
  ScratchFolder base;
  {
    CalendarIDMappingTable table(u"N9", kIMEI, base.path());
    table.addCalendar(kKnown, u"S-12", Dictionary{});
    ASSERT_TRUE(table.save());
  }
  const Identity& row = GetParam();
  auto table = std::make_shared<CalendarIDMappingTable>(u"N9", kIMEI, base.path());
  CCalendar entry;
  entry.resolveIdentity(row.vCalID, kIMEI, row.dbRecordID, table);
  EXPECT_EQ(entry.mState, row.state);
  EXPECT_EQ(entry.vCalRecordID(), row.vCalRecordID);
  EXPECT_EQ(entry.mDBRecordID, row.dbRecordIDAfter);
  EXPECT_EQ(entry.mVcalID, row.vcalIDAfter);
  EXPECT_EQ(entry.idMapper(), table);
  EXPECT_EQ(entry.attendeeMapper() != nullptr, row.vCalRecordID.has_value());
  if (entry.attendeeMapper() != nullptr) {
    EXPECT_EQ(entry.attendeeMapper()->vObjectID(), *row.vCalRecordID);
    EXPECT_EQ(entry.attendeeMapper()->ownerID(), row.dbRecordIDAfter);
  }
}

INSTANTIATE_TEST_SUITE_P(branches, calendar_identity, testing::ValuesIn(kIdentities),
                         [](const auto& info) { return std::string(info.param.name); });

// The phone's entry number 4 of one kind, as the reader would have filled it.
std::unique_ptr<CCalendar> ReadPhone(std::int32_t typeBits, bool changed,
                                     const std::shared_ptr<CalendarIDMappingTable>& table) {
  auto entry = std::make_unique<CCalendar>();
  entry->vCalendarType = typeBits;
  entry->strSummary = u"Standup";
  entry->setStartDate(CDateTime(1700000000.0, 0));
  entry->NewAttendee(u"ann@example.jp", 1, 2, -1);
  entry->NewAttendee(changed ? u"cy@example.jp" : u"bob@example.jp", 1, 0, -1);
  entry->addAlarm(std::make_unique<CReminder>())
      ->SetRunTime(CDateTime(changed ? 1699999000.0 : 1699999400.0, 0));
  const Array monday{Value(std::int64_t{1})};
  CRecurrence* rule = entry->addRecurrence(std::make_unique<CRecurrence>());
  if (changed) {
    rule->SetMonthlyByDay(1, monday, 0, nullptr);
  } else {
    rule->SetWeekly(1, 0, nullptr, &monday);
  }
  entry->resolveIdentity(4, u"35", std::nullopt, table);
  entry->createMetaData(table->calendarRecordID());
  return entry;
}

// "State/Link" of the entries of every list, in list order.
std::vector<std::string> States(const CalendarIDMappingTable& table, const String& vCalID) {
  std::vector<std::string> states;
  for (const char16_t* list : {u"attendees", u"audio alarms", u"recurrences"}) {
    for (const Value& item : table.meta(vCalID)->at(list).get<Array>()) {
      const Dictionary& fields = item.get<Dictionary>();
      states.push_back(ToDisplayUTF8(fields.at(u"State").get<String>()) + "/" +
                       ToDisplayUTF8(fields.at(u"Link").get<String>()));
    }
  }
  return states;
}

std::vector<String> Identifiers(const Dictionary& event) {
  std::vector<String> identifiers;
  for (const char16_t* list : {u"attendees", u"audio alarms", u"recurrences"}) {
    for (const Value& id : event.at(list).get<Array>()) identifiers.push_back(id.get<String>());
  }
  return identifiers;
}

class calendar_sync : public testing::TestWithParam<std::pair<std::int32_t, const char*>> {};

TEST_P(calendar_sync, keeps_identifiers_and_replaces_what_changed) {
  const auto [typeBits, dataKey] = GetParam();
  ScratchFolder base;
  const auto open = [&] { return std::make_shared<CalendarIDMappingTable>(u"N9", kIMEI, base.path()); };
  std::vector<String> first;
  String vCalID;
  {
    auto table = open();
    auto entry = ReadPhone(typeBits, false, table);
    vCalID = *entry->vCalRecordID();
    EXPECT_EQ(States(*table, vCalID), std::vector<std::string>(4, "New/Linked"));
    EXPECT_TRUE(entry->eventChanged());
    table->addCalendar(vCalID, u"S-4", entry->eventRecord());
    first = Identifiers(entry->eventRecord());
    ASSERT_TRUE(table->save());
  }
  {
    auto table = open();
    auto entry = ReadPhone(typeBits, false, table);
    EXPECT_EQ(entry->mDBRecordID, u"S-4");
    EXPECT_EQ(States(*table, vCalID), std::vector<std::string>(4, "NoChange/Linked"));
    EXPECT_EQ(Identifiers(entry->eventRecord()), first);
    EXPECT_FALSE(entry->eventChanged());
    ASSERT_TRUE(table->save());
  }
  auto table = open();
  auto entry = ReadPhone(typeBits, true, table);
  // bob, the old alarm and the weekly rule go; cy, the new alarm and the
  // monthly rule come.
  EXPECT_EQ(States(*table, vCalID),
            (std::vector<std::string>{"NoChange/Linked", "Delete/Unlinked", "New/Linked",
                                      "Delete/Unlinked", "New/Linked", "Delete/Unlinked",
                                      "New/Linked"}));
  const std::vector<String> now = Identifiers(entry->eventRecord());
  EXPECT_EQ(now[0], first[0]);
  for (std::size_t i = 1; i < now.size(); ++i) EXPECT_NE(now[i], first[i]);
  // The identifiers went to the kind's store data, which now differs.
  const Dictionary& kept = table->meta(vCalID)->at(StringFromASCII(dataKey)).get<Dictionary>();
  EXPECT_EQ(Identifiers(kept), now);
  EXPECT_TRUE(entry->eventChanged());
  table->modifyCalendar(vCalID, entry->eventRecord());
  EXPECT_EQ(table->vCalIDForDBID(u"S-4"), vCalID);
}

INSTANTIATE_TEST_SUITE_P(kinds, calendar_sync,
                         testing::Values(std::pair{0, "Data"}, std::pair{0x2, "Data"},
                                         std::pair{0x40, "Task Data"}),
                         [](const auto& info) {
                           return std::string(info.index == 0   ? "event"
                                              : info.index == 1 ? "anniversary"
                                                                : "task");
                         });

}  // namespace
}  // namespace phonepim
