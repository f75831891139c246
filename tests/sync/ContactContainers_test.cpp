// The phone-number, URL, street-address, date, related-name and IM
// containers: the words each gives the store and the counter it raises.
#include <gtest/gtest.h>

#include "phonepim/model/TypeMasks.h"
#include "phonepim/sync/DateContainer.h"
#include "phonepim/sync/IMContainer.h"
#include "phonepim/sync/PhoneContainer.h"
#include "phonepim/sync/RelatedNameContainer.h"
#include "phonepim/sync/StreetAddressContainer.h"
#include "phonepim/sync/URLContainer.h"
#include "sync/SyncTestSupport.h"

namespace phonepim {
namespace {

using testing_support::Text;

// kZandor: a phone number as a Zandor phone sends it.
enum Box { kPhone, kZandor, kURL, kDate, kRelated, kIM, kStreet };

// One row: the type, label and value (null: none) one container is given, the
// record it builds without the entity name and owner, and the counter it
// raises. A street address joins `value` and `extended`.
struct VocabularyRow {
  Box box;
  std::uint32_t type;
  const char16_t* label;
  const char* record;
  int kind;
  const char16_t* value = u"A";
  const char16_t* extended = u"";
};

// The record a container builds and the one counter it raised (-1: none,
// -2: more than one).
template <class Container, class Make>
std::pair<Dictionary, int> Build(Make make) {
  Container container(u"P", nullptr);
  Dictionary record = make(container);
  int counted = -1;
  for (int kind = 0; kind < Container::kKindCount; ++kind) {
    const int count = container.TypeCount(static_cast<typename Container::Kind>(kind));
    if (count != 0) counted = counted == -1 && count == 1 ? kind : -2;
  }
  return {record, counted};
}

std::optional<String> Optional(const char16_t* text) { return text ? std::optional<String>(text) : std::nullopt; }

std::pair<Dictionary, int> Build(const VocabularyRow& r) {
  const String value = r.value ? r.value : u"";
  switch (r.box) {
    case kPhone:
    case kZandor:
      return Build<PhoneContainer>([&](auto& c) {
        return c.createPhoneDataForDB(Optional(r.value), r.type, Optional(r.label), r.box == kZandor);
      });
    case kURL:
      return Build<URLContainer>([&](auto& c) { return c.createURLDataForDB(value, r.type); });
    case kDate:
      return Build<DateContainer>([&](auto& c) { return c.createDateDataForDB(Date{86400}, r.type); });
    case kRelated:
      return Build<RelatedNameContainer>([&](auto& c) { return c.createRelatedNameDataForDB(value, r.type); });
    case kIM:
      return Build<IMContainer>([&](auto& c) { return c.createIMDataForDB(value, r.type); });
    case kStreet:
      return Build<StreetAddressContainer>([&](auto& c) {
        return c.createStreetAddressDataForDB(value, r.extended, u"c", u"s", u"p", u"n", r.type, Optional(r.label));
      });
  }
  return {};
}

const char16_t* const kEntities[] = {
    u"com.apple.contacts.Phone Number", u"com.apple.contacts.Phone Number", u"com.apple.contacts.URL",
    u"com.apple.contacts.Date",         u"com.apple.contacts.Related Name", u"com.apple.contacts.IM",
    u"com.apple.contacts.Street Address"};

using P = PhoneContainer::Kind;
using U = URLContainer::Kind;
using D = DateContainer::Kind;
using R = RelatedNameContainer::Kind;
using I = IMContainer::Kind;
using S = StreetAddressContainer::Kind;
constexpr std::uint32_t kCellHome = kTelephoneTypeCell | kTelephoneTypeHome;
#define ADDRESS(label, street) \
  "{city='c', country='n', label='" label "', postal code='p', state='s', street='" street "', type='other'}"

const VocabularyRow kRows[] = {
    {kZandor, kCellHome, nullptr, "{type='mobile', value='A'}", P::HomeCellZandor},
    {kPhone, kCellHome, nullptr, "{label='Mobile (Home)', type='other', value='A'}", P::HomeCell},
    {kPhone, kTelephoneTypeCustom, nullptr, "{type='other'}", P::X_CUSTOM, nullptr},
    {kPhone, kTelephoneTypeCustom, u"Main", "{type='main', value='A'}", P::X_CUSTOM},
    {kPhone, kTelephoneTypeCustom, u"main", "{label='main', type='other', value='A'}", P::X_CUSTOM},
    {kURL, kTypePref, nullptr, "{label='prefered', type='other', value='A'}", U::Prefered},
    {kURL, 3, nullptr, "{type='home page', value='A'}", U::Other},
    {kDate, 1, nullptr, "{label='Etc', type='other', value=@86400}", D::Other},
    {kRelated, 3, nullptr, "{label='Etc', type='other', value='A'}", R::Other},
    {kIM, 0, nullptr, "{label='Etc', service='msn', type='other', user='A'}", I::Unknown},
    {kIM, 2, nullptr, "{service='msn', type='other', user='A'}", I::MSN},
    {kIM, 32, nullptr, "{service='GoogleTalk', type='other', user='A'}", I::GoogleTalk},
    {kIM, 64, nullptr, "{service='icq', type='other', user='A'}", I::ICQ},
    {kIM, 128, nullptr, "{service='jabber', type='other', user='A'}", I::Jabber},
    {kStreet, 16, u"Villa", ADDRESS("Villa", "1-1 Room 5"), S::X_CUSTOM, u"1-1", u"Room 5"},
    {kStreet, 16, nullptr, ADDRESS("X_CUSTOM", "A"), S::X_CUSTOM},
    {kStreet, kTypePref | 1, nullptr, ADDRESS("Etc", "A"), S::Etc},
};

#undef ADDRESS

TEST(contact_container_records, carry_the_stores_words) {
  for (const VocabularyRow& row : kRows) {
    SCOPED_TRACE(testing::Message() << "row " << &row - kRows);
    auto [record, counted] = Build(row);
    EXPECT_EQ(record[ISyncRecordEntityNameKey], Value(kEntities[row.box]));
    EXPECT_EQ(record[u"contact"], Value(Array{Value(u"P")}));
    record.erase(ISyncRecordEntityNameKey);
    record.erase(u"contact");
    EXPECT_EQ(Text(record), row.record);
    EXPECT_EQ(counted, row.kind);
  }
}

}  // namespace
}  // namespace phonepim
