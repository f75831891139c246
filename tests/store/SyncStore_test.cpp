// The store: records of every value type kept exactly, transactions, and
// the files it refuses, each with its message and the file left unchanged.

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include "mapping/MappingTestSupport.h"
#include "phonepim/store/SyncStore.h"
#include "phonepim/sync/SyncRecordSchema.h"

namespace phonepim {
namespace {

using testing_support::ScratchFolder;
using testing_support::Text;
using Mode = SyncStore::OpenMode;

void RunSQL(const std::filesystem::path& path, const char* sql) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
  sqlite3_close(db);
}

// The message of the StoreError `step` throws, or "no error".
std::string ErrorOf(const std::function<void()>& step) {
  try {
    step();
  } catch (const StoreError& e) {
    return e.what();
  }
  return "no error";
}

// A record with a value of every type.
Dictionary Record(const String& entity) {
  return {{ISyncRecordEntityNameKey, entity}, {u"value", u"+81 90"}, {u"birthday", Date{-86400.25}},
          {u"count", 7}, {u"ratio", 0.5}, {u"contact", Array{u"A-1", true}}, {u"image", Bytes{0xFF, 0x00}}};
}

TEST(sync_store, keeps_records_exactly_and_lists_them_by_entity) {
  ScratchFolder folder;
  const auto path = folder.path() / "a" / "store.sqlite";
  const std::string at = "store " + path.string() + ": ";
  {
    SyncStore store(path, Mode::kCreate);
    EXPECT_EQ(ErrorOf([&] { store.add(u"1", Record(kURLEntityName)); }), at + "a change outside a transaction");
    store.begin();
    store.add(u"2", Record(kPhoneNumberEntityName));
    store.add(u"1", Record(kPhoneNumberEntityName));
    store.add(u"3", Record(kContactEntityName));
    EXPECT_EQ(ErrorOf([&] { store.add(u"1", Record(kURLEntityName)); }),
              at + "cannot add record 1: UNIQUE constraint failed: records.id");
    EXPECT_EQ(ErrorOf([&] { store.add(u"4", Dictionary{{u"value", u"x"}}); }), at + "record 4 has no entity name");
    store.commit();
    store.begin();
    store.modify(u"2", Dictionary{{ISyncRecordEntityNameKey, kEmailAddressEntityName}});
    EXPECT_TRUE(store.remove(u"3"));
    EXPECT_FALSE(store.remove(u"3"));
    EXPECT_EQ(ErrorOf([&] { store.modify(u"9", Record(kURLEntityName)); }),
              at + "no record 9 to change, or the change has no entity name");
    store.setTable(u"N900(35)", Value(Dictionary{{u"K", Record(kURLEntityName)}}), "10:20.5:30");
    store.commit();
    // A rolled back sync changes nothing, and neither does one abandoned
    // when the store closes.
    store.begin();
    store.add(u"5", Record(kURLEntityName));
    store.setTable(u"t.plist", Value(Dictionary()), "1:2:3");
    store.rollback();
    store.begin();
    store.add(u"6", Record(kURLEntityName));
  }
  const SyncStore store(path, Mode::kReadOnly);
  EXPECT_EQ(Text(*store.table(u"N900(35)")),
            "{K={birthday=@-86400.25, entity='com.apple.contacts.URL', contact=['A-1', true], "
            "count=7, image=<ff00>, ratio=0.5r, value='+81 90'}}");
  EXPECT_EQ(store.tableFileStamp(u"N900(35)"), "10:20.5:30");
  EXPECT_EQ(store.tableNames(), std::vector<String>{u"N900(35)"});
  EXPECT_EQ(store.fetch(u"1"), Record(kPhoneNumberEntityName));
  EXPECT_EQ(store.fetch(u"3"), std::nullopt);
  const std::vector<StoreRecord> phones = store.list(kPhoneNumberEntityName);
  ASSERT_EQ(phones.size(), 1u);
  EXPECT_EQ(phones[0].id, u"1");
  using Counts = std::vector<std::pair<String, std::size_t>>;
  EXPECT_EQ(store.entities(), (Counts{{kEmailAddressEntityName, 1}, {kPhoneNumberEntityName, 1}}));
}

// Damage inside a store is reported, never taken for data.
TEST(sync_store, damaged_contents_are_reported) {
  ScratchFolder folder;
  const auto path = folder.path() / "store.sqlite";
  {
    SyncStore store(path, Mode::kCreate);
    store.begin();
    store.add(u"R", Record(kURLEntityName));
    store.setTable(u"T", Value(Dictionary{{u"K", Array{u"a", 1}}}), "");
    store.commit();
  }
  RunSQL(path, "UPDATE records SET data = x'62706c6973743030ff'");
  RunSQL(path, "UPDATE phone_tables SET content = substr(content, 1, length(content) - 1)");
  const SyncStore store(path, Mode::kReadOnly);
  EXPECT_EQ(ErrorOf([&] { store.fetch(u"R"); }), "store " + path.string() + ": record R is damaged");
  EXPECT_EQ(ErrorOf([&] { store.table(u"T"); }), "store " + path.string() + ": the table T is damaged");
}

// Files that are not a store of this phonepim are refused clearly and left
// as they were.
TEST(sync_store, a_file_of_another_kind_is_refused_and_left_alone) {
  const std::tuple<std::function<void(const std::filesystem::path&)>, Mode, std::string> rows[] = {
      {[](const auto& p) { RunSQL(p, "CREATE TABLE notes (text TEXT)"); }, Mode::kCreate,
       " is not a phonepim store (an SQLite database of another application)"},
      {[](const auto& p) {
         SyncStore(p, Mode::kCreate);
         RunSQL(p, "PRAGMA user_version = 2");
       },
       Mode::kCreate, " is a phonepim store of version 2; this phonepim reads version 1"},
      {[](const auto& p) { std::ofstream{p}; }, Mode::kReadOnly, " is an empty file, not a phonepim store"}};
  for (const auto& [make, mode, message] : rows) {
    ScratchFolder folder;
    const auto path = folder.path() / "store.sqlite";
    make(path);
    const std::string before = testing_support::ReadFile(path);
    EXPECT_EQ(ErrorOf([&, mode = mode] { SyncStore(path, mode); }), path.string() + message);
    EXPECT_EQ(testing_support::ReadFile(path), before);
  }
}

// A second writer waits for the first and gives up clearly after its
// timeout; a reader is not kept out.
TEST(sync_store, a_store_held_by_another_process_is_reported) {
  ScratchFolder folder;
  const auto path = folder.path() / "store.sqlite";
  SyncStore(path, Mode::kCreate);
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    SyncStore holder(path, Mode::kExisting);
    holder.begin();
    char byte = 1;
    (void)!write(ready[1], &byte, 1);
    usleep(600 * 1000);
    holder.commit();
    _exit(0);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  SyncStore impatient(path, Mode::kExisting, std::chrono::milliseconds(50));
  EXPECT_EQ(ErrorOf([&] { impatient.begin(); }),
            "the store " + path.string() + " is in use by another process (a sync still running?); try again");
  EXPECT_EQ(impatient.count(), 0u);
  SyncStore patient(path, Mode::kExisting, std::chrono::seconds(20));
  patient.begin();  // waits for the holder
  patient.commit();
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  close(ready[0]);
  close(ready[1]);
}

}  // namespace
}  // namespace phonepim
