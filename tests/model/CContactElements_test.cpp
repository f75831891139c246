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

TEST(contact_element_list, DeathTest_deleting_no_address_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CContact contact(u"Contact");
  EXPECT_DEATH(contact.DeleteAddress(nullptr), AssertionPattern("pAddress != nil"));
}

}  // namespace
}  // namespace phonepim
