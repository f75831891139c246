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

const String kPhones = u"phone numbers";

// --- Records ---

TEST(base_container, records_by_index_and_by_identifier) {
  TestContainer container(u"C", nullptr);
  EXPECT_EQ(container.count(), 0);
  EXPECT_TRUE(container.recordIDs().empty());
  container.add(Dictionary{{u"value", u"a"}, {u"identifier", u"ID-1"}});
  container.add(Dictionary{{u"value", u"b"}});
  container.add(Dictionary{{u"value", u"c"}, {u"identifier", u"ID-3"}});
  container.add(Dictionary{{u"value", u"d"}, {u"identifier", u"ID-1"}});
  container.add(Dictionary{{u"value", u"e"}, {u"identifier", 5}});

  ASSERT_EQ(container.count(), 5);
  EXPECT_EQ(container.recordAtIndex(1).at(u"value"), Value(u"b"));
  EXPECT_EQ(container.recordIDs(), (std::vector<String>{u"ID-1", u"ID-3", u"ID-1"}));
  ASSERT_NE(container.recordByID(u"ID-1"), nullptr);
  EXPECT_EQ(container.recordByID(u"ID-1"), &container.recordAtIndex(0));
  EXPECT_EQ(container.recordByID(u"ID-3"), &container.recordAtIndex(2));
  EXPECT_EQ(container.recordByID(u"ID-2"), nullptr);
  EXPECT_EQ(container.recordByID(u"5"), nullptr);

  container.removeAllRecords();
  EXPECT_EQ(container.count(), 0);
}

TEST(base_container_DeathTest, an_index_outside_the_records_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  TestContainer container(u"C", nullptr);
  const std::string pattern = AssertionPattern("nIndex < [mItemArray count] && nIndex >= 0");
  EXPECT_DEATH(container.recordAtIndex(0), pattern);
  container.add(Dictionary{});
  EXPECT_DEATH(container.recordAtIndex(1), pattern);
  EXPECT_DEATH(container.recordAtIndex(-1), pattern);
}

// --- compareSource ---

struct CompareCase {
  const char* name;
  Value source;
  Value target;
  bool expected;
};

void PrintTo(const CompareCase& row, std::ostream* os) { *os << row.name; }

const CompareCase kCompareCases[] = {
    {"equal_strings", Value(u"555"), Value(u"555"), true},
    {"unequal_strings", Value(u"555"), Value(u"556"), false},
    {"strings_differ_in_case", Value(u"a@b"), Value(u"A@b"), false},
    {"empty_strings", Value(u""), Value(u""), true},
    {"equal_dates", Value(Date{86400.5}), Value(Date{86400.5}), true},
    {"unequal_dates", Value(Date{86400.5}), Value(Date{86400.0}), false},
    {"string_and_date", Value(u"0"), Value(Date{0}), false},
    {"date_and_string", Value(Date{0}), Value(u"0"), false},
    {"equal_integers", Value(7), Value(7), false},
    {"equal_reals", Value(1.5), Value(1.5), false},
    {"equal_booleans", Value(true), Value(true), false},
    {"equal_bytes", Value(Bytes{1}), Value(Bytes{1}), false},
    {"equal_arrays", Value(Array{Value(u"a")}), Value(Array{Value(u"a")}), false},
    {"equal_dictionaries", Value(Dictionary{}), Value(Dictionary{}), false},
};

class base_container_compare : public ::testing::TestWithParam<CompareCase> {};

TEST_P(base_container_compare, only_strings_and_dates_can_be_equal) {
  const CompareCase& row = GetParam();
  EXPECT_EQ(BaseContainer::compareSource(&row.source, &row.target), row.expected);
  EXPECT_FALSE(BaseContainer::compareSource(nullptr, &row.target));
  EXPECT_FALSE(BaseContainer::compareSource(&row.source, nullptr));
}

INSTANTIATE_TEST_SUITE_P(rows, base_container_compare, ::testing::ValuesIn(kCompareCases),
                         [](const auto& info) { return std::string(info.param.name); });

// --- Reconciliation ---

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
    const Dictionary& data = table_->meta(u"C")->at(u"Contact Data").get<Dictionary>();
    return Strings(Find(data, kPhones));
  }

  std::shared_ptr<ContactIDMappingTable> table_;
};

TEST_F(reconciliation, first_sync_makes_a_new_linked_entry_per_record) {
  PhoneContainer container(u"C", table_);
  container.addPhone(String(u"111"), 0x5, std::nullopt, false);
  container.addPhone(String(u"222"), 0x20, std::nullopt, false);
  container.addPhone(String(u"111"), 0x6, std::nullopt, false);
  const std::vector<String> ids = container.createMetaData();

  const Array& entries = Phones();
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(StatesOf(entries),
            (std::vector<std::string>{"New/Linked", "New/Linked", "New/Linked"}));
  EXPECT_EQ(IdentifiersOf(entries), ids);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(DataOf(entries[i]), container.recordAtIndex(static_cast<int>(i)));
    EXPECT_EQ(ids[i].size(), 36u);
  }
  EXPECT_EQ(std::set<String>(ids.begin(), ids.end()).size(), 3u);
  EXPECT_EQ(ContactDataPhones(), ids);
  // The rest of the store data stays.
  EXPECT_EQ(table_->meta(u"C")->at(u"Contact Data").get<Dictionary>().at(u"first name"),
            Value(u"Ann"));
}

TEST_F(reconciliation, unchanged_second_sync_keeps_every_identifier) {
  const std::vector<String> first = SyncPhones({{u"111", 0x5}, {u"222", 0x20}});
  const std::vector<String> second = SyncPhones({{u"111", 0x5}, {u"222", 0x20}});
  EXPECT_EQ(second, first);
  EXPECT_EQ(StatesOf(Phones()), (std::vector<std::string>{"NoChange/Linked", "NoChange/Linked"}));
  EXPECT_EQ(IdentifiersOf(Phones()), first);
  EXPECT_EQ(ContactDataPhones(), first);
}

TEST_F(reconciliation, a_changed_value_deletes_the_old_entry_and_adds_a_new_one) {
  const std::vector<String> first = SyncPhones({{u"111", 0x5}, {u"222", 0x5}, {u"333", 0x5}});
  const std::vector<String> second = SyncPhones({{u"111", 0x5}, {u"999", 0x5}, {u"333", 0x5}});

  const Array& entries = Phones();
  ASSERT_EQ(entries.size(), 4u);
  EXPECT_EQ(StatesOf(entries), (std::vector<std::string>{"NoChange/Linked", "Delete/Unlinked",
                                                          "NoChange/Linked", "New/Linked"}));
  EXPECT_EQ(DataOf(entries[1]).at(u"value"), Value(u"222"));
  EXPECT_EQ(DataOf(entries[3]).at(u"value"), Value(u"999"));
  const String fresh = IdentifiersOf(entries)[3];
  EXPECT_EQ(second, (std::vector<String>{first[0], fresh, first[2]}));
  EXPECT_NE(fresh, first[1]);
  EXPECT_EQ(ContactDataPhones(), second);
}

TEST_F(reconciliation, equal_values_claim_distinct_entries) {
  const std::vector<String> first = SyncPhones({{u"555", 0x5}, {u"555", 0x6}});
  const std::vector<String> second = SyncPhones({{u"555", 0x5}, {u"555", 0x6}, {u"555", 0x20}});

  const Array& entries = Phones();
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(StatesOf(entries),
            (std::vector<std::string>{"NoChange/Linked", "NoChange/Linked", "New/Linked"}));
  EXPECT_EQ(second[0], first[0]);
  EXPECT_EQ(second[1], first[1]);
  EXPECT_NE(second[2], first[0]);
  EXPECT_NE(second[2], first[1]);

  // Fewer equal numbers next time: the surplus entries are deleted.
  const std::vector<String> third = SyncPhones({{u"555", 0x5}});
  EXPECT_EQ(third, (std::vector<String>{first[0]}));
  EXPECT_EQ(StatesOf(Phones()),
            (std::vector<std::string>{"NoChange/Linked", "Delete/Unlinked", "Delete/Unlinked"}));
}

TEST_F(reconciliation, a_label_only_change_is_not_seen_and_keeps_the_old_data) {
  const std::vector<String> first = SyncPhones({{u"555", 0x5}});
  ASSERT_EQ(DataOf(Phones()[0]).at(u"type"), Value(u"home"));
  const std::vector<String> second = SyncPhones({{u"555", 0x810}});
  EXPECT_EQ(second, first);
  ASSERT_EQ(Phones().size(), 1u);
  EXPECT_EQ(StatesOf(Phones()), (std::vector<std::string>{"NoChange/Linked"}));
  EXPECT_EQ(DataOf(Phones()[0]).at(u"type"), Value(u"home"));
  EXPECT_EQ(Find(DataOf(Phones()[0]), u"label"), nullptr);
}

TEST_F(reconciliation, a_number_valued_field_is_re_created_every_time) {
  std::vector<String> previous;
  for (int round = 1; round <= 3; ++round) {
    TestContainer container(u"C", table_);
    container.add(Dictionary{{u"value", 7}});
    const std::vector<String> ids = container.createMetaData();
    ASSERT_EQ(ids.size(), 1u);
    const Array& entries = Phones();
    ASSERT_EQ(entries.size(), static_cast<std::size_t>(round));
    EXPECT_EQ(StatesOf(entries).back(), "New/Linked");
    if (round > 1) {
      EXPECT_EQ(StatesOf(entries)[static_cast<std::size_t>(round) - 2], "Delete/Unlinked");
      EXPECT_NE(ids, previous);
    }
    previous = ids;
  }
}

TEST_F(reconciliation, dates_match_as_instants) {
  const auto sync = [this](double date) {
    DateContainer container(u"C", table_);
    container.addDate(Date{date}, 0);
    return container.createMetaData();
  };
  const std::vector<String> first = sync(1.0e9);
  EXPECT_EQ(sync(1.0e9), first);
  const std::vector<String> moved = sync(1.0e9 + 1);
  EXPECT_NE(moved, first);
  EXPECT_EQ(StatesOf(Entries(*table_, u"C", u"dates")),
            (std::vector<std::string>{"Delete/Unlinked", "New/Linked"}));
}

TEST_F(reconciliation, no_records_left_deletes_every_entry_and_keeps_contact_data) {
  const std::vector<String> first = SyncPhones({{u"1", 0x5}, {u"2", 0x5}});
  EXPECT_TRUE(SyncPhones({}).empty());
  EXPECT_EQ(StatesOf(Phones()), (std::vector<std::string>{"Delete/Unlinked", "Delete/Unlinked"}));
  EXPECT_EQ(ContactDataPhones(), first);
}

TEST_F(reconciliation, without_meta_nothing_happens) {
  PhoneContainer container(u"UNKNOWN", table_);
  container.addPhone(String(u"1"), 0x5, std::nullopt, false);
  EXPECT_TRUE(container.createMetaData().empty());
  EXPECT_EQ(table_->meta(u"UNKNOWN"), nullptr);
  EXPECT_EQ(table_->count(), 1u);

  PhoneContainer tableless(u"C", nullptr);
  tableless.addPhone(String(u"1"), 0x5, std::nullopt, false);
  EXPECT_TRUE(tableless.createMetaData().empty());
  EXPECT_EQ(Find(*table_->meta(u"C"), kPhones), nullptr);
}

TEST_F(reconciliation, meta_without_contact_data_gets_entries_only) {
  table_->addMeta(Dictionary{{u"State", u"Modified"}}, u"D");
  PhoneContainer container(u"D", table_);
  container.addPhone(String(u"1"), 0x5, std::nullopt, false);
  EXPECT_EQ(container.createMetaData().size(), 1u);
  EXPECT_EQ(Entries(*table_, u"D", kPhones).size(), 1u);
  EXPECT_EQ(Find(*table_->meta(u"D"), u"Contact Data"), nullptr);
}

TEST_F(reconciliation, a_list_that_is_not_a_list_is_replaced) {
  table_->meta(u"C")->insert_or_assign(kPhones, u"garbage");
  const std::vector<String> ids = SyncPhones({{u"1", 0x5}});
  EXPECT_EQ(StatesOf(Phones()), (std::vector<std::string>{"New/Linked"}));
  EXPECT_EQ(IdentifiersOf(Phones()), ids);
}

TEST_F(reconciliation, an_alarm_entry_matches_on_its_trigger_duration) {
  table_->meta(u"C")->insert_or_assign(
      kPhones, Array{Dictionary{{u"Data", Dictionary{{u"triggerduration", u"-PT15M"}}},
                                {u"State", u"Added"},
                                {u"Link", u"Linked"},
                                {u"identifier", u"ALARM"}}});
  TestContainer container(u"C", table_);
  container.add(Dictionary{{u"value", u"-PT15M"}});
  EXPECT_EQ(container.createMetaData(), (std::vector<String>{u"ALARM"}));
  EXPECT_EQ(StatesOf(Phones()), (std::vector<std::string>{"NoChange/Linked"}));
}

TEST_F(reconciliation, DeathTest_broken_entries_fail_their_assertions) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const auto withEntries = [this](Array entries) {
    table_->meta(u"C")->insert_or_assign(kPhones, std::move(entries));
  };
  const Dictionary good{{u"Data", Dictionary{{u"value", u"1"}}}, {u"identifier", u"G"}};

  withEntries(Array{good, Dictionary{{u"identifier", u"X"}}});
  EXPECT_DEATH(SyncPhones({{u"2", 0x5}}), AssertionPattern("metaPhoneData != nil"));
  withEntries(Array{good, Dictionary{{u"Data", u"not a dictionary"}}});
  EXPECT_DEATH(SyncPhones({{u"2", 0x5}}), AssertionPattern("metaPhoneData != nil"));
  withEntries(Array{good, Value(u"not an entry")});
  EXPECT_DEATH(SyncPhones({{u"2", 0x5}}), AssertionPattern("metaPhoneData != nil"));
  withEntries(Array{good, Dictionary{{u"Data", Dictionary{{u"type", u"home"}}}}});
  EXPECT_DEATH(SyncPhones({{u"2", 0x5}}), AssertionPattern("metaPhoneNumber != nil"));

  // The walk stops at the entry it claims: what lies behind is not read.
  withEntries(Array{good, Dictionary{{u"identifier", u"X"}}});
  EXPECT_EQ(SyncPhones({{u"1", 0x5}}), (std::vector<String>{u"G"}));
}

// --- The calendar variant ---

class calendar_reconciliation : public TableFixture {
 protected:
  void SetUp() override { table_ = NewTable(); }

  // Reconciles one record for the parent `id` whose meta holds "Data",
  // "Task Data" and "Contact Data" dictionaries.
  std::vector<String> Sync(const String& id) {
    table_->addMeta(Dictionary{{u"Data", Dictionary{}},
                               {u"Task Data", Dictionary{}},
                               {u"Contact Data", Dictionary{}}},
                    id);
    TestContainer container(id, table_);
    container.add(Dictionary{{u"value", u"x"}});
    return container.createMetaDataInCalendarWithKey(u"attendees", u"value");
  }

  std::vector<String> IdsIn(const String& id, const String& slot) const {
    return Strings(Find(table_->meta(id)->at(slot).get<Dictionary>(), u"attendees"));
  }

  std::shared_ptr<ContactIDMappingTable> table_;
};

TEST_F(calendar_reconciliation, identifiers_go_where_the_parent_id_says) {
  struct Row {
    const char16_t* id;
    bool data;
    bool task;
  };
  const Row rows[] = {
      {u"0001-Appointment-I", true, false}, {u"0002-Anniversary-I", true, false},
      {u"0003-Task-I", false, true},        {u"0004-AppointmentTask-I", true, true},
      {u"0005-Event-I", false, false},      {u"0006-appointment-I", false, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(ToDisplayUTF8(row.id));
    const std::vector<String> ids = Sync(row.id);
    ASSERT_EQ(ids.size(), 1u);
    EXPECT_EQ(IdsIn(row.id, u"Data"), row.data ? ids : std::vector<String>{});
    EXPECT_EQ(IdsIn(row.id, u"Task Data"), row.task ? ids : std::vector<String>{});
    EXPECT_TRUE(IdsIn(row.id, u"Contact Data").empty());
    EXPECT_EQ(StatesOf(Entries(*table_, row.id, u"attendees")),
              (std::vector<std::string>{"New/Linked"}));
  }
}

TEST_F(calendar_reconciliation, without_meta_nothing_is_written) {
  TestContainer container(u"0001-Appointment-I", table_);
  container.add(Dictionary{{u"value", u"x"}});
  EXPECT_TRUE(container.createMetaDataInCalendarWithKey(u"attendees", u"value").empty());
  EXPECT_EQ(table_->count(), 0u);
}

TEST_F(calendar_reconciliation, DeathTest_there_is_no_trigger_duration_fallback) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  table_->addMeta(
      Dictionary{{u"attendees",
                  Array{Dictionary{{u"Data", Dictionary{{u"triggerduration", u"-PT15M"}}},
                                   {u"identifier", u"A"}}}}},
      u"0001-Task-I");
  TestContainer container(u"0001-Task-I", table_);
  container.add(Dictionary{{u"value", u"-PT15M"}});
  EXPECT_DEATH(container.createMetaDataInCalendarWithKey(u"attendees", u"value"),
               AssertionPattern("metaPhoneNumber != nil"));
}

// --- Meta access ---

TEST_F(reconciliation, metaDataWithKey_reads_the_parents_meta) {
  PhoneContainer container(u"C", table_);
  const Value* data = container.metaDataWithKey(u"Contact Data");
  ASSERT_NE(data, nullptr);
  EXPECT_TRUE(data->is<Dictionary>());
  EXPECT_EQ(container.metaDataWithKey(u"nothing"), nullptr);
  EXPECT_EQ(PhoneContainer(u"UNKNOWN", table_).metaDataWithKey(u"Contact Data"), nullptr);
  EXPECT_EQ(PhoneContainer(u"C", nullptr).metaDataWithKey(u"Contact Data"), nullptr);
}

}  // namespace
}  // namespace phonepim
