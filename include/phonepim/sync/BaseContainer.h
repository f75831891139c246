// BaseContainer: the base of the sub-record containers (phone numbers,
// e-mail addresses, ...). A container owns the store records built for one
// parent record and reconciles them with the parent's persisted meta entries,
// so that each sub-record keeps its store identifier from one
// synchronisation to the next.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"
#include "phonepim/sync/SyncRecordSchema.h"

namespace phonepim {

class IDMappingTable;

/// The records of one kind of sub-record of one parent record, in the order
/// they were added, and the reconciliation of those records against the
/// parent's meta entries in the mapping table.
///
/// The container shares the mapping table with its parent and keeps a copy
/// of the parent's record ID. A null table is allowed: the parent then has
/// no meta, and reconciling does nothing. Copies copy the records and share
/// the table.
class BaseContainer {
 public:
  /// No records yet.
  BaseContainer(String vObjectID, std::shared_ptr<IDMappingTable> idMapper);
  virtual ~BaseContainer();
  BaseContainer(const BaseContainer&) = default;
  BaseContainer& operator=(const BaseContainer&) = default;

  /// The parent record's ID.
  const String& vObjectID() const { return mVObjectID; }
  const std::shared_ptr<IDMappingTable>& idMapper() const { return mIDMapper; }

  /// The number of records.
  int count() const { return static_cast<int>(mItemArray.size()); }

  /// The "identifier" strings of the records that carry one, in order.
  std::vector<String> recordIDs() const;

  /// The record at `nIndex`. An index below 0 or not below count() fails the
  /// assertion "nIndex < [mItemArray count] && nIndex >= 0".
  const Dictionary& recordAtIndex(int nIndex) const;

  /// The first record whose "identifier" is `identifier`; null when none.
  const Dictionary* recordByID(const String& identifier) const;

  /// The value under `key` of the parent's meta entry; null when the parent
  /// has no meta entry or the entry has no such key. The pointer is into the
  /// table and valid until the table changes.
  const Value* metaDataWithKey(const String& key) const;

  /// Change detection of one value: both must be strings (compared by text)
  /// or both dates (compared as instants). Anything else, numbers included,
  /// is never equal, so a record whose compared value is a number is
  /// re-created on every synchronisation. A null side is unequal.
  static bool compareSource(const Value* source, const Value* target);

  /// Reconciles the records with the parent's meta entries under `key`,
  /// matching on each record's value under `valueKey`:
  ///
  /// 1. Without a meta entry for the parent nothing happens.
  /// 2. When the meta has no list under `key`, or an empty one (or something
  ///    that is not a list), a new list is made with one entry per record:
  ///    {"Data": the record, "State": "New", "Link": "Linked",
  ///    "identifier": a new UUID}.
  /// 3. Otherwise every existing entry is first marked "Delete"/"Unlinked".
  ///    Then, record by record, the first entry that is still "Unlinked" and
  ///    whose "Data" value under `valueKey` (or, failing that, under
  ///    "triggerduration") equals the record's value (compareSource) is
  ///    claimed: "NoChange"/"Linked"; its "Data" stays as it was, so a change
  ///    of anything but the compared value is not seen. A record that claims
  ///    nothing gets a new entry as in 2, appended. Each entry is claimed at
  ///    most once: two equal records claim two entries.
  /// 4. When the meta holds a "Contact Data" dictionary, its value under
  ///    `key` becomes the identifiers of the claimed and new entries, in
  ///    record order (left alone when there are none).
  ///
  /// Entries left "Delete"/"Unlinked" stay in the list for the host to
  /// report and remove. An existing entry met during the matching without a
  /// "Data" dictionary fails the assertion "metaPhoneData != nil", one whose
  /// data lacks both values fails "metaPhoneNumber != nil". Entries are
  /// examined in order up to the one claimed; those appended in the same
  /// pass are linked already and are not examined. A record without the
  /// value claims nothing, and its new entry would fail the second
  /// assertion next time: leave such records out (CContact leaves out empty
  /// elements).
  ///
  /// Returns the identifiers of step 4 (empty when nothing happened).
  std::vector<String> createMetaDataWithKey(const String& key, const String& valueKey);

  /// The same for calendar sub-records, with four differences: without a
  /// meta entry it only calls the table's update(); there is no
  /// "triggerduration" fallback; the identifiers go to the meta's "Data"
  /// dictionary under `key` when the parent ID contains "Appointment" or
  /// "Anniversary", and to its "Task Data" dictionary when it contains
  /// "Task" (both checks run); and it always ends with update().
  std::vector<String> createMetaDataInCalendarWithKey(const String& key,
                                                      const String& valueKey);

  /// Reconciles this container's records under its own key and value key.
  virtual std::vector<String> createMetaData() = 0;

  /// Drops every record (the per-kind counters keep counting).
  void removeAllRecords() { mItemArray.clear(); }

 protected:
  /// Appends a record built by the subclass.
  void addRecord(Dictionary record) { mItemArray.push_back(std::move(record)); }

  /// A new record of `entityName` owned by the parent: the entity name under
  /// ISyncRecordEntityNameKey and "contact" = [parent ID].
  Dictionary newContactSubRecord(const String& entityName) const;

  /// Sets "type" and, when there is one, "label".
  static void setTypeAndLabel(Dictionary& record, const String& type,
                              const std::optional<String>& label);

 private:
  std::vector<String> reconcile(const String& key, const String& valueKey, bool calendar);

  std::shared_ptr<IDMappingTable> mIDMapper;
  String mVObjectID;
  std::vector<Dictionary> mItemArray;
};

}  // namespace phonepim
