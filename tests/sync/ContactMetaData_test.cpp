// CContact::createMetaData: the contact record's keys, the sub-records the
// contact hands its containers, and the relationship keys.

#include <gtest/gtest.h>

#include <memory>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/model/CContact.h"
#include "phonepim/sync/DateContainer.h"
#include "phonepim/sync/EmailContainer.h"
#include "phonepim/sync/IMContainer.h"
#include "phonepim/sync/PhoneContainer.h"
#include "phonepim/sync/RelatedNameContainer.h"
#include "phonepim/sync/StreetAddressContainer.h"
#include "phonepim/sync/URLContainer.h"
#include "sync/SyncTestSupport.h"

namespace phonepim {
namespace {

using testing::ScopedDefaultZone;
using testing_support::TableFixture;
using testing_support::Text;

class contact_meta_data : public TableFixture {
 protected:
  void SetUp() override { table_ = NewTable(); }

  // A person with something in every field the record reads.
  static void Fill(CContact& c) {
    c.SetName(CName("Yamada", "Taro", "T", "Dr.", "Jr.", "\u30E4\u30DE\u30C0", "", "M"));
    c.SetRFName(u"\u30BF\u30ED\u30A6");
    c.SetRLName(u"unused: the name has its own");
    c.SetNickNames({u"Taro-chan", u"T"});
    c.NewOrg("Acme", "R&D", "Engineer", nullptr, 2);
    c.NewOrg("Second", "", "", nullptr, 0);
    c.SetTitle(u"Manager");
    c.SetBirthDate(MakeDateComponents(1990, 5, 6, kUndefinedComponent, kUndefinedComponent,
                                      kUndefinedComponent));
    c.NewNotes("first", 0);
    c.NewNotes("", 1);
    c.NewNotes("second", 2);
    c.SetPhotoData(Bytes{0xFF, 0xD8});
    c.SetHobby(u"not in the record");

    c.NewTelephone("03-1111", kTelephoneTypeHome | kTelephoneTypeCell, 0);
    c.NewTelephone("", kTelephoneTypeWork, 1);
    c.NewTelephone("03-2222", kTelephoneTypeCustom, 2, std::make_shared<const String>(u"Main"));
    c.setAssistantNumber(u"03-3333");
    c.NewEmail("taro@home.jp", kEmailTypeHome, 0);
    c.NewEmail("", kEmailTypeWork, 1);
    c.NewEmail("t@x.jp", kEmailTypeCustom, 2, std::make_shared<const String>(u"Club"));
    c.NewURL("http://taro.jp/", kURLTypeWork, 0);
    c.NewAddress(nullptr, "Room 5", "1-1 Chiyoda", "Tokyo", "Kanto", "100-0001", "Japan",
                 "Marunouchi", kAddressTypeCustom, 0, std::make_shared<const String>(u"Villa"));
    c.NewAddress();  // empty: left out
    c.SetAnniversary_Date(MakeDateComponents(2005, 10, 1, 0, 0, 0));
    c.setSpouse(u"Hanako");
    c.setChildren(u"");
    c.setAssistant(u"Jiro");
    c.NewMessengerID("taro_s", kMessengerTypeSkype, 0);
  }

  std::shared_ptr<ContactIDMappingTable> table_;
};

TEST_F(contact_meta_data, a_person_becomes_a_contact_record_with_its_sub_records) {
  ScopedDefaultZone utc("UTC");
  CContact contact(8, u"IMEI", std::nullopt, u"Contact", table_);
  Fill(contact);
  contact.createMetaData();

  const Dictionary expected{
      {ISyncRecordEntityNameKey, u"com.apple.contacts.Contact"},
      {u"first name", u"Taro"},
      {u"last name", u"Yamada"},
      {u"middle name", u"T"},
      {u"title", u"Dr."},
      {u"suffix", u"Jr."},
      {u"first phonetic name", u"\u30BF\u30ED\u30A6"},
      {u"last phonetic name", u"\u30E4\u30DE\u30C0"},
      {u"middle phonetic name", u"M"},
      {u"nickname", u"Taro-chan"},
      {u"company name", u"Acme"},
      {u"department", u"R&D"},
      {u"job title", u"Manager"},
      {u"birthday", Date{641952000}},
      {u"notes", u"first\nsecond"},
      {u"image", Bytes{0xFF, 0xD8}},
  };
  // No table entry yet: nothing is reconciled, so no identifiers.
  EXPECT_EQ(contact.metaDictionary(), expected);
  EXPECT_EQ(contact.phoneMapper()->recordAtIndex(0).at(u"contact"),
            Value(Array{Value(u"0000000000000008-Contact-IMEI")}));
  // Each container's records, without the entity name and owner.
  std::string records;
  for (const BaseContainer* box :
       std::initializer_list<const BaseContainer*>{contact.phoneMapper(), contact.emailMapper(),
        contact.urlMapper(), contact.streetAddressMapper(), contact.dateContainer(),
        contact.relatedNameContainer(), contact.imContainer()}) {
    for (int i = 0; i < box->count(); ++i) {
      Dictionary record = box->recordAtIndex(i);
      record.erase(ISyncRecordEntityNameKey);
      record.erase(u"contact");
      records += Text(record) + (i + 1 < box->count() ? " " : "\n");
    }
  }
  EXPECT_EQ(records,
            "{label='Mobile (Home)', type='other', value='03-1111'} {type='main', value='03-2222'} "
            "{label='Assistant', type='other', value='03-3333'}\n"
            "{type='home', value='taro@home.jp'} {label='Club', type='other', value='t@x.jp'}\n"
            "{type='work', value='http://taro.jp/'}\n"
            "{city='Tokyo', country='Japan', label='Villa', postal code='100-0001', state='Kanto', "
            "street='1-1 Chiyoda Room 5', type='other'}\n"
            "{type='anniversary', value=@1128124800}\n"
            "{type='spouse', value='Hanako'} {type='assistant', value='Jiro'}\n"
            "{service='Skype', type='other', user='taro_s'}\n");
}

TEST_F(contact_meta_data, phone_style_fallbacks_groups_and_records_without_identity) {
  CContact contact(8, u"IMEI", std::nullopt, u"Contact", table_);
  contact.NewTelephone("1", kTelephoneTypeHome | kTelephoneTypeCell, 0);
  contact.createMetaData(true);
  EXPECT_EQ(contact.phoneMapper()->recordAtIndex(0).at(u"type"), Value(u"mobile"));
  EXPECT_EQ(Find(contact.phoneMapper()->recordAtIndex(0), u"label"), nullptr);
  // The readings stand in for phonetic names, the position for the title.
  contact.SetRFName(u"Reading first");
  contact.SetRLName(u"Reading last");
  contact.NewOrg("Acme", "", "Engineer", nullptr, 0);
  contact.SetTitle(u"");
  contact.createMetaData();
  EXPECT_EQ(contact.phoneMapper()->recordAtIndex(0).at(u"label"), Value(u"Mobile (Home)"));
  EXPECT_EQ(contact.metaDictionary(), (Dictionary{{ISyncRecordEntityNameKey, u"com.apple.contacts.Contact"},
                                                  {u"first phonetic name", u"Reading first"},
                                                  {u"last phonetic name", u"Reading last"},
                                                  {u"company name", u"Acme"},
                                                  {u"job title", u"Engineer"}}));
  CContact group(3, u"IMEI", std::nullopt, u"Group", table_);
  group.SetGroupName(u"Family");
  group.createMetaData();
  EXPECT_EQ(group.metaDictionary(),
            (Dictionary{{ISyncRecordEntityNameKey, u"com.apple.contacts.Group"}, {u"name", u"Family"}}));
  group.SetGroupDisplayName(u"My family");
  group.createMetaData();
  EXPECT_EQ(group.metaDictionary().at(u"name"), Value(u"My family"));
  CContact alone(u"Contact");
  alone.NewTelephone("1", kTelephoneTypeHome, 0);
  alone.SetTitle(u"Boss");
  alone.createMetaData();
  EXPECT_EQ(alone.metaDictionary(),
            (Dictionary{{ISyncRecordEntityNameKey, u"com.apple.contacts.Contact"}, {u"job title", u"Boss"}}));
  EXPECT_EQ(alone.phoneMapper(), nullptr);
}

}  // namespace
}  // namespace phonepim
