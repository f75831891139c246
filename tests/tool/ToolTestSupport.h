// What the tool's unit tests share.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace phonepim::tool {

/// The whole file as bytes; empty when it cannot be read.
inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace phonepim::tool
