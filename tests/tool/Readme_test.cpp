// The README's examples run as written: every "$ " line of its code blocks
// is run, in order, in a scratch folder that sees the bundled examples, and
// what it prints (standard output, then standard error, as a pipe gets
// them) must be the lines shown under it. A line "..." in the README stands
// for any number of lines.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "ToolTestSupport.h"

namespace phonepim::tool {
namespace {

struct Example {
  std::string command;
  std::vector<std::string> output;
};

// The "$ " lines of the README's code blocks, each with the lines under it
// up to the next one or the end of its block.
std::vector<Example> ExamplesIn(const std::string& readme) {
  std::vector<Example> examples;
  std::istringstream in(readme);
  bool inBlock = false;
  bool inExample = false;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("```")) {
      inBlock = !inBlock;
      inExample = false;
    } else if (inBlock && line.starts_with("$ ")) {
      examples.push_back({line.substr(2), {}});
      inExample = true;
    } else if (inExample) {
      examples.back().output.push_back(line);
    }
  }
  return examples;
}

bool IsElision(const std::string& line) {
  return line.find_first_not_of(' ') != std::string::npos &&
         line.substr(line.find_first_not_of(' ')) == "...";
}

// True when `lines` from `at` match `pattern` from `p`.
bool Matches(const std::vector<std::string>& pattern, std::size_t p,
             const std::vector<std::string>& lines, std::size_t at) {
  if (p == pattern.size()) return at == lines.size();
  if (IsElision(pattern[p])) {
    for (std::size_t skip = at; skip <= lines.size(); ++skip) {
      if (Matches(pattern, p + 1, lines, skip)) return true;
    }
    return false;
  }
  return at < lines.size() && lines[at] == pattern[p] && Matches(pattern, p + 1, lines, at + 1);
}

std::vector<std::string> RunExample(const std::filesystem::path& folder, const std::string& command) {
  const std::string tool = PHONEPIM_TOOL;
  std::string shell = "cd '" + folder.string() + "' && ";
  shell += command.starts_with("phonepim ") ? "'" + tool + "'" + command.substr(8) : command;
  std::vector<std::string> lines;
  FILE* pipe = popen((shell + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return lines;
  std::string text;
  char buffer[4096];
  for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) != 0;) text.append(buffer, n);
  pclose(pipe);
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(readme, every_example_prints_what_the_readme_shows) {
  const std::vector<Example> examples = ExamplesIn(ReadFile(PHONEPIM_README));
  ASSERT_GE(examples.size(), 5u);
  const TempFolder folder;
  std::filesystem::create_directory_symlink(PHONEPIM_EXAMPLES, folder.path() / "examples");
  for (const Example& example : examples) {
    const std::vector<std::string> printed = RunExample(folder.path(), example.command);
    std::string shown;
    for (const std::string& line : printed) shown += line + "\n";
    EXPECT_TRUE(Matches(example.output, 0, printed, 0))
        << "$ " << example.command << "\nprinted:\n" << shown;
  }
}

}  // namespace
}  // namespace phonepim::tool
