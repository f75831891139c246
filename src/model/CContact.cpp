#include "phonepim/model/CContact.h"

#include <cstdio>
#include <limits>

#include "phonepim/datetime/DateFunctions.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/sync/DateContainer.h"
#include "phonepim/sync/EmailContainer.h"
#include "phonepim/sync/IMContainer.h"
#include "phonepim/sync/PhoneContainer.h"
#include "phonepim/sync/RelatedNameContainer.h"
#include "phonepim/sync/StreetAddressContainer.h"
#include "phonepim/sync/URLContainer.h"

namespace phonepim {

namespace {

const String kGroupType = u"Group";
const String kXGroup = u"X-GROUP";
const String kXPBOExtension = u"X-PBOEXTENSION";

// "%016d-<kind>-<IMEI>". The ID goes through a signed int as it always has:
// IDs above 2^31 come out negative, and the tables hold them in that form.
String FormatVCardRecordID(std::int32_t vCardID, const char* kind, const String& imei) {
  char digits[32];
  std::snprintf(digits, sizeof digits, "%016d-%s-", vCardID, kind);
  return StringFromASCII(digits) + imei;
}

// The leading integer of a text, read the way the tables' users always read
// it: white space skipped, an optional sign, then digits up to the first
// other character; 0 when there are none; clamped to the 32-bit range.
std::int32_t LeadingInteger(const String& text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == u' ' || text[i] == u'\t' || text[i] == u'\n' ||
                             text[i] == u'\r' || text[i] == u'\f' || text[i] == u'\v')) {
    ++i;
  }
  bool negative = false;
  if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) {
    negative = text[i] == u'-';
    ++i;
  }
  constexpr std::int64_t kLimit = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
  std::int64_t value = 0;
  for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
    value = value * 10 + (text[i] - u'0');
    if (value > kLimit) value = kLimit;  // keeps going past the digits without overflow
  }
  if (negative) return static_cast<std::int32_t>(-value);
  return value >= kLimit ? std::numeric_limits<std::int32_t>::max()
                         : static_cast<std::int32_t>(value);
}

}  // namespace

// ---------------------------------------------------------------------------
// Construction and identity.

CContact::CContact(NoIdentity, const String& vCardType,
                   std::shared_ptr<ContactIDMappingTable> idMapper)
    : mVCardType(vCardType), mIDMapper(std::move(idMapper)) {
  ContactType_ = vCardType == kGroupType ? 1 : 0;
  m_SpeedDial.fill(-1);
}

CContact::CContact(std::uint32_t vCardID, const String& IMEI,
                   const std::optional<String>& dbRecordID, const String& vCardType,
                   std::shared_ptr<ContactIDMappingTable> idMapper)
    : CContact(NoIdentity{}, vCardType, std::move(idMapper)) {
  if (dbRecordID) {
    mState = kStateDBRecordIDKnown;
    mDBRecordID = dbRecordID;
    std::optional<String> known = mIDMapper ? mIDMapper->vCardIDForDBID(*dbRecordID)
                                            : std::nullopt;
    if (known) {
      mvCardID = static_cast<std::uint32_t>(LeadingInteger(*known));
      mVCardRecordID = std::move(known);
      mState |= kStateVCardIDKnown;
    } else {
      mvCardID = mIDMapper ? mIDMapper->nextTemporaryID() : 0;
    }
  } else if (vCardID != kNoVCardID) {
    mState = kStateVCardIDKnown;
    mvCardID = vCardID;
    mVCardRecordID = FormatVCardRecordID(static_cast<std::int32_t>(vCardID),
                                         ContactType_ == 1 ? "Croup" : "Contact", IMEI);
    std::optional<String> known = mIDMapper ? mIDMapper->dbIDForVCardID(*mVCardRecordID)
                                            : std::nullopt;
    if (known) {
      mDBRecordID = std::move(known);
      mState |= kStateDBRecordIDKnown;
    } else {
      // Until the store has seen the record, its phone ID stands in as its
      // store ID, so that its sub-records can be built and matched already.
      mDBRecordID = mVCardRecordID;
    }
  }
  if (mDBRecordID) CreateContainers();
}

CContact::CContact(const String& vCardType)
    : CContact(kNoVCardID, String(), std::nullopt, vCardType, nullptr) {}

CContact::~CContact() = default;

void CContact::CreateContainers() {
  mPhoneMapper = std::make_unique<PhoneContainer>(*mDBRecordID, mIDMapper);
  mURLMapper = std::make_unique<URLContainer>(*mDBRecordID, mIDMapper);
  mStreetAddressMapper = std::make_unique<StreetAddressContainer>(*mDBRecordID, mIDMapper);
  mEmailMapper = std::make_unique<EmailContainer>(*mDBRecordID, mIDMapper);
  mDateContainer = std::make_unique<DateContainer>(*mDBRecordID, mIDMapper);
  mRelatedNameContainer = std::make_unique<RelatedNameContainer>(*mDBRecordID, mIDMapper);
  mIMContainer = std::make_unique<IMContainer>(*mDBRecordID, mIDMapper);
}

String CContact::generateNewVCardID(std::int32_t vCardID, const String& imei) {
  return FormatVCardRecordID(vCardID, "Contact", imei);
}

// ---------------------------------------------------------------------------
// Copy and compare.

namespace {

template <class T>
std::unique_ptr<T> CopyOf(const std::unique_ptr<T>& container) {
  return container ? std::make_unique<T>(*container) : nullptr;
}

}  // namespace

std::unique_ptr<CContact> CContact::Clone() const {
  std::unique_ptr<CContact> copy(new CContact(NoIdentity{}, mVCardType, mIDMapper));
  copy->setStorage(storage());
  copy->setThisID(thisID());
  for (const auto& item : m_arrXItem) {
    CXItem* itemCopy = copy->NewXItem(item->Name(), item->Data(), item->Param(), item->thisID());
    *itemCopy = *item;  // keeps the shared text object, as copies of items do
  }

  copy->mDBRecordID = mDBRecordID;
  copy->mVCardRecordID = mVCardRecordID;
  copy->mvCardID = mvCardID;
  copy->mState = mState;
  copy->mPhoneMapper = CopyOf(mPhoneMapper);
  copy->mURLMapper = CopyOf(mURLMapper);
  copy->mStreetAddressMapper = CopyOf(mStreetAddressMapper);
  copy->mEmailMapper = CopyOf(mEmailMapper);
  copy->mDateContainer = CopyOf(mDateContainer);
  copy->mRelatedNameContainer = CopyOf(mRelatedNameContainer);
  copy->mIMContainer = CopyOf(mIMContainer);
  copy->mMetaDictionary = mMetaDictionary;

  copy->ContactType_ = ContactType_;
  copy->GroupName_ = GroupName_;
  copy->GroupDisplayName_ = GroupDisplayName_;
  copy->GroupType_ = GroupType_;
  copy->Groups_ = Groups_;
  copy->AccountName_ = AccountName_;
  copy->AccountType_ = AccountType_;
  copy->LastRevision_ = LastRevision_;
  copy->LMT_ = LMT_;
  copy->Name_ = Name_;
  copy->FName_ = FName_;
  copy->RFName_ = RFName_;
  copy->RLName_ = RLName_;
  copy->BirthDateType_ = BirthDateType_;
  copy->BirthDate_ = BirthDate_;
  copy->BloodType_ = BloodType_;
  copy->Anniversary_Date_ = Anniversary_Date_;
  copy->Anniversary_Luna_ = Anniversary_Luna_;
  copy->Title_ = Title_;
  copy->Role_ = Role_;
  copy->Hobby_ = Hobby_;
  copy->Account_ = Account_;
  copy->NickNames_ = NickNames_;
  copy->mSpouse = mSpouse;
  copy->mChildren = mChildren;
  copy->mAssistant = mAssistant;
  copy->mAssistantNumber = mAssistantNumber;
  copy->mPhoto = mPhoto;

  copy->m_arrAdr.CopyFrom(m_arrAdr);
  copy->m_arrTel.CopyFrom(m_arrTel);
  copy->m_arrMessenger.CopyFrom(m_arrMessenger);
  copy->m_arrEmail.CopyFrom(m_arrEmail);
  copy->m_arrNotes.CopyFrom(m_arrNotes);
  copy->m_arrOrg.CopyFrom(m_arrOrg);
  copy->m_arrURL.CopyFrom(m_arrURL);

  copy->m_SpeedDial = m_SpeedDial;
  copy->telcount_ = telcount_;
  return copy;
}

namespace {

bool IsUnknownBloodType(std::uint32_t bloodType) {
  return bloodType == 0 || bloodType == 0xFFFFFFFF;
}

}  // namespace

bool CContact::IsEqual(const CContact* other) const {
  if (other == nullptr) return false;
  // Storage kinds 2 and 5 hold records the phone does not edit: whatever
  // their text says, they have not changed.
  if (other->storage() == 2 || other->storage() == 5) return true;
  if (NickNames_ != other->NickNames_) return false;
  if (!Name_.IsEqual(&other->Name_)) return false;
  if (IsUnknownBloodType(BloodType_)) {
    if (!IsUnknownBloodType(other->BloodType_)) return false;
  } else if (BloodType_ != other->BloodType_) {
    return false;
  }
  if (Title_ != other->Title_ || Role_ != other->Role_ || Account_ != other->Account_) {
    return false;
  }
  // Without a revision on both sides nothing proves the record unchanged.
  if (!LastRevision_ || !other->LastRevision_) return false;
  return DateFromComponents(*LastRevision_) == DateFromComponents(*other->LastRevision_);
}

// ---------------------------------------------------------------------------
// Speed dial, groups, extensions, photo files.

std::int32_t CContact::SpeedDial(int nIndex) const {
  PHONEPIM_ASSERT(nIndex >= 0 && nIndex < kSpeedDialCount, "nIndex < 10");
  return m_SpeedDial[static_cast<std::size_t>(nIndex)];
}

void CContact::SetSpeedDial(std::int32_t value, int index) {
  if (index < 0 || index >= kSpeedDialCount) return;
  m_SpeedDial[static_cast<std::size_t>(index)] = value;
}

void CContact::SetGroup(std::int32_t group) {
  NewXItem(kXGroup, StringFromASCII(std::to_string(group)), 0, -1);
}

std::int32_t CContact::GetGroup() const {
  const CXItem* item = FindXItem(kXGroup);
  return item ? LeadingInteger(item->Data()) : 0;
}

void CContact::SetExtension(const String& extension) {
  NewXItem(kXPBOExtension, extension, 0, -1);
}

String CContact::GetExtension() const {
  const CXItem* item = FindXItem(kXPBOExtension);
  return item ? item->Data() : String();
}

std::optional<String> CContact::GetSavePhotoPath(const String& /*guid*/, bool /*group*/) const {
  return std::nullopt;
}

bool CContact::MakeDirectory(const String& /*path*/) const { return false; }

std::optional<Bytes> CContact::MakePhotoData(const Bytes& /*photo*/, int /*photoSize*/,
                                             const String& /*deviceID*/) const {
  return std::nullopt;
}

bool CContact::SavePhotoFile(const Bytes& /*photo*/, const String& /*guid*/,
                             bool /*isGroup*/) const {
  return false;
}

// ---------------------------------------------------------------------------
// Element lists.

CPostalAddress* CContact::NewAddress() { return m_arrAdr.New(); }

CPostalAddress* CContact::NewAddress(const char* address, std::uint32_t addressType,
                                     std::int32_t theID) {
  return m_arrAdr.New(address, addressType, theID);
}

CPostalAddress* CContact::NewAddress(const char* address, std::uint32_t addressType,
                                     std::int32_t theID, std::shared_ptr<const String> Label) {
  return m_arrAdr.New(address, addressType, theID, std::move(Label));
}

CPostalAddress* CContact::NewAddress(const char* POBox, const char* extAddr, const char* street,
                                     const char* locality, const char* region,
                                     const char* postalCode, const char* country,
                                     const char* neighbor, std::uint32_t addressType,
                                     std::int32_t theID) {
  return m_arrAdr.New(POBox, extAddr, street, locality, region, postalCode, country, neighbor,
                      addressType, theID);
}

CPostalAddress* CContact::NewAddress(const char* POBox, const char* extAddr, const char* street,
                                     const char* locality, const char* region,
                                     const char* postalCode, const char* country,
                                     const char* neighbor, std::uint32_t addressType,
                                     std::int32_t theID, std::shared_ptr<const String> Label) {
  return m_arrAdr.New(POBox, extAddr, street, locality, region, postalCode, country, neighbor,
                      addressType, theID, std::move(Label));
}

CPostalAddress* CContact::GetAddress(int nIndex) {
  return m_arrAdr.Get(nIndex, "nIndex < [self GetAddressCount]", __func__);
}

const CPostalAddress* CContact::GetAddress(int nIndex) const {
  return m_arrAdr.Get(nIndex, "nIndex < [self GetAddressCount]", __func__);
}

void CContact::DeleteAddressAtIndex(int nIndex) {
  m_arrAdr.DeleteAt(nIndex, "nIndex < [self GetAddressCount]", __func__);
}

void CContact::DeleteAddress(const CPostalAddress* pAddress) {
  PHONEPIM_ASSERT(pAddress != nullptr, "pAddress != nil");
  m_arrAdr.Delete(pAddress);
}

COrganization* CContact::NewOrg() { return m_arrOrg.New(); }

COrganization* CContact::NewOrg(const char* name, const char* unit, const char* position,
                                const char* additional, std::uint32_t orgType) {
  return m_arrOrg.New(name, unit, position, additional, orgType);
}

COrganization* CContact::GetOrg(int nIndex) {
  return m_arrOrg.Get(nIndex, "nIndex < [self GetOrgCount]", __func__);
}

const COrganization* CContact::GetOrg(int nIndex) const {
  return m_arrOrg.Get(nIndex, "nIndex < [self GetOrgCount]", __func__);
}

void CContact::DeleteOrgAtIndex(int nIndex) {
  m_arrOrg.DeleteAt(nIndex, "nIndex < [self GetOrgCount]", __func__);
}

CTelephoneNumber* CContact::NewTelephone() { return m_arrTel.New(); }

CTelephoneNumber* CContact::NewTelephone(const char* number, std::uint32_t telephoneType,
                                         std::int32_t theID) {
  return m_arrTel.New(number, telephoneType, theID);
}

CTelephoneNumber* CContact::NewTelephone(const char* number, std::uint32_t telephoneType,
                                         std::int32_t theID,
                                         std::shared_ptr<const String> label) {
  return m_arrTel.New(number, telephoneType, theID, std::move(label));
}

CTelephoneNumber* CContact::NewTelephone(String number, std::uint32_t telephoneType,
                                         std::int32_t theID,
                                         std::shared_ptr<const String> label) {
  return m_arrTel.New(std::move(number), telephoneType, theID, std::move(label));
}

CTelephoneNumber* CContact::GetTelephone(int nIndex) {
  return m_arrTel.Get(nIndex, "nIndex < [self GetTelephoneCount]", __func__);
}

const CTelephoneNumber* CContact::GetTelephone(int nIndex) const {
  return m_arrTel.Get(nIndex, "nIndex < [self GetTelephoneCount]", __func__);
}

void CContact::DeleteTelephoneAtIndex(int nIndex) {
  m_arrTel.DeleteAt(nIndex, "nIndex < [self GetTelephoneCount]", __func__);
}

CMessengerID* CContact::NewMessengerID() { return m_arrMessenger.New(); }

CMessengerID* CContact::NewMessengerID(const char* messengerID, std::uint32_t messengerType,
                                       std::int32_t theID) {
  return m_arrMessenger.New(messengerID, messengerType, theID);
}

CMessengerID* CContact::NewMessengerID(String messengerID, std::uint32_t messengerType,
                                       std::int32_t theID) {
  return m_arrMessenger.New(std::move(messengerID), messengerType, theID);
}

CMessengerID* CContact::GetMessengerID(int nIndex) {
  return m_arrMessenger.Get(nIndex, "nIndex < [self GetMessengerIDCount]", __func__);
}

const CMessengerID* CContact::GetMessengerID(int nIndex) const {
  return m_arrMessenger.Get(nIndex, "nIndex < [self GetMessengerIDCount]", __func__);
}

void CContact::DeleteMessengerIDAtIndex(int nIndex) {
  m_arrMessenger.DeleteAt(nIndex, "nIndex < [self GetMessengerIDCount]", __func__);
}

CNote* CContact::NewNotes() { return m_arrNotes.New(); }

CNote* CContact::NewNotes(const char* note, std::int32_t theID) {
  return m_arrNotes.New(note, theID);
}

CNote* CContact::NewNotes(String note, std::int32_t theID) {
  return m_arrNotes.New(std::move(note), theID);
}

CNote* CContact::GetNotes(int nIndex) {
  return m_arrNotes.Get(nIndex, "nIndex < [self GetNotesCount]", __func__);
}

const CNote* CContact::GetNotes(int nIndex) const {
  return m_arrNotes.Get(nIndex, "nIndex < [self GetNotesCount]", __func__);
}

void CContact::DeleteNotesAtIndex(int nIndex) {
  m_arrNotes.DeleteAt(nIndex, "nIndex < [self GetNotesCount]", __func__);
}

CEmail* CContact::NewEmail() { return m_arrEmail.New(); }

CEmail* CContact::NewEmail(const char* email, std::uint32_t emailType, std::int32_t theID) {
  return m_arrEmail.New(email, emailType, theID);
}

CEmail* CContact::NewEmail(const char* email, std::uint32_t emailType, std::int32_t theID,
                           std::shared_ptr<const String> Label) {
  return m_arrEmail.New(email, emailType, theID, std::move(Label));
}

CEmail* CContact::NewEmail(String email, std::uint32_t emailType, std::int32_t theID,
                           std::shared_ptr<const String> Label) {
  return m_arrEmail.New(std::move(email), emailType, theID, std::move(Label));
}

CEmail* CContact::GetEmail(int nIndex) {
  return m_arrEmail.Get(nIndex, "nIndex < [self GetEmailCount]", __func__);
}

const CEmail* CContact::GetEmail(int nIndex) const {
  return m_arrEmail.Get(nIndex, "nIndex < [self GetEmailCount]", __func__);
}

void CContact::DeleteEmailAtIndex(int nIndex) {
  m_arrEmail.DeleteAt(nIndex, "nIndex < [self GetEmailCount]", __func__);
}

CURL* CContact::NewURL() { return m_arrURL.New(); }

CURL* CContact::NewURL(const char* url, std::uint32_t urlType, std::int32_t theID) {
  return m_arrURL.New(url, urlType, theID);
}

CURL* CContact::NewURL(String url, std::uint32_t urlType, std::int32_t theID) {
  return m_arrURL.New(std::move(url), urlType, theID);
}

CURL* CContact::GetURL(int nIndex) {
  return m_arrURL.Get(nIndex, "nIndex < [self GetURLCount]", __func__);
}

const CURL* CContact::GetURL(int nIndex) const {
  return m_arrURL.Get(nIndex, "nIndex < [self GetURLCount]", __func__);
}

void CContact::DeleteURLAtIndex(int nIndex) {
  m_arrURL.DeleteAt(nIndex, "nIndex < [self GetURLCount]", __func__);
}

}  // namespace phonepim
