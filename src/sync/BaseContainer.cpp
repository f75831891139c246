#include "phonepim/sync/BaseContainer.h"

#include "phonepim/mapping/IDMappingTable.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Uuid.h"

namespace phonepim {

namespace {

const String kTriggerDuration = u"triggerduration";

Dictionary NewEntry(const Dictionary& record, String identifier) {
  return Dictionary{{kMetaKeyData, record},
                    {kMetaKeyState, kMetaStateNew},
                    {kMetaKeyLink, kMetaLinked},
                    {kMetaKeyIdentifier, std::move(identifier)}};
}

bool IsUnlinked(const Dictionary& entry) {
  const String* link = FindAs<String>(entry, kMetaKeyLink);
  return link != nullptr && *link == kMetaUnlinked;
}

// Stores the identifiers under `key` of the dictionary `meta`[`slot`], when
// there is such a dictionary.
void StoreIdentifiers(Dictionary& meta, const String& slot, const String& key,
                      const std::vector<String>& identifiers) {
  Dictionary* target = FindAs<Dictionary>(meta, slot);
  if (target == nullptr) return;
  target->insert_or_assign(key, Array(identifiers.begin(), identifiers.end()));
}

}  // namespace

BaseContainer::BaseContainer(String vObjectID, std::shared_ptr<IDMappingTable> idMapper)
    : mIDMapper(std::move(idMapper)), mVObjectID(std::move(vObjectID)) {}

BaseContainer::~BaseContainer() = default;

std::vector<String> BaseContainer::recordIDs() const {
  std::vector<String> identifiers;
  for (const Dictionary& record : mItemArray) {
    if (const String* identifier = FindAs<String>(record, kMetaKeyIdentifier)) {
      identifiers.push_back(*identifier);
    }
  }
  return identifiers;
}

const Dictionary& BaseContainer::recordAtIndex(int nIndex) const {
  PHONEPIM_ASSERT(nIndex < count() && nIndex >= 0, "nIndex < [mItemArray count] && nIndex >= 0");
  return mItemArray[static_cast<std::size_t>(nIndex)];
}

const Dictionary* BaseContainer::recordByID(const String& identifier) const {
  for (const Dictionary& record : mItemArray) {
    const String* recordID = FindAs<String>(record, kMetaKeyIdentifier);
    if (recordID != nullptr && *recordID == identifier) return &record;
  }
  return nullptr;
}

const Value* BaseContainer::metaDataWithKey(const String& key) const {
  if (!mIDMapper) return nullptr;
  const IDMappingTable& table = *mIDMapper;
  const Dictionary* meta = table.meta(mVObjectID);
  return meta ? Find(*meta, key) : nullptr;
}

bool BaseContainer::compareSource(const Value* source, const Value* target) {
  if (source == nullptr || target == nullptr) return false;
  if (const String* text = source->getIf<String>()) {
    const String* other = target->getIf<String>();
    return other != nullptr && *text == *other;
  }
  if (const Date* date = source->getIf<Date>()) {
    const Date* other = target->getIf<Date>();
    return other != nullptr && *date == *other;
  }
  return false;
}

Dictionary BaseContainer::newContactSubRecord(const String& entityName) const {
  return Dictionary{{ISyncRecordEntityNameKey, entityName},
                    {kSyncKeyContact, Array{Value(mVObjectID)}}};
}

void BaseContainer::setTypeAndLabel(Dictionary& record, const String& type,
                                    const std::optional<String>& label) {
  record.insert_or_assign(kSyncKeyType, type);
  if (label) record.insert_or_assign(kSyncKeyLabel, *label);
}

std::vector<String> BaseContainer::createMetaDataWithKey(const String& key,
                                                         const String& valueKey) {
  return reconcile(key, valueKey, false);
}

std::vector<String> BaseContainer::createMetaDataInCalendarWithKey(const String& key,
                                                                   const String& valueKey) {
  std::vector<String> identifiers = reconcile(key, valueKey, true);
  if (mIDMapper) mIDMapper->update();
  return identifiers;
}

std::vector<String> BaseContainer::reconcile(const String& key, const String& valueKey,
                                             bool calendar) {
  std::vector<String> identifiers;
  IDMappingTable::EntryEdit edit;
  if (mIDMapper) edit = mIDMapper->editMeta(mVObjectID);
  Dictionary* meta = edit.get();
  if (meta == nullptr) return identifiers;

  Array* entries = FindAs<Array>(*meta, key);
  if (entries == nullptr || entries->empty()) {
    // A first synchronisation (or a list that was lost): every record is new.
    Array fresh;
    fresh.reserve(mItemArray.size());
    for (const Dictionary& record : mItemArray) {
      identifiers.push_back(NewUUIDString());
      fresh.emplace_back(NewEntry(record, identifiers.back()));
    }
    meta->insert_or_assign(key, std::move(fresh));
  } else {
    for (Value& entry : *entries) {
      if (Dictionary* fields = entry.getIf<Dictionary>()) {
        fields->insert_or_assign(kMetaKeyState, kMetaStateDelete);
        fields->insert_or_assign(kMetaKeyLink, kMetaUnlinked);
      }
    }
    // Entries appended below are linked already and can never be claimed,
    // so only those that were there before are walked.
    const std::size_t existing = entries->size();
    for (const Dictionary& record : mItemArray) {
      const Value* value = Find(record, valueKey);
      Dictionary* claimed = nullptr;
      for (std::size_t i = 0; i < existing; ++i) {
        Dictionary* entry = (*entries)[i].getIf<Dictionary>();
        const Dictionary* data = entry ? FindAs<Dictionary>(*entry, kMetaKeyData) : nullptr;
        PHONEPIM_ASSERT(data != nullptr, "metaPhoneData != nil");
        const Value* metaValue = Find(*data, valueKey);
        // Alarms keep their relative trigger where others keep the value.
        if (metaValue == nullptr && !calendar) metaValue = Find(*data, kTriggerDuration);
        PHONEPIM_ASSERT(metaValue != nullptr, "metaPhoneNumber != nil");
        if (compareSource(value, metaValue) && IsUnlinked(*entry)) {
          claimed = entry;
          break;
        }
      }
      if (claimed != nullptr) {
        claimed->insert_or_assign(kMetaKeyState, kMetaStateNoChange);
        claimed->insert_or_assign(kMetaKeyLink, kMetaLinked);
        if (const String* identifier = FindAs<String>(*claimed, kMetaKeyIdentifier)) {
          identifiers.push_back(*identifier);
        }
      } else {
        identifiers.push_back(NewUUIDString());
        entries->emplace_back(NewEntry(record, identifiers.back()));
      }
    }
  }

  if (!identifiers.empty()) {
    if (!calendar) {
      StoreIdentifiers(*meta, kMetaKeyContactData, key, identifiers);
    } else {
      if (mVObjectID.find(u"Appointment") != String::npos ||
          mVObjectID.find(u"Anniversary") != String::npos) {
        StoreIdentifiers(*meta, kMetaKeyData, key, identifiers);
      }
      if (mVObjectID.find(u"Task") != String::npos) {
        StoreIdentifiers(*meta, kMetaKeyTaskData, key, identifiers);
      }
    }
  }
  return identifiers;
}

}  // namespace phonepim
