#include "phonepim/sync/RelatedNameContainer.h"

namespace phonepim {

Dictionary RelatedNameContainer::createRelatedNameDataForDB(const String& name,
                                                            std::uint32_t relatedNameType) {
  Kind kind = Other;
  String type = u"other";
  std::optional<String> label;
  switch (relatedNameType) {
    case kSpouseType: kind = Spouse; type = u"spouse"; break;
    case kChildType: kind = Child; type = u"child"; break;
    case kAssistantType: kind = Assistant; type = u"assistant"; break;
    default: label = u"Etc"; break;
  }
  ++mTypeCounts[kind];

  Dictionary record = newContactSubRecord(kRelatedNameEntityName);
  setTypeAndLabel(record, type, label);
  record.insert_or_assign(kSyncKeyValue, name);
  return record;
}

void RelatedNameContainer::addRelatedName(const String& name, std::uint32_t relatedNameType) {
  addRecord(createRelatedNameDataForDB(name, relatedNameType));
}

std::vector<String> RelatedNameContainer::createMetaData() {
  return createMetaDataWithKey(kRelatedNamesKey, kSyncKeyValue);
}

}  // namespace phonepim
