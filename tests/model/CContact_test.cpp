// CContact: identity resolution through a mapping table on disk, the record
// ID texts, speed dial, groups and extensions, the photo file stubs, change
// detection, Clone, and the seven element lists.
#include "phonepim/model/CContact.h"

#include <gtest/gtest.h>

#include <climits>

#include "mapping/MappingTestSupport.h"
#include "model/AssertionPattern.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/sync/PhoneContainer.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;
using testing_support::ScratchFolder;

// A table saved to disk with contacts and a flat pair, then loaded anew, so
// that each contact resolves against what the file held.
TEST(contact_identity, resolves_the_other_id_through_the_table) {
  ScratchFolder base;
  {
    ContactIDMappingTable writer(u"N900", u"35", base.path());
    writer.addMeta(Dictionary{{u"vCardID", u"0000000000000012-Contact-35"}}, u"DB-PERSON");
    writer.addMeta(Dictionary{{u"vCardID", u"0000000000000012-Croup-35"}}, u"DB-GROUP");
    writer.addMeta(Dictionary{{u"vCardID", u"-000000000000005-Contact-35"}}, u"DB-NEGATIVE");
    writer.addMeta(Dictionary{{u"vCardID", u"x12"}}, u"DB-GARBLED");
    writer.addDBID(u"DB-PAIR", u"0000000000000077-Contact-35");
    ASSERT_TRUE(writer.save());
  }
  const auto table = std::make_shared<ContactIDMappingTable>(u"N900", u"35", base.path());
  using Text = std::optional<String>;
  // Each row: the IDs given, the type, and the state and IDs resolved.
  const std::tuple<std::uint32_t, Text, const char16_t*, int, Text, Text, std::uint32_t> rows[] = {
      // A known store ID takes the vCard ID from the table; a garbled one
      // reads as 0, a negative one wraps.
      {99, u"DB-PERSON", u"Contact", 0x3, u"DB-PERSON", u"0000000000000012-Contact-35", 12},
      {0, u"DB-NEGATIVE", u"Contact", 0x3, u"DB-NEGATIVE", u"-000000000000005-Contact-35", 0xFFFFFFFB},
      {0, u"DB-GARBLED", u"Contact", 0x3, u"DB-GARBLED", u"x12", 0},
      // An unknown store ID (a flat pair is no contact entry) takes the next
      // temporary ID.
      {12, u"DB-NEW", u"Contact", 0x1, u"DB-NEW", std::nullopt, 1},
      {12, u"DB-PAIR", u"Contact", 0x1, u"DB-PAIR", std::nullopt, 2},
      // A known vCard ID finds the store ID; IDs above 2^31 are negative.
      {12, std::nullopt, u"Contact", 0x3, u"DB-PERSON", u"0000000000000012-Contact-35", 12},
      {12, std::nullopt, u"Group", 0x3, u"DB-GROUP", u"0000000000000012-Croup-35", 12},
      {0xFFFFFFFB, std::nullopt, u"Contact", 0x3, u"DB-NEGATIVE", u"-000000000000005-Contact-35", 0xFFFFFFFB},
      // An unknown vCard ID stands in as the store ID; a group's spelling is
      // its own ID.
      {0, std::nullopt, u"Contact", 0x2, u"0000000000000000-Contact-35", u"0000000000000000-Contact-35", 0},
      {77, std::nullopt, u"Group", 0x2, u"0000000000000077-Croup-35", u"0000000000000077-Croup-35", 77},
      {CContact::kNoVCardID, std::nullopt, u"Contact", 0, std::nullopt, std::nullopt, 0},
  };
  for (const auto& row : rows) {
    const auto& [vCardID, dbID, type, state, dbRecordID, vCardRecordID, vCardIDAfter] = row;
    const CContact c(vCardID, u"35", dbID, type, table);
    // The sub-record containers exist once a store ID does, and belong to it.
    const std::optional<String> containerID =
        c.phoneMapper() ? std::optional(c.phoneMapper()->vObjectID()) : std::nullopt;
    EXPECT_EQ(std::tuple(c.state(), c.dbRecordID(), c.vCardRecordID(), c.vCardID(), c.ContactType(), containerID),
              std::tuple(state, dbRecordID, vCardRecordID, vCardIDAfter, type == String(u"Group"), dbRecordID))
        << &row - rows;
  }
  // Only the two unknown store IDs drew temporary IDs.
  EXPECT_EQ(table->mLastPhoneID(), 2u);
  // Without a table only the vCard ID resolves, by itself.
  const CContact byVCard(3, u"I", std::nullopt, u"Contact", nullptr);
  EXPECT_EQ(std::tuple(byVCard.state(), byVCard.dbRecordID()), std::tuple(0x2, u"0000000000000003-Contact-I"));
  EXPECT_EQ(CContact(3, u"I", String(u"S"), u"Contact", nullptr).state(), 0x1);
}

TEST(contact, record_ids_speed_dial_groups_and_photo_stubs) {
  EXPECT_EQ(CContact::generateNewVCardID(INT_MAX, u"\u4E00"), u"0000002147483647-Contact-\u4E00");
  EXPECT_EQ(CContact::generateNewVCardID(INT_MIN, u""), u"-000002147483648-Contact-");
  CContact contact(u"Contact");
  for (const auto& [value, slot] : {std::pair{3, 0}, {-9, 9}, {5, 10}, {5, -1}}) contact.SetSpeedDial(value, slot);
  EXPECT_EQ(contact.SpeedDial(), (std::array<std::int32_t, 10>{3, -1, -1, -1, -1, -1, -1, -1, -1, -9}));
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  for (int slot : {10, -1}) EXPECT_DEATH(contact.SpeedDial(slot), AssertionPattern("nIndex < 10"));
  EXPECT_DEATH(contact.DeleteAddress(nullptr), AssertionPattern("pAddress != nil"));

  // Groups and extensions are extension items; the first of a name counts.
  EXPECT_EQ(std::pair(contact.GetGroup(), contact.GetExtension()), std::pair(0, String()));
  contact.NewXItem("X-EXPIRY", "30", 0, -1);
  contact.SetGroup(-42);
  contact.SetGroup(7);
  contact.SetExtension(u"ext;\u00E9");
  contact.SetExtension(u"second");
  ASSERT_EQ(contact.GetXItemCount(), 5);
  EXPECT_EQ(std::tuple(contact.GetXItem(1)->Name(), contact.GetXItem(1)->Data(), contact.GetXItem(3)->Name()),
            std::tuple(u"X-GROUP", u"-42", u"X-PBOEXTENSION"));
  EXPECT_EQ(std::pair(contact.GetGroup(), contact.GetExtension()), std::pair(-42, String(u"ext;\u00E9")));
  // The group is read as a leading integer, as the phones wrote it.
  for (const auto& [text, group] : {std::pair{" 12abc", 12}, std::pair{"99999999999", INT_MAX}}) {
    CContact other(u"Contact");
    other.NewXItem("X-GROUP", text, 0, -1);
    EXPECT_EQ(other.GetGroup(), group) << text;
  }

  // Photos never become files.
  contact.SetPhotoData(Bytes{0xFF, 0xD8});
  EXPECT_EQ(std::tuple(contact.GetSavePhotoPath(u"guid", false), contact.MakeDirectory(u"/tmp"),
                       contact.MakePhotoData(Bytes{1}, 1, u"dev"), contact.SavePhotoFile(Bytes{1}, u"guid", true)),
            std::tuple(std::nullopt, false, std::nullopt, false));
  contact.DeletePhoto();
  EXPECT_EQ(*contact.GetPhotoRef(), (Bytes{0xFF, 0xD8}));
}

TEST(contact, is_equal_compares_the_fields_of_change_detection) {
  using Change = void (*)(CContact&);
  const Change nothing = [](CContact&) {};
  const Change rewritten = [](CContact& c) { c.SetRole(u"changed"); };
  // Each row: the changes to mine and to theirs, the outcome, and their
  // storage (0: left alone).
  const std::tuple<Change, Change, bool, int> rows[] = {
      {nothing, nothing, true, 0},
      {[](CContact& c) { c.SetLastRevision(std::nullopt); }, nothing, false, 0},
      {nothing, [](CContact& c) { c.SetLastRevision(std::nullopt); }, false, 0},
      {nothing, [](CContact& c) { c.SetLastRevision(MakeDateComponents(2021, 3, 4, 5, 6, 8)); }, false, 0},
      // Lenient fields: the same instant written another way.
      {nothing, [](CContact& c) { c.SetLastRevision(MakeDateComponents(2021, 3, 4, 4, 66, 7)); }, true, 0},
      // SIM and read-only records always match; only theirs counts.
      {nothing, rewritten, true, 2},
      {nothing, rewritten, true, 5},
      {nothing, rewritten, false, 3},
      {[](CContact& c) { c.setStorage(2); }, rewritten, false, 0},
      {nothing, [](CContact& c) { std::swap(c.NickNames()[0], c.NickNames()[1]); }, false, 0},
      {nothing, [](CContact& c) { c.Name().SetName(u"X", 7); }, false, 0},
      // Blood type 0 and unknown are the same.
      {[](CContact& c) { c.SetBloodType(0); }, [](CContact& c) { c.SetBloodType(0xFFFFFFFF); }, true, 0},
      {[](CContact& c) { c.SetBloodType(1); }, [](CContact& c) { c.SetBloodType(0); }, false, 0},
      {[](CContact& c) { c.SetBloodType(0); }, [](CContact& c) { c.SetBloodType(1); }, false, 0},
      {nothing, [](CContact& c) { c.SetTitle(String()); }, false, 0},
      {nothing, [](CContact& c) { c.SetRole(std::nullopt); }, false, 0},
      {nothing, [](CContact& c) { c.SetAccount(u"PHONE"); }, false, 0},
      {nothing, [](CContact& c) { c.NewTelephone("1", 0x20, 1); }, true, 0},
  };
  for (const auto& row : rows) {
    const auto& [changeMine, changeTheirs, expected, theirStorage] = row;
    CContact mine(u"Contact"), theirs(u"Contact");
    for (CContact* c : {&mine, &theirs}) {
      c->SetNickNames({u"Al", u"Ally"});
      c->SetName(CName("Smith", "Alice", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
      c->SetBloodType(2);
      c->SetRole(u"Lead");
      c->SetAccount(u"phone");
      c->SetLastRevision(MakeDateComponents(2021, 3, 4, 5, 6, 7));
    }
    changeMine(mine);
    changeTheirs(theirs);
    if (theirStorage != 0) theirs.setStorage(theirStorage);
    EXPECT_EQ(mine.IsEqual(&theirs), expected) << &row - rows;
  }
  EXPECT_FALSE(CContact(u"Contact").IsEqual(nullptr));
}

TEST(contact, clone_copies_everything_and_shares_nothing_but_the_table) {
  ScratchFolder base;
  auto table = std::make_shared<ContactIDMappingTable>(u"M", u"I", base.path());
  CContact original(4, u"I", std::nullopt, u"Contact", table);
  original.setStorage(1);
  original.NewXItem("X-EXPIRY", "30", 2, 3);
  original.SetTitle(u"Dr");
  original.SetLastRevision(MakeDateComponents(2020, 1, 2, 3, 4, 5));
  original.SetGroups({1, 4});
  original.SetPhotoData(Bytes{9, 8});
  original.SetSpeedDial(2, 0);
  original.NewTelephone("555", 0x20, 0);
  const auto label = std::make_shared<const String>(u"Villa");
  original.NewAddress("PO", "Ext", "Street", "City", "Region", "123", "JP", "Nb", 1, 0);
  original.NewAddress("PO", "Ext", "Street", "City", "Region", "123", "JP", "Nb", 0x10000001, 4, label);
  original.NewOrg("Org", "Unit", "Boss", "Extra", 2);
  original.NewNotes("note", 0);
  original.DeleteAllEmail();
  original.createMetaData();

  const auto fields = [](const CContact& c) {
    return std::tuple(c.storage(), c.vCardID(), c.state(), c.dbRecordID(), c.vCardRecordID(), c.idMapper(),
                      c.metaDictionary(), c.Groups(), c.SpeedDial(), *c.GetPhotoRef(), c.GetXItem(0)->Param(),
                      c.GetXItem(0)->thisID(), c.GetNotes(0)->GetNote());
  };
  std::unique_ptr<CContact> copy = original.Clone();
  EXPECT_TRUE(copy->IsEqual(&original));
  EXPECT_EQ(fields(*copy), fields(original));
  // Each address creator hands every part to its own place.
  for (const CPostalAddress* a : {copy->GetAddress(0), copy->GetAddress(1)}) {
    EXPECT_EQ((std::vector<String>{a->POBox(), a->ExtAddr(), a->Street(), a->Locality(), a->Region(), a->PostalCode(),
                                   a->Country(), a->Neighbor()}),
              (std::vector<String>{u"PO", u"Ext", u"Street", u"City", u"Region", u"123", u"JP", u"Nb"}));
  }
  const CPostalAddress* labelled = copy->GetAddress(1);
  EXPECT_EQ(std::tuple(labelled->Type(), labelled->AddressID(), labelled->Label()), std::tuple(0x10000001u, 4, label));
  // A copied number is the same number to change detection.
  EXPECT_TRUE(copy->GetTelephone(0)->isEqual(original.GetTelephone(0)));
  EXPECT_TRUE(copy->GetAddress(0)->isEqual(original.GetAddress(0)));
  EXPECT_TRUE(copy->GetOrg(0)->IsEqual(original.GetOrg(0)));
  // A released list stays released.
  copy->NewEmail("a@b", 1, 0);
  EXPECT_EQ(copy->GetEmailCount(), 0);
  EXPECT_EQ(copy->phoneMapper()->recordAtIndex(0), original.phoneMapper()->recordAtIndex(0));

  // Changing the copy leaves the original alone.
  copy->GetAddress(0)->SetAddress(u"Elsewhere", 2);
  copy->DeleteAllTelephone();
  copy->phoneMapper()->removeAllRecords();
  copy->GetXItem(0)->setDataWithString(u"31");
  EXPECT_EQ(std::tuple(original.GetAddress(0)->Street(), original.GetTelephoneCount(), original.phoneMapper()->count(),
                       original.GetXItem(0)->Data()),
            std::tuple(u"Street", 1, 1, u"30"));
}

// One kind of list, driven through type-erased pointers.
struct ListKind {
  const char* name;
  const char* assertion;
  const void* (*create)(CContact&);
  int (*count)(const CContact&);
  const void* (*get)(CContact&, int);
  void (*deleteAt)(CContact&, int);
  void (*deleteElement)(CContact&, const void*);
  void (*deleteAll)(CContact&);
  // Writes into an element, as the reader does after creating it.
  void (*touch)(const void*);
  bool releasedByDeleteAll;
};

void PrintTo(const ListKind& kind, std::ostream* os) { *os << kind.name; }

template <class T>
T* Mutable(const void* element) {
  return const_cast<T*>(static_cast<const T*>(element));
}

// The methods of each kind follow one naming pattern.
#define KIND(Name, Type, create, touch, released)                                            \
  {#Name, "nIndex < [self Get" #Name "Count]", [](CContact& c) -> const void* { return c.create; }, \
   [](const CContact& c) { return c.Get##Name##Count(); },                                   \
   [](CContact& c, int i) -> const void* { return c.Get##Name(i); },                         \
   [](CContact& c, int i) { c.Delete##Name##AtIndex(i); },                                   \
   [](CContact& c, const void* e) { c.Delete##Name(static_cast<const Type*>(e)); },          \
   [](CContact& c) { c.DeleteAll##Name(); }, [](const void* e) { Mutable<Type>(e)->touch; }, released}

const ListKind kKinds[] = {
    KIND(Address, CPostalAddress, NewAddress("Main St", 1, 0), SetAddress(u"Elm St", 2), true),
    KIND(Org, COrganization, NewOrg("Org", "Unit", "Pos", "", 2), Additional().push_back(u"More"), true),
    KIND(Telephone, CTelephoneNumber, NewTelephone("555", 0x20, 0), SetNumber(u"666"), true),
    KIND(MessengerID, CMessengerID, NewMessengerID("me", 1, 0), SetNumber(u"you"), true),
    KIND(Notes, CNote, NewNotes("note", 0), SetNote(u"other"), false),
    KIND(Email, CEmail, NewEmail("a@b", 1, 0), SetEmail(u"c@d"), true),
    KIND(URL, CURL, NewURL("http://a", 1, 0), SetURL(u"http://b"), true),
};
#undef KIND

class contact_element_list : public ::testing::TestWithParam<ListKind> {};

// Six elements reach past the pointers a list keeps inline, so that each
// delete moves elements across that seam.
TEST_P(contact_element_list, appends_and_deletes_by_index_and_by_identity) {
  const ListKind& kind = GetParam();
  CContact contact(u"Contact"), other(u"Contact");
  std::vector<const void*> expected, listed;
  for (int i = 0; i < 6; ++i) expected.push_back(kind.create(contact));
  kind.deleteAt(contact, 1);
  // An element of another contact, even an equal one, is not this list's.
  kind.deleteElement(contact, kind.create(other));
  kind.deleteElement(contact, expected[4]);
  expected.erase(expected.begin() + 4);
  expected.erase(expected.begin() + 1);
  for (int i = 0; i < kind.count(contact); ++i) listed.push_back(kind.get(contact, i));
  EXPECT_EQ(listed, expected);
  // Delete-all drops the list except for notes: the element handed out
  // afterwards is valid and writable (ASan watches), but counted only where
  // the list survives.
  kind.deleteAll(contact);
  EXPECT_EQ(kind.count(contact), 0);
  const void* late = kind.create(contact);
  kind.touch(late);
  kind.create(contact);
  EXPECT_EQ(kind.count(contact), kind.releasedByDeleteAll ? 0 : 2);
  if (kind.releasedByDeleteAll) {
    kind.deleteElement(contact, late);  // not in the list: nothing happens
    kind.touch(late);
  }
}

TEST_P(contact_element_list, DeathTest_index_outside_the_list_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const ListKind& kind = GetParam();
  CContact contact(u"Contact");
  kind.create(contact);
  EXPECT_DEATH(kind.get(contact, -1), AssertionPattern(kind.assertion));
  EXPECT_DEATH(kind.deleteAt(contact, 1), AssertionPattern(kind.assertion));
}

INSTANTIATE_TEST_SUITE_P(kinds, contact_element_list, ::testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim
