// The calendar table: its entries, the look-ups both ways, and saves that fail.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "MappingTestSupport.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;
using testing_support::ReadFile;
using testing_support::ScratchFolder;

const String kEvent = u"0000000000000003-Calendar-35_Appointment";
const String kTask = u"0000000000000004-Calendar-35_Task";

TEST(calendar_table, keeps_entries_by_phone_id_across_a_reload) {
  ScratchFolder base;
  String calendarID;
  {
    CalendarIDMappingTable table(u"N9", u"35", base.path());
    calendarID = table.calendarRecordID();
    table.ensureEntry(kTask);
    table.addCalendar(kEvent, u"S-3", Dictionary{{u"summary", u"a"}});
    table.ensureEntry(kEvent);  // an existing entry stays as it is
    EXPECT_EQ(*table.meta(kTask), (Dictionary{{u"Link", u"Unlinked"}}));
    EXPECT_EQ(*table.meta(kEvent), (Dictionary{{u"Data", Dictionary{{u"summary", u"a"}}},
                                               {u"Link", u"Linked"},
                                               {u"State", u"AddedBySyncDB"},
                                               {u"dbRecordID", u"S-3"}}));
    table.modifyCalendar(kTask, Dictionary{{u"summary", u"t"}});
    EXPECT_EQ(*table.meta(kTask), (Dictionary{{u"Link", u"Linked"},
                                              {u"State", u"Modified"},
                                              {u"Task Data", Dictionary{{u"summary", u"t"}}}}));
    ASSERT_TRUE(table.save());
  }
  CalendarIDMappingTable table(u"N9", u"35", base.path());
  EXPECT_EQ(table.modelName(), u"N9");
  EXPECT_EQ(table.calendarRecordID(), calendarID);
  EXPECT_EQ(table.dbIDForVCalID(kEvent), u"S-3");
  EXPECT_EQ(table.dbIDForVCalID(kTask), std::nullopt);
  EXPECT_EQ(table.vCalIDForDBID(u"S-3"), kEvent);
  EXPECT_EQ(table.vCalIDForDBID(kEvent), std::nullopt);
  table.meta(kTask)->insert_or_assign(u"dbRecordID", u"S-4");
  EXPECT_EQ(table.vCalIDForDBID(u"S-4"), kTask);
  // Tagging spares the states the store set; the flat calendar ID is no entry.
  table.ensureEntry(u"0000000000000005-Calendar-35_Anniversary");
  table.setRemovedTagToAllMeta();
  EXPECT_EQ(table.countRemovedTagRecords(), 1u);
  table.removeAllRemovedTagRecords();
  EXPECT_EQ(table.allKeys(), (std::vector<String>{kEvent, kTask, u"Calendar"}));
  table.removeCalendar(kTask);
  table.removeCalendar(std::nullopt);
  EXPECT_EQ(table.count(), 2u);
  EXPECT_FALSE(CalendarIDMappingTable().save());
}

struct SaveFailure {
  const char* name;
  std::function<void(CalendarIDMappingTable&)> cause;
  bool readOnly = false;
};

void PrintTo(const SaveFailure& failure, std::ostream* out) { *out << failure.name; }

const SaveFailure kFailures[] = {
    {"read_only_folder",
     [](CalendarIDMappingTable& table) {
       fs::permissions(table.mFilePath().parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
       table.addCalendar(kTask, u"S-4", Dictionary{});
     },
     true},
    {"value_that_cannot_be_stored",
     [](CalendarIDMappingTable& table) {
       table.addCalendar(kTask, u"S-4", Dictionary{{u"summary", String(u"a\0b", 3)}});
     }},
};

class calendar_table_save : public testing::TestWithParam<SaveFailure> {};

TEST_P(calendar_table_save, fails_keeping_the_old_file_and_the_table) {
  ScratchFolder base;
  CalendarIDMappingTable table(u"N9", u"35", base.path());
  table.addCalendar(kEvent, u"S-3", Dictionary{});
  ASSERT_TRUE(table.save());
  const std::string saved = ReadFile(table.mFilePath());
  GetParam().cause(table);
  if (GetParam().readOnly && ::geteuid() == 0) {
    // Root writes into read-only folders: a child that gave root up saves.
    EXPECT_EXIT(::_exit(::setuid(65534) == 0 && !table.save() ? 0 : 1),
                testing::ExitedWithCode(0), "");
  } else {
    for (const bool debug : {false, true}) {  // logged in debug mode only
      testing_support::LogRecorder log(debug);
      EXPECT_FALSE(table.save());
      EXPECT_EQ(testing_support::LogRecorder::messages(),
                std::vector<std::string>(debug, "Writting file has a problem!!"));
    }
  }
  fs::permissions(table.mFilePath().parent_path(), fs::perms::owner_all);
  EXPECT_EQ(ReadFile(table.mFilePath()), saved);
  EXPECT_EQ(std::distance(fs::directory_iterator(table.mFilePath().parent_path()),
                          fs::directory_iterator()),
            1);
  EXPECT_EQ(table.vCalIDForDBID(u"S-4"), kTask);
  table.modifyCalendar(kTask, Dictionary{});
  EXPECT_TRUE(table.save());
  EXPECT_EQ(CalendarIDMappingTable(u"N9", u"35", base.path()).vCalIDForDBID(u"S-4"), kTask);
}

INSTANTIATE_TEST_SUITE_P(causes, calendar_table_save, testing::ValuesIn(kFailures),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim
