// BaseContainer: record access, change detection of values, and the
// reconciliation of records with the meta entries of the mapping table.
#include "phonepim/sync/BaseContainer.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "model/AssertionPattern.h"
#include "phonepim/sync/DateContainer.h"
#include "phonepim/sync/PhoneContainer.h"
#include "sync/SyncTestSupport.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;
using testing_support::TableFixture;
using testing_support::TestContainer;
using States = std::vector<std::string>;

const String kPhones = u"phone numbers";

TEST(base_container, records_by_index_and_by_identifier) {
  TestContainer container(u"C", nullptr);
  container.add(Dictionary{{u"value", u"a"}, {u"identifier", u"ID-1"}});
  container.add(Dictionary{{u"value", u"b"}});
  container.add(Dictionary{{u"value", u"c"}, {u"identifier", u"ID-3"}});
  container.add(Dictionary{{u"value", u"d"}, {u"identifier", u"ID-1"}});
  container.add(Dictionary{{u"value", u"e"}, {u"identifier", 5}});
  ASSERT_EQ(container.count(), 5);
  EXPECT_EQ(container.recordAtIndex(1).at(u"value"), Value(u"b"));
  EXPECT_EQ(container.recordIDs(), (std::vector<String>{u"ID-1", u"ID-3", u"ID-1"}));
  EXPECT_EQ(container.recordByID(u"ID-1"), &container.recordAtIndex(0));
  EXPECT_EQ(container.recordByID(u"ID-3"), &container.recordAtIndex(2));
  EXPECT_EQ(container.recordByID(u"5"), nullptr);
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const std::string pattern = AssertionPattern("nIndex < [mItemArray count] && nIndex >= 0");
  EXPECT_DEATH(container.recordAtIndex(5), pattern);
  EXPECT_DEATH(container.recordAtIndex(-1), pattern);
  container.removeAllRecords();
  EXPECT_EQ(container.count(), 0);
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
  // The phone numbers of one synchronisation, as the contact would build
  // them: a new container each time.
  std::vector<String> SyncPhones(const std::vector<std::pair<String, std::uint32_t>>& phones) {
    PhoneContainer container(u"C", table_);
    for (const auto& [number, type] : phones) container.addPhone(number, type, std::nullopt, false);
    return container.createMetaData();
  }
  const Array& Phones() const { return Entries(*table_, u"C", kPhones); }
  std::vector<String> ContactDataPhones() const {
    return Strings(Find(table_->meta(u"C")->at(u"Contact Data").get<Dictionary>(), kPhones));
  }
  std::shared_ptr<ContactIDMappingTable> table_;
};

TEST_F(reconciliation, entries_are_new_kept_or_deleted_by_value) {
  // The first sync makes a new linked entry per record.
  const std::vector<String> first = SyncPhones({{u"111", 0x5}, {u"222", 0x5}, {u"111", 0x6}});
  ASSERT_EQ(first.size(), 3u);
  EXPECT_EQ(StatesOf(Phones()), States(3, "New/Linked"));
  EXPECT_EQ(IdentifiersOf(Phones()), first);
  EXPECT_EQ(DataOf(Phones()[2]).at(u"type"), Value(u"work"));
  EXPECT_EQ(first[0].size(), 36u);
  EXPECT_EQ(std::set<String>(first.begin(), first.end()).size(), 3u);
  EXPECT_EQ(ContactDataPhones(), first);
  EXPECT_EQ(table_->meta(u"C")->at(u"Contact Data").get<Dictionary>().at(u"first name"), Value(u"Ann"));
  // Unchanged values keep their identifiers; equal values claim distinct
  // entries; a changed value deletes the old entry and adds a new one.
  const std::vector<String> second = SyncPhones({{u"111", 0x5}, {u"999", 0x5}, {u"111", 0x6}, {u"111", 0x20}});
  EXPECT_EQ(StatesOf(Phones()),
            (States{"NoChange/Linked", "Delete/Unlinked", "NoChange/Linked", "New/Linked", "New/Linked"}));
  EXPECT_EQ(DataOf(Phones()[3]).at(u"value"), Value(u"999"));
  const std::vector<String> ids = IdentifiersOf(Phones());
  EXPECT_EQ(second, (std::vector<String>{first[0], ids[3], first[2], ids[4]}));
  EXPECT_EQ(ContactDataPhones(), second);
  // A label-only change is not seen and keeps the old data.
  EXPECT_EQ(SyncPhones({{u"111", 0x810}}), (std::vector<String>{first[0]}));
  EXPECT_EQ(StatesOf(Phones())[0], "NoChange/Linked");
  EXPECT_EQ(DataOf(Phones()[0]).at(u"type"), Value(u"home"));
  EXPECT_EQ(Find(DataOf(Phones()[0]), u"label"), nullptr);
  // No records left: every entry is deleted, the contact data stays.
  EXPECT_TRUE(SyncPhones({}).empty());
  EXPECT_EQ(StatesOf(Phones()), States(Phones().size(), "Delete/Unlinked"));
  EXPECT_EQ(ContactDataPhones(), (std::vector<String>{first[0]}));
}

TEST_F(reconciliation, odd_meta_is_left_alone_replaced_or_matched) {
  // Without meta, or without a table, nothing happens.
  PhoneContainer unknown(u"UNKNOWN", table_);
  unknown.addPhone(String(u"1"), 0x5, std::nullopt, false);
  EXPECT_TRUE(unknown.createMetaData().empty());
  EXPECT_EQ(table_->meta(u"UNKNOWN"), nullptr);
  EXPECT_EQ(unknown.metaDataWithKey(u"Contact Data"), nullptr);
  PhoneContainer tableless(u"C", nullptr);
  tableless.addPhone(String(u"1"), 0x5, std::nullopt, false);
  EXPECT_TRUE(tableless.createMetaData().empty());
  EXPECT_EQ(tableless.metaDataWithKey(u"Contact Data"), nullptr);
  EXPECT_EQ(Find(*table_->meta(u"C"), kPhones), nullptr);
  EXPECT_TRUE(PhoneContainer(u"C", table_).metaDataWithKey(u"Contact Data")->is<Dictionary>());
  EXPECT_EQ(PhoneContainer(u"C", table_).metaDataWithKey(u"nothing"), nullptr);
  // Meta without contact data gets entries only.
  table_->addMeta(Dictionary{{u"State", u"Modified"}}, u"D");
  PhoneContainer other(u"D", table_);
  other.addPhone(String(u"1"), 0x5, std::nullopt, false);
  EXPECT_EQ(other.createMetaData().size(), 1u);
  EXPECT_EQ(Entries(*table_, u"D", kPhones).size(), 1u);
  EXPECT_EQ(Find(*table_->meta(u"D"), u"Contact Data"), nullptr);
  // A list that is not a list is replaced.
  table_->meta(u"C")->insert_or_assign(kPhones, u"garbage");
  const std::vector<String> ids = SyncPhones({{u"1", 0x5}});
  EXPECT_EQ(StatesOf(Phones()), (States{"New/Linked"}));
  EXPECT_EQ(IdentifiersOf(Phones()), ids);
  // An alarm entry matches on its trigger duration.
  table_->meta(u"C")->insert_or_assign(kPhones, Array{Dictionary{{u"Data", Dictionary{{u"triggerduration", u"-PT15M"}}},
                                                                 {u"State", u"Added"},
                                                                 {u"Link", u"Linked"},
                                                                 {u"identifier", u"ALARM"}}});
  TestContainer alarm(u"C", table_);
  alarm.add(Dictionary{{u"value", u"-PT15M"}});
  EXPECT_EQ(alarm.createMetaData(), (std::vector<String>{u"ALARM"}));
  EXPECT_EQ(StatesOf(Phones()), (States{"NoChange/Linked"}));
}

TEST_F(reconciliation, DeathTest_broken_entries_fail_their_assertions) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const Dictionary good{{u"Data", Dictionary{{u"value", u"1"}}}, {u"identifier", u"G"}};
  const std::pair<Value, const char*> rows[] = {
      {Dictionary{{u"identifier", u"X"}}, "metaPhoneData != nil"},
      {Dictionary{{u"Data", u"not a dictionary"}}, "metaPhoneData != nil"},
      {Value(u"not an entry"), "metaPhoneData != nil"},
      {Dictionary{{u"Data", Dictionary{{u"type", u"home"}}}}, "metaPhoneNumber != nil"},
  };
  for (const auto& [broken, text] : rows) {
    table_->meta(u"C")->insert_or_assign(kPhones, Array{good, broken});
    EXPECT_DEATH(SyncPhones({{u"2", 0x5}}), AssertionPattern(text));
  }
  // The walk stops at the entry it claims: what lies behind is not read.
  EXPECT_EQ(SyncPhones({{u"1", 0x5}}), (std::vector<String>{u"G"}));
}

// The calendar variant files identifiers where the parent ID says.
TEST_F(reconciliation, calendar_identifiers_go_where_the_parent_id_says) {
  const struct {
    const char16_t* id;
    bool data, task;
  } rows[] = {{u"0001-Appointment-I", true, false}, {u"0002-Anniversary-I", true, false},
              {u"0003-Task-I", false, true},        {u"0004-AppointmentTask-I", true, true},
              {u"0005-Event-I", false, false},      {u"0006-appointment-I", false, false}};
  for (const auto& r : rows) {
    SCOPED_TRACE(ToDisplayUTF8(r.id));
    TestContainer container(r.id, table_);
    container.add(Dictionary{{u"value", u"x"}});
    EXPECT_TRUE(container.createMetaDataInCalendarWithKey(u"attendees", u"value").empty());
    table_->addMeta(Dictionary{{u"Data", Dictionary{}}, {u"Task Data", Dictionary{}}, {u"Contact Data", Dictionary{}}},
                    r.id);
    const std::vector<String> ids = container.createMetaDataInCalendarWithKey(u"attendees", u"value");
    ASSERT_EQ(ids.size(), 1u);
    const auto idsIn = [&](const char16_t* slot) {
      return Strings(Find(table_->meta(r.id)->at(slot).get<Dictionary>(), u"attendees"));
    };
    EXPECT_EQ(idsIn(u"Data"), r.data ? ids : std::vector<String>{});
    EXPECT_EQ(idsIn(u"Task Data"), r.task ? ids : std::vector<String>{});
    EXPECT_TRUE(idsIn(u"Contact Data").empty());
    EXPECT_EQ(StatesOf(Entries(*table_, r.id, u"attendees")), (States{"New/Linked"}));
  }
  // There is no trigger-duration fallback here.
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  table_->addMeta(
      Dictionary{{u"attendees", Array{Dictionary{{u"Data", Dictionary{{u"triggerduration", u"-PT15M"}}},
                                                 {u"identifier", u"A"}}}}},
      u"0001-Task-I");
  TestContainer container(u"0001-Task-I", table_);
  container.add(Dictionary{{u"value", u"-PT15M"}});
  EXPECT_DEATH(container.createMetaDataInCalendarWithKey(u"attendees", u"value"),
               AssertionPattern("metaPhoneNumber != nil"));
}

}  // namespace
}  // namespace phonepim
