// The add and modify family of sub-record operations: one table of seven
// kinds, each checked against the same state rules and assertion.

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

#include "MappingTestSupport.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace {

using testing_support::ScratchFolder;
using testing_support::StateOf;

using AddOperation =
    std::function<void(ContactIDMappingTable&, const String&, const Dictionary&, const String&)>;
using ModifyOperation =
    std::function<void(ContactIDMappingTable&, const String&, Dictionary, const String&)>;

struct Kind {
  const char* name;
  const char16_t* listKey;
  AddOperation add;
  ModifyOperation modify;
  const char* assertion;
};

#define PHONEPIM_KIND(name, listKey, add, modify, assertion)                               \
  Kind {                                                                                   \
    name, listKey,                                                                         \
        [](ContactIDMappingTable& t, const String& id, const Dictionary& d,                \
           const String& c) { t.add(id, d, c); },                                          \
        [](ContactIDMappingTable& t, const String& id, Dictionary d, const String& c) {    \
          t.modify(id, std::move(d), c);                                                   \
        },                                                                                 \
        assertion                                                                          \
  }

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
    Kind{"relation", u"IMs",
         [](ContactIDMappingTable& t, const String& id, const Dictionary& d, const String& c) {
           t.addDataForRelationID(id, d, c, u"IMs");
         },
         [](ContactIDMappingTable& t, const String& id, Dictionary d, const String& c) {
           t.modifyDataForRelationID(id, std::move(d), c, u"IMs");
         },
         "metaRelationID != nil"},
};

#undef PHONEPIM_KIND

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

// "Assertion failed: (TEXT)" as a death-test regex.
std::string AssertionPattern(const char* text) {
  std::string pattern = "Assertion failed: \\(";
  for (const char* c = text; *c; ++c) {
    if (std::string_view("\\^$.|?*+()[]{}").find(*c) != std::string_view::npos) pattern += '\\';
    pattern += *c;
  }
  return pattern + "\\)";
}

class SubRecordFamily : public testing::TestWithParam<Kind> {
 protected:
  const Kind& kind() const { return GetParam(); }
  String listKey() const { return kind().listKey; }
  const Array* List(const String& contact) const {
    const Dictionary* entry = table_.meta(contact);
    return entry ? FindAs<Array>(*entry, listKey()) : nullptr;
  }
  void AddContact(const String& storeID, const char16_t* state) {
    Dictionary entry{{u"vCardID", u"V-" + storeID}};
    if (state) entry.emplace(u"State", state);
    table_.addMeta(entry, storeID);
  }

  ScratchFolder base_;
  ContactIDMappingTable table_{u"M", u"1", base_.path()};
};

Dictionary Entry(const String& id, const Dictionary& data, const char16_t* state) {
  return Dictionary{{u"Data", data}, {u"Link", u"Linked"}, {u"State", state}, {u"identifier", id}};
}

TEST_P(SubRecordFamily, add_appends_an_entry_and_creates_the_list) {
  AddContact(u"C", u"AddedBySyncDB");
  const Dictionary first{{u"value", u"one"}};
  const Dictionary second{{u"value", u"two"}, {u"type", u"work"}};
  kind().add(table_, u"S1", first, u"C");
  kind().add(table_, u"S2", second, u"C");
  ASSERT_NE(List(u"C"), nullptr);
  EXPECT_EQ(*List(u"C"), (Array{Entry(u"S1", first, u"Added"), Entry(u"S2", second, u"Added")}));
  // The sub-record does not change the contact's identity.
  EXPECT_EQ(table_.dbIDForVCardID(u"V-C"), u"C");
}

TEST_P(SubRecordFamily, add_marks_the_contact_unless_the_store_added_it) {
  const struct {
    const char16_t* before;  // nullptr: no state
    const char16_t* after;
  } cases[] = {
      {u"AddedBySyncDB", u"AddedBySyncDB"},   {u"Modified", u"ModifiedBySyncDB"},
      {u"ModifiedBySyncDB", u"ModifiedBySyncDB"}, {u"RemovedByPellarin", u"ModifiedBySyncDB"},
      {u"AddedByPellarin", u"ModifiedBySyncDB"},  {nullptr, u"ModifiedBySyncDB"},
  };
  for (const auto& c : cases) {
    AddContact(u"C", c.before);
    kind().add(table_, u"S", Dictionary{}, u"C");
    EXPECT_EQ(StateOf(table_, u"C"), c.after) << (c.before ? ToDisplayUTF8(c.before) : "none");
  }
}

TEST_P(SubRecordFamily, add_without_a_contact_entry_does_nothing) {
  table_.addDBID(u"C", u"V");
  kind().add(table_, u"S", Dictionary{{u"value", u"x"}}, u"C");
  kind().add(table_, u"S", Dictionary{{u"value", u"x"}}, u"missing");
  EXPECT_EQ(table_.mTable(), (Dictionary{{u"C", u"V"}, {u"V", u"C"}}));
}

TEST_P(SubRecordFamily, add_replaces_a_list_key_that_holds_something_else) {
  AddContact(u"C", u"Modified");
  table_.meta(u"C")->insert_or_assign(listKey(), u"not a list");
  kind().add(table_, u"S", Dictionary{}, u"C");
  EXPECT_EQ(*List(u"C"), Array{Entry(u"S", Dictionary{}, u"Added")});
}

TEST_P(SubRecordFamily, modify_updates_the_first_match_and_marks_the_contact) {
  AddContact(u"C", u"AddedBySyncDB");
  kind().add(table_, u"S1", Dictionary{{u"value", u"1"}}, u"C");
  kind().add(table_, u"S2", Dictionary{{u"value", u"2"}}, u"C");
  kind().add(table_, u"S2", Dictionary{{u"value", u"2 again"}}, u"C");
  Array& list = table_.meta(u"C")->at(listKey()).get<Array>();
  list[1].get<Dictionary>().insert_or_assign(u"Link", u"Unlinked");
  list[1].get<Dictionary>().insert_or_assign(u"State", u"Delete");

  kind().modify(table_, u"S2", Dictionary{{u"value", u"new"}}, u"C");
  EXPECT_EQ(*List(u"C"), (Array{Entry(u"S1", Dictionary{{u"value", u"1"}}, u"Added"),
                                Entry(u"S2", Dictionary{{u"value", u"new"}}, u"Modified"),
                                Entry(u"S2", Dictionary{{u"value", u"2 again"}}, u"Added")}));
  EXPECT_EQ(StateOf(table_, u"C"), u"Modified");
}

TEST_P(SubRecordFamily, modify_without_a_match_changes_nothing) {
  AddContact(u"C", u"AddedBySyncDB");
  kind().add(table_, u"S1", Dictionary{{u"value", u"1"}}, u"C");
  const Dictionary before = *table_.meta(u"C");
  kind().modify(table_, u"S9", Dictionary{{u"value", u"new"}}, u"C");
  kind().modify(table_, u"S1", Dictionary{{u"value", u"new"}}, u"missing");
  EXPECT_EQ(*table_.meta(u"C"), before);
  // No list at all.
  AddContact(u"D", u"NoChange");
  kind().modify(table_, u"S1", Dictionary{}, u"D");
  EXPECT_EQ(StateOf(table_, u"D"), u"NoChange");
  EXPECT_EQ(List(u"D"), nullptr);
}

TEST_P(SubRecordFamily, modify_accepts_an_entry_without_identifier_behind_the_match) {
  AddContact(u"C", u"NoChange");
  kind().add(table_, u"S1", Dictionary{}, u"C");
  table_.meta(u"C")->at(listKey()).get<Array>().push_back(Dictionary{{u"State", u"New"}});
  kind().modify(table_, u"S1", Dictionary{{u"value", u"v"}}, u"C");
  EXPECT_EQ(StateOf(table_, u"C"), u"Modified");
}

TEST_P(SubRecordFamily, modify_skips_an_identifier_that_is_not_text) {
  AddContact(u"C", u"NoChange");
  table_.meta(u"C")->insert_or_assign(
      listKey(), Array{Dictionary{{u"identifier", 5}}, Entry(u"5", Dictionary{}, u"Added")});
  kind().modify(table_, u"5", Dictionary{{u"value", u"v"}}, u"C");
  EXPECT_EQ(List(u"C")->at(0), Value(Dictionary{{u"identifier", 5}}));
  EXPECT_EQ(List(u"C")->at(1), Value(Entry(u"5", Dictionary{{u"value", u"v"}}, u"Modified")));
}

TEST_P(SubRecordFamily, modify_stops_at_an_entry_without_identifier) {
  AddContact(u"C", u"NoChange");
  table_.meta(u"C")->insert_or_assign(
      listKey(), Array{Entry(u"S1", Dictionary{}, u"Added"), Dictionary{{u"State", u"New"}},
                       Entry(u"S2", Dictionary{}, u"Added")});
  EXPECT_DEATH(kind().modify(table_, u"S2", Dictionary{{u"value", u"v"}}, u"C"),
               AssertionPattern(kind().assertion));
  // An element that is not a dictionary has no identifier either.
  table_.meta(u"C")->insert_or_assign(listKey(), Array{Value(u"S2")});
  EXPECT_DEATH(kind().modify(table_, u"S2", Dictionary{}, u"C"),
               AssertionPattern(kind().assertion));
}

TEST_P(SubRecordFamily, a_failed_modify_changes_nothing) {
  ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  AddContact(u"C", u"NoChange");
  table_.meta(u"C")->insert_or_assign(
      listKey(), Array{Dictionary{{u"State", u"New"}}, Entry(u"S1", Dictionary{}, u"Added")});
  const Dictionary before = *table_.meta(u"C");
  try {
    kind().modify(table_, u"S1", Dictionary{{u"value", u"v"}}, u"C");
    ADD_FAILURE() << "no assertion";
  } catch (const AssertionFailure& failure) {
    EXPECT_EQ(failure.text(), kind().assertion);
    EXPECT_NE(failure.function().find("modifyData"), std::string::npos) << failure.function();
  }
  EXPECT_EQ(*table_.meta(u"C"), before);
}

INSTANTIATE_TEST_SUITE_P(kinds, SubRecordFamily, testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(sub_record_relation, uses_the_list_it_is_given) {
  ScratchFolder base;
  ContactIDMappingTable table(u"M", u"1", base.path());
  table.addMeta(Dictionary{{u"State", u"Modified"}}, u"C");
  table.addDataForRelationID(u"R", Dictionary{{u"user", u"u"}}, u"C", u"assistants");
  table.addDataForPhoneID(u"P", Dictionary{}, u"C");
  EXPECT_EQ(table.meta(u"C")->at(u"assistants"),
            Value(Array{Entry(u"R", Dictionary{{u"user", u"u"}}, u"Added")}));
  // Each list is searched on its own.
  table.modifyDataForRelationID(u"P", Dictionary{{u"x", 1}}, u"C", u"assistants");
  table.modifyDataForPhoneID(u"R", Dictionary{{u"x", 1}}, u"C");
  EXPECT_EQ(table.meta(u"C")->at(u"assistants").get<Array>()[0].get<Dictionary>().at(u"State"),
            Value(u"Added"));
  EXPECT_EQ(table.meta(u"C")->at(u"phone numbers").get<Array>()[0].get<Dictionary>().at(u"State"),
            Value(u"Added"));
}

}  // namespace
}  // namespace phonepim
