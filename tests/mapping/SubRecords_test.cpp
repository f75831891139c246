// The add and modify family of sub-record operations: seven kinds on one
// rule, each with its own list and assertion.

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

#include "MappingTestSupport.h"
#include "model/AssertionPattern.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;
using testing_support::ScratchFolder;
using testing_support::StateOf;
using Table = ContactIDMappingTable;

struct Kind {
  const char* name;
  const char16_t* listKey;
  std::function<void(Table&, const String&, const Dictionary&, const String&)> add;
  std::function<void(Table&, const String&, Dictionary, const String&)> modify;
  const char* assertion;
};

#define PHONEPIM_KIND(name, listKey, add, modify, assertion)                                  \
  Kind{name, listKey,                                                                         \
       [](Table& t, const String& id, const Dictionary& d, const String& c) { t.add(id, d, c); }, \
       [](Table& t, const String& id, Dictionary d, const String& c) { t.modify(id, d, c); },  \
       assertion}

const Kind kKinds[] = {
    PHONEPIM_KIND("phone", u"phone numbers", addDataForPhoneID, modifyDataForPhoneID,
                  "metaPhoneID != nil"),
    PHONEPIM_KIND("email", u"email addresses", addEmailForEmailID, modifyDataForEmailID,
                  "metaEmailID != nil"),
    PHONEPIM_KIND("url", u"URLs", addURLForURLID, modifyDataForURLID, "metaURLID != nil"),
    PHONEPIM_KIND("street_address", u"street addresses", addStreetAddressForURLID,
                  modifyDataForStreetAddressID, "metaSAID != nil"),
    PHONEPIM_KIND("date", u"dates", addDateForDateID, modifyDataForDateID, "metaDateID != nil"),
    PHONEPIM_KIND("related_name", u"related names", addRelatedNameForRelatedNameID,
                  modifyDataForRelatedNameID, "metaRelatedNameID != nil"),
    Kind{"relation", u"assistants",
         [](Table& t, const String& id, const Dictionary& d, const String& c) {
           t.addDataForRelationID(id, d, c, u"assistants");
         },
         [](Table& t, const String& id, Dictionary d, const String& c) {
           t.modifyDataForRelationID(id, d, c, u"assistants");
         },
         "metaRelationID != nil"},
};

#undef PHONEPIM_KIND

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

Dictionary Entry(const String& id, const Dictionary& data, const char16_t* state) {
  return Dictionary{{u"Data", data}, {u"Link", u"Linked"}, {u"State", state}, {u"identifier", id}};
}

class sub_record_kind : public testing::TestWithParam<Kind> {};

TEST_P(sub_record_kind, adds_and_modifies_in_its_own_list) {
  const Kind& kind = GetParam();
  ScratchFolder base;
  Table table(u"M", u"1", base.path());
  table.addMeta(Dictionary{{u"State", u"AddedBySyncDB"}, {u"vCardID", u"V"}}, u"C");
  const Dictionary one{{u"value", u"1"}}, two{{u"value", u"2"}};
  kind.add(table, u"S1", one, u"C");
  kind.add(table, u"S2", one, u"C");
  kind.modify(table, u"S2", two, u"C");
  EXPECT_EQ(table.meta(u"C")->at(kind.listKey),
            Value(Array{Entry(u"S1", one, u"Added"), Entry(u"S2", two, u"Modified")}));
  EXPECT_EQ(StateOf(table, u"C"), u"Modified");
  EXPECT_EQ(table.dbIDForVCardID(u"V"), u"C");
  table.meta(u"C")->insert_or_assign(kind.listKey, Array{Value(u"S2")});
  EXPECT_DEATH(kind.modify(table, u"S2", Dictionary{}, u"C"), AssertionPattern(kind.assertion));
}

INSTANTIATE_TEST_SUITE_P(kinds, sub_record_kind, testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.name); });

// The rule the seven share, on the phone numbers.
TEST(sub_record_rule, marks_the_contact_and_matches_by_identifier) {
  ScratchFolder base;
  Table table(u"M", u"1", base.path());
  // Adding marks the contact unless the store added it.
  for (const char16_t* state : {u"AddedBySyncDB", u"Modified", u""}) {
    table.addMeta(Dictionary{{u"State", state}, {u"phone numbers", u"not a list"}}, u"C");
    table.addDataForPhoneID(u"S", Dictionary{}, u"C");
    EXPECT_EQ(StateOf(table, u"C"), String(state) == u"AddedBySyncDB" ? state : u"ModifiedBySyncDB");
    EXPECT_EQ(table.meta(u"C")->at(u"phone numbers"), Value(Array{Entry(u"S", {}, u"Added")}));
  }
  // Without an entry, or without a match, nothing happens.
  table.addDBID(u"P", u"Q");
  table.addDataForPhoneID(u"S", Dictionary{}, u"P");
  table.addDataForPhoneID(u"S", Dictionary{}, u"missing");
  table.modifyDataForPhoneID(u"S", Dictionary{}, u"missing");
  table.modifyDataForPhoneID(u"9", Dictionary{}, u"C");
  EXPECT_EQ(StateOf(table, u"C"), u"ModifiedBySyncDB");
  EXPECT_EQ(table.count(), 3u);
  EXPECT_EQ(table.mTable().at(u"P"), Value(u"Q"));
  // Modify takes the first match, skips identifiers that are not text and
  // does not look past the match for entries without one.
  const Dictionary numeric{{u"identifier", 5}}, noID{{u"State", u"New"}};
  table.addMeta({{u"State", u"NoChange"},
                 {u"phone numbers", Array{numeric, Entry(u"5", {}, u"Added"),
                                          Entry(u"5", {}, u"Added"), noID}}},
                u"D");
  table.modifyDataForPhoneID(u"5", Dictionary{{u"value", u"v"}}, u"D");
  EXPECT_EQ(*table.meta(u"D"),
            (Dictionary{{u"State", u"Modified"},
                        {u"phone numbers",
                         Array{numeric, Entry(u"5", Dictionary{{u"value", u"v"}}, u"Modified"),
                               Entry(u"5", {}, u"Added"), noID}}}));
  // An entry without identifier before the match fails; nothing changes.
  ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  table.addMeta({{u"phone numbers", Array{Dictionary{}, Entry(u"S1", {}, u"Added")}}}, u"E");
  const Dictionary before = *table.meta(u"E");
  EXPECT_THROW(table.modifyDataForPhoneID(u"S1", Dictionary{}, u"E"), AssertionFailure);
  EXPECT_EQ(*table.meta(u"E"), before);
}

}  // namespace
}  // namespace phonepim
