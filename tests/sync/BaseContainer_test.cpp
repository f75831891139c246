// BaseContainer: record access, change detection of values, and the
// reconciliation of records with the meta entries of the mapping table.
#include "phonepim/sync/BaseContainer.h"

#include <gtest/gtest.h>

#include <set>

#include "model/AssertionPattern.h"
#include "phonepim/model/TypeMasks.h"
#include "phonepim/sync/IMContainer.h"
#include "sync/SyncTestSupport.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;
using testing_support::TableFixture;
using testing_support::TestContainer;
using States = std::vector<std::string>;
using IDs = std::vector<String>;

TEST(base_container, records_by_index_and_by_identifier) {
  TestContainer container(u"C", nullptr);
  const Dictionary records[] = {{{u"identifier", u"ID-1"}}, {}, {{u"identifier", u"ID-3"}}, {{u"identifier", u"ID-1"}},
                                {{u"identifier", 5}}};
  for (const Dictionary& record : records) container.add(record);
  ASSERT_EQ(container.count(), 5);
  EXPECT_EQ(container.recordIDs(), (IDs{u"ID-1", u"ID-3", u"ID-1"}));
  EXPECT_EQ(container.recordByID(u"ID-1"), &container.recordAtIndex(0));
  EXPECT_EQ(container.recordByID(u"ID-3"), &container.recordAtIndex(2));
  EXPECT_EQ(container.recordByID(u"5"), nullptr);
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const std::string pattern = AssertionPattern("nIndex < [mItemArray count] && nIndex >= 0");
  EXPECT_DEATH(container.recordAtIndex(5), pattern);
  EXPECT_DEATH(container.recordAtIndex(-1), pattern);
}

TEST(base_container, compare_source_finds_only_strings_and_dates_equal) {
  const struct {
    Value source, target;
    bool expected;
  } rows[] = {
      {Value(u"555"), Value(u"555"), true},      {Value(u"a@b"), Value(u"A@b"), false},
      {Value(Date{86400.5}), Value(Date{86400.5}), true}, {Value(Date{86400.5}), Value(Date{86400.0}), false},
      {Value(u"0"), Value(Date{0}), false},      {Value(Date{0}), Value(u"0"), false},
      {Value(7), Value(7), false},  // nor any other type
  };
  for (const auto& r : rows) {
    EXPECT_EQ(BaseContainer::compareSource(&r.source, &r.target), r.expected) << &r - rows;
    EXPECT_FALSE(BaseContainer::compareSource(nullptr, &r.target));
    EXPECT_FALSE(BaseContainer::compareSource(&r.source, nullptr));
  }
}

class reconciliation : public TableFixture {
 protected:
  void SetUp() override {
    table_ = NewTable();
    table_->addMeta(Dictionary{{u"Contact Data", Dictionary{{u"first name", u"Ann"}}}}, u"C");
  }
  // The IMs of one synchronisation, as the contact would build them: a new
  // container each time. They match on the user, never on the service.
  IDs SyncIMs(const std::vector<std::pair<String, std::uint32_t>>& ims, const String& contact = u"C") {
    IMContainer container(contact, table_);
    for (const auto& [user, type] : ims) container.addIM(user, type);
    return container.createMetaData();
  }
  const Array& IMs() const { return Entries(*table_, u"C", kIMsKey); }
  IDs ContactDataIMs() const {
    return Strings(Find(table_->meta(u"C")->at(u"Contact Data").get<Dictionary>(), kIMsKey));
  }
  std::shared_ptr<ContactIDMappingTable> table_;
};

constexpr std::uint32_t kAIM = kMessengerTypeAIM, kSkype = kMessengerTypeSkype;

TEST_F(reconciliation, entries_are_new_kept_or_deleted_by_value) {
  // The first sync makes a new linked entry per record.
  const IDs first = SyncIMs({{u"111", kAIM}, {u"222", kAIM}, {u"111", kSkype}});
  EXPECT_EQ(StatesOf(IMs()), States(3, "New/Linked"));
  EXPECT_EQ(IdentifiersOf(IMs()), first);
  EXPECT_EQ(DataOf(IMs()[2]).at(u"service"), Value(u"Skype"));
  EXPECT_EQ(std::set<String>(first.begin(), first.end()).size(), 3u);
  EXPECT_EQ(ContactDataIMs(), first);
  EXPECT_EQ(table_->meta(u"C")->at(u"Contact Data").get<Dictionary>().at(u"first name"), Value(u"Ann"));
  // Unchanged values keep their identifiers; equal values claim distinct
  // entries; a changed value deletes the old entry and adds a new one.
  const IDs second = SyncIMs({{u"111", kAIM}, {u"999", kAIM}, {u"111", kSkype}, {u"111", kMessengerTypeICQ}});
  ASSERT_EQ(StatesOf(IMs()),
            (States{"NoChange/Linked", "Delete/Unlinked", "NoChange/Linked", "New/Linked", "New/Linked"}));
  const IDs ids = IdentifiersOf(IMs());
  EXPECT_EQ(second, (IDs{first[0], ids[3], first[2], ids[4]}));
  EXPECT_EQ(ContactDataIMs(), second);
  // A change of service alone is not seen and keeps the old data.
  EXPECT_EQ(SyncIMs({{u"111", kMessengerTypeQQ}}), IDs{first[0]});
  EXPECT_EQ(StatesOf(IMs())[0], "NoChange/Linked");
  EXPECT_EQ(DataOf(IMs()[0]).at(u"service"), Value(u"aim"));
  // No records left: every entry is deleted, the contact data stays.
  EXPECT_TRUE(SyncIMs({}).empty());
  EXPECT_EQ(StatesOf(IMs()), States(IMs().size(), "Delete/Unlinked"));
  EXPECT_EQ(ContactDataIMs(), IDs{first[0]});
}

TEST_F(reconciliation, odd_meta_is_left_alone_replaced_or_matched) {
  // Without meta, or without a table, nothing happens.
  EXPECT_TRUE(SyncIMs({{u"1", kAIM}}, u"UNKNOWN").empty());
  EXPECT_EQ(table_->meta(u"UNKNOWN"), nullptr);
  EXPECT_EQ(IMContainer(u"UNKNOWN", table_).metaDataWithKey(u"Contact Data"), nullptr);
  IMContainer tableless(u"C", nullptr);
  tableless.addIM(u"1", kAIM);
  EXPECT_TRUE(tableless.createMetaData().empty());
  EXPECT_EQ(tableless.metaDataWithKey(u"Contact Data"), nullptr);
  EXPECT_EQ(Find(*table_->meta(u"C"), kIMsKey), nullptr);
  EXPECT_TRUE(IMContainer(u"C", table_).metaDataWithKey(u"Contact Data")->is<Dictionary>());
  EXPECT_EQ(IMContainer(u"C", table_).metaDataWithKey(u"nothing"), nullptr);
  // Meta without contact data gets entries only.
  table_->addMeta(Dictionary{{u"State", u"Modified"}}, u"D");
  EXPECT_EQ(SyncIMs({{u"1", kAIM}}, u"D").size(), 1u);
  EXPECT_EQ(Entries(*table_, u"D", kIMsKey).size(), 1u);
  EXPECT_EQ(Find(*table_->meta(u"D"), u"Contact Data"), nullptr);
  // A list that is not a list is replaced.
  table_->meta(u"C")->insert_or_assign(kIMsKey, u"garbage");
  const IDs ids = SyncIMs({{u"1", kAIM}});
  EXPECT_EQ(StatesOf(IMs()), (States{"New/Linked"}));
  EXPECT_EQ(IdentifiersOf(IMs()), ids);
  // An alarm entry matches on its trigger duration.
  table_->meta(u"C")->insert_or_assign(
      u"phone numbers", Array{Dictionary{{u"Data", Dictionary{{u"triggerduration", u"-PT15M"}}},
                                         {u"State", u"Added"}, {u"Link", u"Linked"}, {u"identifier", u"ALARM"}}});
  TestContainer alarm(u"C", table_);
  alarm.add(Dictionary{{u"value", u"-PT15M"}});
  EXPECT_EQ(alarm.createMetaData(), IDs{u"ALARM"});
  EXPECT_EQ(StatesOf(Entries(*table_, u"C", u"phone numbers")), (States{"NoChange/Linked"}));
}

TEST_F(reconciliation, DeathTest_broken_entries_fail_their_assertions) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const Dictionary good{{u"Data", Dictionary{{u"user", u"1"}}}, {u"identifier", u"G"}};
  const std::pair<Value, const char*> rows[] = {
      {Dictionary{{u"Data", u"not a dictionary"}}, "metaPhoneData != nil"},
      {Dictionary{{u"Data", Dictionary{{u"service", u"aim"}}}}, "metaPhoneNumber != nil"},
  };
  for (const auto& [broken, text] : rows) {
    table_->meta(u"C")->insert_or_assign(kIMsKey, Array{good, broken});
    EXPECT_DEATH(SyncIMs({{u"2", kAIM}}), AssertionPattern(text));
  }
  // The walk stops at the entry it claims: what lies behind is not read.
  EXPECT_EQ(SyncIMs({{u"1", kAIM}}), IDs{u"G"});
}

}  // namespace
}  // namespace phonepim
