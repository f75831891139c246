// Where the tables keep their meta files, how they read and write them, and
// the calendar table's entries and look-ups.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "MappingTestSupport.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/mapping/ContactIDMappingTable.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;
using testing_support::LogRecorder;
using testing_support::ReadFile;
using testing_support::ScratchFolder;
using testing_support::WriteFile;

const String kIMEI = u"350123451234560";
fs::path MetaFile(const fs::path& base) {
  return base / "Ulvrand/Tovi/.MetaFiles/N95(350123451234560)_ContactRecordIDMeta.plist";
}

TEST(meta_file_location, is_under_the_three_folders_and_named_after_the_phone_only) {
  ScratchFolder base;
  const fs::path path = ContactIDMappingTable::metaFilePath(kIMEI, u"N95", base.path());
  EXPECT_EQ(path, MetaFile(base.path()));
  EXPECT_TRUE(fs::is_directory(path.parent_path()));
  EXPECT_FALSE(fs::exists(path));  // finding the path creates no file
  EXPECT_EQ(ContactIDMappingTable::metaFilePath(kIMEI, u"N95", base.path()), path);
  // A model name or IMEI cannot point elsewhere.
  EXPECT_EQ(ContactIDMappingTable::metaFilePath(u"35/0", u"../N95/8GB", base.path()),
            path.parent_path() / ".._N95_8GB(35_0)_ContactRecordIDMeta.plist");
  EXPECT_EQ(ContactIDMappingTable::metaFilePath(String(u"3\0" u"5", 3), u"\u65e5", base.path())
                .filename(),
            "\xe6\x97\xa5(3_5)_ContactRecordIDMeta.plist");
  EXPECT_EQ(CalendarIDMappingTable::metaFilePath(u"35/1", u"N9", base.path()),
            base.path() / "Ulvrand/Tovi/CalendarRecordIDMappingTable/Calendar_N9_35_1");
}

// Sets (or, for null, unsets) an environment variable for one test.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
  }
  ~ScopedEnv() { old_ ? ::setenv(name_, old_->c_str(), 1) : ::unsetenv(name_); }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

TEST(meta_file_location, defaults_to_the_data_folder_and_without_one_is_not_saved) {
  ScratchFolder dataHome;
  {
    ScopedEnv scoped("XDG_DATA_HOME", dataHome.path().c_str());
    ContactIDMappingTable table(u"N95", kIMEI);
    EXPECT_EQ(table.mFilePath(), MetaFile(dataHome.path()));
    EXPECT_EQ(ContactIDMappingTable::metaFilePath(kIMEI, u"N95"), table.mFilePath());
    EXPECT_EQ(CalendarIDMappingTable(u"N9", u"35").mFilePath(),
              dataHome.path() / "Ulvrand/Tovi/CalendarRecordIDMappingTable/Calendar_N9_35");
    table.addDBID(std::nullopt, u"7");
    ASSERT_TRUE(table.save());
    EXPECT_EQ(ContactIDMappingTable(u"N95", kIMEI).count(), 1u);
  }
  ScopedEnv noDataHome("XDG_DATA_HOME", nullptr);
  ScopedEnv noHome("HOME", nullptr);
  LogRecorder log(/*debugMode=*/false);
  EXPECT_THROW(ContactIDMappingTable::metaFilePath(u"1", u"M"), std::runtime_error);
  ContactIDMappingTable table(u"M", u"1");
  EXPECT_TRUE(table.mFilePath().empty());
  EXPECT_TRUE(CalendarIDMappingTable(u"M", u"1").mFilePath().empty());
  table.addDBID(std::nullopt, u"7");
  EXPECT_FALSE(table.save());
  EXPECT_TRUE(LogRecorder::messages().empty());
}

TEST(meta_file, an_unreadable_file_is_an_empty_table_and_a_warning_in_debug_mode) {
  const std::pair<std::optional<std::string>, bool> files[] = {  // bytes; warned
      {std::nullopt, false},  // no file
      {"", true},
      {"<?xml version=\"1.0\"?><plist version=\"1.0\"><array/></plist>", true},
  };
  for (const auto& [bytes, warned] : files) {
    ScratchFolder base;
    if (bytes) WriteFile(ContactIDMappingTable::metaFilePath(kIMEI, u"N95", base.path()), *bytes);
    LogRecorder log(/*debugMode=*/true);
    ContactIDMappingTable table(u"N95", kIMEI, base.path());
    EXPECT_EQ(table.count(), 0u);
    ASSERT_EQ(LogRecorder::messages().size(), warned ? 1u : 0u);
    if (warned) {
      EXPECT_NE(LogRecorder::messages()[0].find("cannot read"), std::string::npos);
    }
    table.addDBID(std::nullopt, u"7");  // saving replaces the bad file
    ASSERT_TRUE(table.save());
    EXPECT_EQ(ContactIDMappingTable(u"N95", kIMEI, base.path()).count(), 1u);
  }
}

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
    table.modifyCalendar(kTask, Dictionary{{u"summary", u"t"}});
    table.update();
    EXPECT_FALSE(fs::exists(table.mFilePath()));  // only save() writes
    ASSERT_TRUE(table.save());
  }
  const std::string saved =
      ReadFile(CalendarIDMappingTable::metaFilePath(u"35", u"N9", base.path()));
  EXPECT_EQ(saved.substr(0, 5), "<?xml");
  CalendarIDMappingTable table(u"N9", u"35", base.path());
  EXPECT_EQ(testing_support::Dump(table),
            "{0000000000000003-Calendar-35_Appointment={Data={summary='a'}, Link='Linked', "
            "State='AddedBySyncDB', dbRecordID='S-3'}, 0000000000000004-Calendar-35_Task={"
            "Link='Linked', State='Modified', Task Data={summary='t'}}, Calendar='U1'}");
  EXPECT_EQ(table.modelName(), u"N9");
  EXPECT_EQ(table.calendarRecordID(), calendarID);
  EXPECT_EQ(table.dbIDForVCalID(kEvent), u"S-3");
  EXPECT_EQ(table.dbIDForVCalID(kTask), std::nullopt);
  EXPECT_EQ(table.vCalIDForDBID(u"S-3"), kEvent);
  EXPECT_EQ(table.vCalIDForDBID(kEvent), std::nullopt);
  table.meta(kTask)->insert_or_assign(u"dbRecordID", u"S-4");
  EXPECT_EQ(table.vCalIDForDBID(u"S-4"), kTask);
  table.removeCalendar(kTask);
  table.removeCalendar(std::nullopt);
  EXPECT_EQ(table.count(), 2u);
  EXPECT_EQ(ReadFile(table.mFilePath()), saved);
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
       fs::permissions(table.mFilePath().parent_path(),
                       fs::perms::owner_read | fs::perms::owner_exec);
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
      LogRecorder log(debug);
      EXPECT_FALSE(table.save());
      EXPECT_EQ(LogRecorder::messages(),
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
