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
  // Read into a string of the file's size: growing one as the bytes come
  // would hold up to three times a large book at the moment it grows.
  const std::uintmax_t size = std::filesystem::file_size(path, ec);
  if (!ec && size > 0) {
    text->resize(static_cast<std::size_t>(size));
    in.read(text->data(), static_cast<std::streamsize>(size));
    text->resize(static_cast<std::size_t>(in.gcount()));
  }
  if (ec || size == 0 || in.gcount() == static_cast<std::streamsize>(size)) {
    // A pipe or device has no size; a file may have grown since: the rest.
    text->append(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  if (in.bad()) {
    *error = path + ": read error";
    return false;
  }
  return true;
}

std::string SourceName(const std::string& path) { return path == "-" ? "<stdin>" : path; }

}  // namespace phonepim::tool
