#include "phonepim/session/ContactsFromStore.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/model/TypeMasks.h"
#include "phonepim/session/StoreRecordName.h"
#include "phonepim/store/SyncStore.h"
#include "phonepim/sync/ContactRecord.h"
#include "phonepim/sync/EmailContainer.h"
#include "phonepim/sync/IMContainer.h"
#include "phonepim/sync/PhoneContainer.h"
#include "phonepim/sync/RelatedNameContainer.h"
#include "phonepim/sync/StreetAddressContainer.h"
#include "phonepim/sync/SyncRecordSchema.h"
#include "phonepim/sync/URLContainer.h"

namespace phonepim {
namespace {

std::string UTF8(const String& text) { return UTF8FromString(text).value_or(std::string()); }

std::shared_ptr<const String> LabelOf(const Dictionary& record) {
  const String* label = FindAs<String>(record, kSyncKeyLabel);
  return label ? std::make_shared<const String>(*label) : nullptr;
}

// The first candidate mask that the forward builder turns into the same
// type, label and service as `record`: the store's vocabulary read back
// through the one place that defines it.
bool SameEntry(const Dictionary& a, const Dictionary& b, const String& key) {
  const Value* x = Find(a, key);
  const Value* y = Find(b, key);
  return x == nullptr ? y == nullptr : y != nullptr && *x == *y;
}

// The first candidate mask that the forward builder turns into the same
// type, label and service as `record`: the store's vocabulary read back
// through the one place that defines it.
template <class Build>
std::optional<std::uint32_t> MaskFor(const Dictionary& record,
                                     std::initializer_list<std::uint32_t> candidates,
                                     Build build) {
  for (std::uint32_t mask : candidates) {
    const Dictionary built = build(mask);
    if (SameEntry(built, record, kSyncKeyType) && SameEntry(built, record, kSyncKeyLabel) &&
        SameEntry(built, record, kSyncKeyService)) {
      return mask;
    }
  }
  return std::nullopt;
}

DateComponents DayOf(const Value* value) {
  const CDateTime date(value->get<Date>().secondsSince1970, 0);
  DateComponents day;
  day.year = date.dateComponents().year;
  day.month = date.dateComponents().month;
  day.day = date.dateComponents().day;
  return day;
}

void AddSubRecord(CContact& contact, const Dictionary& record, int index) {
  const String& entity = TextOf(record, ISyncRecordEntityNameKey);
  const String& parent = *contact.dbRecordID();
  if (entity == kPhoneNumberEntityName) {
    PhoneContainer builder(parent, nullptr);
    const std::optional<std::uint32_t> mask = MaskFor(
        record,
        {kTelephoneTypeCell, kTelephoneTypeHome, kTelephoneTypeWork, kTelephoneTypeVoice,
         kTelephoneTypeHome | kTelephoneTypeFax, kTelephoneTypeWork | kTelephoneTypeFax,
         kTelephoneTypeFax, kTelephoneTypePager, kTelephoneTypeHome | kTelephoneTypeCell,
         kTelephoneTypeWork | kTelephoneTypeCell, kTelephoneTypeHome | kTelephoneTypeVideo,
         kTelephoneTypeWork | kTelephoneTypeVideo, kTelephoneTypeVideo,
         kTelephoneTypeHome | kTelephoneTypeInternet, kTelephoneTypeWork | kTelephoneTypeInternet,
         kTelephoneTypeInternet, kTelephoneTypeCar, kTelephoneTypePref, kTelephoneTypeModem,
         kTelephoneTypeBBS, kTelephoneTypeISDN, kTelephoneTypeEtc, kTelephoneTypeMsg,
         kTelephoneTypeDTMF, kTelephoneTypePTT, kTelephoneTypeAssistant, kTelephoneTypeCallback},
        [&](std::uint32_t m) { return builder.createPhoneDataForDB(String(), m, std::nullopt, false); });
    if (mask) {
      contact.NewTelephone(UTF8(TextOf(record, kSyncKeyValue)).c_str(), *mask, index);
    } else {
      contact.NewTelephone(UTF8(TextOf(record, kSyncKeyValue)).c_str(), kTelephoneTypeCustom, index,
                           LabelOf(record));
    }
  } else if (entity == kEmailAddressEntityName) {
    EmailContainer builder(parent, nullptr);
    const std::optional<std::uint32_t> mask =
        MaskFor(record,
                {0u, kEmailTypeHome, kEmailTypeWork, kEmailTypeCell, kEmailTypeEtc, kEmailTypePref},
                [&](std::uint32_t m) { return builder.createEmailDataForDB(String(), m, std::nullopt); });
    if (mask) {
      contact.NewEmail(UTF8(TextOf(record, kSyncKeyValue)).c_str(), *mask, index);
    } else {
      contact.NewEmail(UTF8(TextOf(record, kSyncKeyValue)).c_str(), kEmailTypeCustom, index,
                       LabelOf(record));
    }
  } else if (entity == kURLEntityName) {
    URLContainer builder(parent, nullptr);
    const std::optional<std::uint32_t> mask =
        MaskFor(record, {0u, kURLTypeHome, kURLTypeWork, kURLTypePref},
                [&](std::uint32_t m) { return builder.createURLDataForDB(String(), m); });
    contact.NewURL(TextOf(record, kSyncKeyValue), mask.value_or(0), index);
  } else if (entity == kStreetAddressEntityName) {
    StreetAddressContainer builder(parent, nullptr);
    const std::optional<std::uint32_t> mask = MaskFor(
        record,
        {0u, kAddressTypeHome, kAddressTypeWork, kAddressTypeEtc, kAddressTypeCell,
         kAddressTypePref},
        [&](std::uint32_t m) {
          return builder.createStreetAddressDataForDB({}, {}, {}, {}, {}, {}, m, std::nullopt);
        });
    contact.NewAddress(nullptr, nullptr, UTF8(TextOf(record, kSyncKeyStreet)).c_str(),
                       UTF8(TextOf(record, kSyncKeyCity)).c_str(),
                       UTF8(TextOf(record, kSyncKeyState)).c_str(),
                       UTF8(TextOf(record, kSyncKeyPostalCode)).c_str(),
                       UTF8(TextOf(record, kSyncKeyCountry)).c_str(), nullptr,
                       mask.value_or(kAddressTypeCustom), index,
                       mask ? nullptr : LabelOf(record));
  } else if (entity == kIMEntityName) {
    IMContainer builder(parent, nullptr);
    const std::optional<std::uint32_t> mask = MaskFor(
        record,
        {kMessengerTypeAIM, kMessengerTypeYahoo, kMessengerTypeSkype, kMessengerTypeQQ,
         kMessengerTypeGoogleTalk, kMessengerTypeICQ, kMessengerTypeJabber,
         kMessengerTypeWindowsLive},
        [&](std::uint32_t m) { return builder.createIMDataForDB(String(), m); });
    contact.NewMessengerID(TextOf(record, kSyncKeyUser), mask.value_or(kMessengerTypeWindowsLive),
                           index);
  } else if (entity == kRelatedNameEntityName) {
    const String& type = TextOf(record, kSyncKeyType);
    const String& name = TextOf(record, kSyncKeyValue);
    if (type == u"spouse") contact.setSpouse(name);
    if (type == u"child") contact.setChildren(name);
    if (type == u"assistant") contact.setAssistant(name);
  } else if (entity == kDateEntityName && Find(record, kSyncKeyValue) &&
             Find(record, kSyncKeyValue)->is<Date>()) {
    contact.SetAnniversary_Date(DayOf(Find(record, kSyncKeyValue)));
  }
}

void FillPerson(CContact& contact, const Dictionary& record) {
  using namespace contact_record;
  CName& name = contact.Name();
  const std::pair<const String*, int> parts[] = {
      {&kLastName, 0}, {&kFirstName, 1}, {&kMiddleName, 2}, {&kTitle, 3}, {&kSuffix, 4},
      {&kLastPhoneticName, 5}, {&kFirstPhoneticName, 6}, {&kMiddlePhoneticName, 7}};
  for (const auto& [key, index] : parts) {
    if (!TextOf(record, *key).empty()) name.SetName(TextOf(record, *key), index);
  }
  if (const String* nickname = FindAs<String>(record, kNickname)) {
    contact.SetNickNames({*nickname});
  }
  if (Find(record, kCompanyName) || Find(record, kDepartment)) {
    contact.NewOrg(UTF8(TextOf(record, kCompanyName)).c_str(),
                   UTF8(TextOf(record, kDepartment)).c_str(), nullptr, nullptr, 0);
  }
  if (const String* title = FindAs<String>(record, kJobTitle)) contact.SetTitle(*title);
  if (Find(record, kBirthday) && Find(record, kBirthday)->is<Date>()) {
    contact.SetBirthDate(DayOf(Find(record, kBirthday)));
  }
  if (const String* notes = FindAs<String>(record, kNotes)) contact.NewNotes(*notes, 0);
  if (const Bytes* image = FindAs<Bytes>(record, kImage)) contact.SetPhotoData(*image);
}

std::uint32_t LeadingNumber(const String& text) {
  return static_cast<std::uint32_t>(std::strtoul(ToDisplayUTF8(text).c_str(), nullptr, 10));
}

}  // namespace

std::vector<std::unique_ptr<CContact>> ContactsFromStore(const SyncStore& store,
                                                         const String& imei) {
  std::vector<std::unique_ptr<CContact>> contacts;
  const String suffix = u"(" + imei + u")_ContactRecordIDMeta.plist";
  for (const String& name : store.tableNames()) {
    if (name.size() < suffix.size() || name.compare(name.size() - suffix.size(), suffix.size(),
                                                    suffix) != 0) {
      continue;
    }
    const std::optional<Dictionary> table = store.table(name);
    for (const auto& [storeID, value] : *table) {
      const Dictionary* entry = value.getIf<Dictionary>();
      const String* vCardID = entry ? FindAs<String>(*entry, u"vCardID") : nullptr;
      if (vCardID == nullptr) continue;
      const std::optional<Dictionary> record = store.fetch(storeID);
      if (!record) continue;
      const bool group = TextOf(*record, ISyncRecordEntityNameKey) == kGroupEntityName;
      auto contact = std::make_unique<CContact>(LeadingNumber(*vCardID), imei, std::nullopt,
                                                group ? u"Group" : u"Contact", nullptr);
      if (group) {
        contact->SetGroupName(TextOf(*record, contact_record::kGroupName));
      } else {
        FillPerson(*contact, *record);
      }
      int index = 0;
      for (const String* key : {&kPhoneNumbersKey, &kEmailAddressesKey, &kURLsKey,
                                &kStreetAddressesKey, &kDatesKey, &kRelatedNamesKey, &kIMsKey}) {
        const Array* ids = FindAs<Array>(*record, *key);
        if (ids == nullptr) continue;
        for (const Value& id : *ids) {
          const String* text = id.getIf<String>();
          if (text == nullptr) continue;
          if (std::optional<Dictionary> sub = store.fetch(*text)) AddSubRecord(*contact, *sub, index++);
        }
      }
      contacts.push_back(std::move(contact));
    }
  }
  std::stable_sort(contacts.begin(), contacts.end(),
                   [](const auto& a, const auto& b) { return a->vCardID() < b->vCardID(); });
  return contacts;
}

}  // namespace phonepim
