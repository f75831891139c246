// Where the tables keep their meta files, how they read and write them, and
// the calendar table's entries and look-ups.

#include "MappingTestSupport.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;
using testing_support::Dump;
using testing_support::LogRecorder;
using testing_support::ReadFile;
using testing_support::ScratchFolder;

const String kIMEI = u"350123451234560";

// Sets (or, for null, unsets) an environment variable for one test.
struct ScopedEnv {
  ScopedEnv(const char* name, const char* value) : name(name) {
    if (const char* was = std::getenv(name)) old = was;
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
  }
  ~ScopedEnv() { old ? ::setenv(name, old->c_str(), 1) : ::unsetenv(name); }
  const char* name;
  std::optional<std::string> old;
};

TEST(meta_file_location, is_named_after_the_phone_in_the_data_folder_and_without_one_none) {
  ScratchFolder dataHome;
  const fs::path tovi = dataHome.path() / "Ulvrand/Tovi";
  {
    ScopedEnv scoped("XDG_DATA_HOME", dataHome.path().c_str());
    ContactIDMappingTable table(u"N95", kIMEI);
    EXPECT_EQ(table.mFilePath(),
              tovi / ".MetaFiles/N95(350123451234560)_ContactRecordIDMeta.plist");
    EXPECT_TRUE(fs::is_directory(table.mFilePath().parent_path()));
    EXPECT_EQ(ContactIDMappingTable::metaFilePath(kIMEI, u"N95"), table.mFilePath());
    EXPECT_EQ(CalendarIDMappingTable(u"N9", u"35").mFilePath(),
              tovi / "CalendarRecordIDMappingTable/Calendar_N9_35");
  }
  // A model name or IMEI cannot point elsewhere.
  EXPECT_EQ(ContactIDMappingTable::metaFilePath(u"35/0", u"../N95/8GB", dataHome.path()),
            tovi / ".MetaFiles/.._N95_8GB(35_0)_ContactRecordIDMeta.plist");
  EXPECT_EQ(ContactIDMappingTable::metaFilePath(String(u"3\0" u"5", 3), u"\u65e5", dataHome.path())
                .filename(),
            "\xe6\x97\xa5(3_5)_ContactRecordIDMeta.plist");
  EXPECT_EQ(CalendarIDMappingTable::metaFilePath(u"35/1", u"N9", dataHome.path()),
            tovi / "CalendarRecordIDMappingTable/Calendar_N9_35_1");
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
    const fs::path path = ContactIDMappingTable::metaFilePath(kIMEI, u"N95", base.path());
    if (bytes) std::ofstream(path) << *bytes;
    LogRecorder log(/*debugMode=*/true);
    ContactIDMappingTable table(u"N95", kIMEI, base.path());
    EXPECT_EQ(table.count(), 0u);
    EXPECT_EQ(LogRecorder::messages(),
              std::vector<std::string>(warned, "[load] Warning: cannot read " + path.string() +
                                                   "; starting with an empty table."));
    table.addDBID(std::nullopt, u"7");  // saving replaces the bad file
    ASSERT_TRUE(table.save());
    EXPECT_EQ(ContactIDMappingTable(u"N95", kIMEI, base.path()).count(), 1u);
  }
}

TEST(calendar_table, keeps_entries_by_phone_id_across_a_reload_and_a_failed_save) {
  const String event = u"0000000000000003-Calendar-35_Appointment";
  const String task = u"0000000000000004-Calendar-35_Task";
  ScratchFolder base;
  String calendarID;
  {
    CalendarIDMappingTable table(u"N9", u"35", base.path());
    calendarID = table.calendarRecordID();
    table.ensureEntry(task);
    table.addCalendar(event, u"S-3", Dictionary{{u"summary", u"a"}});
    table.ensureEntry(event);  // an existing entry stays as it is
    EXPECT_EQ(*table.meta(task), (Dictionary{{u"Link", u"Unlinked"}}));
    table.modifyCalendar(task, Dictionary{{u"summary", u"t"}});
    table.update();
    EXPECT_FALSE(fs::exists(table.mFilePath()));  // only save() writes
    ASSERT_TRUE(table.save());
  }
  CalendarIDMappingTable table(u"N9", u"35", base.path());
  EXPECT_EQ(Dump(table),
            "{0000000000000003-Calendar-35_Appointment={Data={summary='a'}, Link='Linked', "
            "State='AddedBySyncDB', dbRecordID='S-3'}, 0000000000000004-Calendar-35_Task={"
            "Link='Linked', State='Modified', Task Data={summary='t'}}, Calendar='U1'}");
  EXPECT_EQ(table.calendarRecordID(), calendarID);
  EXPECT_EQ(table.dbIDForVCalID(event), u"S-3");
  EXPECT_EQ(table.vCalIDForDBID(u"S-3"), event);
  const std::string saved = ReadFile(table.mFilePath());
  table.removeCalendar(event);
  table.removeCalendar(std::nullopt);
  // A NUL has no place in a property list's text: the old file stays whole.
  table.addCalendar(task, u"S-4", Dictionary{{u"summary", String(u"a\0b", 3)}});
  for (const bool debug : {false, true}) {  // logged in debug mode only
    LogRecorder log(debug);
    EXPECT_FALSE(table.save());
    EXPECT_EQ(LogRecorder::messages(),
              std::vector<std::string>(debug, "Writting file has a problem!!"));
  }
  EXPECT_EQ(ReadFile(table.mFilePath()), saved);
  EXPECT_EQ(std::distance(fs::directory_iterator(table.mFilePath().parent_path()), {}), 1);
  table.modifyCalendar(task, Dictionary{});
  ASSERT_TRUE(table.save());
  EXPECT_EQ(Dump(CalendarIDMappingTable(u"N9", u"35", base.path())),
            "{0000000000000004-Calendar-35_Task={Link='Linked', State='Modified', Task Data={}, "
            "dbRecordID='S-4'}, Calendar='U1'}");
  EXPECT_FALSE(CalendarIDMappingTable().save());
}

}  // namespace
}  // namespace phonepim
