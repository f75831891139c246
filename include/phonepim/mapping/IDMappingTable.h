// What the contact and calendar ID mapping tables have in common: one
// dictionary loaded from a phone's meta file and written back only by save(),
// entries keyed by record ID, the look-up of the entry that holds an ID of
// the other side, removal tagging and temporary numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

/// The base of ContactIDMappingTable and CalendarIDMappingTable. The records
/// and containers that use a table share it (std::shared_ptr); it is not
/// thread-safe.
///
/// Entries are dictionaries keyed by record ID: the store's for contacts,
/// the phone's for calendar entries. Each may hold the record's ID on the
/// other side under the table's indexed key ("vCardID" for contacts,
/// "dbRecordID" for calendar entries), and the indexed look-up answers the
/// first key, in key order, whose entry holds the ID asked for: always the
/// answer a walk over the table gives, whatever was written where.
///
/// Writing into the table through a handle costs look-up speed only while
/// the handle can still be written through:
///  - An EntryEdit (editMeta()) makes the look-ups re-read its entry while it
///    lives; when it goes the entry is indexed again. The library's own
///    in-place writers use it.
///  - A pointer from the mutable meta() can be written through at any time
///    until its entry is removed, so from then on every look-up re-reads that
///    entry. Fine for a few entries; a host that changes many entries in
///    place should use editMeta() or addMeta().
///  - After the mutable mTable() any key may change at any time, and every
///    look-up walks the whole table.
class IDMappingTable {
 public:
  class KeyEnumerator;
  class EntryEdit;

  IDMappingTable(const IDMappingTable&) = delete;
  IDMappingTable& operator=(const IDMappingTable&) = delete;
  virtual ~IDMappingTable();

  /// The "LMT" value (last-modified time text) of `dictionary`; nullptr for
  /// a null dictionary or one without "LMT".
  static const Value* LMT(const Dictionary* dictionary);
  /// A new UUID string.
  static String newIdentifier();

  /// Writes the whole table to the meta file as an XML property list,
  /// replacing the file atomically (a temporary file, flushed, then renamed
  /// over the old one). On failure (a value that cannot be stored, an
  /// unwritable folder) logs "Writting file has a problem!!" when
  /// gVCARD_DEBUGMODE is set, keeps the table in memory and the old file as
  /// it was, and returns false. Returns false without logging when the table
  /// has no file.
  bool save() const;
  /// Does nothing: every mutating operation calls it, and only save() writes.
  void update() {}

  std::size_t count() const { return entries().size(); }
  /// The keys in sorted order.
  std::vector<String> allKeys() const;
  /// The keys in sorted order without copying them; invalidated by any
  /// change to the table.
  KeyEnumerator keyEnumerator() const;
  /// The whole table. After the mutable form every look-up walks the table
  /// (see the class comment).
  const Dictionary& mTable() const { return entries(); }
  Dictionary& mTable();
  /// The meta file; empty when there is no application-data folder.
  const std::filesystem::path& mFilePath() const { return mFilePath_; }
  std::uint32_t mLastPhoneID() const { return mLastPhoneID_; }

  /// The entry under `storeID`, or nullptr when there is none (or the key
  /// holds something other than a dictionary). The pointer stays valid until
  /// the entry is removed or replaced by a value that is not a dictionary;
  /// the mutable form makes every later look-up re-read the entry.
  Dictionary* meta(const String& storeID);
  const Dictionary* meta(const String& storeID) const;
  /// The entry under `storeID` for a change made while the returned handle
  /// lives; a null handle when there is no entry.
  EntryEdit editMeta(const String& storeID);
  /// Stores `entry` under `storeID`, replacing whatever was there.
  void addMeta(Dictionary entry, const String& storeID);

  /// Tags every entry whose "State" is none of "Removed", "ModifiedBySyncDB",
  /// "Modified" and "AddedBySyncDB" (or is missing) with "RemovedByPellarin".
  /// Values that are not dictionaries are not entries and stay as they are.
  void setRemovedTagToAllMeta();
  /// The number of entries whose "State" is "RemovedByPellarin".
  std::size_t countRemovedTagRecords() const;
  /// Removes those entries.
  void removeAllRemovedTagRecords();

  /// Temporary numbers for records the phone has not numbered yet: the
  /// first after a reset (or a new table) is 1. Wraps to 0 after 2^32-1.
  void resetTemporaryID() { mLastPhoneID_ = 0; }
  std::uint32_t nextTemporaryID() { return ++mLastPhoneID_; }

 protected:
  /// Loads the dictionary from `filePath` (see load()); an empty path gives
  /// an empty table without a file. `indexedKey` names the entry key that
  /// the look-up reads.
  IDMappingTable(std::filesystem::path filePath, String indexedKey);

  /// `baseFolder` with `levels` appended one after another, each level
  /// created before the next (a folder that cannot be created is no error
  /// here: the file then reads as missing and saving fails).
  static std::filesystem::path metaFolder(const std::filesystem::path& baseFolder,
                                          std::initializer_list<const char*> levels);
  /// The text of a model name or IMEI for a file name: UTF-8, with '/' and
  /// U+0000 replaced by '_', so that a phone cannot name another folder.
  static std::string fileNamePart(const String& text);
  /// The application-data folder; empty (and a warning logged in debug
  /// mode) when there is none, so that the table then has no file.
  static std::filesystem::path applicationDataFolderOrNone();

  /// The first key, in key order, whose entry holds `id` under the indexed
  /// key; nothing when none does.
  std::optional<String> firstKeyHolding(const String& id) const;
  /// The string the entry under `key` holds under the indexed key; nothing
  /// when there is no entry or it holds no such string.
  std::optional<String> heldIDOf(const String& key) const;

  /// Takes the entry under `storeID` (or a new empty one), sets "State" =
  /// "AddedBySyncDB" and `dataKey` = a copy of `data`.
  void addRecordData(const String& storeID, const String& dataKey, const Dictionary& data);
  /// Only for an existing entry: `dataKey` = a copy of `data`, "State" =
  /// "Modified".
  void modifyRecordData(const String& storeID, const String& dataKey, const Dictionary& data);

  Dictionary& entries() { return mTable_.get<Dictionary>(); }
  const Dictionary& entries() const { return mTable_.get<Dictionary>(); }
  /// The entry under `key` for the table's own use: changes made through it
  /// must be followed by reindex(key) before the next look-up.
  Dictionary* entry(const String& key);
  const Dictionary* entry(const String& key) const;
  /// Stores or removes a value and keeps the index in step.
  void setEntry(const String& key, Value value);
  void eraseEntry(const String& key);
  /// Re-reads the indexed key of the entry under `key`.
  void reindex(const String& key) const;

 private:
  void load();
  void refreshIndex() const;
  std::optional<String> walk(const String& id) const;
  const String* heldIn(const String& key) const;
  bool carries(const String& key, const String& id) const;
  bool isOpen(const String& key) const;
  void closeEdit(const Dictionary* entry);
  void forgetHandles(const String& key);
  void reindexIfChanged(const String& key) const;

  Value mTable_{Dictionary()};  // always a Dictionary; a Value so save() need not copy it
  std::uint32_t mLastPhoneID_ = 0;
  std::filesystem::path mFilePath_;
  String indexedKey_;

  // The index of held IDs, as last read. Open entries (below) may have
  // changed behind it: look-ups read them instead of trusting it.
  mutable std::unordered_map<String, std::set<String>> keysByHeldID_;
  mutable std::unordered_map<String, String> heldIDByKey_;
  mutable bool indexStale_ = true;
  // Open entries: those handed out by the mutable meta(), in key order, and
  // those under a live EntryEdit (rarely more than one at a time).
  struct Edit {
    const String* key;  // the table's own key, valid while the entry is
    const Dictionary* entry;
    std::size_t count;
  };
  std::set<String> heldOpen_;
  std::vector<Edit> edits_;
  bool tableHandedOut_ = false;
};

/// An entry opened for in-place changes (see IDMappingTable::editMeta()).
/// The table must outlive the handle; removing the entry ends the edit (the
/// handle's pointer then dangles).
class IDMappingTable::EntryEdit {
 public:
  EntryEdit() = default;
  EntryEdit(EntryEdit&& other) noexcept
      : table_(std::exchange(other.table_, nullptr)),
        entry_(std::exchange(other.entry_, nullptr)) {}
  EntryEdit& operator=(EntryEdit&& other) noexcept {
    if (this != &other) {
      close();
      table_ = std::exchange(other.table_, nullptr);
      entry_ = std::exchange(other.entry_, nullptr);
    }
    return *this;
  }
  ~EntryEdit() { close(); }

  Dictionary* get() const { return entry_; }
  Dictionary& operator*() const { return *entry_; }
  Dictionary* operator->() const { return entry_; }
  explicit operator bool() const { return entry_ != nullptr; }

 private:
  friend class IDMappingTable;
  EntryEdit(IDMappingTable* table, Dictionary* entry) : table_(table), entry_(entry) {}
  void close() {
    if (table_ != nullptr) table_->closeEdit(entry_);
    table_ = nullptr;
    entry_ = nullptr;
  }

  IDMappingTable* table_ = nullptr;
  Dictionary* entry_ = nullptr;
};

/// A range over the table's keys (for range-for and the standard algorithms).
class IDMappingTable::KeyEnumerator {
 public:
  class iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = String;
    using difference_type = std::ptrdiff_t;
    using pointer = const String*;
    using reference = const String&;

    iterator() = default;
    explicit iterator(Dictionary::const_iterator position) : position_(position) {}
    reference operator*() const { return position_->first; }
    pointer operator->() const { return &position_->first; }
    iterator& operator++() {
      ++position_;
      return *this;
    }
    iterator operator++(int) {
      iterator old = *this;
      ++position_;
      return old;
    }
    friend bool operator==(const iterator&, const iterator&) = default;

   private:
    Dictionary::const_iterator position_;
  };

  explicit KeyEnumerator(const Dictionary& table) : table_(&table) {}
  iterator begin() const { return iterator(table_->begin()); }
  iterator end() const { return iterator(table_->end()); }

 private:
  const Dictionary* table_;
};

inline IDMappingTable::KeyEnumerator IDMappingTable::keyEnumerator() const {
  return KeyEnumerator(entries());
}

}  // namespace phonepim
