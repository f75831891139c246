// Reading a phone's calendar into records, against the tokenizer alone over
// the same objects (empty callbacks), so that the share of the reader's own
// work shows.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "PhoneCalendarCorpus.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "phonepim/vcard/vCard.h"

namespace {

using namespace phonepim;
using bench::CalendarObjects;
using bench::PhoneCalendar;

void Report(benchmark::State& state) {
  state.SetBytesProcessed(
      static_cast<std::int64_t>(state.iterations() * PhoneCalendar().text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * CalendarObjects().size()));
}

// Each object into a new record, strictly and leniently.
void BM_ParseEntries(benchmark::State& state) {
  vCard::LenientReading(state.range(0) != 0);
  std::size_t rules = 0;
  for (auto _ : state) {
    rules = 0;
    for (const vObject& object : CalendarObjects()) {
      CCalendar calendar;
      vCalendar::Parse(&calendar, &object);
      rules += static_cast<std::size_t>(calendar.GetRecurrencecount());
    }
    benchmark::DoNotOptimize(rules);
  }
  vCard::LenientReading(false);
  Report(state);
  state.counters["rules"] = static_cast<double>(rules);
}
BENCHMARK(BM_ParseEntries)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_TokenizerOnly(benchmark::State& state) {
  for (auto _ : state) {
    if (!bench::TokenizeAll(CalendarObjects())) state.SkipWithError("tokenizer rejected one");
  }
  Report(state);
}
BENCHMARK(BM_TokenizerOnly)->Unit(benchmark::kMillisecond);

}  // namespace
