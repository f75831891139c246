#include "phonepim/sync/URLContainer.h"

#include "phonepim/model/TypeMasks.h"

namespace phonepim {

Dictionary URLContainer::createURLDataForDB(const String& url, std::uint32_t urlType) {
  Kind kind = Other;
  String type = u"home page";
  std::optional<String> label;
  switch (urlType) {
    case 0: kind = HomePage; break;
    case kURLTypeHome: kind = Home; type = u"home"; break;
    case kURLTypeWork: kind = Work; type = u"work"; break;
    case kURLTypePref: kind = Prefered; type = u"other"; label = u"prefered"; break;
    default: break;
  }
  ++mTypeCounts[kind];

  Dictionary record = newContactSubRecord(kURLEntityName);
  setTypeAndLabel(record, type, label);
  record.insert_or_assign(kSyncKeyValue, url);
  return record;
}

void URLContainer::addURL(const String& url, std::uint32_t urlType) {
  addRecord(createURLDataForDB(url, urlType));
}

std::vector<String> URLContainer::createMetaData() {
  return createMetaDataWithKey(kURLsKey, kSyncKeyValue);
}

}  // namespace phonepim
