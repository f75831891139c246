// The assertion machinery (the default report, the throwing handler, the
// guarantee that a failed operation never continues), the log with its
// replaceable sink and debug switch, and where the library's files go.
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>

#include "phonepim/platform/AppDataFolder.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Log.h"

namespace phonepim {
namespace {

void CheckIndex(int index, int count) {
  PHONEPIM_ASSERT(index >= 0 && index < count, "index >= 0 && index < [m_arrXItem count]");
}
constexpr int kCheckIndexLine = __LINE__ - 2;

const std::string kReport = "Assertion failed: (index >= 0 && index < [m_arrXItem count]), "
                            "function CheckIndex, file " __FILE__ ", line " +
                            std::to_string(kCheckIndexLine) + ".";

void ReturningHandler(const char* text, const char*, const char*, int) {
  std::fprintf(stderr, "handler saw <%s>\n", text);
}

// The default handler prints the exact report and aborts, whatever NDEBUG
// says (optimised presets build the tests with NDEBUG); a handler that
// returns does not let the failed operation go on.
TEST(assertion, default_handler_prints_the_exact_report_and_any_handler_stops_the_process) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  std::string pattern = "^";
  for (const char c : kReport) {
    if (std::string_view("\\^$.|?*+()[]{}").find(c) != std::string_view::npos) pattern += '\\';
    pattern += c;
  }
  EXPECT_DEATH(CheckIndex(5, 3), pattern + "\n$");
  EXPECT_EXIT(
      {
        SetAssertionHandler(&ReturningHandler);
        CheckIndex(7, 1);
        std::fprintf(stderr, "the failed operation went on\n");
        std::exit(0);
      },
      ::testing::KilledBySignal(SIGABRT), "^handler saw <index >= 0 && index < \\[m_arrXItem count\\]>\n$");
}

TEST(assertion, throwing_handler_reports_text_function_file_and_line) {
  {
    ScopedAssertionHandler scope(&ThrowingAssertionHandler);
    try {
      CheckIndex(3, 3);
      FAIL() << "the assertion did not fire";
    } catch (const std::logic_error& error) {
      const auto& failure = dynamic_cast<const AssertionFailure&>(error);
      EXPECT_EQ(std::tuple(failure.text(), failure.function(), failure.file(), failure.line(), failure.what()),
                std::tuple("index >= 0 && index < [m_arrXItem count]", "CheckIndex", __FILE__, kCheckIndexLine,
                           kReport));
    }
  }
  // The scope put the default back; installing null does the same.
  EXPECT_EQ(SetAssertionHandler(&ThrowingAssertionHandler), &DefaultAssertionHandler);
  EXPECT_EQ(SetAssertionHandler(nullptr), &ThrowingAssertionHandler);
  EXPECT_EQ(SetAssertionHandler(nullptr), &DefaultAssertionHandler);
}

namespace fs = std::filesystem;

std::vector<std::string> captured;
void CaptureSink(std::string_view message) { captured.emplace_back(message); }

TEST(log, formats_each_message_whole_for_the_installed_sink) {
  captured.clear();
  EXPECT_EQ(SetLogSink(&CaptureSink), &StderrLogSink);
  Log("[%s] Warning: Unknown vCard property.", "ParseProperty");
  Log("%d|%05.1f|%x|%c|%s", -12, 3.14159, 255u, 'Z', "\xE6\x97\xA5");
  Log("%s", "");
  Log("%s!a%cb", std::string(10000, 'x').c_str(), '\0');
  // Null puts the stderr sink back.
  EXPECT_EQ(SetLogSink(nullptr), &CaptureSink);
  EXPECT_EQ(captured, (std::vector<std::string>{
                          "[ParseProperty] Warning: Unknown vCard property.",
                          "-12|003.1|ff|Z|\xE6\x97\xA5", "", std::string(10000, 'x') + std::string("!a\0b", 4)}));
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        Log("[%s] line %d", "Parse", 1);
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "^\\[Parse\\] line 1\n$");
}

TEST(application_data_folder, follows_an_absolute_xdg_then_home) {
  // expected nothing: it throws.
  const struct { const char* xdg; const char* home; std::optional<std::string> expected; } rows[] = {
      {"/tmp/xdg-data", nullptr, "/tmp/xdg-data"},
      // A relative XDG_DATA_HOME is invalid and ignored.
      {"relative/data", "/home/tester", "/home/tester/.local/share"},
      {"", "/home/tester", "/home/tester/.local/share"},
      {nullptr, "", std::nullopt},
  };
  auto saved = [](const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
  };
  const std::optional<std::string> xdg = saved("XDG_DATA_HOME"), home = saved("HOME");
  for (const auto& r : rows) {
    r.xdg ? ::setenv("XDG_DATA_HOME", r.xdg, 1) : ::unsetenv("XDG_DATA_HOME");
    r.home ? ::setenv("HOME", r.home, 1) : ::unsetenv("HOME");
    if (r.expected) {
      EXPECT_EQ(ApplicationDataFolder(), fs::path(*r.expected)) << &r - rows;
    } else {
      EXPECT_THROW(ApplicationDataFolder(), std::runtime_error);
    }
  }
  xdg ? ::setenv("XDG_DATA_HOME", xdg->c_str(), 1) : ::unsetenv("XDG_DATA_HOME");
  home ? ::setenv("HOME", home->c_str(), 1) : ::unsetenv("HOME");
}

TEST(create_folder_chain, makes_missing_folders_and_logs_a_failure_in_debug_mode) {
  std::string pattern = (fs::temp_directory_path() / "phonepim-folders-XXXXXX").string();
  ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
  const fs::path base = pattern;
  EXPECT_TRUE(CreateFolderChain(base / "a" / "b" / ""));
  EXPECT_TRUE(CreateFolderChain(base / "a"));
  EXPECT_TRUE(fs::is_directory(base / "a" / "b"));
  EXPECT_FALSE(CreateFolderChain(""));
  std::ofstream(base / "file") << "in the way";
  captured.clear();
  const LogSink previous = SetLogSink(&CaptureSink);
  EXPECT_FALSE(CreateFolderChain(base / "file"));
  EXPECT_TRUE(captured.empty());
  gVCARD_DEBUGMODE = true;
  EXPECT_FALSE(CreateFolderChain(base / "file"));
  EXPECT_FALSE(CreateFolderChain(base / "file" / "sub"));
  gVCARD_DEBUGMODE = false;
  SetLogSink(previous);
  const std::string prefix = "[CreateFolderChain] Cannot create folder " + (base / "file").string();
  ASSERT_EQ(captured.size(), 2u);
  EXPECT_EQ(captured[0].substr(0, prefix.size() + 2), prefix + ": ");
  EXPECT_EQ(captured[1].substr(0, prefix.size() + 6), prefix + "/sub: ");
  EXPECT_GT(captured[1].size(), prefix.size() + 6);
  EXPECT_TRUE(fs::is_regular_file(base / "file"));
  fs::remove_all(base);
}

}  // namespace
}  // namespace phonepim
