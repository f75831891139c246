// The example of docs/synchronising-calendars.md, compiled and run.

#include <gtest/gtest.h>

#include "sync/SyncTestSupport.h"

// BEGIN EXAMPLE
#include <filesystem>
#include <memory>

#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/model/CCalendar.h"

using namespace phonepim;

// One synchronisation of a phone holding one appointment with an alarm.
// Returns the store identifier of the alarm.
String SynchroniseCalendarOnce(const std::filesystem::path& metaFolder) {
  const String imei = u"356938035643809";
  auto table = std::make_shared<CalendarIDMappingTable>(u"N900", imei, metaFolder);

  // The phone's entry number 8, as vCalendar::Parse would have filled it.
  CCalendar entry;
  entry.strSummary = u"Dentist";
  entry.setStartDate(CDateTime(1767258000.0, 0));
  entry.addAlarm(std::make_unique<CReminder>())->SetRunTime(CDateTime(1767256200.0, 0));

  // Its identity: once the store has the event, the table knows its ID.
  entry.resolveIdentity(8, imei, std::nullopt, table);

  // Build the event and its sub-records and match them against the table:
  // "New" the first time, "NoChange" after (push "New" ones to the store,
  // remove "Delete" ones).
  entry.createMetaData(table->calendarRecordID());
  const String& phoneID = *entry.vCalRecordID();
  const CalendarIDMappingTable& view = *table;
  const Array& alarms = view.meta(phoneID)->at(u"audio alarms").get<Array>();
  const String alarmID = alarms.front().get<Dictionary>().at(u"identifier").get<String>();

  // The event itself, when it is new or changed.
  if (entry.eventChanged()) {
    if (entry.mState & CCalendar::kStateDBRecordIDKnown) {
      table->modifyCalendar(phoneID, entry.eventRecord());
    } else {
      table->addCalendar(phoneID, IDMappingTable::newIdentifier(), entry.eventRecord());
    }
  }
  table->save();
  return alarmID;
}
// END EXAMPLE

namespace {

using namespace phonepim::testing_support;

TEST(synchronising_calendars_example, a_second_synchronisation_keeps_the_identifiers) {
  ScratchFolder folder;
  const String first = SynchroniseCalendarOnce(folder.path());
  EXPECT_EQ(SynchroniseCalendarOnce(folder.path()), first);
  const String phoneID = u"0000000000000008-Calendar-356938035643809_Appointment";
  const CalendarIDMappingTable saved(u"N900", u"356938035643809", folder.path());
  const Dictionary& meta = *saved.meta(phoneID);
  EXPECT_EQ(meta.at(u"State"), Value(u"AddedBySyncDB"));
  EXPECT_EQ(meta.at(u"Data").get<Dictionary>().at(u"summary"), Value(u"Dentist"));
  EXPECT_EQ(meta.at(u"Data").get<Dictionary>().at(u"audio alarms"), Value(Array{Value(first)}));
  EXPECT_EQ(saved.vCalIDForDBID(meta.at(u"dbRecordID").get<String>()), phoneID);
}

}  // namespace
