// A phone of 20,000 contacts (the generated export) synchronised with the
// store through the whole session, as `phonepim sync` runs it: into an
// empty store, again unchanged, and with 1% of the cards edited. Peak
// memory is the process's: run one benchmark per process to read it.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <filesystem>
#include <string>

#include "ScratchFolder.h"
#include "PhoneExportCorpus.h"
#include "phonepim/session/SyncSession.h"
#include "phonepim/store/SyncStore.h"

namespace {

using phonepim::SyncSession;
using phonepim::SyncStore;

const phonepim::PhoneIdentity kPhone{u"N900", u"356938035643809"};

using phonepim::bench::ScratchFolder;

void Sync(const ScratchFolder& folder, const std::string& text) {
  SyncStore store(folder.store(), SyncStore::OpenMode::kCreate);
  SyncSession session(store, kPhone, SyncSession::TableFolderOf(folder.store()));
  benchmark::DoNotOptimize(session.syncContacts(text, false));
}

// The export with every hundredth card's mobile number changed.
std::string EditedExport() {
  std::string text = phonepim::bench::PhoneExport().text;
  const auto& cards = phonepim::bench::PhoneExport().cards;
  for (std::size_t n = 0; n < cards.size(); n += 100) {
    const std::size_t at = text.find("TEL;CELL;PREF:+", cards[n].first);
    text[at + 16] = text[at + 16] == '9' ? '0' : static_cast<char>(text[at + 16] + 1);
  }
  return text;
}

void Report(benchmark::State& state) {
  const std::size_t cards = phonepim::bench::PhoneExport().cards.size();
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * cards));
  state.SetBytesProcessed(
      static_cast<std::int64_t>(state.iterations() * phonepim::bench::PhoneExport().text.size()));
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void BM_SyncIntoEmptyStore(benchmark::State& state) {
  const std::string& text = phonepim::bench::PhoneExport().text;
  for (auto _ : state) {
    state.PauseTiming();
    {
      ScratchFolder folder;
      state.ResumeTiming();
      Sync(folder, text);
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
  Report(state);
}
BENCHMARK(BM_SyncIntoEmptyStore)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_SyncUnchanged(benchmark::State& state) {
  const std::string& text = phonepim::bench::PhoneExport().text;
  ScratchFolder folder;
  Sync(folder, text);
  for (auto _ : state) Sync(folder, text);
  Report(state);
}
BENCHMARK(BM_SyncUnchanged)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_SyncOnePercentEdited(benchmark::State& state) {
  const std::string& text = phonepim::bench::PhoneExport().text;
  const std::string edited = EditedExport();
  ScratchFolder folder;
  Sync(folder, text);
  bool flip = false;
  // Each run changes 1% of the cards against the one before.
  for (auto _ : state) Sync(folder, (flip = !flip) ? edited : text);
  Report(state);
}
BENCHMARK(BM_SyncOnePercentEdited)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
