// A contact as JSON: every field of the model, with type masks as words and
// custom labels as text. README.md documents the schema; keep the two
// together. Also the pieces the calendar JSON shares.
#pragma once

#include <cstddef>
#include <optional>

#include <nlohmann/json.hpp>

#include <phonepim/model/CContact.h>
#include <phonepim/platform/String.h>

namespace phonepim::tool {

/// The contact read from object `objectNumber` (from 1) at line `line`.
nlohmann::ordered_json ContactToJson(const CContact& contact, std::size_t objectNumber,
                                     std::size_t line);

/// The image format photo bytes call for, by their first bytes: "JPEG",
/// "PNG", "GIF", "BMP", or "unknown".
const char* ImageFormat(const Bytes& bytes);

/// Text of the model as JSON text (UTF-8; an unpaired surrogate as U+FFFD).
std::string JsonText(const String& text);

/// JsonText of the text, or null when there is none.
nlohmann::ordered_json OptionalText(const std::optional<String>& text);

/// The record's extension items, [{"name", "value"}] in list order.
nlohmann::ordered_json ExtensionsJson(const CVObject& record);

/// One of a record's element lists, `make(i)` giving the element at i.
template <class Make>
nlohmann::ordered_json ListOf(int count, Make make) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (int i = 0; i < count; ++i) list.push_back(make(i));
  return list;
}

}  // namespace phonepim::tool
