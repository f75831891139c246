// Helpers shared by the mapping-table tests: a scratch folder, a log
// recorder, whole-file reads and writes.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/platform/Log.h"

namespace phonepim::testing_support {

/// A fresh folder under the system's temporary folder, removed afterwards.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "phonepim-mapping-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Records every log message while alive, with the debug switch set as given.
class LogRecorder {
 public:
  explicit LogRecorder(bool debugMode) : previousDebug_(gVCARD_DEBUGMODE) {
    gVCARD_DEBUGMODE = debugMode;
    messages().clear();
    previousSink_ = SetLogSink([](std::string_view message) { messages().emplace_back(message); });
  }
  ~LogRecorder() {
    SetLogSink(previousSink_);
    gVCARD_DEBUGMODE = previousDebug_;
  }
  static std::vector<std::string>& messages() {
    static std::vector<std::string> recorded;
    return recorded;
  }

 private:
  bool previousDebug_;
  LogSink previousSink_ = nullptr;
};

inline void WriteFile(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc).write(bytes.data(), std::ssize(bytes));
}

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

/// The "State" string of a table entry, or "<none>".
inline std::u16string StateOf(const ContactIDMappingTable& table, const String& key) {
  const Dictionary* entry = table.meta(key);
  const String* state = entry ? FindAs<String>(*entry, u"State") : nullptr;
  return state ? *state : u"<none>";
}

}  // namespace phonepim::testing_support
