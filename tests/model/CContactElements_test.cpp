// CContact's seven element lists: one contract, checked for each kind, and
// the creators' arguments.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

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

TEST(contact_element_list, creators_pass_their_arguments_to_the_element) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CContact contact(u"Contact");
  EXPECT_DEATH(contact.DeleteAddress(nullptr), AssertionPattern("pAddress != nil"));
  const auto label = std::make_shared<const String>(u"Villa");
  const CPostalAddress* full =
      contact.NewAddress("PO", "Ext", "Street", "City", "Region", "12345", "JP", "Nb", 0x10000001, 4, label);
  EXPECT_EQ((std::vector<String>{full->POBox(), full->ExtAddr(), full->Street(), full->Locality(), full->Region(),
                                 full->PostalCode(), full->Country(), full->Neighbor()}),
            (std::vector<String>{u"PO", u"Ext", u"Street", u"City", u"Region", u"12345", u"JP", u"Nb"}));
  EXPECT_EQ((std::vector<std::int64_t>{full->Type(), full->AddressID()}), (std::vector<std::int64_t>{0x10000001, 4}));
  EXPECT_EQ(full->Label(), label);
  EXPECT_EQ(contact.NewAddress(nullptr, nullptr, "S", nullptr, nullptr, nullptr, nullptr, nullptr, 2, 5)->Label(),
            nullptr);
  const CPostalAddress* oneLine = contact.NewAddress("Line", 8, 6, label);
  EXPECT_EQ(oneLine->Street(), u"Line");
  EXPECT_EQ(oneLine->Label(), label);
  EXPECT_TRUE(contact.NewAddress()->IsEmpty());
  const COrganization* org = contact.NewOrg("Org", "Unit", "Pos", "Extra", 8);
  EXPECT_EQ((std::vector<String>{org->Name(), org->Unit(), org->Position(), org->Additional().at(0)}),
            (std::vector<String>{u"Org", u"Unit", u"Pos", u"Extra"}));
  EXPECT_EQ(org->Type(), 8u);
  const CTelephoneNumber* tel = contact.NewTelephone("+81", 0x100000, 7, label);
  EXPECT_EQ(tel->GetNumber(), u"+81");
  EXPECT_EQ((std::vector<std::int64_t>{tel->GetType(), tel->thisID()}), (std::vector<std::int64_t>{0x100000, 7}));
  EXPECT_EQ(tel->GetLabel(), label);
  EXPECT_EQ(contact.NewEmail("x@y", 0x10, 8, label)->GetLabel(), label);
  EXPECT_EQ(contact.NewEmail("x@y", 2, 9)->GetLabel(), nullptr);
  EXPECT_EQ(contact.NewNotes("\xE3\x83\xA1", 3)->GetNote(), u"\u30E1");
  EXPECT_EQ(contact.NewMessengerID("me", 0x40, 2)->GetType(), 0x40u);
  EXPECT_EQ(contact.NewURL(nullptr, 2, 1)->GetURL(), u"");
  // Text already decoded is kept whole, where a C string stops at its NUL.
  const String withNul(u"a\0b", 3);
  const CEmail* email = contact.NewEmail(withNul, 0x10, 8, label);
  EXPECT_EQ(email->GetEmail(), withNul);
  EXPECT_EQ((std::vector<std::int64_t>{email->GetType(), email->thisID()}), (std::vector<std::int64_t>{0x10, 8}));
  EXPECT_EQ(email->GetLabel(), label);
  EXPECT_EQ(contact.NewNotes(withNul, 3)->GetNote(), withNul);
  EXPECT_EQ(contact.NewURL(withNul, 2, 1)->GetURL(), withNul);
  EXPECT_EQ(contact.NewMessengerID(String(u"\uFFFF"), 0x40, 2)->GetMessengerID(), u"\uFFFF");
  EXPECT_EQ(contact.NewNotes("a\0b", 4)->GetNote(), u"a");
}

}  // namespace
}  // namespace phonepim
