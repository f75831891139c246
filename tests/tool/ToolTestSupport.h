// What the tool's unit tests share.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <stdlib.h>

namespace phonepim::tool {

/// The whole file as bytes; empty when it cannot be read.
inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/// A fresh folder under the system's temporary folder, removed afterwards.
class TempFolder {
 public:
  TempFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "phonepim-tool-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace phonepim::tool
