// One synchronisation of a phone with the store, the way a host runs it: the
// phone's export read card by card, each record's identity resolved through
// the phone's table, its store records built and reconciled, the changes
// written to the store, the table saved.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "phonepim/platform/String.h"

namespace phonepim {

class ContactIDMappingTable;
class SyncStore;

/// The phone a session synchronises: its tables are named after both.
struct PhoneIdentity {
  String model;
  String imei;
};

enum class RecordChange { kNew, kChanged, kUnchanged, kDeleted };

/// "new", "changed", "unchanged", "deleted".
std::string_view RecordChangeName(RecordChange change);

/// The sub-records (phone numbers, e-mail addresses, ...) of one record.
struct SubRecordCounts {
  std::size_t added = 0;
  std::size_t removed = 0;
  std::size_t kept = 0;
  SubRecordCounts& operator+=(const SubRecordCounts& other);
  friend bool operator==(const SubRecordCounts&, const SubRecordCounts&) = default;
};

/// What one synchronisation did to one phone record.
struct RecordOutcome {
  bool calendar = false;  ///< a calendar entry, not a contact
  RecordChange change = RecordChange::kUnchanged;
  std::size_t object = 0;  ///< its object (calendar: its entry) in the export, from 1; 0 when deleted
  std::size_t line = 0;    ///< the object's BEGIN line; 0 when deleted
  String vCardRecordID;    ///< "%016d-Contact-IMEI", "%016d-Calendar-IMEI_Appointment"
  String storeID;          ///< the store record's ID (a UUID)
  String name;  ///< DisplayName(), or the entry's summary; for a deleted one, from the store's data
  SubRecordCounts subRecords;
};

/// An object of the export that was not synchronised.
struct ObjectFailure {
  bool calendar = false;   ///< in the calendar export
  std::size_t object = 0;  ///< from 1
  std::size_t line = 0;
  std::string firstLine;
  std::string reason;
};

struct SyncReport {
  std::vector<RecordOutcome> records;  ///< in export order, the deleted ones last
  std::vector<ObjectFailure> failures;
  bool written = false;  ///< whether the store and the table were written

  /// Of the contacts, or of the calendar entries.
  std::size_t count(RecordChange change, bool calendar = false) const;
  SubRecordCounts subRecords(bool calendar = false) const;
};

/// The exports of one synchronisation: a phone's address book (vCards) and
/// its calendar (vCalendars), either or both.
struct SyncInput {
  std::optional<std::string_view> contacts;
  std::optional<std::string_view> calendar;
};

/// Runs synchronisations of one phone against one store.
///
/// An address-book export is taken as the phone's whole address book: every
/// contact the phone's table knows that is not in it was deleted on the
/// phone, and goes from the store and the table. A card that cannot be read
/// is reported and its record left as it was (never deleted). Each card's
/// vCard ID is its object's number in the export, as the phone numbers its
/// entries.
///
/// Nothing is lost whenever the process stops: the records and the table
/// change in one store transaction (the store keeps the table, see
/// SyncStore::setTable); the table file, written for the hosts that read it,
/// is replaced atomically just before that transaction commits, and the
/// store records which file that was. A table file that is not the one the
/// store recorded (a stop between the two writes) is written again from the
/// store's table by the next session that writes, and any session reads
/// the store's table, never the file.
class SyncSession {
 public:
  /// The phone's tables live under `tableFolder` (see
  /// ContactIDMappingTable::metaFilePath()). The store must outlive the
  /// session.
  SyncSession(SyncStore& store, PhoneIdentity phone, std::filesystem::path tableFolder);
  ~SyncSession();

  /// The folder of the tables of the store at `storePath`:
  /// "<storePath>-tables".
  static std::filesystem::path TableFolderOf(const std::filesystem::path& storePath);

  /// Synchronises the address-book export `text` (one file of vCards). With
  /// `dryRun` the outcome is the same, but neither the store nor any file
  /// is changed. Throws StoreError when the store is held by another
  /// process (after its busy timeout) or cannot be written, and
  /// std::runtime_error when the table file cannot be written; either way
  /// the store and the table file are left as they were.
  SyncReport syncContacts(std::string_view text, bool dryRun);
  /// Both exports in one transaction. The calendar export is taken as the
  /// phone's whole calendar, as the address book is: its entries (each
  /// VEVENT or VTODO, numbered from 1 across the file as the phone numbers
  /// them) go to the store as "com.apple.calendars.Event" records under the
  /// phone's one "com.apple.calendars.Calendar" record, with their
  /// attendees, alarms and rules as sub-records; an entry the table knows
  /// that the export does not hold is deleted; an entry that cannot be read
  /// keeps its record.
  SyncReport sync(const SyncInput& input, bool dryRun);

  /// For tests: called before every write the session makes (each store
  /// change, the table copy, the table file, the commit) with its name. A
  /// hook that ends the process there shows what a crash at that step
  /// leaves behind.
  void setWriteHook(std::function<void(const char* step)> hook);

 private:
  class Run;
  SyncStore& store_;
  PhoneIdentity phone_;
  std::filesystem::path tableFolder_;
  std::function<void(const char*)> writeHook_;
};

}  // namespace phonepim
