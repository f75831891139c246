// The phone's calendar through the session: the bundled calendar synced,
// again unchanged, with an alarm moved, and with an entry gone; and both
// exports in one transaction.

#include <gtest/gtest.h>

#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/SyncRecordSchema.h"
#include "phonepim/session/CalendarFromStore.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "session/SessionTestSupport.h"

namespace phonepim {
namespace {

using namespace testing_support;

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

// "kind change summary +new -deleted =kept" per record.
std::vector<std::string> Lines(const SyncReport& report) {
  std::vector<std::string> lines;
  for (const RecordOutcome& r : report.records) {
    lines.push_back(std::string(r.calendar ? "entry " : "contact ") +
                    std::string(RecordChangeName(r.change)) + " " + ToDisplayUTF8(r.name) + " +" +
                    std::to_string(r.subRecords.added) + " -" +
                    std::to_string(r.subRecords.removed) + " =" + std::to_string(r.subRecords.kept));
  }
  return lines;
}

TEST(sync_calendar, follows_the_phone_calendar) {
  const std::string calendar = ReadFile(std::string(PHONEPIM_SOURCE_DIR) + "/tests/tool/data/sync-calendar.vcs");
  const std::string contacts = Card("Smith;Anna", {"CELL:111"});
  StoreFolder folder;
  SyncStore store(folder.store(), SyncStore::OpenMode::kCreate);
  SyncSession session(store, kPhone, folder.tables());
  using L = std::vector<std::string>;
  EXPECT_EQ(Lines(session.sync({contacts, calendar}, false)),
            (L{"contact new Anna Smith +2 -0 =0", "entry new Zahnarzt – Kontrolle +1 -0 =0",
               "entry new Team stand-up +1 -0 =0", "entry new Renew passport +0 -0 =0"}));
  const SyncReport again = session.sync({std::nullopt, calendar}, false);
  EXPECT_EQ(Lines(again), (L{"entry unchanged Zahnarzt – Kontrolle +0 -0 =1",
                             "entry unchanged Team stand-up +0 -0 =1",
                             "entry unchanged Renew passport +0 -0 =0"}));
  EXPECT_FALSE(again.written);
  using Counts = std::vector<std::pair<String, std::size_t>>;
  const Counts before{{calendar_record::kAudioAlarmEntityName, 1},
                      {calendar_record::kCalendarEntityName, 1},
                      {calendar_record::kEventEntityName, 3},
                      {calendar_record::kRecurrenceEntityName, 1},
                      {kContactEntityName, 1},
                      {kEmailAddressEntityName, 1},
                      {kPhoneNumberEntityName, 1}};
  EXPECT_EQ(store.entities(), before);

  // The alarm moved: its sub-record is replaced. The task went: its record
  // goes, the others stay.
  const std::string edited = Replaced(
      Replaced(calendar, "AALARM:20261203T081500Z", "AALARM:20261203T080000Z"),
      "BEGIN:VTODO\r\nSUMMARY:Renew passport\r\nDUE:20270115T000000\r\nPRIORITY:1\r\n"
      "STATUS:NEEDS ACTION\r\nEND:VTODO\r\n",
      "");
  EXPECT_EQ(Lines(session.sync({std::nullopt, edited}, false)),
            (L{"entry changed Zahnarzt – Kontrolle +1 -1 =0",
               "entry unchanged Team stand-up +0 -0 =1", "entry deleted Renew passport +0 -0 =0"}));
  Counts after = before;
  after[2].second = 2;
  EXPECT_EQ(store.entities(), after);
}

}  // namespace
}  // namespace phonepim

namespace phonepim {
namespace {

using namespace testing_support;

// The way back: store records as the calendar side builds them, written as
// the phone's text again.
TEST(calendar_from_store, writes_entries_back_as_vcalendar) {
  using namespace calendar_record;
  StoreFolder folder;
  SyncStore store(folder.store(), SyncStore::OpenMode::kCreate);
  store.begin();
  const Dictionary entries{
      {u"0000000000000002-Calendar-35_Task", Dictionary{{u"dbRecordID", u"T"}}},
      {u"0000000000000001-Calendar-35_Appointment", Dictionary{{u"dbRecordID", u"E"}}},
      {u"Calendar", u"C"}};
  store.setTable(u"Calendar_N900_35", Value(entries), "");
  store.add(u"E", {{ISyncRecordEntityNameKey, kEventEntityName},
                   {kSummary, u"Dentist"},
                   {kStartDate, Date{1796286600}},
                   {kEndDate, Date{1796288400}},
                   {kClassification, u"private"},
                   {kAudioAlarms, Array{u"A"}},
                   {kRecurrences, Array{u"R"}}});
  store.add(u"A", {{ISyncRecordEntityNameKey, kAudioAlarmEntityName}, {kTriggerDate, Date{1796285700}}});
  store.add(u"R", {{ISyncRecordEntityNameKey, kRecurrenceEntityName},
                   {kFrequency, u"weekly"},
                   {kInterval, 2},
                   {kDayNames[1], Array{0}},
                   {kDayNames[3], Array{0}}});
  store.add(u"T", {{ISyncRecordEntityNameKey, kEventEntityName},
                   {kSummary, u"Passport"},
                   {kDueDate, Date{1799971200}},
                   {kPriority, 1}});
  store.commit();
  std::string text;
  for (const auto& entry : CalendarFromStore(store, u"35")) {
    vObject object;
    vCalendar::Generate(entry.get(), &object, static_cast<unsigned int>(entry->GetType()));
    text.append(reinterpret_cast<const char*>(object.object()->GetData()), object.object()->GetSize());
    text += "|";
  }
  EXPECT_EQ(text,
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nCLASS:PRIVATE\r\nSUMMARY:Dentist\r\n"
            "DTSTART:20261203T083000Z\r\nDTEND:20261203T090000Z\r\nCATEGORIES:APPOINTMENT\r\n"
            "STATUS:NONE\r\nPRIORITY:0\r\n"
            "X-ALLDAY:UNSET\r\nRRULE:W2 MO WE #0\r\nAALARM;ENCODING=QUOTED-PRINTABLE:"
            "20261203T081500Z;;;\r\nEND:VEVENT\r\nEND:VCALENDAR|"
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VTODO\r\nCLASS:PUBLIC\r\nSUMMARY:Passport\r\n"
            "DUE:20270115T000000Z\r\nCATEGORIES:APPOINTMENT\r\nSTATUS:NONE\r\nPRIORITY:1\r\n"
            "X-ALLDAY:UNSET\r\nEND:VTODO\r\n"
            "END:VCALENDAR|");
}

}  // namespace
}  // namespace phonepim
