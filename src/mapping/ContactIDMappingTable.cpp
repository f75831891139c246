#include "phonepim/mapping/ContactIDMappingTable.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "phonepim/platform/AppDataFolder.h"
#include "phonepim/platform/Assert.h"
#include "MappingKeys.h"

namespace phonepim {
namespace {

const String kContactData = u"Contact Data";
const String kVCardID = u"vCardID";
const String kPhoneRecordIDs = u"phone record IDs";
const String kContact = u"contact";

// The sub-record lists.
const String kPhoneNumbers = u"phone numbers";
const String kEmailAddresses = u"email addresses";
const String kURLs = u"URLs";
const String kStreetAddresses = u"street addresses";
const String kDates = u"dates";
const String kRelatedNames = u"related names";
const String kIMs = u"IMs";

// The order in which changeRecordIDOfMeta renumbers the lists.
const std::array<const String*, 7> kSubRecordLists = {
    &kPhoneNumbers, &kStreetAddresses, &kURLs,  &kEmailAddresses,
    &kRelatedNames, &kDates,           &kIMs};

}  // namespace

// ---------------------------------------------------------------------------
// Location and life cycle.

std::filesystem::path ContactIDMappingTable::metaFilePath(const String& IMEI,
                                                          const String& modelName) {
  return metaFilePath(IMEI, modelName, ApplicationDataFolder());
}

std::filesystem::path ContactIDMappingTable::metaFilePath(
    const String& IMEI, const String& modelName, const std::filesystem::path& baseFolder) {
  return metaFolder(baseFolder, {"Ulvrand", "Tovi", ".MetaFiles"}) /
         (fileNamePart(modelName) + "(" + fileNamePart(IMEI) + ")_ContactRecordIDMeta.plist");
}

ContactIDMappingTable::ContactIDMappingTable(const String& modelName, const String& IMEI)
    : ContactIDMappingTable(modelName, IMEI, applicationDataFolderOrNone()) {}

ContactIDMappingTable::ContactIDMappingTable(const String& modelName, const String& IMEI,
                                             const std::filesystem::path& baseFolder)
    : IDMappingTable(baseFolder.empty() ? baseFolder : metaFilePath(IMEI, modelName, baseFolder),
                     kVCardID) {}

// ---------------------------------------------------------------------------
// Flat pairs.

void ContactIDMappingTable::addDBID(const std::optional<String>& storeID, const String& vCardID) {
  if (storeID) {
    setEntry(vCardID, *storeID);
    setEntry(*storeID, vCardID);
  } else {
    setEntry(vCardID, vCardID);
  }
  update();
}

void ContactIDMappingTable::changeVCardID(const String& vCardID, const String& storeID) {
  if (const Value* old = Find(entries(), storeID)) {
    const String* oldVCardID = old->getIf<String>();
    const std::optional<String> oldKey =
        oldVCardID ? std::optional<String>(*oldVCardID) : std::nullopt;
    eraseEntry(storeID);
    if (oldKey) eraseEntry(*oldKey);
  }
  setEntry(storeID, vCardID);
  setEntry(vCardID, storeID);
  update();
}

Value ContactIDMappingTable::checkDBIDForVCardRecordID(const String& recordID) {
  if (const Value* value = Find(entries(), recordID)) return *value;
  setEntry(recordID, recordID);
  update();
  return recordID;
}

bool ContactIDMappingTable::hasVCardRecordIDForDBID(const String& recordID) const {
  return Find(entries(), recordID) != nullptr;
}

void ContactIDMappingTable::removeVCardID(const String& recordID) {
  eraseEntry(recordID);
  update();
}

// ---------------------------------------------------------------------------
// Contacts.

void ContactIDMappingTable::addContact(const String& storeID, const Dictionary& contactData) {
  addRecordData(storeID, kContactData, contactData);
}

void ContactIDMappingTable::modifyContact(const String& storeID, const Dictionary& contactData) {
  modifyRecordData(storeID, kContactData, contactData);
}

void ContactIDMappingTable::removeContact(const std::optional<String>& storeID) {
  if (!storeID) return;
  eraseEntry(*storeID);
  update();
}

void ContactIDMappingTable::removeContacts(const std::vector<String>& storeIDs) {
  for (const String& storeID : storeIDs) eraseEntry(storeID);
  update();
}

// ---------------------------------------------------------------------------
// Sub-records.

void ContactIDMappingTable::addSubRecord(const String& listKey, const String& subRecordID,
                                         const Dictionary& data, const String& contactID) {
  Dictionary* contact = entry(contactID);
  if (contact == nullptr) return;
  Value& list = (*contact)[listKey];
  if (!list.is<Array>()) list = Array();
  // Built key by key: from an initializer list GCC 12 at -O2 and above
  // warns, wrongly, of an uninitialized variant.
  Dictionary subRecord;
  subRecord.emplace(kData, data);
  subRecord.emplace(kLink, kLinked);
  subRecord.emplace(kState, kAdded);
  subRecord.emplace(kIdentifier, subRecordID);
  list.get<Array>().emplace_back(std::move(subRecord));
  if (!HasState(*contact, kAddedBySyncDB)) contact->insert_or_assign(kState, kModifiedBySyncDB);
  // A relation list may have been stored under "vCardID" itself.
  reindex(contactID);
  update();
}

bool ContactIDMappingTable::modifySubRecord(const String& listKey, const String& subRecordID,
                                            Dictionary&& data, const String& contactID) {
  Dictionary* contact = entry(contactID);
  if (contact == nullptr) return true;
  Array* list = FindAs<Array>(*contact, listKey);
  if (list == nullptr) return true;
  for (Value& item : *list) {
    Dictionary* entry = item.getIf<Dictionary>();
    const Value* identifier = entry ? Find(*entry, kIdentifier) : nullptr;
    if (identifier == nullptr) return false;
    const String* text = identifier->getIf<String>();
    if (text == nullptr || *text != subRecordID) continue;
    entry->insert_or_assign(kData, std::move(data));
    entry->insert_or_assign(kLink, kLinked);
    entry->insert_or_assign(kState, kModified);
    contact->insert_or_assign(kState, kModified);
    update();
    return true;
  }
  return true;
}

void ContactIDMappingTable::addDataForPhoneID(const String& phoneID, const Dictionary& data,
                                              const String& contactID) {
  addSubRecord(kPhoneNumbers, phoneID, data, contactID);
}

void ContactIDMappingTable::modifyDataForPhoneID(const String& phoneID, Dictionary data,
                                                 const String& contactID) {
  const bool identified = modifySubRecord(kPhoneNumbers, phoneID, std::move(data), contactID);
  PHONEPIM_ASSERT(identified, "metaPhoneID != nil");
}

void ContactIDMappingTable::addEmailForEmailID(const String& emailID, const Dictionary& data,
                                               const String& contactID) {
  addSubRecord(kEmailAddresses, emailID, data, contactID);
}

void ContactIDMappingTable::modifyDataForEmailID(const String& emailID, Dictionary data,
                                                 const String& contactID) {
  const bool identified = modifySubRecord(kEmailAddresses, emailID, std::move(data), contactID);
  PHONEPIM_ASSERT(identified, "metaEmailID != nil");
}

void ContactIDMappingTable::addURLForURLID(const String& urlID, const Dictionary& data,
                                           const String& contactID) {
  addSubRecord(kURLs, urlID, data, contactID);
}

void ContactIDMappingTable::modifyDataForURLID(const String& urlID, Dictionary data,
                                               const String& contactID) {
  const bool identified = modifySubRecord(kURLs, urlID, std::move(data), contactID);
  PHONEPIM_ASSERT(identified, "metaURLID != nil");
}

void ContactIDMappingTable::addStreetAddressForURLID(const String& addressID,
                                                     const Dictionary& data,
                                                     const String& contactID) {
  addSubRecord(kStreetAddresses, addressID, data, contactID);
}

void ContactIDMappingTable::modifyDataForStreetAddressID(const String& addressID,
                                                         Dictionary data,
                                                         const String& contactID) {
  const bool identified =
      modifySubRecord(kStreetAddresses, addressID, std::move(data), contactID);
  PHONEPIM_ASSERT(identified, "metaSAID != nil");
}

void ContactIDMappingTable::addDateForDateID(const String& dateID, const Dictionary& data,
                                             const String& contactID) {
  addSubRecord(kDates, dateID, data, contactID);
}

void ContactIDMappingTable::modifyDataForDateID(const String& dateID, Dictionary data,
                                                const String& contactID) {
  const bool identified = modifySubRecord(kDates, dateID, std::move(data), contactID);
  PHONEPIM_ASSERT(identified, "metaDateID != nil");
}

void ContactIDMappingTable::addRelatedNameForRelatedNameID(const String& relatedNameID,
                                                           const Dictionary& data,
                                                           const String& contactID) {
  addSubRecord(kRelatedNames, relatedNameID, data, contactID);
}

void ContactIDMappingTable::modifyDataForRelatedNameID(const String& relatedNameID,
                                                       Dictionary data,
                                                       const String& contactID) {
  const bool identified =
      modifySubRecord(kRelatedNames, relatedNameID, std::move(data), contactID);
  PHONEPIM_ASSERT(identified, "metaRelatedNameID != nil");
}

void ContactIDMappingTable::addDataForRelationID(const String& relationID,
                                                 const Dictionary& data,
                                                 const String& contactID,
                                                 const String& relationKey) {
  addSubRecord(relationKey, relationID, data, contactID);
}

void ContactIDMappingTable::modifyDataForRelationID(const String& relationID, Dictionary data,
                                                    const String& contactID,
                                                    const String& relationKey) {
  const bool identified = modifySubRecord(relationKey, relationID, std::move(data), contactID);
  PHONEPIM_ASSERT(identified, "metaRelationID != nil");
}

// ---------------------------------------------------------------------------
// New identities.

namespace {

// Replaces, in the string elements of `list`, each old identifier that
// `renamed` maps by its new one.
void RenameIdentifiers(Array& list, const std::vector<std::pair<String, String>>& renamed) {
  for (Value& item : list) {
    String* text = item.getIf<String>();
    if (text == nullptr) continue;
    for (const auto& [oldID, newID] : renamed) {
      if (*text == oldID) {
        *text = newID;
        break;
      }
    }
  }
}

// Points the sub-record's store data at its owning contact.
void SetOwner(Dictionary& subRecord, const String& contactID) {
  Dictionary* data = FindAs<Dictionary>(subRecord, kData);
  if (data != nullptr && data->contains(kContact)) {
    data->insert_or_assign(kContact, Array{Value(contactID)});
  }
}

}  // namespace

std::optional<String> ContactIDMappingTable::changeRecordIDOfMeta(const String& storeID) {
  const Dictionary* existing = entry(storeID);
  if (existing == nullptr) return std::nullopt;
  Dictionary entry = *existing;
  const String newID = newIdentifier();

  Dictionary* contactData = FindAs<Dictionary>(entry, kContactData);
  for (const String* listKey : kSubRecordLists) {
    Array* list = FindAs<Array>(entry, *listKey);
    if (list == nullptr) continue;
    std::vector<std::pair<String, String>> renamed;
    for (Value& item : *list) {
      Dictionary* subRecord = item.getIf<Dictionary>();
      if (subRecord == nullptr || HasState(*subRecord, kDelete)) continue;
      const String fresh = newIdentifier();
      if (const String* old = FindAs<String>(*subRecord, kIdentifier)) {
        renamed.emplace_back(*old, fresh);
      }
      subRecord->insert_or_assign(kIdentifier, fresh);
      SetOwner(*subRecord, newID);
    }
    if (contactData != nullptr) {
      if (Array* references = FindAs<Array>(*contactData, *listKey)) {
        RenameIdentifiers(*references, renamed);
      }
    }
  }
  entry.insert_or_assign(kState, kAddedByPellarin);
  eraseEntry(storeID);
  setEntry(newID, std::move(entry));
  update();
  return newID;
}

bool ContactIDMappingTable::replaceContactContentsWithIdentifer(const String& storeID,
                                                                const Dictionary& replaceData) {
  Dictionary* entry = IDMappingTable::entry(storeID);
  if (entry == nullptr) return false;
  Dictionary* contactData = FindAs<Dictionary>(*entry, kContactData);
  for (const String* listKey : kSubRecordLists) {
    const Array* source = FindAs<Array>(replaceData, *listKey);
    if (source == nullptr) {
      entry->erase(*listKey);
      if (contactData != nullptr) contactData->erase(*listKey);
      continue;
    }
    Array list;
    Array identifiers;
    for (const Value& item : *source) {
      const Dictionary* subRecord = item.getIf<Dictionary>();
      if (subRecord == nullptr) continue;
      Dictionary copy = *subRecord;
      SetOwner(copy, storeID);
      const String* identifier = FindAs<String>(copy, kIdentifier);
      if (identifier != nullptr && !HasState(copy, kDelete)) identifiers.emplace_back(*identifier);
      list.emplace_back(std::move(copy));
    }
    if (contactData != nullptr) {
      if (identifiers.empty()) {
        contactData->erase(*listKey);
      } else {
        contactData->insert_or_assign(*listKey, std::move(identifiers));
      }
    }
    entry->insert_or_assign(*listKey, std::move(list));
  }
  update();
  return true;
}

std::size_t ContactIDMappingTable::removeIndentifier(const String& identifier) {
  std::size_t removed = 0;
  for (auto& [key, value] : entries()) {
    Dictionary* contact = value.getIf<Dictionary>();
    if (contact == nullptr) continue;
    Dictionary* contactData = FindAs<Dictionary>(*contact, kContactData);
    for (auto& [listKey, listValue] : *contact) {
      Array* list = listValue.getIf<Array>();
      if (list == nullptr) continue;
      const auto end = std::remove_if(list->begin(), list->end(), [&](const Value& item) {
        const Dictionary* subRecord = item.getIf<Dictionary>();
        const String* id = subRecord ? FindAs<String>(*subRecord, kIdentifier) : nullptr;
        return id != nullptr && *id == identifier;
      });
      const auto count = static_cast<std::size_t>(list->end() - end);
      if (count == 0) continue;
      list->erase(end, list->end());
      removed += count;
      Array* references = contactData ? FindAs<Array>(*contactData, listKey) : nullptr;
      if (references != nullptr) std::erase(*references, Value(identifier));
    }
  }
  update();
  return removed;
}

// ---------------------------------------------------------------------------
// Phone record IDs per contact.

bool ContactIDMappingTable::checkDBIDForPhoneID(const String& phoneID,
                                                const String& contactDBID) const {
  const Dictionary* contact = entry(contactDBID);
  const Array* list = contact ? FindAs<Array>(*contact, kPhoneRecordIDs) : nullptr;
  return list != nullptr && std::find(list->begin(), list->end(), Value(phoneID)) != list->end();
}

void ContactIDMappingTable::addPhoneRecordID(const String& phoneID, const String& contactDBID) {
  Dictionary* contact = entry(contactDBID);
  if (contact == nullptr) return;
  Value& list = (*contact)[kPhoneRecordIDs];
  if (!list.is<Array>()) list = Array();
  Array& ids = list.get<Array>();
  if (std::find(ids.begin(), ids.end(), Value(phoneID)) == ids.end()) ids.emplace_back(phoneID);
  update();
}

std::vector<String> ContactIDMappingTable::phoneIDsFromContactDBID(
    const String& contactDBID) const {
  std::vector<String> ids;
  const Dictionary* contact = entry(contactDBID);
  const Array* list = contact ? FindAs<Array>(*contact, kPhoneRecordIDs) : nullptr;
  if (list == nullptr) return ids;
  for (const Value& item : *list) {
    if (const String* id = item.getIf<String>()) ids.push_back(*id);
  }
  return ids;
}

void ContactIDMappingTable::clearPhoneIDsAtContactID(const String& contactDBID) {
  Dictionary* contact = entry(contactDBID);
  if (contact == nullptr) return;
  contact->erase(kPhoneRecordIDs);
  update();
}

}  // namespace phonepim
