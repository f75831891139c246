// Writing output files whole or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace phonepim::tool {

/// Writes `bytes` to a temporary file in the folder of `path` and renames it
/// over `path`, so that a reader of `path` sees the old file or the complete
/// new one, never a part. On failure removes the temporary file, leaves
/// `path` as it was, sets `error` (naming `path`) and returns false.
bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         std::string* error);

}  // namespace phonepim::tool
