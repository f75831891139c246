// Reading the file a command works on.
#pragma once

#include <string>

namespace phonepim::tool {

/// Reads FILE whole, or standard input for "-". On failure returns false and
/// sets `error` to a message that names the file.
bool ReadInput(const std::string& path, std::string* text, std::string* error);

/// How messages name the input: the path, or "<stdin>" for "-".
std::string SourceName(const std::string& path);

}  // namespace phonepim::tool
