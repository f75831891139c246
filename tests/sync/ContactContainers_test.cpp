// The e-mail, URL, street-address, date, related-name and IM containers:
// their vocabularies, records, counters and reconciliation keys.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "phonepim/model/TypeMasks.h"
#include "phonepim/sync/DateContainer.h"
#include "phonepim/sync/EmailContainer.h"
#include "phonepim/sync/IMContainer.h"
#include "phonepim/sync/RelatedNameContainer.h"
#include "phonepim/sync/StreetAddressContainer.h"
#include "phonepim/sync/URLContainer.h"
#include "sync/SyncTestSupport.h"

namespace phonepim {
namespace {

using testing_support::TableFixture;
using testing_support::Text;

enum Box { kEmail, kURL, kDate, kRelated, kIM, kStreet };

// One row: the type (and label, street) one container is given, the record
// it builds without the entity name and owner, and the counter it raises.
struct VocabularyRow {
  Box box;
  std::uint32_t type;
  const char16_t* label;
  const char* record;
  int kind;
  const char16_t* street = u"A";
  const char16_t* extended = u"";
};

// The one counter a container raised, or -1.
template <class Container>
int Counted(const Container& container) {
  int counted = -1;
  for (int kind = 0; kind < Container::kKindCount; ++kind) {
    const int count = container.TypeCount(static_cast<typename Container::Kind>(kind));
    if (count != 0) counted = counted == -1 && count == 1 ? kind : -2;
  }
  return counted;
}

template <class Container, class Make>
std::pair<Dictionary, int> Build(Make make) {
  Container container(u"P", nullptr);
  Dictionary record = make(container);
  return {record, Counted(container)};
}

std::pair<Dictionary, int> Build(const VocabularyRow& r) {
  const std::optional<String> label = r.label ? std::optional<String>(r.label) : std::nullopt;
  switch (r.box) {
    case kEmail:
      return Build<EmailContainer>([&](auto& c) { return c.createEmailDataForDB(u"a@b", r.type, label); });
    case kURL:
      return Build<URLContainer>([&](auto& c) { return c.createURLDataForDB(u"u", r.type); });
    case kDate:
      return Build<DateContainer>([&](auto& c) { return c.createDateDataForDB(Date{86400}, r.type); });
    case kRelated:
      return Build<RelatedNameContainer>([&](auto& c) { return c.createRelatedNameDataForDB(u"H", r.type); });
    case kIM:
      return Build<IMContainer>([&](auto& c) { return c.createIMDataForDB(u"taro", r.type); });
    case kStreet:
      return Build<StreetAddressContainer>([&](auto& c) {
        return c.createStreetAddressDataForDB(r.street, r.extended, u"c", u"s", u"p", u"n", r.type, label);
      });
  }
  return {};
}

const char16_t* const kEntities[] = {
    u"com.apple.contacts.Email Address", u"com.apple.contacts.URL", u"com.apple.contacts.Date",
    u"com.apple.contacts.Related Name",  u"com.apple.contacts.IM",  u"com.apple.contacts.Street Address"};

using E = EmailContainer::Kind;
using U = URLContainer::Kind;
using D = DateContainer::Kind;
using R = RelatedNameContainer::Kind;
using I = IMContainer::Kind;
using S = StreetAddressContainer::Kind;
#define ADDRESS(type, label, street) \
  "{city='c', country='n', " label "postal code='p', state='s', street='" street "', type='" type "'}"

const VocabularyRow kRows[] = {
    {kEmail, 0, u"x", "{type='other', value='a@b'}", E::Other},
    {kEmail, 1, nullptr, "{type='home', value='a@b'}", E::Home},
    {kEmail, 2, nullptr, "{type='work', value='a@b'}", E::Work},
    {kEmail, 4, nullptr, "{label='mobile', type='other', value='a@b'}", E::Mobile},
    {kEmail, 8, u"x", "{type='other', value='a@b'}", E::Etc},
    {kEmail, 16, u"Private", "{label='Private', type='other', value='a@b'}", E::X_CUSTOM},
    {kEmail, 16, nullptr, "{type='other', value='a@b'}", E::X_CUSTOM},
    {kEmail, kTypePref, nullptr, "{label='prefered', type='other', value='a@b'}", E::Prefered},
    {kEmail, kTypePref | 1, nullptr, "{label='Etc', type='other', value='a@b'}", E::Unknown},
    {kEmail, 3, u"x", "{label='Etc', type='other', value='a@b'}", E::Unknown},
    {kEmail, 0x10000002, nullptr, "{label='Etc', type='other', value='a@b'}", E::Unknown},

    {kURL, 0, nullptr, "{type='home page', value='u'}", U::HomePage},
    {kURL, 1, nullptr, "{type='home', value='u'}", U::Home},
    {kURL, 2, nullptr, "{type='work', value='u'}", U::Work},
    {kURL, kTypePref, nullptr, "{label='prefered', type='other', value='u'}", U::Prefered},
    {kURL, 3, nullptr, "{type='home page', value='u'}", U::Other},
    {kURL, kTypePref | 2, nullptr, "{type='home page', value='u'}", U::Other},

    {kDate, 0, nullptr, "{type='anniversary', value=@86400}", D::Anniversary},
    {kDate, 1, nullptr, "{label='Etc', type='other', value=@86400}", D::Other},
    {kDate, 2, nullptr, "{label='Etc', type='other', value=@86400}", D::Other},

    {kRelated, 0, nullptr, "{type='spouse', value='H'}", R::Spouse},
    {kRelated, 1, nullptr, "{type='child', value='H'}", R::Child},
    {kRelated, 2, nullptr, "{type='assistant', value='H'}", R::Assistant},
    {kRelated, 3, nullptr, "{label='Etc', type='other', value='H'}", R::Other},

    {kIM, 0, nullptr, "{label='Etc', service='msn', type='other', user='taro'}", I::Unknown},
    {kIM, 1, nullptr, "{service='aim', type='other', user='taro'}", I::AIM},
    {kIM, 2, nullptr, "{service='msn', type='other', user='taro'}", I::MSN},
    {kIM, 4, nullptr, "{service='yahoo', type='other', user='taro'}", I::Yahoo},
    {kIM, 8, nullptr, "{service='Skype', type='other', user='taro'}", I::Skype},
    {kIM, 16, nullptr, "{service='QQ', type='other', user='taro'}", I::QQ},
    {kIM, 32, nullptr, "{service='GoogleTalk', type='other', user='taro'}", I::GoogleTalk},
    {kIM, 64, nullptr, "{service='icq', type='other', user='taro'}", I::ICQ},
    {kIM, 128, nullptr, "{service='jabber', type='other', user='taro'}", I::Jabber},
    {kIM, 5, nullptr, "{label='Etc', service='msn', type='other', user='taro'}", I::Unknown},
    {kIM, 0x10000003, nullptr, "{label='Etc', service='msn', type='other', user='taro'}", I::Unknown},

    {kStreet, 0, nullptr, ADDRESS("other", "", "1-1 Room 5"), S::Null, u"1-1", u"Room 5"},
    {kStreet, 1, nullptr, ADDRESS("home", "", "1-1"), S::Home, u"1-1", u""},
    {kStreet, 2, nullptr, ADDRESS("work", "", "Room 5"), S::Work, u"", u"Room 5"},
    {kStreet, 4, nullptr, ADDRESS("other", "label='X_ETC', ", ""), S::X_ETC, u"", u""},
    {kStreet, 8, nullptr, ADDRESS("other", "label='mobile', ", "A B"), S::Mobile, u"A", u"B"},
    {kStreet, 16, u"Villa", ADDRESS("other", "label='Villa', ", "A"), S::X_CUSTOM},
    {kStreet, 16, nullptr, ADDRESS("other", "label='X_CUSTOM', ", "A"), S::X_CUSTOM},
    {kStreet, kTypePref, u"Villa", ADDRESS("other", "label='prefered', ", "A"), S::Prefered},
    {kStreet, kTypePref | 1, nullptr, ADDRESS("other", "label='Etc', ", "A"), S::Etc},
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

// Each container files its entries under its own key and matches on its own
// value key: a second sync claims the entry only through that key.
class contact_containers : public TableFixture {};

// One sync of a container holding a fixed record and one with the value `v`.
template <class Container, class Add>
std::function<std::vector<String>(const String&)> Syncs(std::shared_ptr<ContactIDMappingTable> table,
                                                        Add add) {
  return [=](const String& v) {
    Container c(u"P", table);
    add(c, v);
    return c.createMetaData();
  };
}

TEST_F(contact_containers, each_reconciles_under_its_key_and_value_key) {
  auto table = NewTable();
  table->addMeta(Dictionary{{u"Contact Data", Dictionary{}}}, u"P");
  const std::pair<const char16_t*, std::function<std::vector<String>(const String&)>> cases[] = {
      {u"email addresses", Syncs<EmailContainer>(table, [](auto& c, const String& v) {
         c.addEmail(u"a@b", 1, std::nullopt);
         c.addEmail(v, 1, std::nullopt);
       })},
      {u"URLs", Syncs<URLContainer>(table, [](auto& c, const String& v) {
         c.addURL(u"http://a", 1);
         c.addURL(v, 1);
       })},
      {u"street addresses", Syncs<StreetAddressContainer>(table, [](auto& c, const String& v) {
         c.addStreetAddress(u"S", u"", u"same", u"", u"", u"", 1, std::nullopt);
         c.addStreetAddress(v, u"", u"same", u"", u"", u"", 1, std::nullopt);
       })},
      {u"related names", Syncs<RelatedNameContainer>(table, [](auto& c, const String& v) {
         c.addRelatedName(u"Hanako", 0);
         c.addRelatedName(v, 1);
       })},
      {u"IMs", Syncs<IMContainer>(table, [](auto& c, const String& v) {
         c.addIM(u"taro", 1);
         c.addIM(v, 1);
       })},
  };
  for (const auto& [key, sync] : cases) {
    SCOPED_TRACE(ToDisplayUTF8(key));
    const std::vector<String> first = sync(u"one"), second = sync(u"two");
    ASSERT_EQ(first.size(), 2u);
    ASSERT_EQ(second.size(), 2u);
    EXPECT_EQ(second[0], first[0]);
    EXPECT_NE(second[1], first[1]);
    EXPECT_EQ(StatesOf(Entries(*table, u"P", key)),
              (std::vector<std::string>{"NoChange/Linked", "Delete/Unlinked", "New/Linked"}));
    EXPECT_EQ(Strings(Find(table->meta(u"P")->at(u"Contact Data").get<Dictionary>(), key)), second);
  }
}

}  // namespace
}  // namespace phonepim
