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
using Opt = std::optional<String>;

// One row: a record built by some container, the keys it must hold besides
// the entity name and "contact", and the counter that must have counted it.
struct VocabularyRow {
  const char* name;
  String entity;
  std::function<Dictionary(const String& parent, int* counted)> build;
  Dictionary expected;
};

template <class Container, class Kind, class Make>
VocabularyRow Row(const char* name, const char16_t* entity, Kind kind, Make make, Dictionary expected) {
  return {name, entity,
          [=](const String& parent, int* counted) {
            Container container(parent, nullptr);
            Dictionary record = make(container);
            *counted = container.TypeCount(kind);
            return record;
          },
          expected};
}
VocabularyRow Email(const char* name, std::uint32_t type, Opt label, Dictionary expected, EmailContainer::Kind kind) {
  return Row<EmailContainer>(name, u"com.apple.contacts.Email Address", kind,
                             [=](EmailContainer& c) { return c.createEmailDataForDB(u"a@b.jp", type, label); }, expected);
}
VocabularyRow Url(const char* name, std::uint32_t type, Dictionary expected, URLContainer::Kind kind) {
  return Row<URLContainer>(name, u"com.apple.contacts.URL", kind,
                           [=](URLContainer& c) { return c.createURLDataForDB(u"http://x.jp/", type); }, expected);
}
VocabularyRow DateRow(const char* name, std::uint32_t type, Dictionary expected, DateContainer::Kind kind) {
  return Row<DateContainer>(name, u"com.apple.contacts.Date", kind,
                            [=](DateContainer& c) { return c.createDateDataForDB(Date{946684800}, type); }, expected);
}
VocabularyRow Related(const char* name, std::uint32_t type, Dictionary expected, RelatedNameContainer::Kind kind) {
  return Row<RelatedNameContainer>(name, u"com.apple.contacts.Related Name", kind,
                                   [=](RelatedNameContainer& c) { return c.createRelatedNameDataForDB(u"Hanako", type); },
                                   expected);
}
VocabularyRow IM(const char* name, std::uint32_t type, Dictionary expected, IMContainer::Kind kind) {
  return Row<IMContainer>(name, u"com.apple.contacts.IM", kind,
                          [=](IMContainer& c) { return c.createIMDataForDB(u"taro", type); }, expected);
}
VocabularyRow Street(const char* name, const char16_t* street, const char16_t* extended, std::uint32_t type,
                     Opt label, Dictionary expected, StreetAddressContainer::Kind kind) {
  return Row<StreetAddressContainer>(name, u"com.apple.contacts.Street Address", kind,
                                     [=](StreetAddressContainer& c) {
                                       return c.createStreetAddressDataForDB(street, extended, u"Tokyo", u"Kanto",
                                                                             u"100-0001", u"Japan", type, label);
                                     },
                                     expected);
}

Dictionary Typed(const char16_t* type, const char16_t* value) { return Dictionary{{u"type", type}, {u"value", value}}; }
Dictionary Labelled(const char16_t* type, const char16_t* label, const char16_t* value) {
  return Dictionary{{u"type", type}, {u"label", label}, {u"value", value}};
}
Dictionary With(Dictionary record, const char16_t* label) {
  if (label != nullptr) record.emplace(u"label", label);
  return record;
}
Dictionary DateRecord(const char16_t* type, const char16_t* label) {
  return With(Dictionary{{u"type", type}, {u"value", Date{946684800}}}, label);
}
Dictionary IMRecord(const char16_t* service, const char16_t* label) {
  return With(Dictionary{{u"service", service}, {u"type", u"other"}, {u"user", u"taro"}}, label);
}
Dictionary Address(const char16_t* type, const char16_t* label, const char16_t* street) {
  return With(Dictionary{{u"type", type}, {u"street", street}, {u"city", u"Tokyo"}, {u"state", u"Kanto"},
                         {u"postal code", u"100-0001"}, {u"country", u"Japan"}},
              label);
}

using E = EmailContainer::Kind;
using U = URLContainer::Kind;
using D = DateContainer::Kind;
using R = RelatedNameContainer::Kind;
using I = IMContainer::Kind;
using S = StreetAddressContainer::Kind;

const VocabularyRow kRows[] = {
    Email("email_none", 0, Opt(u"x"), Typed(u"other", u"a@b.jp"), E::Other),
    Email("email_home", 1, {}, Typed(u"home", u"a@b.jp"), E::Home),
    Email("email_work", 2, {}, Typed(u"work", u"a@b.jp"), E::Work),
    Email("email_cell", 4, {}, Labelled(u"other", u"mobile", u"a@b.jp"), E::Mobile),
    Email("email_etc", 8, Opt(u"x"), Typed(u"other", u"a@b.jp"), E::Etc),
    Email("email_custom", 16, Opt(u"Private"), Labelled(u"other", u"Private", u"a@b.jp"),
          E::X_CUSTOM),
    Email("email_custom_unlabelled", 16, {}, Typed(u"other", u"a@b.jp"), E::X_CUSTOM),
    Email("email_pref", kTypePref, {}, Labelled(u"other", u"prefered", u"a@b.jp"), E::Prefered),
    Email("email_home_pref", kTypePref | 1, {}, Labelled(u"other", u"Etc", u"a@b.jp"),
          E::Unknown),
    Email("email_home_work", 3, Opt(u"x"), Labelled(u"other", u"Etc", u"a@b.jp"), E::Unknown),
    Email("email_custom_code", 0x10000002, {}, Labelled(u"other", u"Etc", u"a@b.jp"), E::Unknown),

    Url("url_none", 0, Typed(u"home page", u"http://x.jp/"), U::HomePage),
    Url("url_home", 1, Typed(u"home", u"http://x.jp/"), U::Home),
    Url("url_work", 2, Typed(u"work", u"http://x.jp/"), U::Work),
    Url("url_pref", kTypePref, Labelled(u"other", u"prefered", u"http://x.jp/"), U::Prefered),
    Url("url_home_work", 3, Typed(u"home page", u"http://x.jp/"), U::Other),
    Url("url_work_pref", kTypePref | 2, Typed(u"home page", u"http://x.jp/"), U::Other),

    DateRow("date_anniversary", 0, DateRecord(u"anniversary", nullptr), D::Anniversary),
    DateRow("date_other", 1, DateRecord(u"other", u"Etc"), D::Other),
    DateRow("date_lunar", 2, DateRecord(u"other", u"Etc"), D::Other),

    Related("related_spouse", 0, Typed(u"spouse", u"Hanako"), R::Spouse),
    Related("related_child", 1, Typed(u"child", u"Hanako"), R::Child),
    Related("related_assistant", 2, Typed(u"assistant", u"Hanako"), R::Assistant),
    Related("related_other", 3, Labelled(u"other", u"Etc", u"Hanako"), R::Other),

    IM("im_none", 0, IMRecord(u"msn", u"Etc"), I::Unknown),
    IM("im_aim", 1, IMRecord(u"aim", nullptr), I::AIM),
    IM("im_windows_live", 2, IMRecord(u"msn", nullptr), I::MSN),
    IM("im_yahoo", 4, IMRecord(u"yahoo", nullptr), I::Yahoo),
    IM("im_skype", 8, IMRecord(u"Skype", nullptr), I::Skype),
    IM("im_qq", 16, IMRecord(u"QQ", nullptr), I::QQ),
    IM("im_google_talk", 32, IMRecord(u"GoogleTalk", nullptr), I::GoogleTalk),
    IM("im_icq", 64, IMRecord(u"icq", nullptr), I::ICQ),
    IM("im_jabber", 128, IMRecord(u"jabber", nullptr), I::Jabber),
    IM("im_two_services", 5, IMRecord(u"msn", u"Etc"), I::Unknown),
    IM("im_custom_code", 0x10000003, IMRecord(u"msn", u"Etc"), I::Unknown),

    Street("street_none", u"1-1 Chiyoda", u"Room 5", 0, {},
           Address(u"other", nullptr, u"1-1 Chiyoda Room 5"), S::Null),
    Street("street_home", u"1-1 Chiyoda", u"", 1, {}, Address(u"home", nullptr, u"1-1 Chiyoda"),
           S::Home),
    Street("street_work", u"", u"Room 5", 2, {}, Address(u"work", nullptr, u"Room 5"), S::Work),
    Street("street_etc", u"", u"", 4, {}, Address(u"other", u"X_ETC", u""), S::X_ETC),
    Street("street_cell", u"A", u"B", 8, {}, Address(u"other", u"mobile", u"A B"), S::Mobile),
    Street("street_custom", u"A", u"", 16, Opt(u"Villa"), Address(u"other", u"Villa", u"A"),
           S::X_CUSTOM),
    Street("street_custom_unlabelled", u"A", u"", 16, {}, Address(u"other", u"X_CUSTOM", u"A"),
           S::X_CUSTOM),
    Street("street_pref", u"A", u"", kTypePref, Opt(u"Villa"),
           Address(u"other", u"prefered", u"A"), S::Prefered),
    Street("street_home_pref", u"A", u"", kTypePref | 1, {}, Address(u"other", u"Etc", u"A"),
           S::Etc),
};

TEST(contact_container_records, carry_the_stores_words) {
  for (const VocabularyRow& row : kRows) {
    int counted = 0;
    Dictionary expected = row.expected;
    expected.emplace(ISyncRecordEntityNameKey, row.entity);
    expected.emplace(u"contact", Array{Value(u"PARENT")});
    EXPECT_EQ(row.build(u"PARENT", &counted), expected) << row.name;
    EXPECT_EQ(counted, 1) << row.name;
  }
}

// Each container files its entries under its own key and matches on its own
// value key: a second sync claims the entry only through that key.
class contact_containers : public TableFixture {};

TEST_F(contact_containers, each_reconciles_under_its_key_and_value_key) {
  auto table = NewTable();
  table->addMeta(Dictionary{{u"Contact Data", Dictionary{}}}, u"P");
  const std::pair<const char16_t*, std::function<std::vector<String>(const String&)>> cases[] = {
      {u"email addresses", [&](const String& v) {
         EmailContainer c(u"P", table);
         c.addEmail(u"a@b", 1, std::nullopt);
         c.addEmail(v, 1, std::nullopt);
         return c.createMetaData();
       }},
      {u"URLs", [&](const String& v) {
         URLContainer c(u"P", table);
         c.addURL(u"http://a", 1);
         c.addURL(v, 1);
         return c.createMetaData();
       }},
      {u"street addresses", [&](const String& v) {
         StreetAddressContainer c(u"P", table);
         c.addStreetAddress(u"S", u"", u"same", u"", u"", u"", 1, std::nullopt);
         c.addStreetAddress(v, u"", u"same", u"", u"", u"", 1, std::nullopt);
         return c.createMetaData();
       }},
      {u"related names", [&](const String& v) {
         RelatedNameContainer c(u"P", table);
         c.addRelatedName(u"Hanako", 0);
         c.addRelatedName(v, 1);
         return c.createMetaData();
       }},
      {u"IMs", [&](const String& v) {
         IMContainer c(u"P", table);
         c.addIM(u"taro", 1);
         c.addIM(v, 1);
         return c.createMetaData();
       }},
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
