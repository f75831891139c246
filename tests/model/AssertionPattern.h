// The death-test pattern for a failed PHONEPIM_ASSERT with an exact text.
#pragma once

#include <string>
#include <string_view>

namespace phonepim::testing_support {

/// Matches "Assertion failed: (TEXT)" as the default handler prints it, with
/// every regular-expression character of TEXT escaped.
inline std::string AssertionPattern(std::string_view text) {
  std::string pattern = "Assertion failed: \\(";
  for (char c : text) {
    if (std::string_view("\\^$.|?*+()[]{}").find(c) != std::string_view::npos) {
      pattern.push_back('\\');
    }
    pattern.push_back(c);
  }
  pattern += "\\)";
  return pattern;
}

}  // namespace phonepim::testing_support
