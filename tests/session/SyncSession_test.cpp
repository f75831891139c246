// Whole synchronisations of a small address book: first, unchanged,
// edited, deleted, unreadable and dry runs, checked in the report, the store
// and the table.

#include <gtest/gtest.h>

#include "phonepim/platform/Assert.h"
#include "phonepim/sync/SyncRecordSchema.h"
#include "session/SessionTestSupport.h"

namespace phonepim {
namespace {

using namespace testing_support;

const std::string kAnna = Card("Smith;Anna", {"CELL:+44 7700 900123", "HOME:+44 20 7946 0018"});
const std::string kBo = Card("Berg;Bo", {"WORK;VOICE:+46 8 123 45"});
const std::string kCho = Card("Cho;Min", {"CELL:010-1234-5678"});

// What a report says, in one line per record: "change name +new -deleted =kept".
std::vector<std::string> Lines(const SyncReport& report) {
  std::vector<std::string> lines;
  for (const RecordOutcome& r : report.records) {
    lines.push_back(std::string(RecordChangeName(r.change)) + " " + ToDisplayUTF8(r.name) + " +" +
                    std::to_string(r.subRecords.added) + " -" +
                    std::to_string(r.subRecords.removed) + " =" + std::to_string(r.subRecords.kept));
  }
  return lines;
}

// The identifiers of one contact's phone numbers, in the table's order.
std::vector<String> PhoneIDs(const StoreFolder& folder, std::size_t vCardID) {
  ContactIDMappingTable table(kPhone.model, kPhone.imei, folder.tables());
  const String storeID =
      *table.dbIDForVCardID(CContact::generateNewVCardID(static_cast<int>(vCardID), kPhone.imei));
  std::vector<String> ids;
  for (const Value& v : *FindAs<Array>(*table.meta(storeID), kPhoneNumbersKey)) {
    ids.push_back(v.get<Dictionary>().at(kMetaKeyIdentifier).get<String>());
  }
  return ids;
}

TEST(sync_session, follows_the_phone_through_edits_and_deletions) {
  StoreFolder folder;
  using Lines_ = std::vector<std::string>;
  EXPECT_EQ(Lines(folder.Sync(kAnna + kBo + kCho)),
            (Lines_{"new Anna Smith +3 -0 =0", "new Bo Berg +2 -0 =0", "new Min Cho +2 -0 =0"}));
  const std::vector<String> annaBefore = PhoneIDs(folder, 1);
  const std::string storeBytes = ReadFile(folder.store());

  const SyncReport again = folder.Sync(kAnna + kBo + kCho);
  EXPECT_EQ(Lines(again), (Lines_{"unchanged Anna Smith +0 -0 =3", "unchanged Bo Berg +0 -0 =2",
                                  "unchanged Min Cho +0 -0 =2"}));
  EXPECT_FALSE(again.written);
  EXPECT_EQ(ReadFile(folder.store()), storeBytes);

  // One number edited: its sub-record is replaced, the other keeps its ID.
  const std::string annaEdited =
      Card("Smith;Anna", {"CELL:+44 7700 900999", "HOME:+44 20 7946 0018"});
  EXPECT_EQ(Lines(folder.Sync(annaEdited + kBo + kCho)),
            (Lines_{"changed Anna Smith +1 -1 =2", "unchanged Bo Berg +0 -0 =2",
                    "unchanged Min Cho +0 -0 =2"}));
  const std::vector<String> annaAfter = PhoneIDs(folder, 1);
  ASSERT_EQ(annaAfter.size(), 2u);
  EXPECT_EQ(annaAfter[0], annaBefore[1]);
  EXPECT_NE(annaAfter[1], annaBefore[0]);

  // The last card deleted on the phone: its record and sub-records go.
  EXPECT_EQ(Lines(folder.Sync(annaEdited + kBo)),
            (Lines_{"unchanged Anna Smith +0 -0 =3", "unchanged Bo Berg +0 -0 =2",
                    "deleted Min Cho +0 -2 =0"}));
  const SyncStore store(folder.store(), SyncStore::OpenMode::kReadOnly);
  EXPECT_EQ(store.count(), 2u + 3u + 2u);
  EXPECT_EQ(ExportText(store),
            "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Smith;Anna;;;;;;\r\nTEL;CELL:+44 7700 900999\r\n"
            "TEL;HOME:+44 20 7946 0018\r\nEMAIL:Smith@example.org\r\nEND:VCARD\r\n"
            "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Berg;Bo;;;;;;\r\nTEL;WORK:+46 8 123 45\r\n"
            "EMAIL:Berg@example.org\r\nEND:VCARD\r\n");
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
  EXPECT_EQ(Lines(report), std::vector<std::string>{"unchanged Anna Smith +0 -0 =3"});
  EXPECT_EQ(SyncStore(folder.store(), SyncStore::OpenMode::kReadOnly).count(), 2u + 5u);
}

TEST(sync_session, a_dry_run_reports_the_same_and_writes_nothing) {
  StoreFolder folder;
  folder.Sync(kAnna + kBo);
  const std::string store = ReadFile(folder.store());
  const std::string table = ReadFile(folder.tableFile());
  const std::string edited = kAnna + kCho;
  const std::vector<std::string> dry = Lines(folder.Sync(edited, true));
  EXPECT_EQ(ReadFile(folder.store()), store);
  EXPECT_EQ(ReadFile(folder.tableFile()), table);
  EXPECT_EQ(dry, Lines(folder.Sync(edited)));
  EXPECT_EQ(dry, (std::vector<std::string>{"unchanged Anna Smith +0 -0 =3",
                                           "changed Min Cho +2 -2 =0"}));
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
    EXPECT_EQ(Lines(report), (std::vector<std::string>{"unchanged Anna Smith +0 -0 =3",
                                                       "unchanged Bo Berg +0 -0 =2"}));
    EXPECT_TRUE(report.written);
    EXPECT_TRUE(FileAgreesWithStore(SyncStore(folder.store(), SyncStore::OpenMode::kReadOnly),
                                    folder.tableFile()));
    EXPECT_FALSE(folder.Sync(kAnna + kBo).written);
  }
}

}  // namespace
}  // namespace phonepim
