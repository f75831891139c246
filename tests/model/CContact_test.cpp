// CContact: identity resolution through a mapping table on disk, the record
// ID texts, speed dial, groups and extensions, the photo file stubs, change
// detection, Clone, and the seven element lists with their creators.
#include "phonepim/model/CContact.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "mapping/MappingTestSupport.h"
#include "model/AssertionPattern.h"
#include "phonepim/datetime/DateComponents.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/sync/DateContainer.h"
#include "phonepim/sync/EmailContainer.h"
#include "phonepim/sync/IMContainer.h"
#include "phonepim/sync/PhoneContainer.h"
#include "phonepim/sync/RelatedNameContainer.h"
#include "phonepim/sync/StreetAddressContainer.h"
#include "phonepim/sync/URLContainer.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;
using testing_support::ScratchFolder;

// Every container exists and belongs to `id`, or none exists.
void ExpectContainersOf(const CContact& contact, const std::optional<String>& id) {
  const BaseContainer* containers[] = {contact.phoneMapper(),   contact.urlMapper(),   contact.streetAddressMapper(),
                                       contact.emailMapper(),   contact.dateContainer(), contact.relatedNameContainer(),
                                       contact.imContainer()};
  for (const BaseContainer* container : containers) {
    ASSERT_EQ(container != nullptr, id.has_value());
    if (id) {
      EXPECT_EQ(std::tuple(container->vObjectID(), container->idMapper(), container->count()),
                std::tuple(*id, contact.idMapper(), 0));
    }
  }
}

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
  ASSERT_EQ(table->count(), 6u);
  const struct {
    std::uint32_t vCardID;
    std::optional<String> dbID;
    const char16_t* type;
    int state;
    std::optional<String> dbRecordID, vCardRecordID;
    std::uint32_t vCardIDAfter;
  } rows[] = {
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
  for (const auto& r : rows) {
    SCOPED_TRACE(&r - rows);
    const CContact contact(r.vCardID, u"35", r.dbID, r.type, table);
    EXPECT_EQ(std::tuple(contact.state(), contact.dbRecordID(), contact.vCardRecordID(), contact.vCardID()),
              std::tuple(r.state, r.dbRecordID, r.vCardRecordID, r.vCardIDAfter));
    EXPECT_EQ(contact.ContactType(), r.type == std::u16string(u"Group") ? 1u : 0u);
    ExpectContainersOf(contact, r.dbRecordID);
  }
  // Only the two unknown store IDs drew temporary IDs.
  EXPECT_EQ(table->mLastPhoneID(), 2u);
  // Without a table only the vCard ID resolves, by itself.
  const CContact byVCard(3, u"I", std::nullopt, u"Contact", nullptr);
  EXPECT_EQ(byVCard.state(), 0x2);
  EXPECT_EQ(byVCard.dbRecordID(), u"0000000000000003-Contact-I");
  EXPECT_EQ(byVCard.phoneMapper()->metaDataWithKey(u"phone numbers"), nullptr);
  EXPECT_EQ(CContact(3, u"I", String(u"S"), u"Contact", nullptr).state(), 0x1);
  EXPECT_EQ(CContact(u"group").ContactType(), 0u);
  EXPECT_EQ(CContact(u"Contact").idMapper(), nullptr);
}

TEST(contact, record_ids_speed_dial_groups_and_photo_stubs) {
  EXPECT_EQ(CContact::generateNewVCardID(INT_MAX, u"\u4E00"), u"0000002147483647-Contact-\u4E00");
  EXPECT_EQ(CContact::generateNewVCardID(INT_MIN, u""), u"-000002147483648-Contact-");
  CContact contact(u"Contact");
  contact.SetSpeedDial(3, 0);
  contact.SetSpeedDial(-9, 9);
  contact.SetSpeedDial(5, 10);
  contact.SetSpeedDial(5, -1);
  EXPECT_EQ(contact.SpeedDial(9), -9);
  EXPECT_EQ(contact.SpeedDial(), (std::array<std::int32_t, 10>{3, -1, -1, -1, -1, -1, -1, -1, -1, -9}));
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  for (int slot : {10, -1}) EXPECT_DEATH(contact.SpeedDial(slot), AssertionPattern("nIndex < 10"));

  // Groups and extensions are extension items; the first of a name counts.
  EXPECT_EQ(std::pair(contact.GetGroup(), contact.GetExtension()), std::pair(0, String()));
  contact.NewXItem("X-EXPIRY", "30", 0, -1);
  contact.SetGroup(-42);
  contact.SetGroup(7);
  contact.SetExtension(u"ext;\u00E9");
  contact.SetExtension(u"second");
  ASSERT_EQ(contact.GetXItemCount(), 5);
  EXPECT_EQ((std::vector<String>{contact.GetXItem(1)->Name(), contact.GetXItem(1)->Data(),
                                 contact.GetXItem(3)->Name()}),
            (std::vector<String>{u"X-GROUP", u"-42", u"X-PBOEXTENSION"}));
  EXPECT_EQ(std::pair(contact.GetGroup(), contact.GetExtension()), std::pair(-42, String(u"ext;\u00E9")));
  // The group is read as a leading integer, as the phones wrote it.
  for (const auto& [text, group] : {std::pair{" 12abc", 12}, std::pair{"99999999999", INT_MAX}}) {
    CContact other(u"Contact");
    other.NewXItem("X-GROUP", text, 0, -1);
    EXPECT_EQ(other.GetGroup(), group) << text;
  }

  // Photos never become files.
  contact.SetPhotoData(Bytes{0xFF, 0xD8});
  EXPECT_EQ(contact.GetSavePhotoPath(u"guid", false), std::nullopt);
  EXPECT_FALSE(contact.MakeDirectory(u"/tmp"));
  EXPECT_EQ(contact.MakePhotoData(Bytes{1}, 1, u"dev"), std::nullopt);
  EXPECT_FALSE(contact.SavePhotoFile(Bytes{1}, u"guid", true));
  contact.DeletePhoto();
  EXPECT_EQ(*contact.GetPhotoRef(), (Bytes{0xFF, 0xD8}));
}

TEST(contact, is_equal_compares_the_fields_of_change_detection) {
  using Change = void (*)(CContact&);
  const Change nothing = [](CContact&) {};
  const Change noRevision = [](CContact& c) { c.SetLastRevision(std::nullopt); };
  const Change rewritten = [](CContact& c) {
    c.Name().SetName(u"Other", 0);
    c.SetRole(u"changed");
    c.SetLastRevision(std::nullopt);
  };
  const struct {
    const char* name;
    Change mine, theirs;
    bool expected;
    int theirStorage = 0;
  } rows[] = {
      {"same", nothing, nothing, true},
      {"no_revision", noRevision, nothing, false},
      {"no_revision_on_theirs", nothing, noRevision, false},
      {"other_revision", nothing, [](CContact& c) { c.SetLastRevision(MakeDateComponents(2021, 3, 4, 5, 6, 8)); },
       false},
      // Lenient fields: the same instant written another way.
      {"same_instant", nothing, [](CContact& c) { c.SetLastRevision(MakeDateComponents(2021, 3, 4, 4, 66, 7)); },
       true},
      // SIM and read-only records always match; only theirs counts.
      {"sim", nothing, rewritten, true, 2},
      {"read_only", nothing, rewritten, true, 5},
      {"storage_3", nothing, rewritten, false, 3},
      {"storage_of_mine", [](CContact& c) { c.setStorage(2); }, rewritten, false},
      {"nickname_order", nothing, [](CContact& c) { std::swap(c.NickNames()[0], c.NickNames()[1]); }, false},
      {"name_part", nothing, [](CContact& c) { c.Name().SetName(u"X", 7); }, false},
      // Blood type 0 and unknown are the same.
      {"blood_0_unknown", [](CContact& c) { c.SetBloodType(0); }, [](CContact& c) { c.SetBloodType(0xFFFFFFFF); },
       true},
      {"blood_A_0", [](CContact& c) { c.SetBloodType(1); }, [](CContact& c) { c.SetBloodType(0); }, false},
      {"blood_0_A", [](CContact& c) { c.SetBloodType(0); }, [](CContact& c) { c.SetBloodType(1); }, false},
      {"title_empty", nothing, [](CContact& c) { c.SetTitle(String()); }, false},
      {"role_unset", nothing, [](CContact& c) { c.SetRole(std::nullopt); }, false},
      {"account_case", nothing, [](CContact& c) { c.SetAccount(u"PHONE"); }, false},
      {"ignored", nothing, [](CContact& c) { c.NewTelephone("1", 0x20, 1); }, true},
  };
  for (const auto& r : rows) {
    CContact mine(u"Contact"), theirs(u"Contact");
    for (CContact* c : {&mine, &theirs}) {
      c->SetNickNames({u"Al", u"Ally"});
      c->SetName(CName("Smith", "Alice", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
      c->SetBloodType(2);
      c->SetRole(u"Lead");
      c->SetAccount(u"phone");
      c->SetLastRevision(MakeDateComponents(2021, 3, 4, 5, 6, 7));
    }
    r.mine(mine);
    r.theirs(theirs);
    if (r.theirStorage != 0) theirs.setStorage(r.theirStorage);
    EXPECT_EQ(mine.IsEqual(&theirs), r.expected) << r.name;
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
  original.NewAddress("PO", "Ext", "Street", "City", "Region", "123", "JP", "Nb", 1, 0);
  original.NewOrg("Org", "Unit", "Boss", "Extra", 2);
  original.NewNotes("note", 0);
  original.DeleteAllEmail();
  original.createMetaData();
  ASSERT_EQ(original.phoneMapper()->count(), 1);

  std::unique_ptr<CContact> copy = original.Clone();
  EXPECT_TRUE(copy->IsEqual(&original));
  EXPECT_EQ((std::vector<std::int64_t>{copy->storage(), copy->vCardID(), copy->state(), copy->GetXItem(0)->Param(),
                                       copy->GetXItem(0)->thisID()}),
            (std::vector<std::int64_t>{1, 4, original.state(), 2, 3}));
  EXPECT_EQ(std::pair(copy->dbRecordID(), copy->vCardRecordID()),
            std::pair(original.dbRecordID(), original.vCardRecordID()));
  EXPECT_EQ(copy->idMapper(), table);
  EXPECT_EQ(copy->metaDictionary(), original.metaDictionary());
  EXPECT_EQ(std::pair(copy->Groups(), copy->SpeedDial()), std::pair(original.Groups(), original.SpeedDial()));
  EXPECT_EQ(*copy->GetPhotoRef(), (Bytes{9, 8}));
  // A copied number is the same number to change detection.
  EXPECT_TRUE(copy->GetTelephone(0)->isEqual(original.GetTelephone(0)));
  EXPECT_TRUE(copy->GetAddress(0)->isEqual(original.GetAddress(0)));
  EXPECT_TRUE(copy->GetOrg(0)->IsEqual(original.GetOrg(0)));
  EXPECT_EQ(copy->GetNotes(0)->GetNote(), u"note");
  // A released list stays released.
  copy->NewEmail("a@b", 1, 0);
  EXPECT_EQ(copy->GetEmailCount(), 0);
  EXPECT_EQ(copy->phoneMapper()->recordAtIndex(0), original.phoneMapper()->recordAtIndex(0));

  // Changing the copy leaves the original alone.
  copy->GetAddress(0)->SetAddress(u"Elsewhere", 2);
  copy->DeleteAllTelephone();
  copy->phoneMapper()->removeAllRecords();
  copy->GetXItem(0)->setDataWithString(u"31");
  EXPECT_EQ(original.GetAddress(0)->Street(), u"Street");
  EXPECT_EQ((std::vector<std::int64_t>{original.GetTelephoneCount(), original.phoneMapper()->count()}),
            (std::vector<std::int64_t>{1, 1}));
  EXPECT_EQ(original.GetXItem(0)->Data(), u"30");
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

TEST_P(contact_element_list, appends_and_deletes_by_index_and_by_identity) {
  const ListKind& kind = GetParam();
  CContact contact(u"Contact");
  const void* first = kind.create(contact);
  kind.create(contact);
  const void* third = kind.create(contact);
  ASSERT_EQ(kind.count(contact), 3);
  EXPECT_EQ(kind.get(contact, 0), first);
  EXPECT_EQ(kind.get(contact, 2), third);
  kind.deleteAt(contact, 1);
  EXPECT_EQ(kind.get(contact, 1), third);
  // An element of another contact, even an equal one, is not this list's.
  CContact other(u"Contact");
  kind.deleteElement(contact, kind.create(other));
  EXPECT_EQ(kind.count(contact), 2);
  kind.deleteElement(contact, third);
  ASSERT_EQ(kind.count(contact), 1);
  EXPECT_EQ(kind.get(contact, 0), first);
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
  const std::string pattern = AssertionPattern(kind.assertion);
  EXPECT_DEATH(kind.get(contact, 0), pattern);
  kind.create(contact);
  EXPECT_DEATH(kind.get(contact, 1), pattern);
  EXPECT_DEATH(kind.get(contact, -1), pattern);
  EXPECT_DEATH(kind.deleteAt(contact, 1), pattern);
  kind.deleteAll(contact);
  kind.create(contact);
  if (kind.releasedByDeleteAll) {
    EXPECT_DEATH(kind.deleteAt(contact, 0), pattern);
  }
}

INSTANTIATE_TEST_SUITE_P(kinds, contact_element_list, ::testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(contact_creators, pass_their_arguments_to_the_element) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CContact contact(u"Contact");
  EXPECT_DEATH(contact.DeleteAddress(nullptr), AssertionPattern("pAddress != nil"));
  const auto label = std::make_shared<const String>(u"Villa");
  const CPostalAddress* unlabelled =
      contact.NewAddress("PO", "Ext", "Street", "City", "Region", "12345", "JP", "Nb", 0x10000001, 4);
  const CPostalAddress* full =
      contact.NewAddress("PO", "Ext", "Street", "City", "Region", "12345", "JP", "Nb", 0x10000001, 4, label);
  for (const CPostalAddress* a : {unlabelled, full}) {
    EXPECT_EQ((std::vector<String>{a->POBox(), a->ExtAddr(), a->Street(), a->Locality(), a->Region(), a->PostalCode(),
                                   a->Country(), a->Neighbor()}),
              (std::vector<String>{u"PO", u"Ext", u"Street", u"City", u"Region", u"12345", u"JP", u"Nb"}));
  }
  EXPECT_EQ(std::tuple(full->Type(), full->AddressID(), full->Label()), std::tuple(0x10000001u, 4, label));
  EXPECT_EQ(unlabelled->Label(), nullptr);
  const CPostalAddress* oneLine = contact.NewAddress("Line", 8, 6, label);
  EXPECT_EQ(std::pair(oneLine->Street(), oneLine->Label()), std::pair(String(u"Line"), label));
  const COrganization* org = contact.NewOrg("Org", "Unit", "Pos", "Extra", 8);
  EXPECT_EQ((std::vector<String>{org->Name(), org->Unit(), org->Position(), org->Additional().at(0)}),
            (std::vector<String>{u"Org", u"Unit", u"Pos", u"Extra"}));
  const CTelephoneNumber* tel = contact.NewTelephone("+81", 0x100000, 7, label);
  EXPECT_EQ(std::tuple(tel->GetNumber(), tel->GetType(), tel->thisID(), tel->GetLabel()),
            std::tuple(String(u"+81"), 0x100000u, 7, label));
  EXPECT_EQ(contact.NewEmail("x@y", 0x10, 8, label)->GetLabel(), label);
  EXPECT_EQ(contact.NewNotes("\xE3\x83\xA1", 3)->GetNote(), u"\u30E1");
  EXPECT_EQ(contact.NewMessengerID("me", 0x40, 2)->GetType(), 0x40u);
  EXPECT_EQ(contact.NewURL(nullptr, 2, 1)->GetURL(), u"");
  // Text already decoded is kept whole, where a C string stops at its NUL.
  const String withNul(u"a\0b", 3);
  const CEmail* email = contact.NewEmail(withNul, 0x10, 8, label);
  EXPECT_EQ(std::tuple(email->GetEmail(), email->GetType(), email->thisID(), email->GetLabel()),
            std::tuple(withNul, 0x10u, 8, label));
  EXPECT_EQ(contact.NewNotes(withNul, 3)->GetNote(), withNul);
  EXPECT_EQ(contact.NewURL(withNul, 2, 1)->GetURL(), withNul);
  EXPECT_EQ(contact.NewMessengerID(String(u"\uFFFF"), 0x40, 2)->GetMessengerID(), u"\uFFFF");
  EXPECT_EQ(contact.NewNotes("a\0b", 4)->GetNote(), u"a");
}

}  // namespace
}  // namespace phonepim
