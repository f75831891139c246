#include "phonepim/sync/EmailContainer.h"

#include "phonepim/model/TypeMasks.h"

namespace phonepim {

Dictionary EmailContainer::createEmailDataForDB(const String& email, std::uint32_t emailType,
                                                const std::optional<String>& label) {
  Kind kind = Unknown;
  String type = u"other";
  std::optional<String> recordLabel;
  switch (emailType) {
    case 0: kind = Other; break;
    case kEmailTypeHome: kind = Home; type = u"home"; break;
    case kEmailTypeWork: kind = Work; type = u"work"; break;
    case kEmailTypeCell: kind = Mobile; recordLabel = u"mobile"; break;
    case kEmailTypeEtc: kind = Etc; break;
    case kEmailTypeCustom: kind = X_CUSTOM; recordLabel = label; break;
    case kEmailTypePref: kind = Prefered; recordLabel = u"prefered"; break;
    default: recordLabel = u"Etc"; break;
  }
  ++mTypeCounts[kind];

  Dictionary record = newContactSubRecord(kEmailAddressEntityName);
  setTypeAndLabel(record, type, recordLabel);
  record.insert_or_assign(kSyncKeyValue, email);
  return record;
}

void EmailContainer::addEmail(const String& email, std::uint32_t emailType,
                              const std::optional<String>& label) {
  addRecord(createEmailDataForDB(email, emailType, label));
}

std::vector<String> EmailContainer::createMetaData() {
  return createMetaDataWithKey(kEmailAddressesKey, kSyncKeyValue);
}

}  // namespace phonepim
