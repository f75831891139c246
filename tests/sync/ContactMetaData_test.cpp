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

using contact_meta_data = TableFixture;

// A person with something in every field the record reads.
void Fill(CContact& c) {
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

TEST_F(contact_meta_data, a_person_becomes_a_contact_record_with_its_sub_records) {
  ScopedDefaultZone utc("UTC");
  CContact contact(8, u"IMEI", std::nullopt, u"Contact", NewTable());
  Fill(contact);
  contact.createMetaData();

  // No table entry yet: nothing is reconciled, so no identifiers.
  EXPECT_EQ(Text(contact.metaDictionary()),
            "{birthday=@641952000, entity='com.apple.contacts.Contact', company name='Acme', department='R&D', "
            "first name='Taro', first phonetic name='\u30BF\u30ED\u30A6', image=<ffd8>, job title='Manager', "
            "last name='Yamada', last phonetic name='\u30E4\u30DE\u30C0', middle name='T', middle phonetic name='M', "
            "nickname='Taro-chan', notes='first\nsecond', suffix='Jr.', title='Dr.'}");
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

TEST_F(contact_meta_data, groups_and_records_without_identity) {
  CContact group(3, u"IMEI", std::nullopt, u"Group", NewTable());
  group.SetGroupName(u"Family");
  group.createMetaData();
  EXPECT_EQ(group.metaDictionary(),
            (Dictionary{{ISyncRecordEntityNameKey, u"com.apple.contacts.Group"}, {u"name", u"Family"}}));
  group.SetGroupDisplayName(u"My family");
  group.createMetaData();
  EXPECT_EQ(group.metaDictionary().at(u"name"), Value(u"My family"));
  CContact alone(u"Contact");
  alone.NewTelephone("1", kTelephoneTypeHome, 0);
  alone.createMetaData();
  EXPECT_EQ(alone.metaDictionary(), (Dictionary{{ISyncRecordEntityNameKey, u"com.apple.contacts.Contact"}}));
  EXPECT_EQ(alone.phoneMapper(), nullptr);
}

}  // namespace
}  // namespace phonepim
