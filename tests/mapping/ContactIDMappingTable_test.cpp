// The contact table's operations on contacts, flat pairs, removal tags, new
// identities and sub-records, and its look-up by vCard ID.

#include <functional>

#include "MappingTestSupport.h"
#include "model/AssertionPattern.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {
namespace {

using testing_support::Dump;
using testing_support::ScratchFolder;
using testing_support::AssertionPattern;
using Table = ContactIDMappingTable;

class ContactTable : public testing::Test {
 protected:
  ScratchFolder base_;
  ContactIDMappingTable table_{u"N95", u"35", base_.path()};
};

TEST_F(ContactTable, flat_pairs_go_both_ways) {
  table_.addDBID(u"S", u"V-old");
  table_.addDBID(std::nullopt, u"7");
  const Dictionary data{{u"LMT", u"1"}};
  EXPECT_EQ(*ContactIDMappingTable::LMT(&data), Value(u"1"));
  EXPECT_EQ(ContactIDMappingTable::LMT(nullptr), nullptr);
  table_.changeVCardID(u"V-new", u"S");  // drops the old pair
  table_.changeVCardID(u"X", u"U");      // nothing old to drop
  table_.addMeta(Dictionary{{u"vCardID", u"V"}}, u"C");
  EXPECT_EQ(table_.checkDBIDForVCardRecordID(u"V-new"), Value(u"S"));
  EXPECT_EQ(table_.checkDBIDForVCardRecordID(u"C"), Value(Dictionary{{u"vCardID", u"V"}}));
  EXPECT_EQ(table_.checkDBIDForVCardRecordID(u"new"), Value(u"new"));
  EXPECT_TRUE(table_.hasVCardRecordIDForDBID(u"C"));
  EXPECT_FALSE(table_.hasVCardRecordIDForDBID(u"nothing"));
  table_.changeVCardID(u"V2", u"C");  // over a contact entry
  EXPECT_EQ(Dump(table_),
            "{7='7', C='V2', S='V-new', U='X', V-new='S', V2='C', X='U', new='new'}");
  for (const char16_t* key : {u"S", u"V-new", u"U", u"X", u"C", u"V2", u"nothing"}) {
    table_.removeVCardID(key);
  }
  EXPECT_EQ(Dump(table_), "{7='7', new='new'}");
}

TEST_F(ContactTable, contact_entries_are_added_modified_and_removed) {
  table_.modifyContact(u"C", Dictionary{{u"first name", u"A"}});  // no entry yet: nothing
  table_.addContact(u"C", Dictionary{{u"first name", u"A"}});
  table_.meta(u"C")->insert_or_assign(u"vCardID", u"V");
  table_.modifyContact(u"C", Dictionary{{u"first name", u"B"}});
  table_.addDBID(u"P", u"Q");
  table_.modifyContact(u"P", Dictionary{});  // a flat pair is no entry
  table_.addContact(u"P", Dictionary{});     // and adding over it starts one
  for (const char16_t* key : {u"b", u"\u00e9", u"aa"}) table_.addMeta(Dictionary{}, key);
  EXPECT_EQ(Dump(table_),
            "{C={Contact Data={first name='B'}, State='Modified', vCardID='V'}, "
            "P={Contact Data={}, State='AddedBySyncDB'}, Q='P', aa={}, b={}, \u00e9={}}");
  table_.addContact(u"C", Dictionary{});  // keeps the rest of the entry
  EXPECT_EQ(table_.vCardIDForDBID(u"C"), u"V");
  EXPECT_EQ(table_.allKeys(), (std::vector<String>{u"C", u"P", u"Q", u"aa", u"b", u"\u00e9"}));
  table_.removeContact(std::nullopt);
  table_.removeContact(u"b");
  table_.removeContacts({u"C", u"aa", u"missing"});
  EXPECT_EQ(table_.allKeys(), (std::vector<String>{u"P", u"Q", u"\u00e9"}));
}

TEST_F(ContactTable, removal_tag_spares_the_four_protected_states) {
  // "modified": case matters; "-": no state.
  for (const char16_t* state :
       {u"Removed", u"ModifiedBySyncDB", u"Modified", u"AddedBySyncDB", u"modified", u"-"}) {
    table_.addMeta(String(state) == u"-" ? Dictionary{} : Dictionary{{u"State", state}}, state);
  }
  table_.addDBID(u"S", u"V");
  table_.setRemovedTagToAllMeta();
  EXPECT_EQ(Dump(table_),
            "{-={State='RemovedByPellarin'}, AddedBySyncDB={State='AddedBySyncDB'}, "
            "Modified={State='Modified'}, ModifiedBySyncDB={State='ModifiedBySyncDB'}, "
            "Removed={State='Removed'}, S='V', V='S', modified={State='RemovedByPellarin'}}");
  EXPECT_EQ(table_.countRemovedTagRecords(), 2u);
  table_.modifyContact(u"modified", Dictionary{});  // sets the state again: no tag
  table_.removeAllRemovedTagRecords();
  EXPECT_EQ(table_.countRemovedTagRecords(), 0u);
  EXPECT_EQ(table_.count(), 7u);  // "-" alone went
}

// A sub-record entry of the contact `owner`.
Dictionary SubRecord(const String& id, const String& state, const String& owner) {
  return Dictionary{{u"Data", Dictionary{{u"contact", Array{Value(owner)}}}},
                    {u"State", state},
                    {u"identifier", id}};
}

// An array of texts.
Array Ids(std::initializer_list<String> ids) { return Array(ids.begin(), ids.end()); }

TEST_F(ContactTable, change_record_id_moves_the_contact_and_renumbers_live_sub_records) {
  table_.addMeta({{u"State", u"Modified"}, {u"vCardID", u"V"},
                  {u"Contact Data", Dictionary{{u"phone numbers", Ids({u"P1", u"P3"})},
                                               {u"email addresses", Ids({u"E1"})}}},
                  {u"phone numbers", Array{SubRecord(u"P1", u"NoChange", u"C"),
                                           SubRecord(u"P2", u"Delete", u"C"),
                                           SubRecord(u"P3", u"New", u"C")}},
                  {u"email addresses", Array{SubRecord(u"E1", u"Added", u"C")}},
                  {u"IMs", Array{SubRecord(u"I1", u"Delete", u"C")}},
                  {u"custom list", Array{SubRecord(u"X1", u"New", u"C")}}},
                 u"C");
  table_.addDBID(u"S", u"V-S");
  EXPECT_EQ(table_.changeRecordIDOfMeta(u"S"), std::nullopt);  // no entry
  table_.removeVCardID(u"S");
  const std::optional<String> moved = table_.changeRecordIDOfMeta(u"C");
  ASSERT_TRUE(moved);
  EXPECT_EQ(table_.dbIDForVCardID(u"V"), *moved);
  // Deleted entries keep their identifiers, lists it does not know stay; the
  // store record's references follow the renumbering.
  EXPECT_EQ(Dump(table_),
            "{U1={Contact Data={email addresses=['U2'], phone numbers=['U3', 'U4']}, "
            "IMs=[{Data={contact=['C']}, State='Delete', identifier='I1'}], "
            "State='AddedByPellarin', "
            "custom list=[{Data={contact=['C']}, State='New', identifier='X1'}], "
            "email addresses=[{Data={contact=['U1']}, State='Added', identifier='U2'}], "
            "phone numbers=[{Data={contact=['U1']}, State='NoChange', identifier='U3'}, "
            "{Data={contact=['C']}, State='Delete', identifier='P2'}, "
            "{Data={contact=['U1']}, State='New', identifier='U4'}], vCardID='V'}, V-S='S'}");
}

TEST_F(ContactTable, replace_contents_rebuilds_lists_and_references) {
  table_.addMeta({{u"State", u"NoChange"}, {u"vCardID", u"V"}, {u"custom list", Array{Value(1)}},
                  {u"Contact Data", Dictionary{{u"first name", u"A"}, {u"URLs", Ids({u"U0"})},
                                               {u"phone numbers", Ids({u"P0"})}}},
                  {u"phone numbers", Array{SubRecord(u"P0", u"NoChange", u"C")}},
                  {u"URLs", Array{SubRecord(u"U0", u"NoChange", u"C")}}},
                 u"C");
  const Dictionary replacement{
      {u"phone numbers", Array{SubRecord(u"P1", u"New", u"elsewhere"),
                               SubRecord(u"P2", u"Delete", u"elsewhere"), Value(u"not an entry"),
                               SubRecord(u"P3", u"NoChange", u"elsewhere")}},
      {u"dates", Array{SubRecord(u"D1", u"Delete", u"elsewhere")}},
      {u"State", u"ignored"},
  };
  ASSERT_TRUE(table_.replaceContactContentsWithIdentifer(u"C", replacement));
  EXPECT_EQ(Dump(table_),
            "{C={Contact Data={first name='A', phone numbers=['P1', 'P3']}, State='NoChange', "
            "custom list=[1], dates=[{Data={contact=['C']}, State='Delete', identifier='D1'}], "
            "phone numbers=[{Data={contact=['C']}, State='New', identifier='P1'}, "
            "{Data={contact=['C']}, State='Delete', identifier='P2'}, "
            "{Data={contact=['C']}, State='NoChange', identifier='P3'}], vCardID='V'}}");
  EXPECT_EQ(table_.dbIDForVCardID(u"V"), u"C");
  EXPECT_FALSE(table_.replaceContactContentsWithIdentifer(u"missing", replacement));
  EXPECT_EQ(table_.count(), 1u);
}

TEST_F(ContactTable, remove_identifier_drops_sub_records_and_their_references) {
  table_.addMeta({{u"Contact Data", Dictionary{{u"phone numbers", Ids({u"X", u"P"})}}},
                  {u"phone numbers",
                   Array{SubRecord(u"X", u"New", u"A"), SubRecord(u"P", u"New", u"A")}},
                  {u"relatives", Array{SubRecord(u"X", u"Delete", u"A")}}},
                 u"A");
  table_.addMeta(Dictionary{{u"URLs", Array{SubRecord(u"X", u"New", u"B"), Value(u"X")}}}, u"B");
  table_.addDBID(u"X", u"V");  // keys are not identifiers
  EXPECT_EQ(table_.removeIndentifier(u"X"), 3u);
  EXPECT_EQ(Dump(table_),
            "{A={Contact Data={phone numbers=['P']}, "
            "phone numbers=[{Data={contact=['A']}, State='New', identifier='P'}], relatives=[]}, "
            "B={URLs=['X']}, V='X', X='V'}");
  EXPECT_EQ(table_.removeIndentifier(u"X"), 0u);
}

TEST_F(ContactTable, phone_record_ids_are_kept_per_contact) {
  for (const char16_t* key : {u"A", u"B"}) table_.addMeta(Dictionary{{u"State", u"Modified"}}, key);
  for (const char16_t* id : {u"P1", u"P2", u"P1"}) table_.addPhoneRecordID(id, u"A");
  table_.addPhoneRecordID(u"P9", u"missing");
  EXPECT_EQ(table_.phoneIDsFromContactDBID(u"A"), (std::vector<String>{u"P1", u"P2"}));
  EXPECT_TRUE(table_.phoneIDsFromContactDBID(u"B").empty());
  EXPECT_TRUE(table_.phoneIDsFromContactDBID(u"missing").empty());
  EXPECT_TRUE(table_.checkDBIDForPhoneID(u"P2", u"A"));
  EXPECT_FALSE(table_.checkDBIDForPhoneID(u"P2", u"B"));
  EXPECT_FALSE(table_.checkDBIDForPhoneID(u"P9", u"missing"));
  table_.clearPhoneIDsAtContactID(u"A");
  table_.clearPhoneIDsAtContactID(u"missing");
  EXPECT_EQ(Dump(table_), "{A={State='Modified'}, B={State='Modified'}}");
}

struct Kind {
  const char* name;
  const char16_t* listKey;
  void (Table::*add)(const String&, const Dictionary&, const String&);
  void (Table::*modify)(const String&, Dictionary, const String&);
  const char* assertion;
};

const Kind kKinds[] = {
    {"phone", u"phone numbers", &Table::addDataForPhoneID, &Table::modifyDataForPhoneID, "metaPhoneID != nil"},
    {"email", u"email addresses", &Table::addEmailForEmailID, &Table::modifyDataForEmailID, "metaEmailID != nil"},
    {"url", u"URLs", &Table::addURLForURLID, &Table::modifyDataForURLID, "metaURLID != nil"},
    {"street_address", u"street addresses", &Table::addStreetAddressForURLID, &Table::modifyDataForStreetAddressID,
     "metaSAID != nil"},
    {"date", u"dates", &Table::addDateForDateID, &Table::modifyDataForDateID, "metaDateID != nil"},
    {"related_name", u"related names", &Table::addRelatedNameForRelatedNameID, &Table::modifyDataForRelatedNameID,
     "metaRelatedNameID != nil"},
    {"relation", u"assistants", nullptr, nullptr, "metaRelationID != nil"},
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

Dictionary Entry(const String& id, const Dictionary& data, const char16_t* state) {
  return Dictionary{{u"Data", data}, {u"Link", u"Linked"}, {u"State", state}, {u"identifier", id}};
}

// Relations name their own list; the other kinds have member functions.
void Put(const Kind& k, Table& t, bool add, const String& id, const Dictionary& data) {
  if (k.add != nullptr) {
    add ? (t.*k.add)(id, data, u"C") : (t.*k.modify)(id, data, u"C");
  } else {
    add ? t.addDataForRelationID(id, data, u"C", k.listKey)
        : t.modifyDataForRelationID(id, data, u"C", k.listKey);
  }
}

class sub_record_kind : public ContactTable, public testing::WithParamInterface<Kind> {};

TEST_P(sub_record_kind, adds_and_modifies_in_its_own_list) {
  table_.addMeta(Dictionary{{u"State", u"AddedBySyncDB"}, {u"vCardID", u"V"}}, u"C");
  const Dictionary one{{u"value", u"1"}}, two{{u"value", u"2"}};
  Put(GetParam(), table_, true, u"S1", one);
  Put(GetParam(), table_, true, u"S2", one);
  Put(GetParam(), table_, false, u"S2", two);
  EXPECT_EQ(*table_.meta(u"C"),
            (Dictionary{{GetParam().listKey, Array{Entry(u"S1", one, u"Added"),
                                                   Entry(u"S2", two, u"Modified")}},
                        {u"State", u"Modified"}, {u"vCardID", u"V"}}));
  EXPECT_EQ(table_.dbIDForVCardID(u"V"), u"C");
  table_.meta(u"C")->insert_or_assign(GetParam().listKey, Array{Value(u"S2")});
  EXPECT_DEATH(Put(GetParam(), table_, false, u"S2", {}), AssertionPattern(GetParam().assertion));
}

INSTANTIATE_TEST_SUITE_P(kinds, sub_record_kind, testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.name); });

// The rule the seven kinds share, on the phone numbers.
TEST_F(ContactTable, sub_record_rule_marks_the_contact_and_matches_by_identifier) {
  // Adding marks the contact unless the store added it.
  const Value added = Array{Entry(u"S", {}, u"Added")};
  for (const char16_t* state : {u"AddedBySyncDB", u"Modified", u""}) {  // "": no state
    Dictionary contact{{u"phone numbers", u"not a list"}};
    if (*state) contact.emplace(u"State", state);
    table_.addMeta(contact, u"C");
    table_.addDataForPhoneID(u"S", Dictionary{}, u"C");
    const String after = String(state) == u"AddedBySyncDB" ? state : u"ModifiedBySyncDB";
    EXPECT_EQ(*table_.meta(u"C"), (Dictionary{{u"State", after}, {u"phone numbers", added}}));
  }
  // Without an entry, or without a match, nothing happens. Modify takes the
  // first match, skips identifiers that are not text and does not look past
  // the match for entries without one.
  table_.addDBID(u"P", u"Q");
  table_.addDataForPhoneID(u"S", Dictionary{}, u"P");
  table_.addDataForPhoneID(u"S", Dictionary{}, u"missing");
  table_.modifyDataForPhoneID(u"S", Dictionary{}, u"missing");
  table_.modifyDataForPhoneID(u"9", Dictionary{}, u"C");
  const Dictionary numeric{{u"identifier", 5}}, noID{{u"State", u"New"}};
  table_.addMeta({{u"State", u"NoChange"},
                  {u"phone numbers", Array{numeric, Entry(u"5", {}, u"Added"),
                                           Entry(u"5", {}, u"Added"), noID}}},
                 u"D");
  table_.modifyDataForPhoneID(u"5", Dictionary{{u"value", u"v"}}, u"D");
  EXPECT_EQ(Dump(table_),
            "{C={State='ModifiedBySyncDB', "
            "phone numbers=[{Data={}, Link='Linked', State='Added', identifier='S'}]}, "
            "D={State='Modified', phone numbers=[{identifier=5}, "
            "{Data={value='v'}, Link='Linked', State='Modified', identifier='5'}, "
            "{Data={}, Link='Linked', State='Added', identifier='5'}, {State='New'}]}, "
            "P='Q', Q='P'}");
  // An entry without identifier before the match fails; nothing changes.
  ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  table_.addMeta({{u"phone numbers", Array{Dictionary{}, Entry(u"S1", {}, u"Added")}}}, u"E");
  const Dictionary before = *table_.meta(u"E");
  EXPECT_THROW(table_.modifyDataForPhoneID(u"S1", Dictionary{}, u"E"), AssertionFailure);
  EXPECT_EQ(*table_.meta(u"E"), before);
}

std::optional<String> Walk(const ContactIDMappingTable& table, const String& vCardID) {
  for (const auto& [key, value] : table.mTable()) {
    const Dictionary* entry = value.getIf<Dictionary>();
    const String* id = entry ? FindAs<String>(*entry, u"vCardID") : nullptr;
    if (id != nullptr && *id == vCardID) return key;
  }
  return std::nullopt;
}

// One table: "B" carries "V1", "D" and "E" "V2"; a look-up before each write
// builds the index and takes a handle that is stale when written through.
struct Write {
  const char* name;
  std::function<void(ContactIDMappingTable&)> write;
  std::optional<String> v1, n1;  // expected answers afterwards
};

void PrintTo(const Write& write, std::ostream* out) { *out << write.name; }

// An entry from meta(), then a look-up.
Dictionary* Held(ContactIDMappingTable& table, const String& key = u"B") {
  Dictionary* entry = table.meta(key);
  EXPECT_EQ(table.dbIDForVCardID(u"V1"), u"B");
  return entry;
}

const Write kWrites[] = {
    {"held_meta_pointer", [](auto& t) { (*Held(t))[u"vCardID"] = u"N1"; }, {}, u"B"},
    {"held_pointer_to_an_earlier_key_wins",
     [](auto& t) {
       t.addMeta(Dictionary{}, u"A");
       Dictionary* a = Held(t, u"A");
       for (const char16_t* id : {u"V1", u"N1", u"V1"}) (*a)[u"vCardID"] = id;
     },
     u"A", {}},
    {"held_pointer_to_a_later_key_loses", [](auto& t) { (*Held(t, u"D"))[u"vCardID"] = u"V1"; }, u"B", {}},
    {"held_mTable_reference",
     [](auto& t) {
       Dictionary& all = t.mTable();
       EXPECT_EQ(t.dbIDForVCardID(u"V1"), u"B");
       (*t.meta(u"B"))[u"vCardID"] = u"N1";  // a handle taken after: no longer tracked
       all[u"A"] = Dictionary{{u"vCardID", u"V1"}};
       all.erase(u"D");
       EXPECT_EQ(t.dbIDForVCardID(u"V2"), u"E");
     },
     u"A", u"B"},
    {"editMeta_while_open_and_after",
     [](auto& t) {
       {
         auto edit = t.editMeta(u"B");
         (*edit)[u"vCardID"] = u"N1";
         EXPECT_EQ(t.dbIDForVCardID(u"N1"), u"B");
         (*edit)[u"vCardID"] = u"V1";
         EXPECT_EQ(t.dbIDForVCardID(u"N1"), std::nullopt);
         auto nested = t.editMeta(u"B");
         (*nested)[u"vCardID"] = u"N1";
       }
       EXPECT_FALSE(t.editMeta(u"none"));
     },
     {}, u"B"},
    {"removal_tag_dropped",
     [](auto& t) {
       t.modifyContact(u"D", Dictionary{});
       t.setRemovedTagToAllMeta();
       t.removeAllRemovedTagRecords();
     },
     {}, {}},
};

class vcard_id_lookup_after : public ContactTable, public testing::WithParamInterface<Write> {};

// dbIDForVCardID answers as a walk over the keys in order does, whatever was
// written into the table and through which handle.
TEST_P(vcard_id_lookup_after, answers_as_the_walk_does) {
  table_.addMeta(Dictionary{{u"vCardID", u"V1"}}, u"B");
  table_.addMeta(Dictionary{{u"vCardID", u"V2"}}, u"D");
  table_.addMeta(Dictionary{{u"vCardID", u"V2"}}, u"E");  // a later holder of V2
  table_.addMeta(Dictionary{{u"vCardID", 7}}, u"0");    // not text: never found
  table_.addDBID(u"A-pair", u"P");                      // flat pairs are no entries
  ASSERT_EQ(table_.dbIDForVCardID(u"V1"), u"B");
  GetParam().write(table_);
  EXPECT_EQ(table_.dbIDForVCardID(u"V1"), GetParam().v1);
  EXPECT_EQ(table_.dbIDForVCardID(u"N1"), GetParam().n1);
  for (const char16_t* id : {u"V1", u"V2", u"N1", u"X", u"P", u"A-pair", u"7"}) {
    EXPECT_EQ(table_.dbIDForVCardID(id), Walk(table_, id)) << ToDisplayUTF8(id);
  }
}

INSTANTIATE_TEST_SUITE_P(writes, vcard_id_lookup_after, testing::ValuesIn(kWrites),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim
