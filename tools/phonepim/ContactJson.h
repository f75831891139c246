// A contact as JSON: every field of the model, with type masks as words and
// custom labels as text. README.md documents the schema; keep the two
// together.
#pragma once

#include <cstddef>

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

}  // namespace phonepim::tool
