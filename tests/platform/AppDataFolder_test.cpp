// Where the library's files go, and making the folders for them.
#include "phonepim/platform/AppDataFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "phonepim/platform/Log.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;

// Sets (or unsets) an environment variable and puts the old value back.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, std::optional<std::string> value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    if (value) {
      ::setenv(name, value->c_str(), 1);
    } else {
      ::unsetenv(name);
    }
  }
  ~ScopedEnvironment() {
    if (old_) {
      ::setenv(name_, old_->c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

struct FolderCase {
  std::optional<std::string> xdg;
  std::optional<std::string> home;
  std::optional<std::string> expected;  // nothing: no folder, it throws
};

class application_data_folder : public ::testing::TestWithParam<FolderCase> {};

TEST_P(application_data_folder, follows_xdg_then_home) {
  const FolderCase& c = GetParam();
  const ScopedEnvironment xdg("XDG_DATA_HOME", c.xdg);
  const ScopedEnvironment home("HOME", c.home);
  if (c.expected) {
    EXPECT_EQ(ApplicationDataFolder(), fs::path(*c.expected));
  } else {
    EXPECT_THROW(ApplicationDataFolder(), std::runtime_error);
  }
}

INSTANTIATE_TEST_SUITE_P(
    table, application_data_folder,
    ::testing::Values(
        FolderCase{"/tmp/xdg-data", "/home/tester", "/tmp/xdg-data"},
        FolderCase{"/tmp/xdg-data", std::nullopt, "/tmp/xdg-data"},
        // A relative XDG_DATA_HOME is invalid and ignored.
        FolderCase{"relative/data", "/home/tester", "/home/tester/.local/share"},
        FolderCase{"", "/home/tester", "/home/tester/.local/share"},
        FolderCase{std::nullopt, "/home/tester", "/home/tester/.local/share"},
        FolderCase{std::nullopt, std::nullopt, std::nullopt},
        FolderCase{std::nullopt, "", std::nullopt},
        FolderCase{"relative/data", std::nullopt, std::nullopt}));

class create_folder_chain : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "phonepim-folders-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    base_ = pattern;
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(base_, ignored);
  }
  void MakeFile(const fs::path& path) { std::ofstream(path) << "in the way"; }

  fs::path base_;
};

TEST_F(create_folder_chain, creates_every_missing_folder) {
  const fs::path folder = base_ / "Application Support" / "phone" / "ContactRecordIDMappingTable";
  EXPECT_TRUE(CreateFolderChain(folder));
  EXPECT_TRUE(fs::is_directory(folder));
}

TEST_F(create_folder_chain, accepts_a_folder_that_exists) {
  EXPECT_TRUE(CreateFolderChain(base_));
  EXPECT_TRUE(CreateFolderChain(base_ / "a"));
  EXPECT_TRUE(CreateFolderChain(base_ / "a"));
  EXPECT_TRUE(CreateFolderChain(base_ / "b" / "c" / ""));
  EXPECT_TRUE(fs::is_directory(base_ / "b" / "c"));
}

TEST_F(create_folder_chain, fails_when_a_file_is_in_the_way) {
  MakeFile(base_ / "file");
  EXPECT_FALSE(CreateFolderChain(base_ / "file"));
  EXPECT_FALSE(CreateFolderChain(base_ / "file" / "sub" / "deeper"));
  EXPECT_TRUE(fs::is_regular_file(base_ / "file"));
}

TEST_F(create_folder_chain, fails_for_an_empty_path) { EXPECT_FALSE(CreateFolderChain("")); }

std::vector<std::string>& Captured() {
  static std::vector<std::string> messages;
  return messages;
}
void CaptureSink(std::string_view message) { Captured().emplace_back(message); }

TEST_F(create_folder_chain, logs_the_failure_in_debug_mode_only) {
  MakeFile(base_ / "file");
  const fs::path folder = base_ / "file" / "sub";
  Captured().clear();
  const LogSink previous = SetLogSink(&CaptureSink);
  EXPECT_FALSE(CreateFolderChain(folder));
  EXPECT_TRUE(Captured().empty());
  gVCARD_DEBUGMODE = true;
  EXPECT_FALSE(CreateFolderChain(folder));
  gVCARD_DEBUGMODE = false;
  SetLogSink(previous);
  ASSERT_EQ(Captured().size(), 1u);
  const std::string prefix = "[CreateFolderChain] Cannot create folder " + folder.string() + ": ";
  EXPECT_EQ(Captured()[0].substr(0, prefix.size()), prefix);
  EXPECT_GT(Captured()[0].size(), prefix.size());
}

}  // namespace
}  // namespace phonepim
