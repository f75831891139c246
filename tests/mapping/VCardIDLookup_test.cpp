// dbIDForVCardID: the answer of a walk over the keys in order, served from an
// index that must never disagree with that walk.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "MappingTestSupport.h"
#include "phonepim/mapping/ContactIDMappingTable.h"

namespace phonepim {
namespace {

using testing_support::ScratchFolder;

// The walk itself: first key, in order, holding a dictionary whose "vCardID"
// is the argument.
std::optional<String> Walk(const ContactIDMappingTable& table, const String& vCardID) {
  for (const auto& [key, value] : table.mTable()) {
    const Dictionary* entry = value.getIf<Dictionary>();
    const String* id = entry ? FindAs<String>(*entry, u"vCardID") : nullptr;
    if (id != nullptr && *id == vCardID) return key;
  }
  return std::nullopt;
}

TEST(vcard_id_lookup, ignores_flat_pairs_and_answers_the_first_key_in_order) {
  ScratchFolder base;
  ContactIDMappingTable table(u"M", u"1", base.path());
  table.addDBID(u"A-pair", u"V");  // "A-pair" -> "V" and "V" -> "A-pair"
  table.addMeta(Dictionary{{u"vCardID", u"V"}}, u"M-contact");
  table.addMeta(Dictionary{{u"vCardID", u"V"}}, u"C-contact");
  table.addMeta(Dictionary{{u"vCardID", u"W"}}, u"B-contact");
  EXPECT_EQ(table.dbIDForVCardID(u"V"), u"C-contact");
  EXPECT_EQ(table.dbIDForVCardID(u"W"), u"B-contact");
  EXPECT_EQ(table.dbIDForVCardID(u"A-pair"), std::nullopt);
  EXPECT_EQ(table.dbIDForVCardID(u"unknown"), std::nullopt);
  table.removeContact(u"C-contact");
  EXPECT_EQ(table.dbIDForVCardID(u"V"), u"M-contact");
  // A "vCardID" that is not text never matches.
  table.addMeta(Dictionary{{u"vCardID", 7}}, u"0-numeric");
  EXPECT_EQ(table.dbIDForVCardID(u"7"), std::nullopt);
}

TEST(vcard_id_lookup, sees_changes_made_in_place) {
  ScratchFolder base;
  ContactIDMappingTable table(u"M", u"1", base.path());
  table.addContact(u"S", Dictionary{});
  EXPECT_EQ(table.dbIDForVCardID(u"V"), std::nullopt);
  table.meta(u"S")->insert_or_assign(u"vCardID", u"V");
  EXPECT_EQ(table.dbIDForVCardID(u"V"), u"S");
  table.contactInfo(u"S")->insert_or_assign(u"vCardID", u"W");
  EXPECT_EQ(table.dbIDForVCardID(u"V"), std::nullopt);
  EXPECT_EQ(table.dbIDForVCardID(u"W"), u"S");
  table.mTable()[u"R"] = Dictionary{{u"vCardID", u"W"}};
  EXPECT_EQ(table.dbIDForVCardID(u"W"), u"R");
  table.mTable().erase(u"R");
  EXPECT_EQ(table.dbIDForVCardID(u"W"), u"S");
  // Reading many entries without looking anything up in between.
  for (int i = 0; i < 50; ++i) table.addMeta(Dictionary{}, u"K" + StringFromASCII(std::to_string(i)));
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 50; ++i) table.meta(u"K" + StringFromASCII(std::to_string(i)));
  }
  table.meta(u"K7")->insert_or_assign(u"vCardID", u"W");
  EXPECT_EQ(table.dbIDForVCardID(u"W"), u"K7");
}

TEST(vcard_id_lookup, survives_a_reload) {
  ScratchFolder base;
  {
    ContactIDMappingTable table(u"M", u"1", base.path());
    table.addMeta(Dictionary{{u"vCardID", u"V"}}, u"S");
    ASSERT_TRUE(table.save());
  }
  ContactIDMappingTable table(u"M", u"1", base.path());
  EXPECT_EQ(table.dbIDForVCardID(u"V"), u"S");
}

// Random operations of every kind that can touch a "vCardID", each followed
// by look-ups compared against the walk.
TEST(vcard_id_lookup, agrees_with_the_walk_under_random_operations) {
  ScratchFolder base;
  ContactIDMappingTable table(u"M", u"1", base.path());
  const ContactIDMappingTable& view = table;
  std::mt19937 random(20240229);
  const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const auto key = [&] { return u"K" + StringFromASCII(std::to_string(pick(24))); };
  const auto vCardID = [&] { return u"V" + StringFromASCII(std::to_string(pick(6))); };
  std::vector<String> vCardIDs;
  for (int i = 0; i < 6; ++i) vCardIDs.push_back(u"V" + StringFromASCII(std::to_string(i)));

  for (int step = 0; step < 4000; ++step) {
    switch (pick(15)) {
      case 0: table.addMeta(Dictionary{{u"vCardID", vCardID()}}, key()); break;
      case 1: table.addMeta(Dictionary{{u"State", u"New"}}, key()); break;
      case 2: table.addContact(key(), Dictionary{}); break;
      case 3: table.addDBID(key(), vCardID()); break;
      case 4: table.addDBID(std::nullopt, key()); break;
      case 5: table.changeVCardID(vCardID(), key()); break;
      case 6: table.checkDBIDForVCardRecordID(key()); break;
      case 7: pick(2) ? table.removeContact(key()) : table.removeVCardID(key()); break;
      case 8:
        if (Dictionary* entry = table.meta(key())) entry->insert_or_assign(u"vCardID", vCardID());
        break;
      case 9:
        if (Dictionary* entry = table.contactInfo(key())) entry->erase(u"vCardID");
        break;
      case 10: table.mTable()[key()] = Dictionary{{u"vCardID", vCardID()}}; break;
      case 11: table.changeRecordIDOfMeta(key()); break;
      case 12:
        table.setRemovedTagToAllMeta();
        if (pick(2)) table.removeAllRemovedTagRecords();
        break;
      case 13: table.addDataForRelationID(u"R", Dictionary{}, key(), u"vCardID"); break;
      case 14: table.removeContacts({key(), key()}); break;
    }
    if (step % 3 == 0) {
      for (const String& id : vCardIDs) {
        ASSERT_EQ(table.dbIDForVCardID(id), Walk(view, id)) << "step " << step;
      }
    }
  }
}

}  // namespace
}  // namespace phonepim
