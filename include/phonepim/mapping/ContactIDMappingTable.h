// The persisted memory of one phone's contacts between synchronisations: which
// store record belongs to which phone vCard ID, each contact's state and last
// store data, and its sub-record entries.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

#include "phonepim/mapping/IDMappingTable.h"
#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

/// One phone's contact ID mapping table, loaded from its meta file when it is
/// made and written back only by save() (see IDMappingTable for what it
/// shares with the calendar table, the look-up's exactness among it).
///
/// The table is one dictionary with two kinds of entries side by side:
/// contact entries (store record ID -> dictionary with "State", "Contact
/// Data", "vCardID" and the sub-record lists) and the flat string pairs of the
/// older pair operations (store ID <-> vCard ID). docs/meta-file.md describes
/// the file.
class ContactIDMappingTable : public IDMappingTable {
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

  /// Loads the table of the phone from its meta file under the
  /// application-data folder. A missing or unreadable file, or one that does
  /// not hold a dictionary, gives an empty table. Without an application-data
  /// folder the table is empty and has no file: save() then does nothing.
  ContactIDMappingTable(const String& modelName, const String& IMEI);
  /// The same with the meta file under `baseFolder` (see metaFilePath()); an
  /// empty `baseFolder` gives a table without a file.
  ContactIDMappingTable(const String& modelName, const String& IMEI,
                        const std::filesystem::path& baseFolder);

  /// The same as meta().
  Dictionary* contactInfo(const String& storeID) { return meta(storeID); }
  const Dictionary* contactInfo(const String& storeID) const { return meta(storeID); }
  /// The first store ID, in key order, whose contact entry has "vCardID" equal
  /// to `vCardID`; flat pairs are never answers. Nothing when none matches.
  std::optional<String> dbIDForVCardID(const String& vCardID) const {
    return firstKeyHolding(vCardID);
  }
  /// The "vCardID" string of the contact entry under `storeID`; nothing when
  /// there is no entry or it has no "vCardID" string.
  std::optional<String> vCardIDForDBID(const String& storeID) const {
    return heldIDOf(storeID);
  }

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
  void addSubRecord(const String& listKey, const String& subRecordID, const Dictionary& data,
                    const String& contactID);
  /// False when an entry without "identifier" was met before a match.
  bool modifySubRecord(const String& listKey, const String& subRecordID, Dictionary&& data,
                       const String& contactID);
};

}  // namespace phonepim
