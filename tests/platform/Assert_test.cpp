// The assertion machinery: the default report, the throwing handler and
// the guarantee that a failed operation never continues.
#include "phonepim/platform/Assert.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <tuple>

namespace phonepim {
namespace {

void CheckIndex(int index, int count) {
  PHONEPIM_ASSERT(index >= 0 && index < count, "index >= 0 && index < [m_arrXItem count]");
}
constexpr int kCheckIndexLine = __LINE__ - 2;

const std::string kReport = "Assertion failed: (index >= 0 && index < [m_arrXItem count]), "
                            "function CheckIndex, file " __FILE__ ", line " +
                            std::to_string(kCheckIndexLine) + ".";

class assertion : public ::testing::Test {
 protected:
  void SetUp() override { ::testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

// The default handler prints the exact report and aborts, whatever NDEBUG
// says (optimised presets build the tests with NDEBUG).
TEST_F(assertion, default_handler_prints_the_exact_report_and_aborts) {
  std::string pattern = "^";
  for (const char c : kReport) {
    if (std::string_view("\\^$.|?*+()[]{}").find(c) != std::string_view::npos) pattern += '\\';
    pattern += c;
  }
  EXPECT_DEATH(CheckIndex(5, 3), pattern + "\n$");
}

TEST_F(assertion, passes_silently_and_evaluates_the_condition_once) {
  int evaluations = 0;
  // An unbraced if/else around the macro must still pair up correctly.
  bool took_else = false;
  if (evaluations == 0)
    PHONEPIM_ASSERT(++evaluations == 1, "once");
  else
    took_else = true;
  EXPECT_EQ(evaluations, 1);
  EXPECT_FALSE(took_else);
}

TEST_F(assertion, throwing_handler_reports_text_function_file_and_line) {
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
  EXPECT_DEATH(CheckIndex(9, 1), "Assertion failed");
  EXPECT_EQ(SetAssertionHandler(&ThrowingAssertionHandler), &DefaultAssertionHandler);
  EXPECT_EQ(SetAssertionHandler(nullptr), &ThrowingAssertionHandler);
  EXPECT_EQ(SetAssertionHandler(nullptr), &DefaultAssertionHandler);
}

void ReturningHandler(const char* text, const char*, const char*, int) {
  std::fprintf(stderr, "handler saw <%s>\n", text);
}

TEST_F(assertion, a_handler_that_returns_still_stops_the_process) {
  EXPECT_EXIT(
      {
        SetAssertionHandler(&ReturningHandler);
        CheckIndex(7, 1);
        std::fprintf(stderr, "the failed operation went on\n");
        std::exit(0);
      },
      ::testing::KilledBySignal(SIGABRT), "^handler saw <index >= 0 && index < \\[m_arrXItem count\\]>\n$");
}

}  // namespace
}  // namespace phonepim
