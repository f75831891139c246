// Writing output files whole or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace phonepim::tool {

/// An output file written piece by piece, so that a large export need not
/// be held in memory whole. A regular file, or a path where nothing is yet,
/// is written to a temporary file in the same folder and renamed over the
/// path by Commit, so that a reader of the path sees the old file or the
/// complete new one, never a part (through a symbolic link, the file it
/// points to is replaced and the link stays). Anything else (/dev/null, a
/// FIFO, a terminal) is opened and written straight, since a rename would
/// put a regular file in its place; writing to a FIFO waits for its reader,
/// as a shell's redirection does. An output that is not committed is
/// removed (the temporary file; a device keeps what it was given).
///
/// Errors name the path the user gave: "PATH: cannot write: REASON".
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  /// Opens `path` as above; `alwaysRename` takes the temporary-file road
  /// whatever the path is. False with `error` set when it cannot be opened.
  bool Open(const std::filesystem::path& path, std::string* error, bool alwaysRename = false);
  /// Appends `bytes`. After a failure further writes are dropped and Commit
  /// reports the failure.
  void Write(std::string_view bytes);
  /// Writes what is buffered and puts the file in place. False with `error`
  /// set when anything failed; the path is then as it was.
  bool Commit(std::string* error);

 private:
  bool Flush();

  std::filesystem::path path_;       // as the user named it
  std::filesystem::path temporary_;  // empty when written straight
  std::filesystem::path target_;     // what the temporary file replaces
  std::string buffer_;
  int fd_ = -1;
  int errno_ = 0;  // the first failure
};

/// `bytes` written whole to `path` through a temporary file and a rename,
/// whatever `path` is. On failure leaves `path` as it was, sets `error` and
/// returns false.
bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         std::string* error);

/// `bytes` written to the output `path` a user named, as OutputFile does.
bool WriteOutputFile(const std::filesystem::path& path, std::string_view bytes,
                     std::string* error);

}  // namespace phonepim::tool
