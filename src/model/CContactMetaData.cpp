// CContact::createMetaData: the contact's store record and its sub-records.
// CContact.h lists the keys.

#include <optional>

#include "phonepim/datetime/DateFunctions.h"
#include "phonepim/model/CContact.h"
#include "phonepim/sync/ContactRecord.h"
#include "phonepim/sync/DateContainer.h"
#include "phonepim/sync/EmailContainer.h"
#include "phonepim/sync/IMContainer.h"
#include "phonepim/sync/PhoneContainer.h"
#include "phonepim/sync/RelatedNameContainer.h"
#include "phonepim/sync/StreetAddressContainer.h"
#include "phonepim/sync/URLContainer.h"

namespace phonepim {

namespace {

void SetText(Dictionary& record, const String& key, const String& text) {
  if (!text.empty()) record.insert_or_assign(key, text);
}

void SetText(Dictionary& record, const String& key, const std::optional<String>& text) {
  if (text) SetText(record, key, *text);
}

// The first non-empty text of the two.
const String& Either(const String& first, const std::optional<String>& second) {
  return first.empty() && second ? *second : first;
}

std::optional<String> LabelText(const std::shared_ptr<const String>& label) {
  return label ? std::optional<String>(*label) : std::nullopt;
}

bool HasText(const std::optional<String>& text) { return text && !text->empty(); }

}  // namespace

void CContact::createMetaData() { createMetaData(false); }

void CContact::createMetaData(bool Zandor) {
  BuildContactRecord();
  if (!mPhoneMapper) return;
  FillContainers(Zandor);

  const std::pair<const String*, BaseContainer*> containers[] = {
      {&kPhoneNumbersKey, mPhoneMapper.get()},
      {&kEmailAddressesKey, mEmailMapper.get()},
      {&kURLsKey, mURLMapper.get()},
      {&kStreetAddressesKey, mStreetAddressMapper.get()},
      {&kDatesKey, mDateContainer.get()},
      {&kRelatedNamesKey, mRelatedNameContainer.get()},
      {&kIMsKey, mIMContainer.get()},
  };
  for (const auto& [key, container] : containers) {
    const std::vector<String> identifiers = container->createMetaData();
    if (!identifiers.empty()) {
      mMetaDictionary.insert_or_assign(*key, Array(identifiers.begin(), identifiers.end()));
    }
  }
}

void CContact::BuildContactRecord() {
  using namespace contact_record;
  mMetaDictionary.clear();
  Dictionary& record = mMetaDictionary;

  if (ContactType_ == 1) {
    record.insert_or_assign(ISyncRecordEntityNameKey, kGroupEntityName);
    SetText(record, kGroupName, HasText(GroupDisplayName_) ? GroupDisplayName_ : GroupName_);
    return;
  }

  record.insert_or_assign(ISyncRecordEntityNameKey, kContactEntityName);
  SetText(record, kFirstName, Name_.Given());
  SetText(record, kLastName, Name_.Family());
  SetText(record, kMiddleName, Name_.Middle());
  SetText(record, kTitle, Name_.Prefix());
  SetText(record, kSuffix, Name_.Suffix());
  SetText(record, kFirstPhoneticName, Either(Name_.Phonetic_Given(), RFName_));
  SetText(record, kLastPhoneticName, Either(Name_.Phonetic_Family(), RLName_));
  SetText(record, kMiddlePhoneticName, Name_.Phonetic_Middle());
  if (!NickNames_.empty()) SetText(record, kNickname, NickNames_.front());

  const COrganization* org = m_arrOrg.Count() > 0 ? GetOrg(0) : nullptr;
  if (org != nullptr) {
    SetText(record, kCompanyName, org->Name());
    SetText(record, kDepartment, org->Unit());
  }
  if (HasText(Title_)) {
    SetText(record, kJobTitle, Title_);
  } else if (org != nullptr) {
    SetText(record, kJobTitle, org->Position());
  }

  if (BirthDate_) record.insert_or_assign(kBirthday, Date{DateFromComponents(*BirthDate_)});

  String notes;
  for (int i = 0; i < GetNotesCount(); ++i) {
    const String& note = GetNotes(i)->GetNote();
    if (note.empty()) continue;
    if (!notes.empty()) notes += u'\n';
    notes += note;
  }
  SetText(record, kNotes, notes);

  if (mPhoto && !mPhoto->empty()) record.insert_or_assign(kImage, *mPhoto);
}

void CContact::FillContainers(bool Zandor) {
  mPhoneMapper->removeAllRecords();
  mURLMapper->removeAllRecords();
  mStreetAddressMapper->removeAllRecords();
  mEmailMapper->removeAllRecords();
  mDateContainer->removeAllRecords();
  mRelatedNameContainer->removeAllRecords();
  mIMContainer->removeAllRecords();

  // Empty elements are left out: the store has no use for them, and a
  // record without its compared value could never be matched again.
  for (int i = 0; i < GetTelephoneCount(); ++i) {
    const CTelephoneNumber* tel = GetTelephone(i);
    if (tel->IsEmpty()) continue;
    mPhoneMapper->addPhone(tel->GetNumber(), tel->GetType(), LabelText(tel->GetLabel()), Zandor);
  }
  if (HasText(mAssistantNumber)) {
    mPhoneMapper->addPhone(mAssistantNumber, kTelephoneTypeAssistant, std::nullopt, Zandor);
  }
  for (int i = 0; i < GetEmailCount(); ++i) {
    const CEmail* email = GetEmail(i);
    if (email->IsEmpty()) continue;
    mEmailMapper->addEmail(email->GetEmail(), email->GetType(), LabelText(email->GetLabel()));
  }
  for (int i = 0; i < GetURLCount(); ++i) {
    const CURL* url = GetURL(i);
    if (url->IsEmpty()) continue;
    mURLMapper->addURL(url->GetURL(), url->GetType());
  }
  for (int i = 0; i < GetAddressCount(); ++i) {
    const CPostalAddress* address = GetAddress(i);
    if (address->IsEmpty()) continue;
    mStreetAddressMapper->addStreetAddress(address->Street(), address->ExtAddr(),
                                           address->Locality(), address->Region(),
                                           address->PostalCode(), address->Country(),
                                           address->Type(), LabelText(address->Label()));
  }
  if (Anniversary_Date_) {
    mDateContainer->addDate(Date{DateFromComponents(*Anniversary_Date_)},
                            DateContainer::kAnniversaryDateType);
  }
  if (HasText(mSpouse)) {
    mRelatedNameContainer->addRelatedName(*mSpouse, RelatedNameContainer::kSpouseType);
  }
  if (HasText(mChildren)) {
    mRelatedNameContainer->addRelatedName(*mChildren, RelatedNameContainer::kChildType);
  }
  if (HasText(mAssistant)) {
    mRelatedNameContainer->addRelatedName(*mAssistant, RelatedNameContainer::kAssistantType);
  }
  for (int i = 0; i < GetMessengerIDCount(); ++i) {
    const CMessengerID* im = GetMessengerID(i);
    if (im->IsEmpty()) continue;
    mIMContainer->addIM(im->GetMessengerID(), im->GetType());
  }
}

}  // namespace phonepim
