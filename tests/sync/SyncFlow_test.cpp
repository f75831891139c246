// A whole synchronisation and the next one: contacts are built, recorded in
// the table, reconciled, saved; a store-side addition comes back through
// the phone; after reloading the table every identifier is claimed again.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#include "phonepim/model/CContact.h"
#include "phonepim/sync/PhoneContainer.h"
#include "sync/SyncTestSupport.h"

namespace phonepim {
namespace {

using testing_support::TableFixture;

const String kIMEI = u"356938035643809";

const String kLists[] = {u"phone numbers", u"email addresses", u"URLs", u"street addresses",
                         u"dates",         u"related names",   u"IMs"};

// The phone's address book as it reads on one synchronisation.
std::vector<std::unique_ptr<CContact>> ReadPhone(
    const std::shared_ptr<ContactIDMappingTable>& table, bool storeNumberWritten) {
  std::vector<std::unique_ptr<CContact>> contacts;
  for (std::uint32_t id : {1u, 2u, 3u}) {
    auto contact = std::make_unique<CContact>(id, kIMEI, std::nullopt, u"Contact", table);
    contact->Name().SetName(u"Person " + String(1, static_cast<char16_t>(u'0' + id)), 0);
    contact->NewTelephone("090-0000-0001", kTelephoneTypeCell, 0);
    contact->NewTelephone("090-0000-0001", kTelephoneTypeWork | kTelephoneTypeVoice, 1);
    contact->NewEmail("a@example.jp", kEmailTypeHome, 0);
    if (id == 3 && !storeNumberWritten) contact->NewEmail("old@example.jp", kEmailTypeWork, 1);
    contact->NewURL("http://example.jp/", kURLTypeHome, 0);
    contact->NewAddress(nullptr, nullptr, "1-1", "Tokyo", nullptr, "100", "JP", nullptr,
                        kAddressTypeHome, 0);
    contact->SetAnniversary_Date(MakeDateComponents(2001, 2, 3, 0, 0, 0));
    contact->setSpouse(u"Spouse");
    contact->NewMessengerID("im", kMessengerTypeJabber, 0);
    if (id == 1 && storeNumberWritten) contact->NewTelephone("0120-000", kTelephoneTypeWork, 2);
    contacts.push_back(std::move(contact));
  }
  return contacts;
}

class sync_flow : public TableFixture {};

TEST_F(sync_flow, identifiers_survive_saving_and_reloading) {
  std::map<String, std::vector<String>> before;  // store ID -> every sub-record ID
  String storePhoneID;
  {
    auto table = NewTable();
    for (auto& contact : ReadPhone(table, false)) {
      ASSERT_EQ(contact->state(), CContact::kStateVCardIDKnown);
      const String dbID = *contact->dbRecordID();
      // The host hands the record to the store and records the addition.
      contact->createMetaData();
      table->addContact(dbID, contact->metaDictionary());
      table->meta(dbID)->insert_or_assign(u"vCardID", *contact->vCardRecordID());
      // Reconciling now gives every sub-record its identifier.
      contact->createMetaData();
      table->modifyContact(dbID, contact->metaDictionary());
      for (const String& key : kLists) {
        const Array& entries = Entries(*table, dbID, key);
        for (const std::string& state : StatesOf(entries)) EXPECT_EQ(state, "New/Linked");
        const std::vector<String> ids = IdentifiersOf(entries);
        EXPECT_EQ(Strings(Find(contact->metaDictionary(), key)), ids);
        before[dbID].insert(before[dbID].end(), ids.begin(), ids.end());
      }
    }
    // The store adds a number to the first contact; the host writes it to
    // the phone and records it.
    const String first = CContact::generateNewVCardID(1, kIMEI);
    storePhoneID = ContactIDMappingTable::newIdentifier();
    PhoneContainer builder(first, table);
    table->addDataForPhoneID(
        storePhoneID, builder.createPhoneDataForDB(String(u"0120-000"), kTelephoneTypeWork,
                                                   std::nullopt, false),
        first);
    before[first].push_back(storePhoneID);
    ASSERT_TRUE(table->save());
  }

  auto reloaded = NewTable();
  ASSERT_EQ(reloaded->count(), 3u);
  std::size_t claimed = 0;
  for (auto& contact : ReadPhone(reloaded, true)) {
    // The phone's ID now finds the store ID in the table.
    ASSERT_EQ(contact->state(), CContact::kStateVCardIDKnown | CContact::kStateDBRecordIDKnown);
    const String dbID = *contact->dbRecordID();
    contact->createMetaData();
    std::vector<String> after;
    for (const String& key : kLists) {
      const Array& entries = Entries(*reloaded, dbID, key);
      const std::vector<String> ids = Strings(Find(contact->metaDictionary(), key));
      after.insert(after.end(), ids.begin(), ids.end());
      for (std::size_t i = 0; i < entries.size(); ++i) {
        const String& id = entries[i].get<Dictionary>().at(u"identifier").get<String>();
        const bool dropped = key == u"email addresses" && DataOf(entries[i]).at(u"value") ==
                                                              Value(u"old@example.jp");
        EXPECT_EQ(StatesOf(entries)[i], dropped ? "Delete/Unlinked" : "NoChange/Linked")
            << ToDisplayUTF8(id);
      }
    }
    claimed += after.size();
    // Every identifier but the dropped e-mail's is claimed again.
    std::vector<String> sortedAfter = after, sortedBefore = before[dbID];
    std::sort(sortedAfter.begin(), sortedAfter.end());
    std::sort(sortedBefore.begin(), sortedBefore.end());
    EXPECT_TRUE(std::includes(sortedBefore.begin(), sortedBefore.end(), sortedAfter.begin(),
                              sortedAfter.end()));
    EXPECT_EQ(after.size(), before[dbID].size() - (dbID == CContact::generateNewVCardID(3, kIMEI) ? 1 : 0));
  }
  EXPECT_EQ(claimed, 3u * 8u + 1u);

  const Dictionary* first = reloaded->meta(CContact::generateNewVCardID(1, kIMEI));
  const Array& phones = first->at(u"phone numbers").get<Array>();
  ASSERT_EQ(phones.size(), 3u);
  EXPECT_EQ(phones[2].get<Dictionary>().at(u"identifier"), Value(storePhoneID));
  EXPECT_EQ(phones[2].get<Dictionary>().at(u"State"), Value(u"NoChange"));
}

}  // namespace
}  // namespace phonepim
