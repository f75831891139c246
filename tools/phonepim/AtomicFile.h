// Writing output files whole or not at all.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <string_view>

namespace phonepim::tool {

/// Writes `bytes` to a temporary file in the folder of `path` and renames it
/// over `path`, so that a reader of `path` sees the old file or the complete
/// new one, never a part. On failure removes the temporary file, leaves
/// `path` as it was, sets `error` (naming `path`) and returns false.
bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         std::string* error);

/// A command's output: on `out` when `path` is empty, else into the file
/// with WriteFileAtomically. A failure is reported on `err`; returns false
/// then.
bool WriteOutput(const std::string& path, std::string_view bytes, std::ostream& out,
                 std::ostream& err);

}  // namespace phonepim::tool
