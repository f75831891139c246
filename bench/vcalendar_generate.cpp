// Writing records as vCalendar text: the records read from the generated
// export, written back one by one; bytes are those written. The tokenizer
// alone over the export runs beside it for scale.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "PhoneCalendarCorpus.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/vcalendar/vCalendar.h"

namespace {

using namespace phonepim;
using bench::CalendarObjects;
using bench::PhoneCalendar;

const std::vector<std::unique_ptr<CCalendar>>& Records() {
  static const std::vector<std::unique_ptr<CCalendar>> records = [] {
    std::vector<std::unique_ptr<CCalendar>> all;
    for (const vObject& object : CalendarObjects()) {
      all.push_back(std::make_unique<CCalendar>());
      vCalendar::Parse(all.back().get(), &object);
    }
    return all;
  }();
  return records;
}

void BM_GenerateEntries(benchmark::State& state) {
  const auto& records = Records();
  const std::vector<bool>& todo = PhoneCalendar().todo;
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
      vObject object;
      vCalendar::Generate(records[i].get(), &object, todo[i] ? vCalendar::kKindToDo : 1);
      bytes += object.object()->GetSize();
    }
    benchmark::DoNotOptimize(bytes);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * records.size()));
}
BENCHMARK(BM_GenerateEntries)->Unit(benchmark::kMillisecond);

void BM_TokenizerOnly(benchmark::State& state) {
  for (auto _ : state) {
    if (!bench::TokenizeAll(CalendarObjects())) state.SkipWithError("tokenizer rejected one");
  }
  state.SetBytesProcessed(
      static_cast<std::int64_t>(state.iterations() * PhoneCalendar().text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * CalendarObjects().size()));
}
BENCHMARK(BM_TokenizerOnly)->Unit(benchmark::kMillisecond);

}  // namespace
