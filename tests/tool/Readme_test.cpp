// The README's examples run as written: each "$ " line of its code blocks is
// run in order, in a scratch folder that sees examples/, and must print (a
// pipe gets standard output, then standard error) the lines under it; a
// line "..." stands for any number of lines.
#include <sstream>

#include "ToolTestSupport.h"

namespace phonepim::tool {
namespace {

using Lines = std::vector<std::string>;

bool Matches(const Lines& shown, std::size_t s, const Lines& printed, std::size_t p) {
  if (s == shown.size()) return p == printed.size();
  if (shown[s].find_first_not_of(' ') == shown[s].find("...") && shown[s].ends_with("...")) {
    for (std::size_t skip = p; skip <= printed.size(); ++skip) {
      if (Matches(shown, s + 1, printed, skip)) return true;
    }
    return false;
  }
  return p < printed.size() && printed[p] == shown[s] && Matches(shown, s + 1, printed, p + 1);
}

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::istringstream in(text);
  // vCard and vCalendar output ends its lines in CRLF, which a terminal
  // shows as plain lines.
  for (std::string line; std::getline(in, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

TEST(readme, every_example_prints_what_the_readme_shows) {
  const TempFolder folder;
  std::filesystem::create_directory_symlink(PHONEPIM_EXAMPLES, folder.path() / "examples");
  std::vector<std::pair<std::string, Lines>> examples;  // command, lines shown
  bool inBlock = false;
  for (const std::string& line : LinesOf(ReadFile(PHONEPIM_README))) {
    if (line.starts_with("```")) {
      inBlock = !inBlock;
      if (!examples.empty() && examples.back().first.empty()) examples.pop_back();
      examples.emplace_back();  // lines outside an example are dropped with it
    } else if (inBlock && line.starts_with("$ ")) {
      examples.emplace_back(line.substr(2), Lines());
    } else if (inBlock && !examples.empty()) {
      examples.back().second.push_back(line);
    }
  }
  const std::string toolFolder = std::filesystem::path(PHONEPIM_TOOL).parent_path().string();
  int run = 0;
  for (const auto& [command, shown] : examples) {
    if (command.empty()) continue;
    const std::string shell = "cd '" + folder.path().string() + "' && export PATH='" + toolFolder +
                              "':\"$PATH\" && " + command + " 2>&1";
    std::string printed;
    FILE* pipe = popen(shell.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) != 0;) {
      printed.append(buffer, n);
    }
    pclose(pipe);
    EXPECT_TRUE(Matches(shown, 0, LinesOf(printed), 0)) << "$ " << command << "\n" << printed;
    ++run;
  }
  EXPECT_GE(run, 6);
}

}  // namespace
}  // namespace phonepim::tool
