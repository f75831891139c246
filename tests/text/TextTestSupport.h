// Shared pieces of the text tests.
#pragma once

#include <cstdio>
#include <ostream>
#include <string>

#include "phonepim/platform/String.h"

namespace phonepim::testing_support {

// Printable ASCII as is, every other unit as \xHHHH, so that a failing table
// row shows NULs, surrogates and accents unambiguously.
inline std::string Show(const String& s) {
  std::string out = "u\"";
  for (const char16_t unit : s) {
    if (unit >= 0x20 && unit < 0x7F && unit != u'\\' && unit != u'"') {
      out += static_cast<char>(unit);
    } else {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%04X", static_cast<unsigned>(unit));
      out += escaped;
    }
  }
  return out + "\"";
}

// A C string argument for the messages: its bytes, escaped above 0x7E.
inline std::string ShowBytes(const char* bytes) {
  if (bytes == nullptr) return "nullptr";
  std::string out = "\"";
  for (; *bytes != '\0'; ++bytes) {
    const auto byte = static_cast<unsigned char>(*bytes);
    if (byte >= 0x20 && byte < 0x7F) {
      out += static_cast<char>(byte);
    } else {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
      out += escaped;
    }
  }
  return out + "\"";
}

}  // namespace phonepim::testing_support
