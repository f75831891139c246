#include "phonepim/sync/DateContainer.h"

namespace phonepim {

Dictionary DateContainer::createDateDataForDB(Date date, std::uint32_t dateType) {
  const bool anniversary = dateType == kAnniversaryDateType;
  ++mTypeCounts[anniversary ? Anniversary : Other];

  Dictionary record = newContactSubRecord(kDateEntityName);
  if (anniversary) {
    setTypeAndLabel(record, u"anniversary", std::nullopt);
  } else {
    setTypeAndLabel(record, u"other", u"Etc");
  }
  record.insert_or_assign(kSyncKeyValue, date);
  return record;
}

void DateContainer::addDate(Date date, std::uint32_t dateType) {
  addRecord(createDateDataForDB(date, dateType));
}

std::vector<String> DateContainer::createMetaData() {
  return createMetaDataWithKey(kDatesKey, kSyncKeyValue);
}

}  // namespace phonepim
