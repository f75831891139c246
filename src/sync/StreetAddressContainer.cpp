#include "phonepim/sync/StreetAddressContainer.h"

#include "phonepim/model/TypeMasks.h"

namespace phonepim {

Dictionary StreetAddressContainer::createStreetAddressDataForDB(
    const String& street, const String& extendedStreet, const String& city, const String& state,
    const String& postalCode, const String& country, std::uint32_t addressType,
    const std::optional<String>& label) {
  Kind kind = Etc;
  String type = u"other";
  std::optional<String> recordLabel;
  switch (addressType) {
    case 0: kind = Null; break;
    case kAddressTypeHome: kind = Home; type = u"home"; break;
    case kAddressTypeWork: kind = Work; type = u"work"; break;
    case kAddressTypeEtc: kind = X_ETC; recordLabel = u"X_ETC"; break;
    case kAddressTypeCell: kind = Mobile; recordLabel = u"mobile"; break;
    case kAddressTypeCustom:
      kind = X_CUSTOM;
      recordLabel = label ? *label : String(u"X_CUSTOM");
      break;
    case kAddressTypePref: kind = Prefered; recordLabel = u"prefered"; break;
    default: recordLabel = u"Etc"; break;
  }
  ++mTypeCounts[kind];

  String joined = street;
  if (!street.empty() && !extendedStreet.empty()) {
    joined += u' ';
    joined += extendedStreet;
  } else if (street.empty()) {
    joined = extendedStreet;
  }

  Dictionary record = newContactSubRecord(kStreetAddressEntityName);
  setTypeAndLabel(record, type, recordLabel);
  record.insert_or_assign(kSyncKeyStreet, std::move(joined));
  record.insert_or_assign(kSyncKeyCity, city);
  record.insert_or_assign(kSyncKeyState, state);
  record.insert_or_assign(kSyncKeyPostalCode, postalCode);
  record.insert_or_assign(kSyncKeyCountry, country);
  return record;
}

void StreetAddressContainer::addStreetAddress(const String& street, const String& extendedStreet,
                                              const String& city, const String& state,
                                              const String& postalCode, const String& country,
                                              std::uint32_t addressType,
                                              const std::optional<String>& label) {
  addRecord(createStreetAddressDataForDB(street, extendedStreet, city, state, postalCode,
                                         country, addressType, label));
}

std::vector<String> StreetAddressContainer::createMetaData() {
  return createMetaDataWithKey(kStreetAddressesKey, kSyncKeyStreet);
}

}  // namespace phonepim
