// The log, its replaceable sink and the debug switch.
#include "phonepim/platform/Log.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace phonepim {
namespace {

std::vector<std::string>& Captured() {
  static std::vector<std::string> messages;
  return messages;
}

void CaptureSink(std::string_view message) { Captured().emplace_back(message); }

class log_sink : public ::testing::Test {
 protected:
  void SetUp() override {
    Captured().clear();
    previous_ = SetLogSink(&CaptureSink);
  }
  void TearDown() override { SetLogSink(previous_); }

 private:
  LogSink previous_ = nullptr;
};

TEST(debug_mode, is_off_by_default) { EXPECT_FALSE(gVCARD_DEBUGMODE); }

TEST_F(log_sink, receives_each_formatted_message_without_a_line_end) {
  Log("[%s] Warning: Unknown vCard property.", "ParseProperty");
  Log("%d|%05.1f|%x|%c|%s", -12, 3.14159, 255u, 'Z', "\xE6\x97\xA5");
  EXPECT_EQ(Captured(),
            (std::vector<std::string>{"[ParseProperty] Warning: Unknown vCard property.",
                                      "-12|003.1|ff|Z|\xE6\x97\xA5"}));
}

TEST_F(log_sink, passes_empty_and_long_messages_whole) {
  const std::string long_text(10000, 'x');
  Log("%s", "");
  Log("%s!", long_text.c_str());
  ASSERT_EQ(Captured().size(), 2u);
  EXPECT_EQ(Captured()[0], "");
  EXPECT_EQ(Captured()[1], long_text + "!");
}

TEST_F(log_sink, keeps_a_nul_written_by_the_format) {
  Log("a%cb", '\0');
  ASSERT_EQ(Captured().size(), 1u);
  EXPECT_EQ(Captured()[0], std::string("a\0b", 3));
}

TEST(log_sink_install, returns_the_previous_sink_and_null_restores_stderr) {
  const LogSink original = SetLogSink(&CaptureSink);
  EXPECT_EQ(SetLogSink(nullptr), &CaptureSink);
  EXPECT_EQ(SetLogSink(original), &StderrLogSink);
}

TEST(log_default_sink, writes_one_line_on_stderr) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        SetLogSink(nullptr);
        Log("[%s] line %d", "Parse", 1);
        Log("second");
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "^\\[Parse\\] line 1\nsecond\n$");
}

}  // namespace
}  // namespace phonepim
