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

/// Writes `bytes` to the output `path` a user named. A regular file, or a
/// path where nothing is yet, is written with WriteFileAtomically (through a
/// symbolic link, the file it points to is replaced and the link stays).
/// Anything else (/dev/null, a FIFO, a terminal) is opened and written
/// straight: a rename would put a regular file in its place. Writing to a
/// FIFO waits for its reader, as a shell's redirection does. On failure sets
/// `error` (naming `path`) and returns false.
bool WriteOutputFile(const std::filesystem::path& path, std::string_view bytes,
                     std::string* error);

}  // namespace phonepim::tool
