// The assertion machinery: the default report, the throwing handler and
// the guarantee that a failed operation never continues.
#include "phonepim/platform/Assert.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace phonepim {
namespace {

// EXPECT_DEATH takes a POSIX extended regular expression; the expected
// message is matched literally.
std::string Literal(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (std::string_view("\\^$.|?*+()[]{}").find(c) != std::string_view::npos) out += '\\';
    out += c;
  }
  return out;
}

std::string Report(const std::string& text, const std::string& function, int line) {
  return "Assertion failed: (" + text + "), function " + function + ", file " + __FILE__ +
         ", line " + std::to_string(line) + ".";
}

void CheckIndex(int index, int count) {
  PHONEPIM_ASSERT(index >= 0 && index < count, "index >= 0 && index < [m_arrXItem count]");
}
constexpr int kCheckIndexLine = __LINE__ - 2;

class assertion : public ::testing::Test {
 protected:
  void SetUp() override { ::testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(assertion, default_handler_prints_the_exact_report_and_aborts) {
  const std::string expected =
      Report("index >= 0 && index < [m_arrXItem count]", "CheckIndex", kCheckIndexLine);
  EXPECT_DEATH(CheckIndex(5, 3), "^" + Literal(expected) + "\n$");
}

TEST_F(assertion, holds_whatever_ndebug_says) {
  // The test program is built with NDEBUG in optimised presets.
  EXPECT_DEATH(CheckIndex(-1, 3), Literal("function CheckIndex"));
}

TEST_F(assertion, passes_silently_and_evaluates_the_condition_once) {
  int evaluations = 0;
  auto holds = [&evaluations] {
    ++evaluations;
    return true;
  };
  // An unbraced if/else around the macro must still pair up correctly.
  bool took_else = false;
  if (evaluations == 0)
    PHONEPIM_ASSERT(holds(), "holds()");
  else
    took_else = true;
  EXPECT_EQ(evaluations, 1);
  EXPECT_FALSE(took_else);
  CheckIndex(2, 3);
}

TEST_F(assertion, throwing_handler_reports_text_function_file_and_line) {
  ScopedAssertionHandler scope(&ThrowingAssertionHandler);
  try {
    CheckIndex(3, 3);
    FAIL() << "the assertion did not fire";
  } catch (const AssertionFailure& failure) {
    EXPECT_EQ(failure.text(), "index >= 0 && index < [m_arrXItem count]");
    EXPECT_EQ(failure.function(), "CheckIndex");
    EXPECT_EQ(failure.file(), __FILE__);
    EXPECT_EQ(failure.line(), kCheckIndexLine);
    EXPECT_EQ(std::string(failure.what()),
              Report("index >= 0 && index < [m_arrXItem count]", "CheckIndex",
                     kCheckIndexLine));
  }
}

TEST_F(assertion, failure_is_a_logic_error) {
  ScopedAssertionHandler scope(&ThrowingAssertionHandler);
  EXPECT_THROW(PHONEPIM_ASSERT(false, "pData->pContact"), std::logic_error);
}

TEST_F(assertion, scoped_handler_restores_the_previous_one) {
  {
    ScopedAssertionHandler outer(&ThrowingAssertionHandler);
    {
      ScopedAssertionHandler inner(&DefaultAssertionHandler);
      EXPECT_DEATH(CheckIndex(9, 1), Literal("Assertion failed: (index >= 0"));
    }
    EXPECT_THROW(CheckIndex(9, 1), AssertionFailure);
  }
  EXPECT_DEATH(CheckIndex(9, 1), Literal("Assertion failed: (index >= 0"));
  // Nothing is left installed: the default is in place.
  const AssertionHandler current = SetAssertionHandler(&DefaultAssertionHandler);
  EXPECT_EQ(current, &DefaultAssertionHandler);
}

TEST_F(assertion, installing_null_restores_the_default) {
  const AssertionHandler before = SetAssertionHandler(&ThrowingAssertionHandler);
  EXPECT_EQ(SetAssertionHandler(nullptr), &ThrowingAssertionHandler);
  EXPECT_EQ(SetAssertionHandler(before), &DefaultAssertionHandler);
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
