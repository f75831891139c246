#include "Input.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <system_error>

namespace phonepim::tool {

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

std::string SourceName(const std::string& path) { return path == "-" ? "<stdin>" : path; }

}  // namespace phonepim::tool
