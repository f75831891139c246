// A sync killed at each of its writes in turn: afterwards the next sync
// must converge to exactly what an uninterrupted sync leaves, with the
// table file and the store in agreement.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "mapping/MappingTestSupport.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/platform/PropertyList.h"
#include "phonepim/session/ContactsFromStore.h"
#include "phonepim/session/SyncSession.h"
#include "phonepim/store/SyncStore.h"
#include "vcard/vCardTestSupport.h"

namespace phonepim {
namespace {

using testing_support::ScratchFolder;

const PhoneIdentity kPhone{u"N900", u"356938035643809"};

/// One card with a name and the given TEL lines (each "TYPE:NUMBER").
std::string Card(const std::string& name, const std::vector<std::string>& tels) {
  std::string card = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:" + name + "\r\n";
  for (const std::string& tel : tels) card += "TEL;" + tel + "\r\n";
  return card + "EMAIL;INTERNET:" + name.substr(0, name.find(';')) + "@example.org\r\nEND:VCARD\r\n";
}

/// The phone's contacts as the store gives them back, as vCard text.
std::string ExportText(const SyncStore& store) {
  std::string text;
  for (const auto& contact : ContactsFromStore(store, kPhone.imei)) text += testing_vcard::Generated(*contact);
  return text;
}

/// Whether the table file holds the table the store holds.
bool FileAgreesWithStore(const SyncStore& store, const std::filesystem::path& file) {
  const std::optional<Dictionary> table =
      store.table(StringFromUTF8(file.filename().string()).value_or(u""));
  const std::optional<Value> read = ReadPropertyListFile(file);
  return table && read && *read == Value(*table);
}

class StoreFolder {
 public:
  std::filesystem::path store() const { return folder_.path() / "store.sqlite"; }
  std::filesystem::path tables() const { return SyncSession::TableFolderOf(store()); }

 private:
  ScratchFolder folder_;
};

const std::string kBefore = Card("Smith;Anna", {"CELL:111", "HOME:222"}) +
                            Card("Berg;Bo", {"WORK;VOICE:333"}) + Card("Cho;Min", {"CELL:444"});
// Anna's mobile edited, Bo unchanged, Min deleted.
const std::string kAfter =
    Card("Smith;Anna", {"CELL:555", "HOME:222"}) + Card("Berg;Bo", {"WORK;VOICE:333"});

const std::string kCalendar =
    "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nSUMMARY:Dentist\r\n"
    "DTSTART:20261203T083000Z\r\nAALARM:20261203T081500Z;;;\r\nEND:VEVENT\r\n"
    "BEGIN:VTODO\r\nSUMMARY:Passport\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
// The alarm moved, the task done.
const std::string kCalendarAfter =
    "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nSUMMARY:Dentist\r\n"
    "DTSTART:20261203T083000Z\r\nAALARM:20261203T080000Z;;;\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";

struct Outcome {
  std::string exported;
  std::vector<std::pair<String, std::size_t>> entities;
};

Outcome Check(const StoreFolder& folder) {
  const SyncStore store(folder.store(), SyncStore::OpenMode::kReadOnly);
  for (const auto& file : {ContactIDMappingTable::metaFilePath(kPhone.imei, kPhone.model, folder.tables()),
                           CalendarIDMappingTable::metaFilePath(kPhone.imei, kPhone.model, folder.tables())}) {
    EXPECT_TRUE(FileAgreesWithStore(store, file)) << file;
  }
  return {ExportText(store), store.entities()};
}

void SyncBoth(const StoreFolder& folder, const std::string& contacts, const std::string& calendar,
              const std::function<void(const char*)>& hook = nullptr) {
  SyncStore store(folder.store(), SyncStore::OpenMode::kCreate);
  SyncSession session(store, kPhone, folder.tables());
  session.setWriteHook(hook);
  EXPECT_TRUE(session.sync({contacts, calendar}, false).failures.empty());
}

TEST(sync_crash, a_sync_stopped_at_any_write_converges) {
  StoreFolder reference;
  SyncBoth(reference, kBefore, kCalendar);
  SyncBoth(reference, kAfter, kCalendarAfter);
  const Outcome expected = Check(reference);
  ASSERT_EQ(expected.entities.size(), 6u);
  {  // the address book alone leaves the calendar as it is
    SyncStore store(reference.store(), SyncStore::OpenMode::kExisting);
    EXPECT_FALSE(SyncSession(store, kPhone, reference.tables()).syncContacts(kAfter, false).written);
  }

  for (int stop = 1;; ++stop) {
    StoreFolder folder;
    SyncBoth(folder, kBefore, kCalendar);
    const pid_t child = fork();
    if (child == 0) {
      int writes = 0;
      // As sudden as a kill: no destructor, no rollback, no flush.
      SyncBoth(folder, kAfter, kCalendarAfter, [&](const char*) {
        if (++writes == stop) _exit(0);
      });
      _exit(2);  // finished before the stop: every step has been tried
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 2) {
      EXPECT_GT(stop, 8) << "fewer writes than the sync makes";
      break;
    }
    SyncBoth(folder, kAfter, kCalendarAfter);
    const Outcome outcome = Check(folder);
    EXPECT_EQ(outcome.entities, expected.entities) << "stopped at write " << stop;
    EXPECT_EQ(outcome.exported, expected.exported) << "stopped at write " << stop;
    SyncStore store(folder.store(), SyncStore::OpenMode::kExisting);
    EXPECT_FALSE(SyncSession(store, kPhone, folder.tables())
                     .sync({kAfter, kCalendarAfter}, false)
                     .written)
        << "stopped at write " << stop;
  }
}

}  // namespace
}  // namespace phonepim
