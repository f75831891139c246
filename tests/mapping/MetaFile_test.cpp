// Where the contact table keeps its meta file, and how it reads and writes it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "MappingTestSupport.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/platform/PropertyList.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;
using testing_support::LogRecorder;
using testing_support::ReadFile;
using testing_support::ScratchFolder;
using testing_support::WriteFile;

constexpr const char* kFileName = "N95(350123451234560)_ContactRecordIDMeta.plist";

fs::path MetaFolder(const fs::path& base) { return base / "Ulvrand" / "Tovi" / ".MetaFiles"; }

// A table filled the way a sync leaves it: contacts with sub-record lists,
// dates and data in their store records, and flat pairs beside them.
void Fill(ContactIDMappingTable& table) {
  const Dictionary phone{{u"type", u"mobile"},
                         {u"value", u"+44 20 7946 0000"},
                         {u"contact", Array{Value(u"C-1")}}};
  table.addContact(u"C-1", Dictionary{{u"first name", u"Ada"},
                                      {u"birthday", Date{-4449945600.0}},  // 1828-12-10
                                      {u"image", Bytes{0x89, 'P', 'N', 'G', 0x00, 0xFF}},
                                      {u"phone numbers", Array{Value(u"P-1"), Value(u"P-2")}}});
  table.meta(u"C-1")->insert_or_assign(u"vCardID", u"0000000000000001-Contact-350123451234560");
  table.addDataForPhoneID(u"P-1", phone, u"C-1");
  table.addDataForPhoneID(u"P-2", Dictionary{{u"type", u"work"}, {u"value", u"1"}}, u"C-1");
  table.addEmailForEmailID(u"E-1", Dictionary{{u"value", u"ada@example.org"}}, u"C-1");
  table.addDateForDateID(u"D-1", Dictionary{{u"value", Date{1234567890.0}}}, u"C-1");
  table.addPhoneRecordID(u"P-1", u"C-1");
  table.addContact(u"C-2", Dictionary{{u"last name", u"\u5c71\u7530"},
                                      {u"score", 3.25},
                                      {u"count", std::int64_t{-9000000000}},
                                      {u"flag", true}});
  table.addDBID(u"S-9", u"0000000000000009-Contact-350123451234560");
  table.addDBID(std::nullopt, u"7");
}

TEST(meta_file_location, is_under_the_three_folders_and_named_after_the_phone_only) {
  ScratchFolder base;
  const fs::path path =
      ContactIDMappingTable::metaFilePath(u"350123451234560", u"N95", base.path());
  EXPECT_EQ(path, MetaFolder(base.path()) / kFileName);
  EXPECT_TRUE(fs::is_directory(MetaFolder(base.path())));
  EXPECT_FALSE(fs::exists(path));  // finding the path creates no file
  // An existing chain is no error.
  EXPECT_EQ(ContactIDMappingTable::metaFilePath(u"350123451234560", u"N95", base.path()), path);
  // A model name or IMEI cannot point elsewhere.
  EXPECT_EQ(ContactIDMappingTable::metaFilePath(u"35/0", u"../N95/8GB", base.path()),
            MetaFolder(base.path()) / ".._N95_8GB(35_0)_ContactRecordIDMeta.plist");
  EXPECT_EQ(ContactIDMappingTable::metaFilePath(String(u"3\0" u"5", 3), u"\u65e5\u672c",
                                                base.path())
                .filename(),
            "\xe6\x97\xa5\xe6\x9c\xac(3_5)_ContactRecordIDMeta.plist");
}

// Sets XDG_DATA_HOME for one test and puts the old value back.
class ScopedDataHome {
 public:
  explicit ScopedDataHome(const char* value) {
    if (const char* old = std::getenv("XDG_DATA_HOME")) old_ = old;
    if (value) {
      ::setenv("XDG_DATA_HOME", value, 1);
    } else {
      ::unsetenv("XDG_DATA_HOME");
    }
  }
  ~ScopedDataHome() {
    if (old_) {
      ::setenv("XDG_DATA_HOME", old_->c_str(), 1);
    } else {
      ::unsetenv("XDG_DATA_HOME");
    }
  }

 private:
  std::optional<std::string> old_;
};

TEST(meta_file_location, defaults_to_the_application_data_folder) {
  ScratchFolder dataHome;
  ScopedDataHome scoped(dataHome.path().c_str());
  ContactIDMappingTable table(u"N95", u"350123451234560");
  EXPECT_EQ(table.mFilePath(), MetaFolder(dataHome.path()) / kFileName);
  EXPECT_EQ(ContactIDMappingTable::metaFilePath(u"350123451234560", u"N95"), table.mFilePath());
  table.addDBID(std::nullopt, u"7");
  ASSERT_TRUE(table.save());
  EXPECT_EQ(ContactIDMappingTable(u"N95", u"350123451234560").count(), 1u);
}

TEST(meta_file_location, without_any_folder_the_table_works_but_is_not_saved) {
  ScopedDataHome scoped(nullptr);
  const std::optional<std::string> home =
      std::getenv("HOME") ? std::optional<std::string>(std::getenv("HOME")) : std::nullopt;
  ::unsetenv("HOME");
  {
    LogRecorder log(/*debugMode=*/false);
    EXPECT_THROW(ContactIDMappingTable::metaFilePath(u"1", u"M"), std::runtime_error);
    ContactIDMappingTable table(u"M", u"1");
    EXPECT_TRUE(table.mFilePath().empty());
    table.addDBID(std::nullopt, u"7");
    EXPECT_EQ(table.count(), 1u);
    EXPECT_FALSE(table.save());
    EXPECT_TRUE(LogRecorder::messages().empty());
  }
  if (home) ::setenv("HOME", home->c_str(), 1);
}

// Only save() writes; what it wrote reloads equal, and so does the same
// table as a binary list.
TEST(meta_file, saved_table_reloads_equal_from_xml_and_binary) {
  ScratchFolder base;
  ContactIDMappingTable table(u"N95", u"350123451234560", base.path());
  Fill(table);
  table.update();
  EXPECT_FALSE(fs::exists(table.mFilePath()));
  ASSERT_TRUE(table.save());
  const std::string saved = ReadFile(table.mFilePath());
  EXPECT_EQ(saved.substr(0, 5), "<?xml");

  ContactIDMappingTable reloaded(u"N95", u"350123451234560", base.path());
  EXPECT_EQ(reloaded.mTable(), table.mTable());
  EXPECT_EQ(reloaded.count(), 5u);
  EXPECT_EQ(reloaded.dbIDForVCardID(u"0000000000000001-Contact-350123451234560"), u"C-1");
  reloaded.removeContact(u"C-1");
  EXPECT_EQ(ReadFile(table.mFilePath()), saved);

  const Bytes binary = *PropertyListFromValue(Value(table.mTable()), PropertyListFormat::Binary);
  WriteFile(table.mFilePath(), std::string(binary.begin(), binary.end()));
  EXPECT_EQ(ContactIDMappingTable(u"N95", u"350123451234560", base.path()).mTable(),
            table.mTable());
}

TEST(meta_file, a_hand_written_xml_file_loads) {
  ScratchFolder base;
  const fs::path path = ContactIDMappingTable::metaFilePath(u"1", u"M", base.path());
  WriteFile(path,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<plist version=\"1.0\">\n"
            "<dict>\n"
            "  <key>4A1B</key>\n"
            "  <dict>\n"
            "    <key>State</key><string>Modified</string>\n"
            "    <key>vCardID</key><string>0000000000000012-Croup-1</string>\n"
            "    <key>Contact Data</key>\n"
            "    <dict><key>LMT</key><string>20240229T080000Z</string>\n"
            "          <key>modified</key><date>2024-02-29T08:00:00Z</date></dict>\n"
            "    <key>phone numbers</key>\n"
            "    <array><dict>\n"
            "      <key>Data</key><dict><key>value</key><string>110</string></dict>\n"
            "      <key>Link</key><string>Linked</string>\n"
            "      <key>State</key><string>NoChange</string>\n"
            "      <key>identifier</key><string>P1</string>\n"
            "    </dict></array>\n"
            "  </dict>\n"
            "  <key>7</key><string>7</string>\n"
            "</dict>\n"
            "</plist>\n");
  ContactIDMappingTable table(u"M", u"1", base.path());
  ASSERT_EQ(table.count(), 2u);
  EXPECT_EQ(table.dbIDForVCardID(u"0000000000000012-Croup-1"), u"4A1B");
  EXPECT_EQ(*ContactIDMappingTable::LMT(
                FindAs<Dictionary>(*table.meta(u"4A1B"), u"Contact Data")),
            Value(u"20240229T080000Z"));
  EXPECT_EQ(FindAs<Dictionary>(*table.meta(u"4A1B"), u"Contact Data")->at(u"modified"),
            Value(Date{1709193600.0}));
  EXPECT_EQ(FindAs<Array>(*table.meta(u"4A1B"), u"phone numbers")->at(0),
            Value(Dictionary{{u"Data", Dictionary{{u"value", u"110"}}},
                             {u"Link", u"Linked"},
                             {u"State", u"NoChange"},
                             {u"identifier", u"P1"}}));
}

class UnreadableMetaFile : public testing::TestWithParam<std::string> {};

TEST_P(UnreadableMetaFile, gives_an_empty_table) {
  ScratchFolder base;
  ContactIDMappingTable source(u"N95", u"350123451234560", base.path());
  Fill(source);
  ASSERT_TRUE(source.save());
  const std::string xml = ReadFile(source.mFilePath());
  const Bytes binary =
      *PropertyListFromValue(Value(source.mTable()), PropertyListFormat::Binary);
  const std::string param = GetParam();
  std::string bytes;
  if (param == "xml cut inside the last entry") bytes = xml.substr(0, xml.rfind("</dict>") - 3);
  if (param == "binary cut short") bytes = std::string(binary.begin(), binary.end() - 1);
  if (param == "empty") bytes = "";
  if (param == "an array, not a dictionary") {
    bytes = "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><string>C-1</string>"
            "</array></plist>";
  }
  WriteFile(source.mFilePath(), bytes);

  LogRecorder log(/*debugMode=*/true);
  ContactIDMappingTable table(u"N95", u"350123451234560", base.path());
  EXPECT_EQ(table.count(), 0u);
  EXPECT_EQ(table.countRemovedTagRecords(), 0u);
  ASSERT_EQ(LogRecorder::messages().size(), 1u);
  EXPECT_NE(LogRecorder::messages()[0].find("cannot read"), std::string::npos);
  // The table is usable and saving replaces the bad file.
  table.addDBID(std::nullopt, u"7");
  ASSERT_TRUE(table.save());
  EXPECT_EQ(ContactIDMappingTable(u"N95", u"350123451234560", base.path()).count(), 1u);
}

INSTANTIATE_TEST_SUITE_P(files, UnreadableMetaFile,
                         testing::Values("xml cut inside the last entry", "binary cut short",
                                         "empty", "an array, not a dictionary"),
                         [](const auto& info) {
                           std::string name = info.param;
                           for (char& c : name) {
                             if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                           }
                           return name;
                         });

TEST(meta_file, a_missing_file_is_an_empty_table_without_a_warning) {
  ScratchFolder base;
  LogRecorder log(/*debugMode=*/true);
  ContactIDMappingTable table(u"N95", u"350123451234560", base.path());
  EXPECT_EQ(table.count(), 0u);
  EXPECT_TRUE(LogRecorder::messages().empty());
}

TEST(meta_file, a_failed_save_is_logged_in_debug_mode_and_keeps_the_table) {
  ScratchFolder base;
  ContactIDMappingTable table(u"N95", u"350123451234560", base.path());
  Fill(table);
  // A folder where the file should be: the final rename cannot replace it.
  fs::create_directory(table.mFilePath());
  for (bool debug : {false, true}) {
    LogRecorder log(debug);
    EXPECT_FALSE(table.save());
    EXPECT_EQ(LogRecorder::messages(),
              debug ? std::vector<std::string>{"Writting file has a problem!!"}
                    : std::vector<std::string>{});
  }
  EXPECT_EQ(table.dbIDForVCardID(u"0000000000000001-Contact-350123451234560"), u"C-1");
  EXPECT_EQ(table.count(), 5u);
  // Nothing was left beside it.
  std::vector<fs::path> contents;
  for (const auto& entry : fs::directory_iterator(table.mFilePath().parent_path())) {
    contents.push_back(entry.path());
  }
  EXPECT_EQ(contents, std::vector<fs::path>{table.mFilePath()});
}

}  // namespace
}  // namespace phonepim
