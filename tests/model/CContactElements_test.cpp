// CContact's seven element lists: one contract, checked for each kind, and
// the creators' arguments.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "model/AssertionPattern.h"
#include "phonepim/model/CContact.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;

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

const ListKind kKinds[] = {
    {"address", "nIndex < [self GetAddressCount]",
     [](CContact& c) -> const void* { return c.NewAddress("Main St", 1, 0); },
     [](const CContact& c) { return c.GetAddressCount(); },
     [](CContact& c, int i) -> const void* { return c.GetAddress(i); },
     [](CContact& c, int i) { c.DeleteAddressAtIndex(i); },
     [](CContact& c, const void* e) { c.DeleteAddress(static_cast<const CPostalAddress*>(e)); },
     [](CContact& c) { c.DeleteAllAddress(); },
     [](const void* e) { Mutable<CPostalAddress>(e)->SetAddress(u"Elm St", 2); }, true},
    {"organization", "nIndex < [self GetOrgCount]",
     [](CContact& c) -> const void* { return c.NewOrg("Org", "Unit", "Pos", "", 2); },
     [](const CContact& c) { return c.GetOrgCount(); },
     [](CContact& c, int i) -> const void* { return c.GetOrg(i); },
     [](CContact& c, int i) { c.DeleteOrgAtIndex(i); },
     [](CContact& c, const void* e) { c.DeleteOrg(static_cast<const COrganization*>(e)); },
     [](CContact& c) { c.DeleteAllOrg(); },
     [](const void* e) { Mutable<COrganization>(e)->Additional().push_back(u"More"); }, true},
    {"telephone", "nIndex < [self GetTelephoneCount]",
     [](CContact& c) -> const void* { return c.NewTelephone("555", 0x20, 0); },
     [](const CContact& c) { return c.GetTelephoneCount(); },
     [](CContact& c, int i) -> const void* { return c.GetTelephone(i); },
     [](CContact& c, int i) { c.DeleteTelephoneAtIndex(i); },
     [](CContact& c, const void* e) { c.DeleteTelephone(static_cast<const CTelephoneNumber*>(e)); },
     [](CContact& c) { c.DeleteAllTelephone(); },
     [](const void* e) { Mutable<CTelephoneNumber>(e)->SetNumber(u"666"); }, true},
    {"messenger", "nIndex < [self GetMessengerIDCount]",
     [](CContact& c) -> const void* { return c.NewMessengerID("me", 1, 0); },
     [](const CContact& c) { return c.GetMessengerIDCount(); },
     [](CContact& c, int i) -> const void* { return c.GetMessengerID(i); },
     [](CContact& c, int i) { c.DeleteMessengerIDAtIndex(i); },
     [](CContact& c, const void* e) { c.DeleteMessengerID(static_cast<const CMessengerID*>(e)); },
     [](CContact& c) { c.DeleteAllMessengerID(); },
     [](const void* e) { Mutable<CMessengerID>(e)->SetNumber(u"you"); }, true},
    {"notes", "nIndex < [self GetNotesCount]",
     [](CContact& c) -> const void* { return c.NewNotes("note", 0); },
     [](const CContact& c) { return c.GetNotesCount(); },
     [](CContact& c, int i) -> const void* { return c.GetNotes(i); },
     [](CContact& c, int i) { c.DeleteNotesAtIndex(i); },
     [](CContact& c, const void* e) { c.DeleteNotes(static_cast<const CNote*>(e)); },
     [](CContact& c) { c.DeleteAllNotes(); },
     [](const void* e) { Mutable<CNote>(e)->SetNote(u"other"); }, false},
    {"email", "nIndex < [self GetEmailCount]",
     [](CContact& c) -> const void* { return c.NewEmail("a@b", 1, 0); },
     [](const CContact& c) { return c.GetEmailCount(); },
     [](CContact& c, int i) -> const void* { return c.GetEmail(i); },
     [](CContact& c, int i) { c.DeleteEmailAtIndex(i); },
     [](CContact& c, const void* e) { c.DeleteEmail(static_cast<const CEmail*>(e)); },
     [](CContact& c) { c.DeleteAllEmail(); },
     [](const void* e) { Mutable<CEmail>(e)->SetEmail(u"c@d"); }, true},
    {"url", "nIndex < [self GetURLCount]",
     [](CContact& c) -> const void* { return c.NewURL("http://a", 1, 0); },
     [](const CContact& c) { return c.GetURLCount(); },
     [](CContact& c, int i) -> const void* { return c.GetURL(i); },
     [](CContact& c, int i) { c.DeleteURLAtIndex(i); },
     [](CContact& c, const void* e) { c.DeleteURL(static_cast<const CURL*>(e)); },
     [](CContact& c) { c.DeleteAllURL(); },
     [](const void* e) { Mutable<CURL>(e)->SetURL(u"http://b"); }, true},
};

class contact_element_list : public ::testing::TestWithParam<ListKind> {};

TEST_P(contact_element_list, creators_append_and_getters_return_them_in_order) {
  const ListKind& kind = GetParam();
  CContact contact(u"Contact");
  EXPECT_EQ(kind.count(contact), 0);
  const void* first = kind.create(contact);
  const void* second = kind.create(contact);
  const void* third = kind.create(contact);
  ASSERT_EQ(kind.count(contact), 3);
  EXPECT_EQ(kind.get(contact, 0), first);
  EXPECT_EQ(kind.get(contact, 1), second);
  EXPECT_EQ(kind.get(contact, 2), third);
}

TEST_P(contact_element_list, deletes_by_index_and_by_identity) {
  const ListKind& kind = GetParam();
  CContact contact(u"Contact");
  const void* first = kind.create(contact);
  kind.create(contact);
  const void* third = kind.create(contact);

  kind.deleteAt(contact, 1);
  ASSERT_EQ(kind.count(contact), 2);
  EXPECT_EQ(kind.get(contact, 0), first);
  EXPECT_EQ(kind.get(contact, 1), third);

  // An element of another contact, even an equal one, is not this list's.
  CContact other(u"Contact");
  kind.deleteElement(contact, kind.create(other));
  EXPECT_EQ(kind.count(contact), 2);

  kind.deleteElement(contact, third);
  ASSERT_EQ(kind.count(contact), 1);
  EXPECT_EQ(kind.get(contact, 0), first);
  kind.deleteAt(contact, 0);
  EXPECT_EQ(kind.count(contact), 0);
}

TEST_P(contact_element_list, delete_all_drops_the_list_except_for_notes) {
  const ListKind& kind = GetParam();
  CContact contact(u"Contact");
  kind.create(contact);
  kind.create(contact);
  kind.deleteAll(contact);
  EXPECT_EQ(kind.count(contact), 0);

  // The element handed out afterwards is valid and writable (ASan watches),
  // but counted only where the list survives.
  const void* late = kind.create(contact);
  ASSERT_NE(late, nullptr);
  kind.touch(late);
  EXPECT_EQ(kind.count(contact), kind.releasedByDeleteAll ? 0 : 1);
  kind.create(contact);
  EXPECT_EQ(kind.count(contact), kind.releasedByDeleteAll ? 0 : 2);
  if (kind.releasedByDeleteAll) {
    kind.deleteElement(contact, late);  // not in the list: nothing happens
    kind.touch(late);
  }
  kind.deleteAll(contact);
  EXPECT_EQ(kind.count(contact), 0);
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
  EXPECT_DEATH(kind.deleteAt(contact, -1), pattern);
  kind.deleteAll(contact);
  if (kind.releasedByDeleteAll) {
    kind.create(contact);
    EXPECT_DEATH(kind.get(contact, 0), pattern);
    EXPECT_DEATH(kind.deleteAt(contact, 0), pattern);
  }
}

INSTANTIATE_TEST_SUITE_P(kinds, contact_element_list, ::testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(contact_element_list_DeathTest, deleting_a_null_address_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CContact contact(u"Contact");
  EXPECT_DEATH(contact.DeleteAddress(nullptr), AssertionPattern("pAddress != nil"));
}

TEST(contact_element_creators, pass_their_arguments_to_the_element) {
  CContact contact(u"Contact");
  const auto label = std::make_shared<const String>(u"Villa");

  const CPostalAddress* full =
      contact.NewAddress("PO", "Ext", "Street", "City", "Region", "12345", "JP", "Nb",
                         0x10000001, 4, label);
  EXPECT_EQ(full->POBox(), u"PO");
  EXPECT_EQ(full->ExtAddr(), u"Ext");
  EXPECT_EQ(full->Street(), u"Street");
  EXPECT_EQ(full->Locality(), u"City");
  EXPECT_EQ(full->Region(), u"Region");
  EXPECT_EQ(full->PostalCode(), u"12345");
  EXPECT_EQ(full->Country(), u"JP");
  EXPECT_EQ(full->Neighbor(), u"Nb");
  EXPECT_EQ(full->Type(), 0x10000001u);
  EXPECT_EQ(full->AddressID(), 4);
  EXPECT_EQ(full->Label(), label);
  const CPostalAddress* noLabel =
      contact.NewAddress(nullptr, nullptr, "S", nullptr, nullptr, nullptr, nullptr, nullptr, 2, 5);
  EXPECT_EQ(noLabel->Street(), u"S");
  EXPECT_EQ(noLabel->Label(), nullptr);
  const CPostalAddress* oneLine = contact.NewAddress("Line", 8, 6, label);
  EXPECT_EQ(oneLine->Street(), u"Line");
  EXPECT_EQ(oneLine->Label(), label);
  EXPECT_TRUE(contact.NewAddress()->IsEmpty());
  EXPECT_EQ(contact.GetAddressCount(), 4);

  const COrganization* org = contact.NewOrg("Org", "Unit", "Pos", "Extra", 8);
  EXPECT_EQ(org->Name(), u"Org");
  EXPECT_EQ(org->Position(), u"Pos");
  EXPECT_EQ(org->Additional(), std::vector<String>{u"Extra"});
  EXPECT_EQ(org->Type(), 8u);

  const CTelephoneNumber* tel = contact.NewTelephone("+81", 0x100000, 7, label);
  EXPECT_EQ(tel->GetNumber(), u"+81");
  EXPECT_EQ(tel->GetType(), 0x100000u);
  EXPECT_EQ(tel->thisID(), 7);
  EXPECT_EQ(tel->GetLabel(), label);

  const CEmail* email = contact.NewEmail("x@y", 0x10, 8, label);
  EXPECT_EQ(email->GetEmail(), u"x@y");
  EXPECT_EQ(email->GetLabel(), label);
  EXPECT_EQ(contact.NewEmail("x@y", 2, 9)->GetLabel(), nullptr);

  const CNote* note = contact.NewNotes("\xE3\x83\xA1\xE3\x83\xA2", 3);
  EXPECT_EQ(note->GetNote(), u"\u30E1\u30E2");
  EXPECT_EQ(note->thisID(), 3);
  const CMessengerID* im = contact.NewMessengerID("me", 0x40, 2);
  EXPECT_EQ(im->GetType(), 0x40u);
  const CURL* url = contact.NewURL(nullptr, 2, 1);
  EXPECT_EQ(url->GetURL(), u"");
  EXPECT_EQ(url->GetType(), 2u);
}

// Text already decoded is kept as it is, where a C string stops at its NUL.
TEST(contact_element_creators, decoded_text_is_kept_whole) {
  CContact contact(u"Contact");
  const std::shared_ptr<const String> label = std::make_shared<const String>(u"Desk");
  const String withNul(u"a\0b", 3);
  const CEmail* email = contact.NewEmail(withNul, 0x10, 8, label);
  EXPECT_EQ(email->GetEmail(), withNul);
  EXPECT_EQ(email->GetType(), 0x10u);
  EXPECT_EQ(email->thisID(), 8);
  EXPECT_EQ(email->GetLabel(), label);
  EXPECT_EQ(contact.NewNotes(withNul, 3)->GetNote(), withNul);
  EXPECT_EQ(contact.NewURL(withNul, 2, 1)->GetURL(), withNul);
  const CMessengerID* im = contact.NewMessengerID(String(u"\uFFFF"), 0x40, 2);
  EXPECT_EQ(im->GetMessengerID(), u"\uFFFF");
  EXPECT_EQ(im->GetType(), 0x40u);
  EXPECT_EQ(contact.GetEmailCount(), 1);
  EXPECT_EQ(contact.NewNotes("a\0b", 4)->GetNote(), u"a");
}

}  // namespace
}  // namespace phonepim
