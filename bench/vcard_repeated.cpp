// Five passes of reading and writing the comparison corpus in one process.
// Every custom label read registers a new code for the life of the process,
// so the label table grows by some 12,000 entries a pass: a writer whose
// label look-up depends on the table's size gets slower pass by pass. Each
// pass is reported on its own; all five must take the same time.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "PhonepimDriver.h"

namespace {

using namespace phonepim;
using namespace phonepim::bench;

void BM_ParseAndWritePass(benchmark::State& state) {
  const auto& cards = DriverCards();
  std::int64_t written = 0;
  for (auto _ : state) {
    for (const vObject& card : cards) {
      const auto contact = ReadCard(card);
      vObject object;
      vCard::Generate(contact.get(), &object);
      written += object.object()->GetSize();
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(cards.size()));
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(DriverCorpus().size()));
  benchmark::DoNotOptimize(written);
}
// One iteration per pass, in order: the table must carry over.
BENCHMARK(BM_ParseAndWritePass)
    ->DenseRange(1, 5)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
