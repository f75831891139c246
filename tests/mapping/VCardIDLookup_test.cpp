// dbIDForVCardID answers as a walk over the keys in order does, whatever was
// written into the table and through which handle.

#include <functional>

#include "MappingTestSupport.h"

namespace phonepim {
namespace {

using testing_support::ScratchFolder;

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
    {"held_pointer_to_a_later_key_loses", [](auto& t) { (*Held(t, u"D"))[u"vCardID"] = u"V1"; },
     u"B", {}},
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

class vcard_id_lookup_after : public testing::TestWithParam<Write> {};

TEST_P(vcard_id_lookup_after, answers_as_the_walk_does) {
  ScratchFolder base;
  ContactIDMappingTable table(u"M", u"1", base.path());
  table.addMeta(Dictionary{{u"vCardID", u"V1"}}, u"B");
  table.addMeta(Dictionary{{u"vCardID", u"V2"}}, u"D");
  table.addMeta(Dictionary{{u"vCardID", u"V2"}}, u"E");  // a later holder of V2
  table.addMeta(Dictionary{{u"vCardID", 7}}, u"0");  // not text: never found
  table.addDBID(u"A-pair", u"P");                      // flat pairs are no entries
  ASSERT_EQ(table.dbIDForVCardID(u"V1"), u"B");
  GetParam().write(table);
  EXPECT_EQ(table.dbIDForVCardID(u"V1"), GetParam().v1);
  EXPECT_EQ(table.dbIDForVCardID(u"N1"), GetParam().n1);
  for (const char16_t* id : {u"V1", u"V2", u"N1", u"X", u"P", u"A-pair", u"7"}) {
    EXPECT_EQ(table.dbIDForVCardID(id), Walk(table, id)) << ToDisplayUTF8(id);
  }
}

INSTANTIATE_TEST_SUITE_P(writes, vcard_id_lookup_after, testing::ValuesIn(kWrites),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim
