// Date values are made for every date property of every calendar entry; the
// reader's path (SetYear, then conversion to GMT) and the local path (fields
// in the default zone) dominate.
#include <benchmark/benchmark.h>

#include <unicode/timezone.h>

#include <memory>

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/datetime/vCalendarSystemTime.h"

namespace {

using phonepim::CDateTime;

// A fixed zone with daylight saving, so that runs compare.
class DefaultZone {
 public:
  DefaultZone() : previous_(icu::TimeZone::createDefault()) {
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("America/New_York"));
  }
  ~DefaultZone() { icu::TimeZone::adoptDefault(previous_.release()); }

 private:
  std::unique_ptr<icu::TimeZone> previous_;
};

void BM_ReadDateAsGMTAndConvert(benchmark::State& state) {
  const DefaultZone zone;
  int day = 0;
  for (auto _ : state) {
    CDateTime value(0.0, CDateTime::kTimeZoneTypeLocal);
    value.SetYear(2009, 2, 1 + day++ % 28, 10, 30, 0);
    benchmark::DoNotOptimize(phonepim::vCalendar::SystemTime(value, 1));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ReadDateAsGMTAndConvert);

void BM_LocalValueFromComponents(benchmark::State& state) {
  const DefaultZone zone;
  int hour = 0;
  for (auto _ : state) {
    const CDateTime value(phonepim::MakeDateComponents(2009, 3, 8, hour++ % 24, 0, 0),
                          CDateTime::kTimeZoneTypeLocal);
    benchmark::DoNotOptimize(value.bias());
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LocalValueFromComponents);

void BM_SpanBetweenValues(benchmark::State& state) {
  const DefaultZone zone;
  const CDateTime start(1236470400.0, CDateTime::kTimeZoneTypeLocal);
  double offset = 0;
  for (auto _ : state) {
    const CDateTime alarm = start.dateBeforeTimeInterval(offset += 60);
    benchmark::DoNotOptimize(start.spanFromDate(alarm).GetTotalMinutes());
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SpanBetweenValues);

}  // namespace
