#include "phonepim/mapping/IDMappingTable.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "phonepim/platform/AppDataFolder.h"
#include "phonepim/platform/Log.h"
#include "phonepim/platform/PropertyList.h"
#include "phonepim/platform/Uuid.h"
#include "MappingKeys.h"

namespace phonepim {

IDMappingTable::IDMappingTable(std::filesystem::path filePath, String indexedKey)
    : mFilePath_(std::move(filePath)), indexedKey_(std::move(indexedKey)) {
  if (!mFilePath_.empty()) load();
}

IDMappingTable::~IDMappingTable() = default;

std::filesystem::path IDMappingTable::metaFolder(const std::filesystem::path& baseFolder,
                                                std::initializer_list<const char*> levels) {
  std::filesystem::path folder = baseFolder;
  for (const char* level : levels) {
    folder /= level;
    CreateFolderChain(folder);
  }
  return folder;
}

std::string IDMappingTable::fileNamePart(const String& text) {
  std::string part = ToDisplayUTF8(text);
  std::replace(part.begin(), part.end(), '/', '_');
  std::replace(part.begin(), part.end(), '\0', '_');
  return part;
}

std::filesystem::path IDMappingTable::applicationDataFolderOrNone() {
  try {
    return ApplicationDataFolder();
  } catch (const std::runtime_error& error) {
    if (gVCARD_DEBUGMODE) Log("[%s] Warning: %s; the table is not saved.", __func__, error.what());
    return {};
  }
}

const Value* IDMappingTable::LMT(const Dictionary* dictionary) {
  return dictionary == nullptr ? nullptr : Find(*dictionary, u"LMT");
}

String IDMappingTable::newIdentifier() { return NewUUIDString(); }

void IDMappingTable::load() {
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

bool IDMappingTable::save() const {
  if (mFilePath_.empty()) return false;
  if (WritePropertyListFile(mFilePath_, mTable_)) return true;
  if (gVCARD_DEBUGMODE) Log("Writting file has a problem!!");
  return false;
}

// ---------------------------------------------------------------------------
// The dictionary.

std::vector<String> IDMappingTable::allKeys() const {
  std::vector<String> keys;
  keys.reserve(entries().size());
  for (const auto& entry : entries()) keys.push_back(entry.first);
  return keys;
}

Dictionary& IDMappingTable::mTable() {
  // From now on every look-up walks, and any entry may go behind the
  // table's back: the handles' bookkeeping is of no more use.
  tableHandedOut_ = true;
  heldOpen_.clear();
  edits_.clear();
  return entries();
}

Dictionary* IDMappingTable::entry(const String& key) {
  Value* value = Find(entries(), key);
  return value ? value->getIf<Dictionary>() : nullptr;
}

const Dictionary* IDMappingTable::entry(const String& key) const {
  const Value* value = Find(entries(), key);
  return value ? value->getIf<Dictionary>() : nullptr;
}

Dictionary* IDMappingTable::meta(const String& storeID) {
  Dictionary* found = entry(storeID);
  if (found != nullptr && !tableHandedOut_) heldOpen_.insert(storeID);
  return found;
}

const Dictionary* IDMappingTable::meta(const String& storeID) const { return entry(storeID); }

IDMappingTable::EntryEdit IDMappingTable::editMeta(const String& storeID) {
  const auto position = entries().find(storeID);
  Dictionary* found = position != entries().end() ? position->second.getIf<Dictionary>() : nullptr;
  if (found == nullptr) return EntryEdit();
  if (tableHandedOut_) return EntryEdit(nullptr, found);
  for (Edit& edit : edits_) {
    if (edit.entry == found) {
      ++edit.count;
      return EntryEdit(this, found);
    }
  }
  edits_.push_back(Edit{&position->first, found, 1});
  return EntryEdit(this, found);
}

void IDMappingTable::closeEdit(const Dictionary* entry) {
  for (auto edit = edits_.begin(); edit != edits_.end(); ++edit) {
    if (edit->entry != entry) continue;
    if (--edit->count == 0) {
      const String& key = *edit->key;
      edits_.erase(edit);
      reindexIfChanged(key);
    }
    return;
  }
}

bool IDMappingTable::isOpen(const String& key) const {
  if (heldOpen_.contains(key)) return true;
  for (const Edit& edit : edits_) {
    if (*edit.key == key) return true;
  }
  return false;
}

// A pointer into an entry replaced by another dictionary still reaches the
// new one (the map keeps its node); one removed or replaced by anything else
// dangles and can write no more.
void IDMappingTable::forgetHandles(const String& key) {
  heldOpen_.erase(key);
  std::erase_if(edits_, [&](const Edit& edit) { return *edit.key == key; });
}

void IDMappingTable::setEntry(const String& key, Value value) {
  if (!value.is<Dictionary>()) forgetHandles(key);
  entries().insert_or_assign(key, std::move(value));
  reindex(key);
}

void IDMappingTable::eraseEntry(const String& key) {
  forgetHandles(key);
  if (entries().erase(key) != 0) reindex(key);
}

void IDMappingTable::addMeta(Dictionary entry, const String& storeID) {
  setEntry(storeID, std::move(entry));
  update();
}

// ---------------------------------------------------------------------------
// The index.
//
// Looking an entry up by the ID it holds walks every key; a sync constructs
// one record per phone record and looks each up, which is quadratic in the
// size of the address book (seconds for 10,000 contacts). The index keeps,
// per held ID, the sorted set of keys whose entry holds it, so its first
// element is what the walk finds among the indexed entries. Open entries
// stay indexed as last read, but a write through their handle may come at
// any time: a look-up checks an open candidate before taking it, and reads
// every open entry that could come before its answer.

const String* IDMappingTable::heldIn(const String& key) const {
  const Dictionary* found = entry(key);
  return found ? FindAs<String>(*found, indexedKey_) : nullptr;
}

bool IDMappingTable::carries(const String& key, const String& id) const {
  const String* held = heldIn(key);
  return held != nullptr && *held == id;
}

void IDMappingTable::reindex(const String& key) const {
  if (indexStale_) return;
  if (auto old = heldIDByKey_.find(key); old != heldIDByKey_.end()) {
    auto holders = keysByHeldID_.find(old->second);
    holders->second.erase(key);
    if (holders->second.empty()) keysByHeldID_.erase(holders);
    heldIDByKey_.erase(old);
  }
  const String* held = heldIn(key);
  if (held == nullptr) return;
  keysByHeldID_[*held].insert(key);
  heldIDByKey_.emplace(key, *held);
}

void IDMappingTable::reindexIfChanged(const String& key) const {
  if (indexStale_) return;
  const String* held = heldIn(key);
  const auto indexed = heldIDByKey_.find(key);
  const bool same = indexed == heldIDByKey_.end() ? held == nullptr
                                                  : held != nullptr && *held == indexed->second;
  if (!same) reindex(key);
}

void IDMappingTable::refreshIndex() const {
  if (!indexStale_) return;
  keysByHeldID_.clear();
  heldIDByKey_.clear();
  indexStale_ = false;
  for (const auto& [key, value] : entries()) reindex(key);
}

std::optional<String> IDMappingTable::walk(const String& id) const {
  for (const auto& [key, value] : entries()) {
    if (carries(key, id)) return key;
  }
  return std::nullopt;
}

std::optional<String> IDMappingTable::firstKeyHolding(const String& id) const {
  if (tableHandedOut_) return walk(id);
  refreshIndex();
  const auto holders = keysByHeldID_.find(id);
  if (heldOpen_.empty() && edits_.empty()) {
    if (holders == keysByHeldID_.end()) return std::nullopt;
    return *holders->second.begin();
  }
  // The first indexed key that still holds the ID (an open one may not).
  const String* best = nullptr;
  if (holders != keysByHeldID_.end()) {
    for (const String& key : holders->second) {
      if (!isOpen(key) || carries(key, id)) {
        best = &key;
        break;
      }
    }
  }
  // An open entry may hold it now without the index knowing.
  for (const Edit& edit : edits_) {
    if ((best == nullptr || *edit.key < *best) && carries(*edit.key, id)) best = edit.key;
  }
  for (const String& key : heldOpen_) {
    if (best != nullptr && !(key < *best)) break;
    if (carries(key, id)) {
      best = &key;
      break;
    }
  }
  if (best == nullptr) return std::nullopt;
  return *best;
}

std::optional<String> IDMappingTable::heldIDOf(const String& key) const {
  const String* held = heldIn(key);
  if (held == nullptr) return std::nullopt;
  return *held;
}

// ---------------------------------------------------------------------------
// Records and removal tagging.

void IDMappingTable::addRecordData(const String& storeID, const String& dataKey,
                                   const Dictionary& data) {
  Dictionary* found = entry(storeID);
  if (found == nullptr) {
    setEntry(storeID, Dictionary());
    found = entry(storeID);
  }
  found->insert_or_assign(kState, kAddedBySyncDB);
  found->insert_or_assign(dataKey, data);
  reindex(storeID);  // the data may have been kept under the indexed key
  update();
}

void IDMappingTable::modifyRecordData(const String& storeID, const String& dataKey,
                                      const Dictionary& data) {
  Dictionary* found = entry(storeID);
  if (found == nullptr) return;
  found->insert_or_assign(dataKey, data);
  found->insert_or_assign(kState, kModified);
  reindex(storeID);
  update();
}

void IDMappingTable::setRemovedTagToAllMeta() {
  for (auto& [key, value] : entries()) {
    Dictionary* found = value.getIf<Dictionary>();
    if (found == nullptr) continue;
    const String* state = FindAs<String>(*found, kState);
    const bool keeps = state != nullptr && (*state == kRemoved || *state == kModifiedBySyncDB ||
                                            *state == kModified || *state == kAddedBySyncDB);
    if (!keeps) found->insert_or_assign(kState, kRemovedByPellarin);
  }
  update();
}

std::size_t IDMappingTable::countRemovedTagRecords() const {
  return static_cast<std::size_t>(
      std::count_if(entries().begin(), entries().end(), [](const auto& item) {
        const Dictionary* found = item.second.template getIf<Dictionary>();
        return found != nullptr && HasState(*found, kRemovedByPellarin);
      }));
}

void IDMappingTable::removeAllRemovedTagRecords() {
  std::vector<String> tagged;
  for (const auto& [key, value] : entries()) {
    const Dictionary* found = value.getIf<Dictionary>();
    if (found != nullptr && HasState(*found, kRemovedByPellarin)) tagged.push_back(key);
  }
  for (const String& key : tagged) eraseEntry(key);
  update();
}

}  // namespace phonepim
