// A sync killed at each of its writes in turn: afterwards the next sync
// must converge to exactly what an uninterrupted sync leaves, with the
// table file and the store in agreement.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "session/SessionTestSupport.h"

namespace phonepim {
namespace {

using namespace testing_support;

const std::string kBefore = Card("Smith;Anna", {"CELL:111", "HOME:222"}) +
                            Card("Berg;Bo", {"WORK;VOICE:333"}) + Card("Cho;Min", {"CELL:444"});
// Anna's mobile edited, Bo unchanged, Min deleted.
const std::string kAfter =
    Card("Smith;Anna", {"CELL:555", "HOME:222"}) + Card("Berg;Bo", {"WORK;VOICE:333"});

struct Outcome {
  std::string exported;
  std::size_t records = 0;
};

Outcome Check(const StoreFolder& folder) {
  const SyncStore store(folder.store(), SyncStore::OpenMode::kReadOnly);
  EXPECT_TRUE(FileAgreesWithStore(store, folder.tableFile()));
  return {ExportText(store), store.count()};
}

TEST(sync_crash, a_sync_stopped_at_any_write_converges) {
  StoreFolder reference;
  reference.Sync(kBefore);
  reference.Sync(kAfter);
  const Outcome expected = Check(reference);
  ASSERT_EQ(expected.records, 2u + 3u + 2u);

  for (int stop = 1;; ++stop) {
    StoreFolder folder;
    folder.Sync(kBefore);
    const pid_t child = fork();
    if (child == 0) {
      int writes = 0;
      SyncStore store(folder.store(), SyncStore::OpenMode::kExisting);
      SyncSession session(store, kPhone, folder.tables());
      // As sudden as a kill: no destructor, no rollback, no flush.
      session.setWriteHook([&](const char*) {
        if (++writes == stop) _exit(0);
      });
      session.syncContacts(kAfter, false);
      _exit(2);  // finished before the stop: every step has been tried
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 2) {
      EXPECT_GT(stop, 8) << "fewer writes than the sync makes";
      break;
    }
    const SyncReport resumed = folder.Sync(kAfter);
    const Outcome outcome = Check(folder);
    EXPECT_EQ(outcome.records, expected.records) << "stopped at write " << stop;
    EXPECT_EQ(outcome.exported, expected.exported) << "stopped at write " << stop;
    EXPECT_FALSE(folder.Sync(kAfter).written) << "stopped at write " << stop;
    EXPECT_EQ(resumed.failures.size(), 0u);
  }
}

}  // namespace
}  // namespace phonepim
