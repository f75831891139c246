// The calendar back out of the store, from an event another host wrote with
// nothing but its entity and summary.

#include <gtest/gtest.h>

#include "mapping/MappingTestSupport.h"
#include "phonepim/session/CalendarFromStore.h"
#include "phonepim/store/SyncStore.h"
#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/SyncRecordSchema.h"
#include "vcalendar/vCalendarTestSupport.h"

namespace phonepim {
namespace {

TEST(calendar_from_store, an_event_without_its_usual_keys_comes_back) {
  testing_support::ScratchFolder folder;
  SyncStore store(folder.path() / "store.sqlite", SyncStore::OpenMode::kCreate);
  store.begin();
  store.setTable(u"Calendar_N900_35", Value(Dictionary{{u"0000000000000001-Calendar-35_Appointment",
                                                        Dictionary{{u"dbRecordID", u"E"}}}}), "");
  store.add(u"E", {{ISyncRecordEntityNameKey, calendar_record::kEventEntityName},
                   {calendar_record::kSummary, u"Dentist"}});
  store.commit();
  const auto entries = CalendarFromStore(store, u"35");
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(testing_vcalendar::Write(*entries[0], static_cast<unsigned int>(entries[0]->GetType())),
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nCLASS:PUBLIC\r\nSUMMARY:Dentist\r\n"
            "CATEGORIES:APPOINTMENT\r\nSTATUS:NONE\r\nPRIORITY:0\r\nX-ALLDAY:UNSET\r\nEND:VEVENT\r\n"
            "END:VCALENDAR");
}

}  // namespace
}  // namespace phonepim
