// The persisted memory of one phone's contacts between synchronisations: which
// store record belongs to which phone vCard ID, each contact's state and last
// store data, and its sub-record entries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

/// One phone's contact ID mapping table, loaded from its meta file when it is
/// made and written back only by save(). The records and containers that use
/// it share it (std::shared_ptr); it is not thread-safe.
///
/// The table is one dictionary with two kinds of entries side by side:
/// contact entries (store record ID -> dictionary with "State", "Contact
/// Data", "vCardID" and the sub-record lists) and the flat string pairs of the
/// older pair operations (store ID <-> vCard ID). docs/meta-file.md describes
/// the file.
///
/// Contacts are found by vCard ID through an index. Changes made in place
/// through a pointer from meta() or contactInfo(), or through the reference
/// from mTable(), are picked up by the next dbIDForVCardID(); a pointer kept
/// and written through after a later dbIDForVCardID() is not: fetch it again.
class ContactIDMappingTable {
 public:
  /// The meta file of the phone `modelName` / `IMEI` under the user's
  /// application-data folder: <folder>/Ulvrand/Tovi/.MetaFiles/
  /// <model>(<IMEI>)_ContactRecordIDMeta.plist. The three folders are created
  /// level by level; a folder that cannot be created is no error here (the
  /// file then reads as missing and saving fails). A '/' or U+0000 in the
  /// model name or IMEI becomes '_', so that a phone cannot name another
  /// folder. Throws std::runtime_error when there is no application-data
  /// folder (see ApplicationDataFolder()).
  static std::filesystem::path metaFilePath(const String& IMEI, const String& modelName);
  /// The same under `baseFolder` instead of the application-data folder.
  static std::filesystem::path metaFilePath(const String& IMEI, const String& modelName,
                                            const std::filesystem::path& baseFolder);

  /// The "LMT" value (last-modified time text) of `dictionary`; nullptr for
  /// a null dictionary or one without "LMT".
  static const Value* LMT(const Dictionary* dictionary);

  /// Loads the table of the phone from its meta file under the
  /// application-data folder. A missing or unreadable file, or one that does
  /// not hold a dictionary, gives an empty table. Without an application-data
  /// folder the table is empty and has no file: save() then does nothing.
  ContactIDMappingTable(const String& modelName, const String& IMEI);
  /// The same with the meta file under `baseFolder` (see metaFilePath()).
  ContactIDMappingTable(const String& modelName, const String& IMEI,
                        const std::filesystem::path& baseFolder);

  ContactIDMappingTable(const ContactIDMappingTable&) = delete;
  ContactIDMappingTable& operator=(const ContactIDMappingTable&) = delete;

  /// Writes the whole table to the meta file as an XML property list,
  /// replacing the file atomically. On failure (a value that cannot be
  /// stored, an unwritable folder) logs "Writting file has a problem!!" when
  /// gVCARD_DEBUGMODE is set, keeps the table in memory and returns false.
  /// Returns false without logging when the table has no file.
  bool save() const;
  /// Does nothing: every mutating operation calls it, and only save() writes.
  void update() {}

  std::size_t count() const { return entries().size(); }
  /// The keys in sorted order.
  std::vector<String> allKeys() const;
  /// The keys in sorted order without copying them; invalidated by any
  /// change to the table.
  class KeyEnumerator;
  KeyEnumerator keyEnumerator() const;
  /// The whole table. The mutable form makes the next dbIDForVCardID()
  /// re-index every entry.
  const Dictionary& mTable() const { return entries(); }
  Dictionary& mTable();
  /// The meta file; empty when there is no application-data folder.
  const std::filesystem::path& mFilePath() const { return mFilePath_; }
  std::uint32_t mLastPhoneID() const { return mLastPhoneID_; }

  /// The contact entry under `storeID`, or nullptr when there is none (or the
  /// key holds a flat pair). The pointer stays valid until the entry is
  /// removed or replaced.
  Dictionary* meta(const String& storeID);
  const Dictionary* meta(const String& storeID) const;
  /// The same as meta().
  Dictionary* contactInfo(const String& storeID) { return meta(storeID); }
  const Dictionary* contactInfo(const String& storeID) const { return meta(storeID); }
  /// Stores `entry` under `storeID`, replacing whatever was there.
  void addMeta(Dictionary entry, const String& storeID);

  /// The first store ID, in key order, whose contact entry has "vCardID" equal
  /// to `vCardID`; flat pairs are never answers. Nothing when none matches.
  std::optional<String> dbIDForVCardID(const String& vCardID) const;
  /// The "vCardID" string of the contact entry under `storeID`; nothing when
  /// there is no entry or it has no "vCardID" string.
  std::optional<String> vCardIDForDBID(const String& storeID) const;

  /// Flat pairs. With a store ID: table[vCardID] = storeID and table[storeID]
  /// = vCardID. Without one: table[vCardID] = vCardID.
  void addDBID(const std::optional<String>& storeID, const String& vCardID);
  /// Removes storeID and, when table[storeID] is a string, the key it names;
  /// then sets table[storeID] = vCardID and table[vCardID] = storeID.
  void changeVCardID(const String& vCardID, const String& storeID);
  /// table[recordID] when present (a copy); otherwise stores table[recordID]
  /// = recordID and returns recordID.
  Value checkDBIDForVCardRecordID(const String& recordID);
  bool hasVCardRecordIDForDBID(const String& recordID) const;
  void removeVCardID(const String& recordID);

  /// Temporary numbers for contacts the phone has not numbered yet: the
  /// first after a reset (or a new table) is 1. Wraps to 0 after 2^32-1.
  void resetTemporaryID() { mLastPhoneID_ = 0; }
  std::uint32_t nextTemporaryID() { return ++mLastPhoneID_; }
  /// A new UUID string.
  static String newIdentifier();

  /// Takes the entry under `storeID` (or a new empty one), sets "State" =
  /// "AddedBySyncDB" and "Contact Data" = a copy of `contactData`.
  void addContact(const String& storeID, const Dictionary& contactData);
  /// Only for an existing entry: "Contact Data" = a copy of `contactData`,
  /// "State" = "Modified".
  void modifyContact(const String& storeID, const Dictionary& contactData);
  /// Removes the key (whatever it holds); nothing for no ID.
  void removeContact(const std::optional<String>& storeID);
  void removeContacts(const std::vector<String>& storeIDs);

  /// The sub-record family. Add: when the contact `contactID` has an entry,
  /// appends {"Data": data, "Link": "Linked", "State": "Added",
  /// "identifier": the sub-record ID} to its list (created when absent or
  /// not an array), then sets the contact's "State" to "ModifiedBySyncDB"
  /// unless it is "AddedBySyncDB". Modify: walks the contact's list in order;
  /// every entry passed must carry an "identifier" (otherwise the operation's
  /// assertion stops the process before anything changes); the first whose
  /// identifier equals the argument gets "Data" = data, "Link" = "Linked",
  /// "State" = "Modified", and the contact's "State" becomes "Modified".
  /// Without an entry, a list or a match nothing changes. The URL pair treats
  /// the data's "value" like any other key.
  void addDataForPhoneID(const String& phoneID, const Dictionary& data, const String& contactID);
  void modifyDataForPhoneID(const String& phoneID, Dictionary data, const String& contactID);
  void addEmailForEmailID(const String& emailID, const Dictionary& data, const String& contactID);
  void modifyDataForEmailID(const String& emailID, Dictionary data, const String& contactID);
  void addURLForURLID(const String& urlID, const Dictionary& data, const String& contactID);
  void modifyDataForURLID(const String& urlID, Dictionary data, const String& contactID);
  void addStreetAddressForURLID(const String& addressID, const Dictionary& data,
                                const String& contactID);
  void modifyDataForStreetAddressID(const String& addressID, Dictionary data,
                                    const String& contactID);
  void addDateForDateID(const String& dateID, const Dictionary& data, const String& contactID);
  void modifyDataForDateID(const String& dateID, Dictionary data, const String& contactID);
  void addRelatedNameForRelatedNameID(const String& relatedNameID, const Dictionary& data,
                                      const String& contactID);
  void modifyDataForRelatedNameID(const String& relatedNameID, Dictionary data,
                                  const String& contactID);
  /// The same on the list under `relationKey` (for example "IMs").
  void addDataForRelationID(const String& relationID, const Dictionary& data,
                            const String& contactID, const String& relationKey);
  void modifyDataForRelationID(const String& relationID, Dictionary data,
                               const String& contactID, const String& relationKey);

  /// Tags every contact entry whose "State" is none of "Removed",
  /// "ModifiedBySyncDB", "Modified" and "AddedBySyncDB" (or is missing) with
  /// "RemovedByPellarin". Flat pairs are not entries and stay as they are.
  void setRemovedTagToAllMeta();
  /// The number of contact entries whose "State" is "RemovedByPellarin".
  std::size_t countRemovedTagRecords() const;
  /// Removes those entries.
  void removeAllRemovedTagRecords();

  /// Moves the contact `storeID` to a new store ID and gives each live
  /// sub-record (every list entry whose "State" is not "Delete", in the lists
  /// "phone numbers", "street addresses", "URLs", "email addresses", "related
  /// names", "dates", "IMs") a new identifier. References follow: a
  /// sub-record's "Data"."contact" becomes [new ID], and the old identifiers
  /// in "Contact Data"'s lists are replaced by the new ones in place. The
  /// entry's "State" becomes "AddedByPellarin". Returns the new store ID;
  /// nothing (and no change) when there is no contact entry.
  std::optional<String> changeRecordIDOfMeta(const String& storeID);

  /// Replaces the seven sub-record lists of the contact `storeID` wholesale
  /// from `replaceData`, a dictionary shaped like a contact entry: each list
  /// becomes copies of the dictionaries in replaceData's array under the same
  /// key (other elements are skipped), or is removed when replaceData has no
  /// array there. Each new entry's "Data"."contact", when present, becomes
  /// [storeID]. When the entry has a "Contact Data" dictionary, its value
  /// under each list key becomes the identifiers of the new list's entries
  /// not in "Delete" state, in order (removed when there are none). "State",
  /// "vCardID" and every other key stay. Returns false, changing nothing,
  /// when there is no contact entry.
  bool replaceContactContentsWithIdentifer(const String& storeID, const Dictionary& replaceData);

  /// Removes every sub-record entry whose "identifier" is `identifier` from
  /// every list of every contact entry (the custom relation lists included),
  /// and the identifier from the contact's "Contact Data" list of the same
  /// key. Returns the number of entries removed.
  std::size_t removeIndentifier(const String& identifier);

  /// Per-contact lists of phone-number record IDs, kept in the contact entry
  /// under "phone record IDs" (saved with the table). Without a contact entry
  /// nothing is stored and nothing is found.
  /// Whether `phoneID` is in the list of `contactDBID`.
  bool checkDBIDForPhoneID(const String& phoneID, const String& contactDBID) const;
  /// Appends `phoneID` unless the list holds it already.
  void addPhoneRecordID(const String& phoneID, const String& contactDBID);
  /// The list in the order added; empty when there is none.
  std::vector<String> phoneIDsFromContactDBID(const String& contactDBID) const;
  /// Removes the list.
  void clearPhoneIDsAtContactID(const String& contactDBID);

 private:
  void load();
  Dictionary& entries() { return mTable_.get<Dictionary>(); }
  const Dictionary& entries() const { return mTable_.get<Dictionary>(); }
  Dictionary* contactEntry(const String& storeID);
  const Dictionary* contactEntry(const String& storeID) const;
  void setEntry(const String& key, Value value);
  void eraseEntry(const String& key);

  void addSubRecord(const String& listKey, const String& subRecordID, const Dictionary& data,
                    const String& contactID);
  /// False when an entry without "identifier" was met before a match.
  bool modifySubRecord(const String& listKey, const String& subRecordID, Dictionary&& data,
                       const String& contactID);

  // The vCard ID index.
  void reindex(const String& key) const;
  void refreshIndex() const;
  void markTouched(const String& key);

  Value mTable_{Dictionary()};  // always a Dictionary; a Value so save() need not copy it
  std::uint32_t mLastPhoneID_ = 0;
  std::filesystem::path mFilePath_;

  mutable std::unordered_map<String, std::set<String>> keysByVCardID_;
  mutable std::unordered_map<String, String> vCardIDByKey_;
  mutable std::vector<String> touched_;  // keys handed out for in-place changes
  mutable bool indexStale_ = true;
};

/// A range over the table's keys (for range-for and the standard algorithms).
class ContactIDMappingTable::KeyEnumerator {
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

inline ContactIDMappingTable::KeyEnumerator ContactIDMappingTable::keyEnumerator() const {
  return KeyEnumerator(entries());
}

}  // namespace phonepim
