#include "SyncCommand.h"

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
  std::string begin = text.substr(spans[0].offset, 16);
  for (char& c : begin) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  if (begin.starts_with("BEGIN:VCALENDAR")) return ExportKind::kCalendar;
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

void PrintText(const SyncReport& report, const std::string& source, const SyncOptions& options,
               const std::string& storePath, std::ostream& out) {
  if (!options.quiet) {
    for (const RecordOutcome& record : report.records) {
      if (record.change == RecordChange::kDeleted) {
        out << source << ": no longer on the phone";
      } else {
        out << source << ": object " << record.object << " (line " << record.line << ")";
      }
      out << ": " << (record.name.empty() ? "(no name)" : ToDisplayUTF8(record.name)) << ": "
          << RecordChangeName(record.change) << "; " << SubRecordText(record.subRecords) << '\n';
    }
  }
  const std::size_t read = report.records.size() - report.count(RecordChange::kDeleted);
  out << source << ": " << Counted(read, "contact") << ": " << report.count(RecordChange::kNew)
      << " new, " << report.count(RecordChange::kChanged) << " changed, "
      << report.count(RecordChange::kUnchanged) << " unchanged, "
      << report.count(RecordChange::kDeleted) << " deleted, " << report.failures.size()
      << " failed; " << SubRecordText(report.subRecords()) << '\n';
  if (options.dryRun) {
    out << "dry run: nothing written\n";
  } else if (report.written) {
    out << "written to " << storePath << '\n';
  } else {
    out << "nothing changed: " << storePath << " already holds this export\n";
  }
}

nlohmann::ordered_json ReportJson(const SyncReport& report, const std::string& source) {
  nlohmann::ordered_json records = nlohmann::ordered_json::array();
  for (const RecordOutcome& record : report.records) {
    records.push_back({{"change", RecordChangeName(record.change)},
                       {"object", record.object},
                       {"line", record.line},
                       {"name", ToDisplayUTF8(record.name)},
                       {"recordId", ToDisplayUTF8(record.vCardRecordID)},
                       {"storeId", ToDisplayUTF8(record.storeID)},
                       {"subRecords", SubRecordJson(record.subRecords)}});
  }
  nlohmann::ordered_json failures = nlohmann::ordered_json::array();
  for (const ObjectFailure& failure : report.failures) {
    failures.push_back(
        {{"object", failure.object}, {"line", failure.line}, {"reason", failure.reason}});
  }
  return {{"source", source},
          {"records", records},
          {"failed", failures},
          {"totals",
           {{"new", report.count(RecordChange::kNew)},
            {"changed", report.count(RecordChange::kChanged)},
            {"unchanged", report.count(RecordChange::kUnchanged)},
            {"deleted", report.count(RecordChange::kDeleted)},
            {"subRecords", SubRecordJson(report.subRecords())}}},
          {"written", report.written}};
}

}  // namespace

std::string StorePathOption(const std::string& option) {
  return option.empty() ? SyncStore::DefaultPath().string() : option;
}

int RunSync(const SyncOptions& options, std::ostream& out, std::ostream& err) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  std::string contactsText;
  std::string contactsSource;
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
        err << SourceName(file) << ": calendar exports cannot be synchronised yet\n";
        return 2;
      case ExportKind::kContacts:
        if (!contactsSource.empty()) {
          // Both would number their cards from 1: one phone, one address book.
          err << "phonepim: " << contactsSource << " and " << SourceName(file)
              << ": one address-book export per sync\n";
          return 2;
        }
        contactsText = std::move(text);
        contactsSource = SourceName(file);
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
    const SyncReport report = session.syncContacts(contactsText, options.dryRun);
    for (const ObjectFailure& failure : report.failures) {
      err << contactsSource << ": object " << failure.object << " (line " << failure.line
          << ", \"";
      std::string line;
      AppendVisible(line, failure.firstLine);
      err << line << "\"): " << failure.reason << '\n';
    }
    if (options.json) {
      out << ReportJson(report, contactsSource).dump(2) << '\n';
    } else {
      PrintText(report, contactsSource, options, storePath, out);
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
