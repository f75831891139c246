// CContact's seven element lists: one contract, checked for each kind, and
// the creators' arguments.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
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
  EXPECT_EQ(std::tuple(full->Type(), full->AddressID(), full->Label()), std::tuple(0x10000001u, 4, label));
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
