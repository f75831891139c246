// The phonepim command-line tool.
#include <CLI/CLI.hpp>

#include <phonepim/platform/Assert.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <filesystem>

#include "VersitDump.h"

namespace {

// Reads FILE, or standard input for "-". Errors name the file.
bool ReadInput(const std::string& path, std::string* text, std::string* error) {
  if (path == "-") {
    std::ostringstream buffer;
    buffer << std::cin.rdbuf();
    *text = buffer.str();
    return true;
  }
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) {
    *error = path + ": is a folder, not a file";
    return false;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    *error = path + ": cannot open: " + std::generic_category().message(errno);
    return false;
  }
  text->assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  if (in.bad()) {
    *error = path + ": read error";
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  // Bad phone data must never kill the tool: assertions become exceptions.
  phonepim::SetAssertionHandler(&phonepim::ThrowingAssertionHandler);

  CLI::App app{"phonepim: phone address books and calendars (vCard 2.1, vCalendar 1.0)"};
  app.require_subcommand(1);

  std::string dumpFile;
  phonepim::tool::DumpOptions dumpOptions;
  CLI::App* dump = app.add_subcommand(
      "dump", "Print every property of every object in a versit file, values decoded");
  dump->add_option("FILE", dumpFile, "vCard or vCalendar file, or - for standard input")
      ->required();
  dump->add_flag("-q,--quiet", dumpOptions.quiet, "Print only errors and the tally");

  CLI11_PARSE(app, argc, argv);

  if (dump->parsed()) {
    std::string text;
    std::string error;
    if (!ReadInput(dumpFile, &text, &error)) {
      std::cerr << "phonepim: " << error << '\n';
      return 2;
    }
    try {
      return phonepim::tool::DumpVersitText(text, dumpFile == "-" ? "<stdin>" : dumpFile,
                                            dumpOptions, std::cout, std::cerr);
    } catch (const std::exception& e) {
      std::cerr << "phonepim: " << dumpFile << ": " << e.what() << '\n';
      return 3;
    }
  }
  return 0;
}
