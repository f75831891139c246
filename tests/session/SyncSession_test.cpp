// Whole synchronisations of an address book and a calendar that the tool's
// sync scenario does not take: an unreadable card, a damaged table file, a
// calendar entry edited and one deleted.

#include <gtest/gtest.h>

#include "phonepim/platform/Assert.h"
#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/SyncRecordSchema.h"
#include "session/SessionTestSupport.h"

namespace phonepim {
namespace {

using namespace testing_support;
using L = std::vector<std::string>;

const std::string kAnna = Card("Smith;Anna", {"CELL:+44 7700 900123", "HOME:+44 20 7946 0018"});
const std::string kBo = Card("Berg;Bo", {"WORK;VOICE:+46 8 123 45"});

// What a report says, in one line per record: "change name +new -deleted =kept".
L Lines(const SyncReport& report) {
  L lines;
  for (const RecordOutcome& r : report.records) {
    lines.push_back(std::string(r.calendar ? "entry " : "") + std::string(RecordChangeName(r.change)) + " " +
                    ToDisplayUTF8(r.name) + " +" + std::to_string(r.subRecords.added) + " -" +
                    std::to_string(r.subRecords.removed) + " =" + std::to_string(r.subRecords.kept));
  }
  return lines;
}

// A card that cannot be read is no deletion: its record stays as it was.
TEST(sync_session, an_unreadable_card_keeps_its_record) {
  const ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  StoreFolder folder;
  folder.Sync(kAnna + kBo);
  const SyncReport report =
      folder.Sync(kAnna + "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Berg;Bo\r\nEND:VCARD\r\n");
  ASSERT_EQ(report.failures.size(), 1u);
  EXPECT_EQ(report.failures[0].object, 2u);
  EXPECT_EQ(report.failures[0].line, 8u);
  EXPECT_EQ(report.failures[0].reason,
            "the reader refused it: its VERSION is not 2.1 (assertion \"_strnicmp(data, \"2.1\", "
            "len) == 0\")");
  EXPECT_EQ(Lines(report), L{"unchanged Anna Smith +0 -0 =3"});
  EXPECT_EQ(SyncStore(folder.store(), SyncStore::OpenMode::kReadOnly).count(), 2u + 5u);
}

// A table file that lost its last write (or was damaged, or removed) is
// never read, and is written again from the store's table.
TEST(sync_session, a_table_file_that_disagrees_with_the_store_is_rewritten) {
  StoreFolder folder;
  folder.Sync(kAnna + kBo);
  for (const char* damage : std::initializer_list<const char*>{"", "<plist>", nullptr}) {
    if (damage) {
      std::ofstream(folder.tableFile(), std::ios::binary | std::ios::trunc) << damage;
    } else {
      std::filesystem::remove(folder.tableFile());
    }
    const SyncReport report = folder.Sync(kAnna + kBo);
    EXPECT_EQ(Lines(report), (L{"unchanged Anna Smith +0 -0 =3", "unchanged Bo Berg +0 -0 =2"}));
    EXPECT_TRUE(report.written);
    EXPECT_TRUE(FileAgreesWithStore(SyncStore(folder.store(), SyncStore::OpenMode::kReadOnly),
                                    folder.tableFile()));
    EXPECT_FALSE(folder.Sync(kAnna + kBo).written);
  }
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

// The alarm moved: its sub-record is replaced. The task went: its record
// goes, the others stay.
TEST(sync_calendar, an_edited_entry_is_replaced_in_part_and_a_gone_one_deleted) {
  const std::string calendar = ReadFile(PHONEPIM_SOURCE_DIR "/tests/tool/data/sync-calendar.vcs");
  StoreFolder folder;
  SyncStore store(folder.store(), SyncStore::OpenMode::kCreate);
  SyncSession session(store, kPhone, folder.tables());
  session.sync({kAnna, calendar}, false);
  const std::string edited = Replaced(
      Replaced(calendar, "AALARM:20261203T081500Z", "AALARM:20261203T080000Z"),
      "BEGIN:VTODO\r\nSUMMARY:Renew passport\r\nDUE:20270115T000000\r\nPRIORITY:1\r\n"
      "STATUS:NEEDS ACTION\r\nEND:VTODO\r\n",
      "");
  EXPECT_EQ(Lines(session.sync({std::nullopt, edited}, false)),
            (L{"entry changed Zahnarzt – Kontrolle +1 -1 =0",
               "entry unchanged Team stand-up +0 -0 =1", "entry deleted Renew passport +0 -0 =0"}));
  using Counts = std::vector<std::pair<String, std::size_t>>;
  EXPECT_EQ(store.entities(), (Counts{{calendar_record::kAudioAlarmEntityName, 1},
                                      {calendar_record::kCalendarEntityName, 1},
                                      {calendar_record::kEventEntityName, 2},
                                      {calendar_record::kRecurrenceEntityName, 1},
                                      {kContactEntityName, 1},
                                      {kEmailAddressEntityName, 1},
                                      {kPhoneNumberEntityName, 2}}));
}

}  // namespace
}  // namespace phonepim
