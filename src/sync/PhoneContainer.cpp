#include "phonepim/sync/PhoneContainer.h"

#include "phonepim/model/TypeMasks.h"

namespace phonepim {

namespace {

struct PhoneLabel {
  PhoneContainer::Kind kind;
  const char16_t* type;
  const char16_t* label;  // null: no label
};

bool Has(std::uint32_t type, std::uint32_t bits) { return (type & bits) == bits; }

// One of three rows by HOME, WORK or neither.
PhoneLabel ByPlace(std::uint32_t type, PhoneLabel home, PhoneLabel work, PhoneLabel neither) {
  if (Has(type, kTelephoneTypeHome)) return home;
  if (Has(type, kTelephoneTypeWork)) return work;
  return neither;
}

// The first row that matches. The order is the store's order of preference:
// VOICE, CELL and FAX decide before the place, the place before the rarer
// kinds.
PhoneLabel RowFor(std::uint32_t type, bool Zandor) {
  using K = PhoneContainer::Kind;
  if (Has(type, kTelephoneTypeVoice)) {
    return ByPlace(type, {K::HomeVoice, u"home", nullptr}, {K::WorkVoice, u"work", nullptr},
                   {K::Voice, u"main", nullptr});
  }
  if (Has(type, kTelephoneTypeCell)) {
    // Zandor phones send every mobile number as HOME;CELL, so there the
    // pair means nothing more than "mobile".
    if (Has(type, kTelephoneTypeHome)) {
      return Zandor ? PhoneLabel{K::HomeCellZandor, u"mobile", nullptr}
                    : PhoneLabel{K::HomeCell, u"other", u"Mobile (Home)"};
    }
    if (Has(type, kTelephoneTypeWork)) return {K::WorkCell, u"other", u"Mobile (Work)"};
    return {K::Cell, u"mobile", nullptr};
  }
  if (Has(type, kTelephoneTypeFax)) {
    return ByPlace(type, {K::HomeFax, u"home fax", nullptr}, {K::WorkFax, u"work fax", nullptr},
                   {K::Fax, u"other", u"Fax"});
  }
  if (Has(type, kTelephoneTypeVideo)) {
    return ByPlace(type, {K::HomeVideo, u"other", u"Video call(Home)"},
                   {K::WorkVideo, u"other", u"Video call(Work)"},
                   {K::Video, u"other", u"Video call(Other)"});
  }
  if (Has(type, kTelephoneTypeInternet)) {
    return ByPlace(type, {K::HomeInternet, u"other", u"Internet telephone(Home)"},
                   {K::WorkInternet, u"other", u"Internet telephone(Work)"},
                   {K::Internet, u"other", u"Internet telephone(Other)"});
  }
  static constexpr struct {
    std::uint32_t bit;
    PhoneLabel row;
  } kSingleBits[] = {
      {kTelephoneTypeHome, {K::Home, u"home", nullptr}},
      {kTelephoneTypeWork, {K::Work, u"work", nullptr}},
      {kTelephoneTypePager, {K::Pager, u"pager", nullptr}},
      {kTelephoneTypeCar, {K::Car, u"other", u"Car telephone"}},
      {kTelephoneTypePref, {K::Prefered, u"other", u"Prefered"}},
      {kTelephoneTypeModem, {K::Modem, u"other", u"Modem"}},
      {kTelephoneTypeBBS, {K::BBS, u"other", u"BBS"}},
      {kTelephoneTypeISDN, {K::ISDN, u"other", u"ISDN"}},
      {kTelephoneTypeEtc, {K::Etc, u"other", nullptr}},
      {kTelephoneTypeMsg, {K::Message, u"other", u"Message"}},
      {kTelephoneTypeDTMF, {K::DTMF, u"other", u"DTMF"}},
      {kTelephoneTypePTT, {K::PushToTalk, u"other", u"PushToTalk"}},
      {kTelephoneTypeAssistant, {K::Assistant, u"other", u"Assistant"}},
      {kTelephoneTypeCallback, {K::Callback, u"other", u"Callback"}},
  };
  for (const auto& row : kSingleBits) {
    if (Has(type, row.bit)) return row.row;
  }
  return {K::X_CUSTOM, u"other", u"CUSTOM"};
}

}  // namespace

Dictionary PhoneContainer::createPhoneDataForDB(const std::optional<String>& number,
                                                std::uint32_t phoneType,
                                                const std::optional<String>& label,
                                                bool Zandor) {
  const PhoneLabel row = RowFor(phoneType, Zandor);
  ++mTypeCounts[row.kind];

  String type = row.type;
  std::optional<String> recordLabel;
  if (row.label != nullptr) recordLabel = row.label;
  if (phoneType == kTelephoneTypeCell) {
    type = u"mobile";
    recordLabel.reset();
  } else if (phoneType == kTelephoneTypeCustom) {
    // A lone custom label is the phone's own word; "Main" is the one the
    // store has a type for.
    type = label && *label == u"Main" ? u"main" : u"other";
    recordLabel = type == u"main" ? std::nullopt : label;
  }

  Dictionary record = newContactSubRecord(kPhoneNumberEntityName);
  setTypeAndLabel(record, type, recordLabel);
  if (number) record.insert_or_assign(kSyncKeyValue, *number);
  return record;
}

void PhoneContainer::addPhone(const std::optional<String>& number, std::uint32_t phoneType,
                              const std::optional<String>& label, bool Zandor) {
  addRecord(createPhoneDataForDB(number, phoneType, label, Zandor));
}

std::vector<String> PhoneContainer::createMetaData() {
  return createMetaDataWithKey(kPhoneNumbersKey, kSyncKeyValue);
}

}  // namespace phonepim
