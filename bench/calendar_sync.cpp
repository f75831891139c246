// A synchronisation of a large calendar against a table that knows it: each
// entry is read from the "phone" (a third recurring weekly, half with an
// alarm, a quarter with two attendees), resolves its identity through the
// table and is reconciled; every sub-record claims its entry again, the
// steady state of a daily sync. Also loading and saving that table.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "ScratchFolder.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/model/CCalendar.h"

namespace {

using namespace phonepim;

constexpr int kEntries = 10000;
const String kModel = u"N95";
const String kIMEI = u"350123451234560";

// prefix, n, suffix. (Built by appending: GCC 12 warns, wrongly, about
// "literal" + std::to_string(n).)
String Numbered(const char* prefix, int n, const char* suffix) {
  std::string text = prefix;
  text += std::to_string(n);
  text += suffix;
  return StringFromASCII(text);
}

// Reads entry `n` from the "phone" and reconciles it; answers its number of
// sub-records.
int SyncEntry(int n, const std::shared_ptr<CalendarIDMappingTable>& table,
              const String& calendarID) {
  CCalendar entry;
  entry.strSummary = Numbered("Meeting ", n, "");
  entry.strLocation = u"Room 4";
  const double start = 1700000000.0 + 3600.0 * n;
  entry.setStartDate(CDateTime(start, 0));
  entry.setEndDate(CDateTime(start + 1800, 0));
  int subRecords = 0;
  if (n % 3 == 0) {
    const Array days{Value(std::int64_t{n % 7})};
    entry.addRecurrence(std::make_unique<CRecurrence>())->SetWeekly(1, 0, nullptr, &days);
    ++subRecords;
  }
  if (n % 2 == 0) {
    entry.addAlarm(std::make_unique<CReminder>())->SetRunTime(CDateTime(start - 900, 0));
    ++subRecords;
  }
  if (n % 4 == 0) {
    entry.NewAttendee(Numbered("a", n, "@example.jp"), 1, 2, -1);
    entry.NewAttendee(Numbered("b", n, "@example.jp"), 1, 0, -1);
    subRecords += 2;
  }
  entry.resolveIdentity(static_cast<std::uint16_t>(n), kIMEI, std::nullopt, table);
  entry.createMetaData(calendarID);
  if (entry.eventChanged()) {
    table->addCalendar(*entry.vCalRecordID(), IDMappingTable::newIdentifier(),
                       entry.eventRecord());
  }
  return subRecords;
}

class Fixture {
 public:
  Fixture() {
    table_ = std::make_shared<CalendarIDMappingTable>(kModel, kIMEI, folder_.path());
    calendarID_ = table_->calendarRecordID();
    for (int n = 1; n <= kEntries; ++n) subRecords_ += SyncEntry(n, table_, calendarID_);
    if (!table_->save()) throw std::runtime_error("save failed");
    fileSize_ = static_cast<std::int64_t>(std::filesystem::file_size(table_->mFilePath()));
  }
  phonepim::bench::ScratchFolder folder_;  // first made, last removed
  std::shared_ptr<CalendarIDMappingTable> table_;
  String calendarID_;
  std::int64_t subRecords_ = 0;
  std::int64_t fileSize_ = 0;
};

Fixture& Shared() {
  static Fixture fixture;
  return fixture;
}

void BM_ReconcileKnownCalendar(benchmark::State& state) {
  Fixture& fixture = Shared();
  for (auto _ : state) {
    for (int n = 1; n <= kEntries; ++n) SyncEntry(n, fixture.table_, fixture.calendarID_);
  }
  if (fixture.table_->count() != kEntries + 1) state.SkipWithError("the table grew");
  state.SetItemsProcessed(state.iterations() * kEntries);
  state.counters["sub-records/s"] = benchmark::Counter(
      static_cast<double>(state.iterations() * fixture.subRecords_), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ReconcileKnownCalendar)->Unit(benchmark::kMillisecond);

void BM_LoadCalendarTable(benchmark::State& state) {
  Fixture& fixture = Shared();
  for (auto _ : state) {
    CalendarIDMappingTable table(kModel, kIMEI, fixture.folder_.path());
    if (table.count() != kEntries + 1) state.SkipWithError("table did not load");
  }
  state.SetBytesProcessed(state.iterations() * fixture.fileSize_);
  state.SetItemsProcessed(state.iterations() * kEntries);
}
BENCHMARK(BM_LoadCalendarTable)->Unit(benchmark::kMillisecond);

void BM_SaveCalendarTable(benchmark::State& state) {
  Fixture& fixture = Shared();
  for (auto _ : state) {
    if (!fixture.table_->save()) state.SkipWithError("save failed");
  }
  state.SetBytesProcessed(state.iterations() * fixture.fileSize_);
  state.SetItemsProcessed(state.iterations() * kEntries);
}
BENCHMARK(BM_SaveCalendarTable)->Unit(benchmark::kMillisecond);

}  // namespace
