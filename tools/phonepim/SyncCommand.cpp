#include "SyncCommand.h"

#include <phonepim/session/ReadContact.h>
#include <phonepim/session/SyncSession.h>
#include <phonepim/store/SyncStore.h>

#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "Input.h"
#include "ObjectReport.h"

namespace phonepim::tool {
namespace {

// Exports are told apart by their first object, as a phone makes one file
// per kind.
enum class ExportKind { kContacts, kCalendar, kNone };

ExportKind KindOf(const std::string& text) {
  // The first object is enough: splitting a whole large export twice is not.
  const std::size_t end = text.find("\nEND:");
  const std::vector<VersitObjectSpan> spans = FindVersitObjects(
      std::string_view(text).substr(0, end == std::string::npos ? text.size() : end + 1));
  if (spans.empty()) return ExportKind::kNone;
  if (IsVersitObject(std::string_view(text).substr(spans[0].offset), "VCALENDAR")) {
    return ExportKind::kCalendar;
  }
  return ExportKind::kContacts;
}

std::string SubRecordText(const SubRecordCounts& counts) {
  return "sub-records: " + std::to_string(counts.added) + " new, " +
         std::to_string(counts.removed) + " deleted, " + std::to_string(counts.kept) +
         " unchanged";
}

nlohmann::ordered_json SubRecordJson(const SubRecordCounts& counts) {
  return {{"new", counts.added}, {"deleted", counts.removed}, {"unchanged", counts.kept}};
}

// "24 contacts", "1 calendar entry".
std::string Records(std::size_t count, bool calendar) {
  if (!calendar) return Counted(count, "contact");
  return std::to_string(count) + (count == 1 ? " calendar entry" : " calendar entries");
}

void PrintTotals(const SyncReport& report, const std::string& source, bool calendar,
                 std::ostream& out) {
  std::size_t read = 0;
  std::size_t failed = 0;
  for (const RecordOutcome& record : report.records) {
    read += record.calendar == calendar && record.change != RecordChange::kDeleted ? 1 : 0;
  }
  for (const ObjectFailure& failure : report.failures) failed += failure.calendar == calendar;
  out << source << ": " << Records(read, calendar) << ": "
      << report.count(RecordChange::kNew, calendar) << " new, "
      << report.count(RecordChange::kChanged, calendar) << " changed, "
      << report.count(RecordChange::kUnchanged, calendar) << " unchanged, "
      << report.count(RecordChange::kDeleted, calendar) << " deleted, " << failed << " failed; "
      << SubRecordText(report.subRecords(calendar)) << '\n';
}

void PrintText(const SyncReport& report, const std::string (&sources)[2],
               const SyncOptions& options, const std::string& storePath, std::ostream& out) {
  if (!options.quiet) {
    for (const RecordOutcome& record : report.records) {
      const std::string& source = sources[record.calendar ? 1 : 0];
      if (record.change == RecordChange::kDeleted) {
        out << source << ": no longer on the phone";
      } else {
        out << source << (record.calendar ? ": entry " : ": object ") << record.object
            << " (line " << record.line << ")";
      }
      out << ": " << (record.name.empty() ? "(no name)" : ToDisplayUTF8(record.name)) << ": "
          << RecordChangeName(record.change) << "; " << SubRecordText(record.subRecords) << '\n';
    }
  }
  for (const bool calendar : {false, true}) {
    if (!sources[calendar ? 1 : 0].empty()) PrintTotals(report, sources[calendar ? 1 : 0], calendar, out);
  }
  if (options.dryRun) {
    out << "dry run: nothing written\n";
  } else if (report.written) {
    out << "written to " << storePath << '\n';
  } else {
    out << "nothing changed: " << storePath << " already holds this export\n";
  }
}

nlohmann::ordered_json TotalsJson(const SyncReport& report, bool calendar) {
  return {{"new", report.count(RecordChange::kNew, calendar)},
          {"changed", report.count(RecordChange::kChanged, calendar)},
          {"unchanged", report.count(RecordChange::kUnchanged, calendar)},
          {"deleted", report.count(RecordChange::kDeleted, calendar)},
          {"subRecords", SubRecordJson(report.subRecords(calendar))}};
}

nlohmann::ordered_json ReportJson(const SyncReport& report, const std::string (&sources)[2]) {
  nlohmann::ordered_json records = nlohmann::ordered_json::array();
  for (const RecordOutcome& record : report.records) {
    records.push_back({{"kind", record.calendar ? "calendar entry" : "contact"},
                       {"change", RecordChangeName(record.change)},
                       {"object", record.object},
                       {"line", record.line},
                       {"name", ToDisplayUTF8(record.name)},
                       {"recordId", ToDisplayUTF8(record.vCardRecordID)},
                       {"storeId", ToDisplayUTF8(record.storeID)},
                       {"subRecords", SubRecordJson(record.subRecords)}});
  }
  nlohmann::ordered_json failures = nlohmann::ordered_json::array();
  for (const ObjectFailure& failure : report.failures) {
    failures.push_back({{"source", sources[failure.calendar ? 1 : 0]},
                        {"object", failure.object},
                        {"line", failure.line},
                        {"reason", failure.reason}});
  }
  return {{"contacts", sources[0].empty() ? nullptr : nlohmann::ordered_json(sources[0])},
          {"calendar", sources[1].empty() ? nullptr : nlohmann::ordered_json(sources[1])},
          {"records", records},
          {"failed", failures},
          {"totals", {{"contacts", TotalsJson(report, false)}, {"calendar", TotalsJson(report, true)}}},
          {"written", report.written}};
}

}  // namespace

std::string StorePathOption(const std::string& option) {
  return option.empty() ? SyncStore::DefaultPath().string() : option;
}

int RunSync(const SyncOptions& options, std::ostream& out, std::ostream& err) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  // One export of each kind: both would number their records from 1.
  std::string texts[2];
  std::string sources[2];
  for (const std::string& file : options.files) {
    std::string text;
    std::string error;
    if (!ReadInput(file, &text, &error)) {
      err << "phonepim: " << error << '\n';
      return 2;
    }
    switch (KindOf(text)) {
      case ExportKind::kNone:
        err << SourceName(file) << ": no versit object (no BEGIN: line)\n";
        return 2;
      case ExportKind::kCalendar:
      case ExportKind::kContacts: {
        const int slot = KindOf(text) == ExportKind::kCalendar ? 1 : 0;
        if (!sources[slot].empty()) {
          err << "phonepim: " << sources[slot] << " and " << SourceName(file) << ": one "
              << (slot == 1 ? "calendar" : "address-book") << " export per sync\n";
          return 2;
        }
        texts[slot] = std::move(text);
        sources[slot] = SourceName(file);
      }
    }
  }

  const std::string storePath = StorePathOption(options.store);
  std::optional<SyncStore> store;
  try {
    std::error_code ec;
    // A dry run against a store that does not exist yet creates none.
    if (options.dryRun && !std::filesystem::exists(storePath, ec)) {
      store.emplace(SyncStore::InMemory());
    } else {
      store.emplace(storePath, SyncStore::OpenMode::kCreate);
    }
    SyncSession session(*store, {StringFromUTF8(options.model).value_or(u""),
                                 StringFromUTF8(options.imei).value_or(u"")},
                        SyncSession::TableFolderOf(storePath));
    SyncInput input;
    if (!sources[0].empty()) input.contacts = texts[0];
    if (!sources[1].empty()) input.calendar = texts[1];
    const SyncReport report = session.sync(input, options.dryRun);
    for (const ObjectFailure& failure : report.failures) {
      err << sources[failure.calendar ? 1 : 0] << ": object " << failure.object << " (line " << failure.line
          << ", \"";
      std::string line;
      AppendVisible(line, failure.firstLine);
      err << line << "\"): " << failure.reason << '\n';
    }
    if (options.json) {
      out << ReportJson(report, sources).dump(2) << '\n';
    } else {
      PrintText(report, sources, options, storePath, out);
    }
    if (options.verbose) {
      err << "sync took "
          << std::chrono::duration<double, std::milli>(Clock::now() - start).count() << " ms\n";
    }
    return report.failures.empty() ? 0 : 1;
  } catch (const StoreError& e) {
    err << "phonepim: " << e.what() << '\n';
  } catch (const std::runtime_error& e) {
    err << "phonepim: " << e.what() << '\n';
  }
  return 2;
}

}  // namespace phonepim::tool
