// The persisted memory of one phone's calendar between synchronisations:
// which store event belongs to which phone calendar entry, each entry's state
// and last store data, and its attendee, alarm and recurrence sub-records.
#pragma once

#include <filesystem>
#include <optional>

#include "phonepim/mapping/IDMappingTable.h"
#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

/// One phone's calendar ID mapping table, the contact table's twin (the
/// shared part, the exact indexed look-up among it, is IDMappingTable).
///
/// Entries are keyed by the phone's record ID of the calendar entry (see
/// CCalendar::generateNewVCalIDWithNewLUID: "<16 digits>-Calendar-<IMEI>_
/// Appointment", "..._Anniversary", "..._Task"), not by store ID as contact
/// entries are: the calendar containers tell events from tasks by the kind
/// in that ID, and the store ID is known only after the store has added the
/// event. Each entry is a dictionary with:
///   "dbRecordID"   the store's event record ID (indexed: vCalIDForDBID);
///   "State"        the contact table's state words ("AddedBySyncDB",
///                  "Modified", "RemovedByPellarin", ...);
///   "Link"         "Linked" once the store holds the event, "Unlinked" for
///                  an entry made before that (ensureEntry());
///   "Data"         the event record last handed to the store, for
///                  appointments and anniversaries; "Task Data" for tasks.
///                  Its "attendees", "audio alarms" and "recurrences" hold
///                  the identifiers of the sub-records;
///   "attendees", "audio alarms", "recurrences"  the sub-record entries of
///                  the containers (BaseContainer).
/// Next to the entries, the flat string under "Calendar" is the store ID of
/// the phone's calendar record (calendarRecordID()). docs/meta-file.md
/// describes the file.
class CalendarIDMappingTable : public IDMappingTable {
 public:
  /// The meta file of the phone under the user's application-data folder:
  /// <folder>/Ulvrand/Tovi/CalendarRecordIDMappingTable/Calendar_<model>_
  /// <IMEI>, folders created level by level as for the contact table, '/'
  /// and U+0000 in the names replaced by '_'. Throws std::runtime_error
  /// when there is no application-data folder.
  static std::filesystem::path metaFilePath(const String& IMEI, const String& modelName);
  /// The same under `baseFolder`.
  static std::filesystem::path metaFilePath(const String& IMEI, const String& modelName,
                                            const std::filesystem::path& baseFolder);

  /// An empty table without a file: what a CCalendar holds until it is given
  /// its phone's table. save() does nothing.
  CalendarIDMappingTable();
  /// Loads the phone's table as the contact table loads its own (a missing
  /// or unreadable file gives an empty table).
  CalendarIDMappingTable(const String& modelName, const String& IMEI);
  CalendarIDMappingTable(const String& modelName, const String& IMEI,
                         const std::filesystem::path& baseFolder);

  /// The phone's model name ("" for the table without a file): the title of
  /// the phone's calendar record.
  const String& modelName() const { return modelName_; }

  /// The store ID of the phone's calendar record: the one kept under
  /// "Calendar", or a new UUID stored there on the first call.
  String calendarRecordID();

  /// The store ID ("dbRecordID") of the entry `vCalID`; nothing when there
  /// is no entry or it has no store ID yet.
  std::optional<String> dbIDForVCalID(const String& vCalID) const;
  /// The first entry, in key order, whose "dbRecordID" is `storeID`;
  /// nothing when none is.
  std::optional<String> vCalIDForDBID(const String& storeID) const {
    return firstKeyHolding(storeID);
  }

  /// The key of an entry's store data: "Task Data" when `vCalID` contains
  /// "Task", otherwise "Data" (the keys the calendar containers write their
  /// identifiers to).
  static const String& dataKey(const String& vCalID);

  /// Makes an entry for `vCalID` when there is none: {"Link": "Unlinked"},
  /// so that the containers can give its sub-records identifiers before the
  /// store has seen the event. An existing entry stays as it is.
  void ensureEntry(const String& vCalID);
  /// The store has added the event `storeID` for the phone's entry `vCalID`:
  /// takes the entry (or a new one), sets "dbRecordID", "State" =
  /// "AddedBySyncDB", "Link" = "Linked" and the store data (dataKey()) = a
  /// copy of `eventData`.
  void addCalendar(const String& vCalID, const String& storeID, const Dictionary& eventData);
  /// Only for an existing entry: the store data = a copy of `eventData`,
  /// "State" = "Modified", "Link" = "Linked".
  void modifyCalendar(const String& vCalID, const Dictionary& eventData);
  /// Removes the entry; nothing for no ID.
  void removeCalendar(const std::optional<String>& vCalID);

 private:
  String modelName_;
};

}  // namespace phonepim
