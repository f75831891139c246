// CContact: one phone-book record, a person ("Contact") or a group ("Group").
//
// The vCard codec fills it from and writes it to vCard text; the sync bridge
// builds the synchronisation store's record and sub-records from it. At
// construction the contact resolves its identity on both sides (the phone's
// vCard ID and the store's record ID) through the phone's
// ContactIDMappingTable.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "phonepim/datetime/DateComponents.h"
#include "phonepim/model/CEmail.h"
#include "phonepim/model/CMessengerID.h"
#include "phonepim/model/CName.h"
#include "phonepim/model/CNote.h"
#include "phonepim/model/COrganization.h"
#include "phonepim/model/CPostalAddress.h"
#include "phonepim/model/CTelephoneNumber.h"
#include "phonepim/model/CURL.h"
#include "phonepim/model/CVObject.h"
#include "phonepim/model/ElementVector.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

class ContactIDMappingTable;
class PhoneContainer;
class URLContainer;
class StreetAddressContainer;
class EmailContainer;
class DateContainer;
class RelatedNameContainer;
class IMContainer;

/// One of a contact's element lists (telephone numbers, e-mail addresses,
/// ...). The list owns its elements; New, Get and the delete operations hand
/// out and take borrowed pointers.
///
/// Release() drops the list itself, as the contact's delete-all operations
/// do: afterwards Count() is 0 and New() adds nothing to the list. The
/// element New() then returns is still valid, because it is parked in a side
/// list that is freed with the owner: the codec keeps writing into the
/// element it was handed, and nothing it does may dangle or leak.
template <class T>
class ContactElementList {
 public:
  ContactElementList() = default;
  ContactElementList(const ContactElementList&) = delete;
  ContactElementList& operator=(const ContactElementList&) = delete;

  /// Builds an element from `args` and appends it (or parks it when the list
  /// has been released). The pointer stays valid until the element is
  /// deleted or the owner is destroyed.
  template <class... Args>
  T* New(Args&&... args) {
    auto element = std::make_unique<T>(std::forward<Args>(args)...);
    T* borrowed = element.get();
    if (items_) {
      items_->push_back(std::move(element));
    } else {
      parked_.push_back(std::move(element));
    }
    return borrowed;
  }

  /// 0 once the list has been released.
  int Count() const { return items_ ? static_cast<int>(items_->size()) : 0; }

  /// Whether the list exists (it does until Release()).
  bool Exists() const { return items_.has_value(); }

  /// The element at `nIndex`. An index below 0 or not below Count() fails
  /// the assertion `text`, reported for `function`.
  T* Get(int nIndex, const char* text, const char* function) {
    Check(nIndex, text, function);
    return (*items_)[static_cast<std::size_t>(nIndex)].get();
  }
  const T* Get(int nIndex, const char* text, const char* function) const {
    Check(nIndex, text, function);
    return (*items_)[static_cast<std::size_t>(nIndex)].get();
  }

  /// Removes and destroys the element at `nIndex`, with the check of Get().
  void DeleteAt(int nIndex, const char* text, const char* function) {
    Check(nIndex, text, function);
    items_->erase(static_cast<std::size_t>(nIndex));
  }

  /// Removes and destroys `element` when the list holds that very element;
  /// anything else (null, an element of another list) changes nothing.
  void Delete(const T* element) {
    if (!items_ || element == nullptr) return;
    for (std::size_t i = 0; i < items_->size(); ++i) {
      if ((*items_)[i].get() == element) {
        items_->erase(i);
        return;
      }
    }
  }

  /// Destroys every element and keeps the (empty) list.
  void Clear() {
    if (items_) items_->clear();
  }

  /// Destroys every element and drops the list itself.
  void Release() { items_.reset(); }

  /// Makes this list a copy of `other`: copies of its elements, and no list
  /// when `other` has none. Parked elements are not part of a list and are
  /// not copied.
  void CopyFrom(const ContactElementList& other) {
    if (!other.items_) {
      items_.reset();
      return;
    }
    items_.emplace();
    items_->reserve(other.items_->size());
    for (std::size_t i = 0; i < other.items_->size(); ++i) {
      items_->push_back(std::make_unique<T>(*(*other.items_)[i]));
    }
  }

 private:
  void Check(int nIndex, const char* text, const char* function) const {
    if (nIndex < 0 || nIndex >= Count()) {
      AssertionFailed(text, function, __FILE__, __LINE__);
    }
  }

  // Numbers come several to a card, the other elements one or two.
  static constexpr std::size_t kInline = std::is_same_v<T, CTelephoneNumber> ? 4 : 2;
  std::optional<model_detail::ElementVector<T, kInline>> items_{std::in_place};
  std::vector<std::unique_ptr<T>> parked_;
};

/// A person or a group of a phone's address book.
///
/// Text fields that a phone may leave out are optional (nothing = not sent);
/// the writer treats nothing and the empty text alike. Element creators take
/// UTF-8 C strings (null gives empty) and return a borrowed pointer owned by
/// the contact. The contact shares the mapping table with its containers;
/// everything else it owns. Not thread-safe.
class CContact : public CVObject {
 public:
  /// The number of speed-dial slots.
  static constexpr int kSpeedDialCount = 10;
  /// The vCard ID that stands for "no phone-side ID".
  static constexpr std::uint32_t kNoVCardID = 0xFFFFFFFF;

  /// Bits of state(): the store ID, respectively the phone-side ID, is known.
  static constexpr std::int32_t kStateDBRecordIDKnown = 0x1;
  static constexpr std::int32_t kStateVCardIDKnown = 0x2;

  /// Builds an empty record of `vCardType` ("Contact" or "Group", exactly;
  /// any other text makes a person) and resolves its identity:
  ///
  /// 1. With a store record ID: state kStateDBRecordIDKnown, and the table
  ///    is asked for the vCard ID text of that record. When it knows one,
  ///    vCardRecordID() is that text, vCardID() its leading integer and the
  ///    phone ID counts as known too. Otherwise vCardID() is the table's next
  ///    temporary ID and vCardRecordID() stays unset. `vCardID` is ignored.
  /// 2. Else, with a vCard ID other than kNoVCardID: state
  ///    kStateVCardIDKnown, vCardRecordID() = "%016d-Contact-%@" of the ID
  ///    and the IMEI ("%016d-Croup-%@" for a group: the tables hold group IDs
  ///    spelled so). The table is asked for the store ID of that text; when
  ///    it has none, the vCard ID text stands in as the store ID.
  /// 3. With neither, both IDs stay unset and the state 0.
  ///
  /// The seven sub-record containers exist when a store ID was found or
  /// stood in; they share `idMapper`. A null `idMapper` is allowed (a record
  /// read for display): it knows no IDs and hands out temporary ID 0.
  CContact(std::uint32_t vCardID, const String& IMEI, const std::optional<String>& dbRecordID,
           const String& vCardType, std::shared_ptr<ContactIDMappingTable> idMapper);
  /// A record with no identity and no table: the same as
  /// CContact(kNoVCardID, u"", std::nullopt, vCardType, nullptr).
  explicit CContact(const String& vCardType);
  ~CContact() override;

  /// "%016d-Contact-%@" of `vCardID` and `imei`: the number zero-padded to
  /// sixteen digits (a negative number keeps its sign within the sixteen),
  /// "-Contact-", the IMEI.
  static String generateNewVCardID(std::int32_t vCardID, const String& imei);

  /// A deep copy: every field, element and extension item, the built store
  /// record and the containers' records, sharing the same mapping table. A
  /// list that was released stays released in the copy.
  std::unique_ptr<CContact> Clone() const;

  /// Change detection against `other` (null is unequal):
  /// 1. a record whose storage() is 2 or 5 always matches: those storage
  ///    kinds hold records the phone does not edit;
  /// 2. the nickname lists match in count and in order;
  /// 3. the names match (CName::IsEqual);
  /// 4. the blood types match, 0 and 0xFFFFFFFF both meaning "unknown";
  /// 5. Title, Role and Account match (unset only matches unset);
  /// 6. both last revisions are set and denote the same instant.
  /// Elements, photo, birthday and the other fields are not compared.
  bool IsEqual(const CContact* other) const;

  // --- Identity and containers -------------------------------------------

  const String& vCardType() const { return mVCardType; }
  const std::optional<String>& dbRecordID() const { return mDBRecordID; }
  const std::optional<String>& vCardRecordID() const { return mVCardRecordID; }
  void setVCardRecordID(std::optional<String> vCardRecordID) {
    mVCardRecordID = std::move(vCardRecordID);
  }
  std::uint32_t vCardID() const { return mvCardID; }
  void setVCardID(std::uint32_t vCardID) { mvCardID = vCardID; }
  /// kStateDBRecordIDKnown and kStateVCardIDKnown.
  std::int32_t state() const { return mState; }
  const std::shared_ptr<ContactIDMappingTable>& idMapper() const { return mIDMapper; }

  /// The sub-record containers; null when the record has no store ID.
  PhoneContainer* phoneMapper() const { return mPhoneMapper.get(); }
  URLContainer* urlMapper() const { return mURLMapper.get(); }
  StreetAddressContainer* streetAddressMapper() const { return mStreetAddressMapper.get(); }
  EmailContainer* emailMapper() const { return mEmailMapper.get(); }
  DateContainer* dateContainer() const { return mDateContainer.get(); }
  RelatedNameContainer* relatedNameContainer() const { return mRelatedNameContainer.get(); }
  IMContainer* imContainer() const { return mIMContainer.get(); }

  /// The store record built by createMetaData(); empty before.
  const Dictionary& metaDictionary() const { return mMetaDictionary; }

  /// Builds the store record into metaDictionary() (replacing what was
  /// there), then, when the record has containers, refills them from the
  /// element lists and reconciles each with the table (BaseContainer).
  ///
  /// A person is a "com.apple.contacts.Contact" record; text keys are set
  /// only for non-empty text:
  ///   "first name", "last name", "middle name", "title" (the prefix),
  ///   "suffix"                     the parts of Name();
  ///   "first phonetic name", "last phonetic name"
  ///                                Name()'s phonetic parts, else RFName()
  ///                                and RLName();
  ///   "middle phonetic name"       Name()'s phonetic middle name;
  ///   "nickname"                   the first nickname;
  ///   "company name", "department" name and unit of the first organization;
  ///   "job title"                  Title(), else the first organization's
  ///                                position;
  ///   "birthday"                   BirthDate() as a date (midnight in the
  ///                                default zone);
  ///   "notes"                      the non-empty notes joined by "\n";
  ///   "image"                      the picture bytes;
  ///   "phone numbers", "email addresses", "URLs", "street addresses",
  ///   "dates", "related names", "IMs"
  ///                                the identifiers of the sub-records that
  ///                                reconciliation claimed or created, in
  ///                                order; only when there are any (that
  ///                                is, when the table has an entry for the
  ///                                record).
  /// A group is a "com.apple.contacts.Group" record with "name" (the display
  /// name, else the group name) and no sub-records.
  ///
  /// The sub-records: each non-empty telephone number (with its own label),
  /// and the assistant's number as an assistant number; each non-empty
  /// e-mail (with its label), web address, postal address (with its label)
  /// and messenger ID; the anniversary as a date of type 0; spouse,
  /// children and assistant as related names of types 0, 1 and 2. The
  /// containers document the records' keys and labels.
  ///
  /// `Zandor` selects the phone-number labels of the phones whose mobile
  /// numbers travel as HOME;CELL (the phones vCard::Generate writes for with
  /// a non-zero phone style); the form without it passes false.
  void createMetaData();
  void createMetaData(bool Zandor);

  // --- Fields ------------------------------------------------------------

  /// 0 for a person, 1 for a group.
  std::uint32_t ContactType() const { return ContactType_; }

  const std::optional<String>& GroupName() const { return GroupName_; }
  void SetGroupName(std::optional<String> name) { GroupName_ = std::move(name); }
  const std::optional<String>& GroupDisplayName() const { return GroupDisplayName_; }
  void SetGroupDisplayName(std::optional<String> name) { GroupDisplayName_ = std::move(name); }
  /// 0 none, 1 "Normal", 2 "Smart", 3 "READ_ONLY".
  std::uint32_t GroupType() const { return GroupType_; }
  void SetGroupType(std::uint32_t groupType) { GroupType_ = groupType; }
  /// The numbers of the groups the contact belongs to (the X-GROUP list).
  const std::vector<std::int32_t>& Groups() const { return Groups_; }
  std::vector<std::int32_t>& Groups() { return Groups_; }
  void SetGroups(std::vector<std::int32_t> groups) { Groups_ = std::move(groups); }

  const std::optional<String>& AccountName() const { return AccountName_; }
  void SetAccountName(std::optional<String> name) { AccountName_ = std::move(name); }
  const std::optional<String>& AccountType() const { return AccountType_; }
  void SetAccountType(std::optional<String> type) { AccountType_ = std::move(type); }

  const std::optional<DateComponents>& LastRevision() const { return LastRevision_; }
  void SetLastRevision(std::optional<DateComponents> revision) {
    LastRevision_ = std::move(revision);
  }
  /// The last-modification text.
  const std::optional<String>& LMT() const { return LMT_; }
  void setLMT(std::optional<String> lmt) { LMT_ = std::move(lmt); }

  const CName& Name() const { return Name_; }
  CName& Name() { return Name_; }
  void SetName(const CName& name) { Name_ = name; }
  /// The formatted name.
  const std::optional<String>& FName() const { return FName_; }
  void SetFName(std::optional<String> name) { FName_ = std::move(name); }
  /// The phonetic ("reading") first and last name.
  const std::optional<String>& RFName() const { return RFName_; }
  void SetRFName(std::optional<String> name) { RFName_ = std::move(name); }
  const std::optional<String>& RLName() const { return RLName_; }
  void SetRLName(std::optional<String> name) { RLName_ = std::move(name); }

  /// The birthday's kind, written as a one-letter suffix behind the date:
  /// 0 none, 1 'L', 2 'Y'.
  std::uint32_t BirthDateType() const { return BirthDateType_; }
  void SetBirthDateType(std::uint32_t type) { BirthDateType_ = type; }
  const std::optional<DateComponents>& BirthDate() const { return BirthDate_; }
  void SetBirthDate(std::optional<DateComponents> date) { BirthDate_ = std::move(date); }

  /// 0 or 0xFFFFFFFF unknown, 1 "A", 2 "B", 3 "AB", 4 "O".
  std::uint32_t BloodType() const { return BloodType_; }
  void SetBloodType(std::uint32_t bloodType) { BloodType_ = bloodType; }

  const std::optional<DateComponents>& Anniversary_Date() const { return Anniversary_Date_; }
  void SetAnniversary_Date(std::optional<DateComponents> date) {
    Anniversary_Date_ = std::move(date);
  }
  /// The anniversary's kind, as BirthDateType().
  std::uint32_t Anniversary_Luna() const { return Anniversary_Luna_; }
  void SetAnniversary_Luna(std::uint32_t type) { Anniversary_Luna_ = type; }

  const std::optional<String>& Title() const { return Title_; }
  void SetTitle(std::optional<String> title) { Title_ = std::move(title); }
  const std::optional<String>& Role() const { return Role_; }
  void SetRole(std::optional<String> role) { Role_ = std::move(role); }
  const std::optional<String>& Hobby() const { return Hobby_; }
  void SetHobby(std::optional<String> hobby) { Hobby_ = std::move(hobby); }
  const std::optional<String>& Account() const { return Account_; }
  void SetAccount(std::optional<String> account) { Account_ = std::move(account); }

  const std::vector<String>& NickNames() const { return NickNames_; }
  std::vector<String>& NickNames() { return NickNames_; }
  void SetNickNames(std::vector<String> names) { NickNames_ = std::move(names); }

  /// The related names.
  const std::optional<String>& spouse() const { return mSpouse; }
  void setSpouse(std::optional<String> name) { mSpouse = std::move(name); }
  const std::optional<String>& children() const { return mChildren; }
  void setChildren(std::optional<String> names) { mChildren = std::move(names); }
  const std::optional<String>& assistant() const { return mAssistant; }
  void setAssistant(std::optional<String> name) { mAssistant = std::move(name); }
  const std::optional<String>& assistantNumber() const { return mAssistantNumber; }
  void setAssistantNumber(std::optional<String> number) {
    mAssistantNumber = std::move(number);
  }

  /// The telephone counter; nothing here changes it.
  std::int32_t telcount() const { return telcount_; }

  // --- Speed dial --------------------------------------------------------

  /// The slot of the telephone number at `nIndex` (-1: none). An index
  /// outside 0 to 9 fails the assertion "nIndex < 10".
  std::int32_t SpeedDial(int nIndex) const;
  /// Stores `value` as the slot at `index`; an index outside 0 to 9 is
  /// ignored (the phone's list is never longer).
  void SetSpeedDial(std::int32_t value, int index);
  /// All ten slots.
  const std::array<std::int32_t, kSpeedDialCount>& SpeedDial() const { return m_SpeedDial; }

  // --- Groups and extensions (extension items) ---------------------------

  /// Adds an "X-GROUP" item with the decimal text of `group` (type 0, ID -1).
  void SetGroup(std::int32_t group);
  /// The leading integer of the first "X-GROUP" item; 0 when there is none.
  std::int32_t GetGroup() const;
  /// Adds an "X-PBOEXTENSION" item with `extension` (type 0, ID -1).
  void SetExtension(const String& extension);
  /// The text of the first "X-PBOEXTENSION" item; empty when there is none.
  String GetExtension() const;

  // --- Photo -------------------------------------------------------------

  /// Replaces the picture (nothing removes it).
  void SetPhotoData(std::optional<Bytes> photo) { mPhoto = std::move(photo); }
  const std::optional<Bytes>& GetPhotoData() const { return mPhoto; }
  /// The picture bytes; null when there is no picture.
  const Bytes* GetPhotoRef() const { return mPhoto ? &*mPhoto : nullptr; }

  // Photos travel only inside the vCard data, never as files: these keep
  // the file interface of the record and do nothing.
  /// Nothing: there is no photo folder.
  std::optional<String> GetSavePhotoPath(const String& guid, bool group) const;
  /// false: no folder is made.
  bool MakeDirectory(const String& path) const;
  /// Nothing: no photo file is made from the data.
  std::optional<Bytes> MakePhotoData(const Bytes& photo, int photoSize,
                                     const String& deviceID) const;
  /// false: nothing is written.
  bool SavePhotoFile(const Bytes& photo, const String& guid, bool isGroup) const;
  /// Does nothing.
  void DeletePhoto() {}

  // --- Element lists -----------------------------------------------------
  //
  // Each kind has creators (New...), Get...(index), Get...Count(),
  // Delete...AtIndex(index), Delete...(element) and DeleteAll...(). Get and
  // DeleteAtIndex assert that the index is within the list, with the text
  // "nIndex < [self Get...Count]". Delete...(element) removes that very
  // element and ignores anything else. DeleteAll... (all but notes) drops the
  // list: afterwards the count is 0 and creators return an element that is
  // owned by the contact but not counted. DeleteAllNotes only empties.
  // Creators take text as a UTF-8 C string (up to its NUL; invalid UTF-8
  // gives an empty text) or, for e-mail addresses, web addresses, messenger
  // IDs and notes, as a String already decoded, kept as it is.

  /// Postal addresses. The one-string form puts the text into Street.
  CPostalAddress* NewAddress();
  CPostalAddress* NewAddress(const char* address, std::uint32_t addressType, std::int32_t theID);
  CPostalAddress* NewAddress(const char* address, std::uint32_t addressType, std::int32_t theID,
                             std::shared_ptr<const String> Label);
  CPostalAddress* NewAddress(const char* POBox, const char* extAddr, const char* street,
                             const char* locality, const char* region, const char* postalCode,
                             const char* country, const char* neighbor,
                             std::uint32_t addressType, std::int32_t theID);
  CPostalAddress* NewAddress(const char* POBox, const char* extAddr, const char* street,
                             const char* locality, const char* region, const char* postalCode,
                             const char* country, const char* neighbor,
                             std::uint32_t addressType, std::int32_t theID,
                             std::shared_ptr<const String> Label);
  CPostalAddress* GetAddress(int nIndex);
  const CPostalAddress* GetAddress(int nIndex) const;
  int GetAddressCount() const { return m_arrAdr.Count(); }
  void DeleteAddressAtIndex(int nIndex);
  /// A null `pAddress` fails the assertion "pAddress != nil".
  void DeleteAddress(const CPostalAddress* pAddress);
  void DeleteAllAddress() { m_arrAdr.Release(); }

  /// Organizations.
  COrganization* NewOrg();
  COrganization* NewOrg(const char* name, const char* unit, const char* position,
                        const char* additional, std::uint32_t orgType);
  COrganization* GetOrg(int nIndex);
  const COrganization* GetOrg(int nIndex) const;
  int GetOrgCount() const { return m_arrOrg.Count(); }
  void DeleteOrgAtIndex(int nIndex);
  void DeleteOrg(const COrganization* pOrg) { m_arrOrg.Delete(pOrg); }
  void DeleteAllOrg() { m_arrOrg.Release(); }

  /// Telephone numbers.
  CTelephoneNumber* NewTelephone();
  CTelephoneNumber* NewTelephone(const char* number, std::uint32_t telephoneType,
                                 std::int32_t theID);
  CTelephoneNumber* NewTelephone(const char* number, std::uint32_t telephoneType,
                                 std::int32_t theID, std::shared_ptr<const String> label);
  /// A number whose text is decoded already: taken over, not converted.
  CTelephoneNumber* NewTelephone(String number, std::uint32_t telephoneType,
                                 std::int32_t theID, std::shared_ptr<const String> label);
  CTelephoneNumber* GetTelephone(int nIndex);
  const CTelephoneNumber* GetTelephone(int nIndex) const;
  int GetTelephoneCount() const { return m_arrTel.Count(); }
  void DeleteTelephoneAtIndex(int nIndex);
  void DeleteTelephone(const CTelephoneNumber* pTel) { m_arrTel.Delete(pTel); }
  void DeleteAllTelephone() { m_arrTel.Release(); }

  /// Messenger IDs.
  CMessengerID* NewMessengerID();
  CMessengerID* NewMessengerID(const char* messengerID, std::uint32_t messengerType,
                               std::int32_t theID);
  CMessengerID* NewMessengerID(String messengerID, std::uint32_t messengerType,
                               std::int32_t theID);
  CMessengerID* GetMessengerID(int nIndex);
  const CMessengerID* GetMessengerID(int nIndex) const;
  int GetMessengerIDCount() const { return m_arrMessenger.Count(); }
  void DeleteMessengerIDAtIndex(int nIndex);
  void DeleteMessengerID(const CMessengerID* pID) { m_arrMessenger.Delete(pID); }
  void DeleteAllMessengerID() { m_arrMessenger.Release(); }

  /// Notes.
  CNote* NewNotes();
  CNote* NewNotes(const char* note, std::int32_t theID);
  CNote* NewNotes(String note, std::int32_t theID);
  CNote* GetNotes(int nIndex);
  const CNote* GetNotes(int nIndex) const;
  int GetNotesCount() const { return m_arrNotes.Count(); }
  void DeleteNotesAtIndex(int nIndex);
  void DeleteNotes(const CNote* pNote) { m_arrNotes.Delete(pNote); }
  void DeleteAllNotes() { m_arrNotes.Clear(); }

  /// E-mail addresses.
  CEmail* NewEmail();
  CEmail* NewEmail(const char* email, std::uint32_t emailType, std::int32_t theID);
  CEmail* NewEmail(const char* email, std::uint32_t emailType, std::int32_t theID,
                   std::shared_ptr<const String> Label);
  CEmail* NewEmail(String email, std::uint32_t emailType, std::int32_t theID,
                   std::shared_ptr<const String> Label);
  CEmail* GetEmail(int nIndex);
  const CEmail* GetEmail(int nIndex) const;
  int GetEmailCount() const { return m_arrEmail.Count(); }
  void DeleteEmailAtIndex(int nIndex);
  void DeleteEmail(const CEmail* pEmail) { m_arrEmail.Delete(pEmail); }
  void DeleteAllEmail() { m_arrEmail.Release(); }

  /// Web addresses.
  CURL* NewURL();
  CURL* NewURL(const char* url, std::uint32_t urlType, std::int32_t theID);
  CURL* NewURL(String url, std::uint32_t urlType, std::int32_t theID);
  CURL* GetURL(int nIndex);
  const CURL* GetURL(int nIndex) const;
  int GetURLCount() const { return m_arrURL.Count(); }
  void DeleteURLAtIndex(int nIndex);
  void DeleteURL(const CURL* pURL) { m_arrURL.Delete(pURL); }
  void DeleteAllURL() { m_arrURL.Release(); }

 private:
  struct NoIdentity {};
  CContact(NoIdentity, const String& vCardType, std::shared_ptr<ContactIDMappingTable> idMapper);
  void CreateContainers();
  void BuildContactRecord();
  void FillContainers(bool Zandor);

  // Identity.
  String mVCardType;
  std::optional<String> mDBRecordID;
  std::optional<String> mVCardRecordID;
  std::uint32_t mvCardID = 0;
  std::int32_t mState = 0;
  std::shared_ptr<ContactIDMappingTable> mIDMapper;

  // Sub-record containers: all seven or none.
  std::unique_ptr<PhoneContainer> mPhoneMapper;
  std::unique_ptr<URLContainer> mURLMapper;
  std::unique_ptr<StreetAddressContainer> mStreetAddressMapper;
  std::unique_ptr<EmailContainer> mEmailMapper;
  std::unique_ptr<DateContainer> mDateContainer;
  std::unique_ptr<RelatedNameContainer> mRelatedNameContainer;
  std::unique_ptr<IMContainer> mIMContainer;

  Dictionary mMetaDictionary;

  std::uint32_t ContactType_ = 0;
  std::optional<String> GroupName_;
  std::optional<String> GroupDisplayName_;
  std::uint32_t GroupType_ = 0;
  std::vector<std::int32_t> Groups_;
  std::optional<String> AccountName_;
  std::optional<String> AccountType_;
  std::optional<DateComponents> LastRevision_;
  std::optional<String> LMT_;
  CName Name_;
  std::optional<String> FName_;
  std::optional<String> RFName_;
  std::optional<String> RLName_;
  std::uint32_t BirthDateType_ = 0;
  std::optional<DateComponents> BirthDate_;
  std::uint32_t BloodType_ = 0;
  std::optional<DateComponents> Anniversary_Date_;
  std::uint32_t Anniversary_Luna_ = 0;
  std::optional<String> Title_;
  std::optional<String> Role_;
  std::optional<String> Hobby_;
  std::optional<String> Account_;
  std::vector<String> NickNames_;
  std::optional<String> mSpouse;
  std::optional<String> mChildren;
  std::optional<String> mAssistant;
  std::optional<String> mAssistantNumber;
  std::optional<Bytes> mPhoto;

  ContactElementList<CPostalAddress> m_arrAdr;
  ContactElementList<CTelephoneNumber> m_arrTel;
  ContactElementList<CMessengerID> m_arrMessenger;
  ContactElementList<CEmail> m_arrEmail;
  ContactElementList<CNote> m_arrNotes;
  ContactElementList<COrganization> m_arrOrg;
  ContactElementList<CURL> m_arrURL;

  std::array<std::int32_t, kSpeedDialCount> m_SpeedDial;
  std::int32_t telcount_ = 0;
};

}  // namespace phonepim
