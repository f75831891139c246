// CContact: identity resolution through a mapping table on disk, the record
// ID texts, speed dial, groups and extensions, the photo file stubs,
// change detection and Clone. The element lists are in
// CContactElements_test.cpp.

#include "phonepim/model/CContact.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>

#include "mapping/MappingTestSupport.h"
#include "model/AssertionPattern.h"
#include "phonepim/datetime/DateComponents.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/sync/BaseContainer.h"
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

// A table saved to disk with two contacts and a flat pair, then loaded anew,
// so that the contact resolves against what the file held.
class contact_identity : public ::testing::Test {
 protected:
  void SetUp() override {
    ContactIDMappingTable writer(u"N900", u"35", base_.path());
    writer.addMeta(Dictionary{{u"vCardID", u"0000000000000012-Contact-35"}}, u"DB-PERSON");
    writer.addMeta(Dictionary{{u"vCardID", u"0000000000000012-Croup-35"}}, u"DB-GROUP");
    writer.addMeta(Dictionary{{u"vCardID", u"-000000000000005-Contact-35"}}, u"DB-NEGATIVE");
    writer.addMeta(Dictionary{{u"vCardID", u"x12"}}, u"DB-GARBLED");
    writer.addDBID(u"DB-PAIR", u"0000000000000077-Contact-35");
    ASSERT_TRUE(writer.save());
    table_ = std::make_shared<ContactIDMappingTable>(u"N900", u"35", base_.path());
    ASSERT_EQ(table_->count(), 6u);
  }

  // Every container exists and belongs to `id`, or none exists.
  static void ExpectContainersOf(const CContact& contact, const std::optional<String>& id) {
    const BaseContainer* containers[] = {
        contact.phoneMapper(),  contact.urlMapper(),     contact.streetAddressMapper(),
        contact.emailMapper(),  contact.dateContainer(), contact.relatedNameContainer(),
        contact.imContainer()};
    for (const BaseContainer* container : containers) {
      if (!id) {
        EXPECT_EQ(container, nullptr);
        continue;
      }
      ASSERT_NE(container, nullptr);
      EXPECT_EQ(container->vObjectID(), *id);
      EXPECT_EQ(container->idMapper(), contact.idMapper());
      EXPECT_EQ(container->count(), 0);
    }
  }

  ScratchFolder base_;
  std::shared_ptr<ContactIDMappingTable> table_;
};

TEST_F(contact_identity, known_store_id_takes_the_vcard_id_from_the_table) {
  const CContact contact(99, u"35", String(u"DB-PERSON"), u"Contact", table_);
  EXPECT_EQ(contact.state(), 0x3);
  EXPECT_EQ(contact.dbRecordID(), u"DB-PERSON");
  EXPECT_EQ(contact.vCardRecordID(), u"0000000000000012-Contact-35");
  EXPECT_EQ(contact.vCardID(), 12u);
  ExpectContainersOf(contact, u"DB-PERSON");
  EXPECT_EQ(table_->mLastPhoneID(), 0u);

  const CContact negative(0, u"35", String(u"DB-NEGATIVE"), u"Contact", table_);
  EXPECT_EQ(negative.vCardID(), 0xFFFFFFFBu);
  const CContact garbled(0, u"35", String(u"DB-GARBLED"), u"Contact", table_);
  EXPECT_EQ(garbled.state(), 0x3);
  EXPECT_EQ(garbled.vCardID(), 0u);
}

TEST_F(contact_identity, unknown_store_id_takes_the_next_temporary_id) {
  const CContact first(12, u"35", String(u"DB-NEW"), u"Contact", table_);
  EXPECT_EQ(first.state(), 0x1);
  EXPECT_EQ(first.dbRecordID(), u"DB-NEW");
  EXPECT_EQ(first.vCardRecordID(), std::nullopt);
  EXPECT_EQ(first.vCardID(), 1u);
  ExpectContainersOf(first, u"DB-NEW");

  // A flat pair is not a contact entry.
  const CContact second(12, u"35", String(u"DB-PAIR"), u"Contact", table_);
  EXPECT_EQ(second.state(), 0x1);
  EXPECT_EQ(second.vCardID(), 2u);
  EXPECT_EQ(second.vCardRecordID(), std::nullopt);
}

TEST_F(contact_identity, known_vcard_id_finds_the_store_id) {
  const CContact person(12, u"35", std::nullopt, u"Contact", table_);
  EXPECT_EQ(person.state(), 0x3);
  EXPECT_EQ(person.vCardRecordID(), u"0000000000000012-Contact-35");
  EXPECT_EQ(person.dbRecordID(), u"DB-PERSON");
  EXPECT_EQ(person.vCardID(), 12u);
  EXPECT_EQ(person.ContactType(), 0u);
  ExpectContainersOf(person, u"DB-PERSON");

  const CContact group(12, u"35", std::nullopt, u"Group", table_);
  EXPECT_EQ(group.ContactType(), 1u);
  EXPECT_EQ(group.vCardType(), u"Group");
  EXPECT_EQ(group.vCardRecordID(), u"0000000000000012-Croup-35");
  EXPECT_EQ(group.dbRecordID(), u"DB-GROUP");
  EXPECT_EQ(group.state(), 0x3);

  // IDs above 2^31 are formatted as negative numbers and found as such.
  const CContact negative(0xFFFFFFFB, u"35", std::nullopt, u"Contact", table_);
  EXPECT_EQ(negative.vCardRecordID(), u"-000000000000005-Contact-35");
  EXPECT_EQ(negative.dbRecordID(), u"DB-NEGATIVE");
  EXPECT_EQ(table_->mLastPhoneID(), 0u);
}

TEST_F(contact_identity, unknown_vcard_id_stands_in_as_the_store_id) {
  const CContact contact(0, u"3550", std::nullopt, u"Contact", table_);
  EXPECT_EQ(contact.state(), 0x2);
  EXPECT_EQ(contact.vCardID(), 0u);
  EXPECT_EQ(contact.vCardRecordID(), u"0000000000000000-Contact-3550");
  EXPECT_EQ(contact.dbRecordID(), u"0000000000000000-Contact-3550");
  ExpectContainersOf(contact, u"0000000000000000-Contact-3550");

  // The group spelling is its own ID: a person's entry does not answer it.
  const CContact group(77, u"35", std::nullopt, u"Group", table_);
  EXPECT_EQ(group.dbRecordID(), u"0000000000000077-Croup-35");
  EXPECT_EQ(group.state(), 0x2);
}

TEST_F(contact_identity, neither_id_leaves_the_record_unresolved) {
  const CContact contact(CContact::kNoVCardID, u"35", std::nullopt, u"Contact", table_);
  EXPECT_EQ(contact.state(), 0);
  EXPECT_EQ(contact.dbRecordID(), std::nullopt);
  EXPECT_EQ(contact.vCardRecordID(), std::nullopt);
  EXPECT_EQ(contact.vCardID(), 0u);
  ExpectContainersOf(contact, std::nullopt);
  EXPECT_EQ(table_->mLastPhoneID(), 0u);
}

TEST(contact_identity_without_table, resolves_what_it_can_alone) {
  const CContact byVCard(3, u"I", std::nullopt, u"Contact", nullptr);
  EXPECT_EQ(byVCard.state(), 0x2);
  EXPECT_EQ(byVCard.dbRecordID(), u"0000000000000003-Contact-I");
  ASSERT_NE(byVCard.phoneMapper(), nullptr);
  EXPECT_EQ(byVCard.phoneMapper()->metaDataWithKey(u"phone numbers"), nullptr);

  const CContact byStore(3, u"I", String(u"S"), u"Contact", nullptr);
  EXPECT_EQ(byStore.state(), 0x1);
  EXPECT_EQ(byStore.vCardID(), 0u);

  const CContact plain(u"Contact");
  EXPECT_EQ(plain.state(), 0);
  EXPECT_EQ(plain.phoneMapper(), nullptr);
  EXPECT_EQ(plain.idMapper(), nullptr);
}

TEST(contact_defaults, a_new_record_holds_empty_lists_and_unset_slots) {
  const CContact contact(u"Contact");
  for (int slot : contact.SpeedDial()) EXPECT_EQ(slot, -1);
  EXPECT_TRUE(contact.Name().IsEmpty());
  EXPECT_TRUE(contact.Groups().empty());
  EXPECT_TRUE(contact.NickNames().empty());
  EXPECT_TRUE(contact.metaDictionary().empty());
  EXPECT_EQ(contact.GetXItemCount(), 0);
  EXPECT_EQ(contact.GetPhotoRef(), nullptr);
  EXPECT_EQ(contact.LastRevision(), std::nullopt);
  EXPECT_EQ(contact.Title(), std::nullopt);
  EXPECT_EQ(contact.BloodType(), 0u);
  EXPECT_EQ(contact.telcount(), 0);
  // Only the exact word makes a group.
  EXPECT_EQ(CContact(u"group").ContactType(), 0u);
  EXPECT_EQ(CContact(u"Other").ContactType(), 0u);
}

TEST(contact_record_id, generateNewVCardID_pads_to_sixteen_digits) {
  EXPECT_EQ(CContact::generateNewVCardID(12, u"35"), u"0000000000000012-Contact-35");
  EXPECT_EQ(CContact::generateNewVCardID(0, u""), u"0000000000000000-Contact-");
  EXPECT_EQ(CContact::generateNewVCardID(INT_MAX, u"\u4E00"),
            u"0000002147483647-Contact-\u4E00");
  EXPECT_EQ(CContact::generateNewVCardID(-5, u"I"), u"-000000000000005-Contact-I");
  EXPECT_EQ(CContact::generateNewVCardID(INT_MIN, u"I"), u"-000002147483648-Contact-I");
}

TEST(contact_speed_dial, slots_store_within_range_and_ignore_the_rest) {
  CContact contact(u"Contact");
  contact.SetSpeedDial(3, 0);
  contact.SetSpeedDial(-9, 9);
  contact.SetSpeedDial(5, 10);
  contact.SetSpeedDial(5, -1);
  EXPECT_EQ(contact.SpeedDial(0), 3);
  EXPECT_EQ(contact.SpeedDial(9), -9);
  const std::array<std::int32_t, 10> expected = {3, -1, -1, -1, -1, -1, -1, -1, -1, -9};
  EXPECT_EQ(contact.SpeedDial(), expected);
}

TEST(contact_speed_dial_DeathTest, a_slot_outside_the_ten_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const CContact contact(u"Contact");
  EXPECT_DEATH(contact.SpeedDial(10), AssertionPattern("nIndex < 10"));
  EXPECT_DEATH(contact.SpeedDial(-1), AssertionPattern("nIndex < 10"));
}

TEST(contact_extensions, groups_and_extensions_are_extension_items) {
  CContact contact(u"Contact");
  EXPECT_EQ(contact.GetGroup(), 0);
  EXPECT_EQ(contact.GetExtension(), u"");

  contact.NewXItem("X-EXPIRY", "30", 0, -1);
  contact.SetGroup(-42);
  contact.SetGroup(7);
  contact.SetExtension(u"ext;\u00E9");
  contact.SetExtension(u"second");
  ASSERT_EQ(contact.GetXItemCount(), 5);
  const CXItem* group = contact.GetXItem(1);
  EXPECT_EQ(group->Name(), u"X-GROUP");
  EXPECT_EQ(group->Data(), u"-42");
  EXPECT_EQ(group->Param(), 0u);
  EXPECT_EQ(group->thisID(), -1);
  EXPECT_EQ(contact.GetXItem(3)->Name(), u"X-PBOEXTENSION");
  EXPECT_EQ(contact.GetGroup(), -42);
  EXPECT_EQ(contact.GetExtension(), u"ext;\u00E9");

  // The group is read as a leading integer, as the phones wrote it.
  CContact other(u"Contact");
  other.NewXItem("X-GROUP", " 12abc", 0, -1);
  EXPECT_EQ(other.GetGroup(), 12);
  CContact huge(u"Contact");
  huge.NewXItem("X-GROUP", "99999999999", 0, -1);
  EXPECT_EQ(huge.GetGroup(), INT_MAX);
}

TEST(contact_photo, photos_never_become_files) {
  CContact contact(u"Contact");
  contact.SetPhotoData(Bytes{0xFF, 0xD8, 0xFF});
  ASSERT_NE(contact.GetPhotoRef(), nullptr);
  EXPECT_EQ(*contact.GetPhotoRef(), (Bytes{0xFF, 0xD8, 0xFF}));
  EXPECT_EQ(contact.GetSavePhotoPath(u"guid", false), std::nullopt);
  EXPECT_FALSE(contact.MakeDirectory(u"/tmp"));
  EXPECT_EQ(contact.MakePhotoData(Bytes{1}, 1, u"dev"), std::nullopt);
  EXPECT_FALSE(contact.SavePhotoFile(Bytes{1}, u"guid", true));
  contact.DeletePhoto();
  EXPECT_NE(contact.GetPhotoRef(), nullptr);
}

// --- Change detection ---

struct EqualityCase {
  const char* name;
  void (*changeMine)(CContact&);
  void (*changeTheirs)(CContact&);
  bool expected;
};

void PrintTo(const EqualityCase& row, std::ostream* os) { *os << row.name; }

void Nothing(CContact&) {}
void NoRevision(CContact& c) { c.SetLastRevision(std::nullopt); }

const EqualityCase kEqualityCases[] = {
    {"same", Nothing, Nothing, true},
    {"no_revision_on_either", NoRevision, NoRevision, false},
    {"no_revision_on_mine", NoRevision, Nothing, false},
    {"no_revision_on_theirs", Nothing, NoRevision, false},
    {"other_revision", Nothing,
     [](CContact& c) { c.SetLastRevision(MakeDateComponents(2021, 3, 4, 5, 6, 8)); }, false},
    // Lenient fields: the same instant written another way.
    {"same_instant_other_fields", Nothing,
     [](CContact& c) { c.SetLastRevision(MakeDateComponents(2021, 3, 4, 4, 66, 7)); }, true},
    {"sim_record_always_matches", Nothing,
     [](CContact& c) {
       c.setStorage(2);
       c.SetTitle(u"changed");
       c.SetLastRevision(std::nullopt);
     },
     true},
    {"read_only_record_always_matches", Nothing,
     [](CContact& c) {
       c.setStorage(5);
       c.Name().SetName(u"Other", 0);
     },
     true},
    {"storage_of_mine_does_not_count", [](CContact& c) { c.setStorage(2); },
     [](CContact& c) { c.SetRole(u"changed"); }, false},
    {"storage_3_does_not_count", Nothing,
     [](CContact& c) {
       c.setStorage(3);
       c.SetRole(u"changed");
     },
     false},
    {"extra_nickname", Nothing, [](CContact& c) { c.NickNames().push_back(u"Bo"); }, false},
    {"nickname_order", Nothing,
     [](CContact& c) { std::swap(c.NickNames()[0], c.NickNames()[1]); }, false},
    {"name_part", Nothing, [](CContact& c) { c.Name().SetName(u"X", 7); }, false},
    {"blood_0_and_unknown", [](CContact& c) { c.SetBloodType(0); },
     [](CContact& c) { c.SetBloodType(0xFFFFFFFF); }, true},
    {"blood_unknown_and_0", [](CContact& c) { c.SetBloodType(0xFFFFFFFF); },
     [](CContact& c) { c.SetBloodType(0); }, true},
    {"blood_A_and_0", [](CContact& c) { c.SetBloodType(1); },
     [](CContact& c) { c.SetBloodType(0); }, false},
    {"blood_0_and_A", [](CContact& c) { c.SetBloodType(0); },
     [](CContact& c) { c.SetBloodType(1); }, false},
    {"blood_AB_and_AB", [](CContact& c) { c.SetBloodType(3); },
     [](CContact& c) { c.SetBloodType(3); }, true},
    {"blood_AB_and_O", [](CContact& c) { c.SetBloodType(3); },
     [](CContact& c) { c.SetBloodType(4); }, false},
    {"title_text", Nothing, [](CContact& c) { c.SetTitle(u"Dr"); }, false},
    {"title_unset_against_empty", Nothing, [](CContact& c) { c.SetTitle(String()); }, false},
    {"role_unset", Nothing, [](CContact& c) { c.SetRole(std::nullopt); }, false},
    {"account_case", Nothing, [](CContact& c) { c.SetAccount(u"PHONE"); }, false},
    {"hobby_ignored", Nothing, [](CContact& c) { c.SetHobby(u"chess"); }, true},
    {"fname_ignored", Nothing, [](CContact& c) { c.SetFName(u"Someone else"); }, true},
    {"birthday_ignored", Nothing,
     [](CContact& c) { c.SetBirthDate(MakeDateComponents(1990, 1, 1, 0, 0, 0)); }, true},
    {"elements_ignored", Nothing,
     [](CContact& c) {
       c.NewTelephone("1", 0x20, 1);
       c.NewEmail("a@b", 1, 1);
       c.SetPhotoData(Bytes{1});
     },
     true},
};

class contact_is_equal : public ::testing::TestWithParam<EqualityCase> {
 protected:
  static void Fill(CContact& c) {
    c.SetNickNames({u"Al", u"Ally"});
    c.SetName(CName("Smith", "Alice", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
    c.SetBloodType(2);
    c.SetRole(u"Lead");
    c.SetAccount(u"phone");
    c.SetLastRevision(MakeDateComponents(2021, 3, 4, 5, 6, 7));
  }
};

TEST_P(contact_is_equal, compares_the_fields_of_change_detection) {
  CContact mine(u"Contact");
  CContact theirs(u"Contact");
  Fill(mine);
  Fill(theirs);
  GetParam().changeMine(mine);
  GetParam().changeTheirs(theirs);
  EXPECT_EQ(mine.IsEqual(&theirs), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(rows, contact_is_equal, ::testing::ValuesIn(kEqualityCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(contact_is_equal_null, a_null_record_is_unequal) {
  const CContact contact(u"Contact");
  EXPECT_FALSE(contact.IsEqual(nullptr));
}

// --- Clone ---

TEST(contact_clone, copies_everything_and_shares_nothing_but_the_table) {
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
  EXPECT_EQ(copy->storage(), 1);
  EXPECT_EQ(copy->dbRecordID(), original.dbRecordID());
  EXPECT_EQ(copy->vCardRecordID(), original.vCardRecordID());
  EXPECT_EQ(copy->vCardID(), 4u);
  EXPECT_EQ(copy->state(), original.state());
  EXPECT_EQ(copy->idMapper(), table);
  EXPECT_EQ(copy->metaDictionary(), original.metaDictionary());
  EXPECT_EQ(copy->Groups(), original.Groups());
  EXPECT_EQ(copy->SpeedDial(), original.SpeedDial());
  ASSERT_EQ(copy->GetXItemCount(), 1);
  EXPECT_NE(copy->GetXItem(0), original.GetXItem(0));
  EXPECT_EQ(copy->GetXItem(0)->Name(), u"X-EXPIRY");
  EXPECT_EQ(copy->GetXItem(0)->Param(), 2u);
  EXPECT_EQ(copy->GetXItem(0)->thisID(), 3);

  ASSERT_EQ(copy->GetTelephoneCount(), 1);
  EXPECT_NE(copy->GetTelephone(0), original.GetTelephone(0));
  // A copied number is the same number to change detection.
  EXPECT_TRUE(copy->GetTelephone(0)->isEqual(original.GetTelephone(0)));
  ASSERT_EQ(copy->GetAddressCount(), 1);
  EXPECT_TRUE(copy->GetAddress(0)->isEqual(original.GetAddress(0)));
  EXPECT_TRUE(copy->GetOrg(0)->IsEqual(original.GetOrg(0)));
  EXPECT_EQ(copy->GetNotes(0)->GetNote(), u"note");
  // A released list stays released.
  copy->NewEmail("a@b", 1, 0);
  EXPECT_EQ(copy->GetEmailCount(), 0);

  ASSERT_NE(copy->phoneMapper(), nullptr);
  EXPECT_NE(copy->phoneMapper(), original.phoneMapper());
  EXPECT_EQ(copy->phoneMapper()->recordAtIndex(0), original.phoneMapper()->recordAtIndex(0));

  // Changing the copy leaves the original alone.
  copy->GetAddress(0)->SetAddress(u"Elsewhere", 2);
  copy->DeleteAllTelephone();
  copy->SetTitle(u"Prof");
  copy->phoneMapper()->removeAllRecords();
  copy->GetXItem(0)->setDataWithString(u"31");
  EXPECT_EQ(original.GetAddress(0)->Street(), u"Street");
  EXPECT_EQ(original.GetTelephoneCount(), 1);
  EXPECT_EQ(original.Title(), u"Dr");
  EXPECT_EQ(original.phoneMapper()->count(), 1);
  EXPECT_EQ(original.GetXItem(0)->Data(), u"30");
}

}  // namespace
}  // namespace phonepim
