// Helpers shared by the mapping, sync, session and store tests: a scratch
// folder, a log recorder, whole-file reads and writes, values as text.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <regex>

#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/platform/Log.h"
#include "../../bench/ScratchFolder.h"

namespace phonepim::testing_support {

// The benchmarks' scratch folder: one class for both.
using ScratchFolder = bench::ScratchFolder;

/// Records every log message while alive, with the debug switch set as given.
struct LogRecorder {
  explicit LogRecorder(bool debugMode) : previousDebug(std::exchange(gVCARD_DEBUGMODE, debugMode)) {
    messages().clear();
    previousSink = SetLogSink([](std::string_view message) { messages().emplace_back(message); });
  }
  ~LogRecorder() {
    SetLogSink(previousSink);
    gVCARD_DEBUGMODE = previousDebug;
  }
  static std::vector<std::string>& messages() {
    static std::vector<std::string> recorded;
    return recorded;
  }
  bool previousDebug;
  LogSink previousSink;
};

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

/// A value as one line of text, so that a whole record is held against one
/// expected string: {key=value, ...}, [item, ...], 'text', 7, 0.5r (real),
/// @86400 (date), <ffd8> (bytes), true. The record entity key shows as
/// "entity" (in its place among the keys).
inline std::string Text(const Value& value) {
  char number[40];
  if (const String* text = value.getIf<String>()) return "'" + ToDisplayUTF8(*text) + "'";
  if (const std::int64_t* integer = value.getIf<std::int64_t>()) return std::to_string(*integer);
  if (const double* real = value.getIf<double>()) {
    std::snprintf(number, sizeof number, "%.17gr", *real);
    return number;
  }
  if (const bool* flag = value.getIf<bool>()) return *flag ? "true" : "false";
  if (const Date* date = value.getIf<Date>()) {
    std::snprintf(number, sizeof number, "@%.17g", date->secondsSince1970);
    return number;
  }
  std::string out;
  if (const Bytes* bytes = value.getIf<Bytes>()) {
    for (const std::uint8_t byte : *bytes) {
      std::snprintf(number, sizeof number, "%02x", byte);
      out += number;
    }
    return "<" + out + ">";
  }
  if (const Array* items = value.getIf<Array>()) {
    for (const Value& item : *items) out += (out.empty() ? "" : ", ") + Text(item);
    return "[" + out + "]";
  }
  for (const auto& [key, item] : value.get<Dictionary>()) {
    const std::string name = ToDisplayUTF8(key);
    out += (out.empty() ? "" : ", ") +
           (name == "com.apple.syncservices.RecordEntityName" ? "entity" : name) + "=" + Text(item);
  }
  return "{" + out + "}";
}

/// The text with each new identifier (a UUID) shown as U1, U2, ... in the
/// order of first appearance, so that goldens show which are the same.
inline std::string Masked(const std::string& text) {
  static const std::regex uuid("[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}");
  std::map<std::string, std::string> names;
  std::string out;
  auto from = text.cbegin();
  for (std::sregex_iterator it(text.begin(), text.end(), uuid), end; it != end; ++it) {
    out.append(from, (*it)[0].first);
    auto [name, added] = names.try_emplace(it->str(), "U" + std::to_string(names.size() + 1));
    out += name->second;
    from = (*it)[0].second;
  }
  return out.append(from, text.cend());
}

/// A whole table as text, its new identifiers masked.
inline std::string Dump(const IDMappingTable& table) { return Masked(Text(table.mTable())); }

}  // namespace phonepim::testing_support
