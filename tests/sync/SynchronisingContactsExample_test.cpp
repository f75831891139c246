// The example of docs/synchronising-contacts.md, compiled and run, and a
// check that the documents show exactly the code of both examples.

#include <gtest/gtest.h>

#include "sync/SyncTestSupport.h"

// BEGIN EXAMPLE
#include <filesystem>
#include <memory>
#include <vector>

#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/model/CContact.h"

using namespace phonepim;

// One synchronisation of a phone holding one contact. Returns the store
// identifiers of the contact's phone numbers.
std::vector<String> SynchroniseOnce(const std::filesystem::path& metaFolder) {
  const String imei = u"356938035643809";
  auto table = std::make_shared<ContactIDMappingTable>(u"N900", imei, metaFolder);

  // The phone's contact number 5, as vCard::Parse would have filled it.
  CContact contact(5, imei, std::nullopt, u"Contact", table);
  contact.Name().SetName(u"Yamada", 0);
  contact.NewTelephone("090-1234-5678", kTelephoneTypeCell, 0);
  contact.NewTelephone("03-1234-5678", kTelephoneTypeWork | kTelephoneTypeVoice, 1);

  // A contact the table has never seen: the store adds it, the table
  // remembers it under its store ID together with the phone's ID.
  const String storeID = *contact.dbRecordID();
  if ((contact.state() & CContact::kStateDBRecordIDKnown) == 0) {
    contact.createMetaData();
    table->addContact(storeID, contact.metaDictionary());
    table->meta(storeID)->insert_or_assign(u"vCardID", *contact.vCardRecordID());
  }

  // Build the records and match the sub-records against the table's entries.
  contact.createMetaData();

  // Each entry now says what the store must do with it.
  std::vector<String> phoneIDs;
  for (const Value& item : table->meta(storeID)->at(u"phone numbers").get<Array>()) {
    const Dictionary& entry = item.get<Dictionary>();
    const String& state = entry.at(u"State").get<String>();
    const String& identifier = entry.at(u"identifier").get<String>();
    if (state == u"New") {
      // push entry.at(u"Data") to the store as a new record `identifier`
    } else if (state == u"Delete") {
      // remove the store record `identifier`
      continue;
    }
    phoneIDs.push_back(identifier);
  }

  // The contact record itself, with its sub-records' identifiers.
  table->modifyContact(storeID, contact.metaDictionary());
  table->save();
  return phoneIDs;
}
// END EXAMPLE

namespace {

using namespace phonepim::testing_support;

TEST(synchronising_contacts_example, a_second_synchronisation_keeps_the_identifiers) {
  ScratchFolder folder;
  const std::vector<String> first = SynchroniseOnce(folder.path());
  ASSERT_EQ(first.size(), 2u);
  EXPECT_EQ(SynchroniseOnce(folder.path()), first);

  const ContactIDMappingTable saved(u"N900", u"356938035643809", folder.path());
  const Dictionary* meta = saved.meta(CContact::generateNewVCardID(5, u"356938035643809"));
  ASSERT_NE(meta, nullptr);
  EXPECT_EQ(meta->at(u"State"), Value(u"Modified"));
  EXPECT_EQ(Text(meta->at(u"Contact Data")), "{entity='com.apple.contacts.Contact', last name='Yamada', phone numbers=" +
                                                 Text(Array(first.begin(), first.end())) + "}");
}

// The documents and the README show exactly the code of both examples.
TEST(synchronising_examples, the_documents_show_this_code) {
  for (const auto& [name, doc] : {std::pair{"Contacts", "contacts"}, std::pair{"Calendars", "calendars"}}) {
    const std::string example = ExampleIn(std::string("tests/sync/Synchronising") + name + "Example_test.cpp");
    ASSERT_FALSE(example.empty()) << name;
    EXPECT_EQ(CodeAfter(std::string("docs/synchronising-") + doc + ".md", "```cpp"), example);
    EXPECT_EQ(CodeAfter("README.md", std::string("<!-- synchronising-") + doc + " example -->"), example);
  }
}

}  // namespace
