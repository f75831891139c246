#include "phonepim/mapping/ContactIDMappingTable.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "phonepim/platform/AppDataFolder.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Log.h"
#include "phonepim/platform/PropertyList.h"
#include "phonepim/platform/Uuid.h"

namespace phonepim {
namespace {

// Keys of a contact entry.
const String kState = u"State";
const String kContactData = u"Contact Data";
const String kVCardID = u"vCardID";
const String kPhoneRecordIDs = u"phone record IDs";

// Keys of a sub-record entry.
const String kData = u"Data";
const String kLink = u"Link";
const String kIdentifier = u"identifier";
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

// State words.
const String kAddedBySyncDB = u"AddedBySyncDB";
const String kModified = u"Modified";
const String kModifiedBySyncDB = u"ModifiedBySyncDB";
const String kRemoved = u"Removed";
const String kRemovedByPellarin = u"RemovedByPellarin";
const String kAddedByPellarin = u"AddedByPellarin";
const String kAdded = u"Added";
const String kDelete = u"Delete";
const String kLinked = u"Linked";

bool HasState(const Dictionary& entry, const String& state) {
  const String* value = FindAs<String>(entry, kState);
  return value != nullptr && *value == state;
}

// The file-name part for a model name or an IMEI. Only '/' and NUL are
// replaced: they would make the name point into another folder or end it.
std::string FileNamePart(const String& text) {
  std::string part = ToDisplayUTF8(text);
  std::replace(part.begin(), part.end(), '/', '_');
  std::replace(part.begin(), part.end(), '\0', '_');
  return part;
}

}  // namespace

// ---------------------------------------------------------------------------
// Location and life cycle.

std::filesystem::path ContactIDMappingTable::metaFilePath(const String& IMEI,
                                                          const String& modelName) {
  return metaFilePath(IMEI, modelName, ApplicationDataFolder());
}

std::filesystem::path ContactIDMappingTable::metaFilePath(
    const String& IMEI, const String& modelName, const std::filesystem::path& baseFolder) {
  std::filesystem::path folder = baseFolder;
  for (const char* level : {"Ulvrand", "Tovi", ".MetaFiles"}) {
    folder /= level;
    CreateFolderChain(folder);
  }
  return folder / (FileNamePart(modelName) + "(" + FileNamePart(IMEI) +
                   ")_ContactRecordIDMeta.plist");
}

const Value* ContactIDMappingTable::LMT(const Dictionary* dictionary) {
  return dictionary == nullptr ? nullptr : Find(*dictionary, u"LMT");
}

ContactIDMappingTable::ContactIDMappingTable(const String& modelName, const String& IMEI) {
  std::filesystem::path base;
  try {
    base = ApplicationDataFolder();
  } catch (const std::runtime_error& error) {
    if (gVCARD_DEBUGMODE) Log("[%s] Warning: %s; the table is not saved.", __func__, error.what());
    return;
  }
  mFilePath_ = metaFilePath(IMEI, modelName, base);
  load();
}

ContactIDMappingTable::ContactIDMappingTable(const String& modelName, const String& IMEI,
                                             const std::filesystem::path& baseFolder)
    : mFilePath_(metaFilePath(IMEI, modelName, baseFolder)) {
  load();
}

void ContactIDMappingTable::load() {
  std::optional<Value> content = ReadPropertyListFile(mFilePath_);
  if (content && content->is<Dictionary>()) {
    mTable_ = std::move(*content);
  } else if (gVCARD_DEBUGMODE) {
    std::error_code error;
    if (std::filesystem::exists(mFilePath_, error)) {
      Log("[%s] Warning: cannot read %s; starting with an empty table.", __func__,
          mFilePath_.c_str());
    }
  }
  indexStale_ = true;
}

bool ContactIDMappingTable::save() const {
  if (mFilePath_.empty()) return false;
  if (WritePropertyListFile(mFilePath_, mTable_)) return true;
  if (gVCARD_DEBUGMODE) Log("Writting file has a problem!!");
  return false;
}

// ---------------------------------------------------------------------------
// The dictionary.

std::vector<String> ContactIDMappingTable::allKeys() const {
  std::vector<String> keys;
  keys.reserve(entries().size());
  for (const auto& entry : entries()) keys.push_back(entry.first);
  return keys;
}

Dictionary& ContactIDMappingTable::mTable() {
  indexStale_ = true;
  return entries();
}

Dictionary* ContactIDMappingTable::contactEntry(const String& storeID) {
  Value* value = Find(entries(), storeID);
  return value ? value->getIf<Dictionary>() : nullptr;
}

const Dictionary* ContactIDMappingTable::contactEntry(const String& storeID) const {
  const Value* value = Find(entries(), storeID);
  return value ? value->getIf<Dictionary>() : nullptr;
}

Dictionary* ContactIDMappingTable::meta(const String& storeID) {
  Dictionary* entry = contactEntry(storeID);
  if (entry != nullptr) markTouched(storeID);
  return entry;
}

const Dictionary* ContactIDMappingTable::meta(const String& storeID) const {
  return contactEntry(storeID);
}

void ContactIDMappingTable::setEntry(const String& key, Value value) {
  entries().insert_or_assign(key, std::move(value));
  reindex(key);
}

void ContactIDMappingTable::eraseEntry(const String& key) {
  if (entries().erase(key) != 0) reindex(key);
}

void ContactIDMappingTable::addMeta(Dictionary entry, const String& storeID) {
  setEntry(storeID, std::move(entry));
  update();
}

// ---------------------------------------------------------------------------
// The vCard ID index.
//
// Looking a contact up by vCard ID walks every key; a sync constructs one
// contact per phone record and looks each up, which is quadratic in the size
// of the address book (seconds for 10,000 contacts). The index keeps, per
// vCard ID, the sorted set of store IDs whose entry carries it, so the first
// element is exactly what the walk finds. Entries handed out for in-place
// changes are re-read before the next look-up.

void ContactIDMappingTable::reindex(const String& key) const {
  if (indexStale_) return;
  if (auto old = vCardIDByKey_.find(key); old != vCardIDByKey_.end()) {
    auto holders = keysByVCardID_.find(old->second);
    holders->second.erase(key);
    if (holders->second.empty()) keysByVCardID_.erase(holders);
    vCardIDByKey_.erase(old);
  }
  const Dictionary* entry = contactEntry(key);
  const String* vCardID = entry ? FindAs<String>(*entry, kVCardID) : nullptr;
  if (vCardID == nullptr) return;
  keysByVCardID_[*vCardID].insert(key);
  vCardIDByKey_.emplace(key, *vCardID);
}

void ContactIDMappingTable::refreshIndex() const {
  if (indexStale_) {
    keysByVCardID_.clear();
    vCardIDByKey_.clear();
    touched_.clear();
    indexStale_ = false;
    for (const auto& [key, value] : entries()) {
      const Dictionary* entry = value.getIf<Dictionary>();
      const String* vCardID = entry ? FindAs<String>(*entry, kVCardID) : nullptr;
      if (vCardID == nullptr) continue;
      keysByVCardID_[*vCardID].insert(key);
      vCardIDByKey_.emplace(key, *vCardID);
    }
    return;
  }
  for (const String& key : touched_) reindex(key);
  touched_.clear();
}

void ContactIDMappingTable::markTouched(const String& key) {
  if (indexStale_) return;
  // Past one re-read per entry a full rebuild is as cheap, and the list stops
  // growing when a caller reads meta() in a loop without looking anything up.
  if (touched_.size() >= entries().size()) {
    indexStale_ = true;
    touched_.clear();
    return;
  }
  touched_.push_back(key);
}

std::optional<String> ContactIDMappingTable::dbIDForVCardID(const String& vCardID) const {
  refreshIndex();
  auto holders = keysByVCardID_.find(vCardID);
  if (holders == keysByVCardID_.end()) return std::nullopt;
  return *holders->second.begin();
}

std::optional<String> ContactIDMappingTable::vCardIDForDBID(const String& storeID) const {
  const Dictionary* entry = contactEntry(storeID);
  const String* vCardID = entry ? FindAs<String>(*entry, kVCardID) : nullptr;
  if (vCardID == nullptr) return std::nullopt;
  return *vCardID;
}

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

String ContactIDMappingTable::newIdentifier() { return NewUUIDString(); }

// ---------------------------------------------------------------------------
// Contacts.

void ContactIDMappingTable::addContact(const String& storeID, const Dictionary& contactData) {
  Dictionary* entry = contactEntry(storeID);
  if (entry == nullptr) {
    setEntry(storeID, Dictionary());
    entry = contactEntry(storeID);
  }
  entry->insert_or_assign(kState, kAddedBySyncDB);
  entry->insert_or_assign(kContactData, contactData);
  update();
}

void ContactIDMappingTable::modifyContact(const String& storeID, const Dictionary& contactData) {
  Dictionary* entry = contactEntry(storeID);
  if (entry == nullptr) return;
  entry->insert_or_assign(kContactData, contactData);
  entry->insert_or_assign(kState, kModified);
  update();
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
  Dictionary* contact = contactEntry(contactID);
  if (contact == nullptr) return;
  Value& list = (*contact)[listKey];
  if (!list.is<Array>()) list = Array();
  list.get<Array>().push_back(Dictionary{
      {kData, data}, {kLink, kLinked}, {kState, kAdded}, {kIdentifier, subRecordID}});
  if (!HasState(*contact, kAddedBySyncDB)) contact->insert_or_assign(kState, kModifiedBySyncDB);
  // A relation list may have been stored under "vCardID" itself.
  reindex(contactID);
  update();
}

bool ContactIDMappingTable::modifySubRecord(const String& listKey, const String& subRecordID,
                                            Dictionary&& data, const String& contactID) {
  Dictionary* contact = contactEntry(contactID);
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
// Removal tagging.

void ContactIDMappingTable::setRemovedTagToAllMeta() {
  for (auto& [key, value] : entries()) {
    Dictionary* entry = value.getIf<Dictionary>();
    if (entry == nullptr) continue;
    const String* state = FindAs<String>(*entry, kState);
    const bool keeps = state != nullptr && (*state == kRemoved || *state == kModifiedBySyncDB ||
                                            *state == kModified || *state == kAddedBySyncDB);
    if (!keeps) entry->insert_or_assign(kState, kRemovedByPellarin);
  }
  update();
}

std::size_t ContactIDMappingTable::countRemovedTagRecords() const {
  return static_cast<std::size_t>(
      std::count_if(entries().begin(), entries().end(), [](const auto& entry) {
        const Dictionary* contact = entry.second.template getIf<Dictionary>();
        return contact != nullptr && HasState(*contact, kRemovedByPellarin);
      }));
}

void ContactIDMappingTable::removeAllRemovedTagRecords() {
  for (auto it = entries().begin(); it != entries().end();) {
    const Dictionary* contact = it->second.getIf<Dictionary>();
    if (contact != nullptr && HasState(*contact, kRemovedByPellarin)) {
      const String key = it->first;
      it = entries().erase(it);
      reindex(key);
    } else {
      ++it;
    }
  }
  update();
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
  const Dictionary* existing = contactEntry(storeID);
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
  Dictionary* entry = contactEntry(storeID);
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
  const Dictionary* contact = contactEntry(contactDBID);
  const Array* list = contact ? FindAs<Array>(*contact, kPhoneRecordIDs) : nullptr;
  return list != nullptr && std::find(list->begin(), list->end(), Value(phoneID)) != list->end();
}

void ContactIDMappingTable::addPhoneRecordID(const String& phoneID, const String& contactDBID) {
  Dictionary* contact = contactEntry(contactDBID);
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
  const Dictionary* contact = contactEntry(contactDBID);
  const Array* list = contact ? FindAs<Array>(*contact, kPhoneRecordIDs) : nullptr;
  if (list == nullptr) return ids;
  for (const Value& item : *list) {
    if (const String* id = item.getIf<String>()) ids.push_back(*id);
  }
  return ids;
}

void ContactIDMappingTable::clearPhoneIDsAtContactID(const String& contactDBID) {
  Dictionary* contact = contactEntry(contactDBID);
  if (contact == nullptr) return;
  contact->erase(kPhoneRecordIDs);
  update();
}

}  // namespace phonepim
