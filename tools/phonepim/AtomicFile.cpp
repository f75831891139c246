#include "AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <vector>

namespace phonepim::tool {

namespace {

// Bytes gathered before one write call: cards are small, the calls are not.
constexpr std::size_t kBufferSize = 1 << 16;

std::string CannotWrite(const std::filesystem::path& path, int code) {
  return path.string() + ": cannot write: " + std::strerror(code);
}

// Writes all of `bytes` to `fd`; 0, or the errno of the failure.
int WriteAll(int fd, std::string_view bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t n = write(fd, bytes.data() + written, bytes.size() - written);
    if (n < 0) {
      if (errno == EINTR) continue;
      return errno;
    }
    written += static_cast<std::size_t>(n);
  }
  return 0;
}

}  // namespace

OutputFile::~OutputFile() {
  if (fd_ >= 0) close(fd_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

bool OutputFile::Open(const std::filesystem::path& path, std::string* error, bool alwaysRename) {
  path_ = path;
  target_ = path;
  struct stat existing {};
  const bool exists = stat(path.c_str(), &existing) == 0;
  if (!exists && errno != ENOENT) {
    *error = CannotWrite(path, errno);
    return false;
  }
  if (exists && S_ISDIR(existing.st_mode)) {
    *error = CannotWrite(path, EISDIR);
    return false;
  }
  if (exists && !S_ISREG(existing.st_mode) && !alwaysRename) {
    fd_ = open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    if (fd_ < 0) *error = CannotWrite(path, errno);
    return fd_ >= 0;
  }
  std::error_code ignored;
  if (exists && std::filesystem::is_symlink(path, ignored)) {
    const std::filesystem::path file = std::filesystem::canonical(path, ignored);
    if (!file.empty()) target_ = file;
  }
  // In the same folder, because rename is atomic only within a file system.
  const std::string pattern = target_.string() + ".tmp-XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  fd_ = mkstemp(name.data());
  if (fd_ < 0) {
    *error = CannotWrite(path, errno);
    return false;
  }
  temporary_ = name.data();
  return true;
}

bool OutputFile::Flush() {
  if (errno_ == 0 && !buffer_.empty()) errno_ = WriteAll(fd_, buffer_);
  buffer_.clear();
  return errno_ == 0;
}

void OutputFile::Write(std::string_view bytes) {
  if (errno_ != 0 || fd_ < 0) return;
  if (buffer_.size() + bytes.size() > kBufferSize && !Flush()) return;
  if (bytes.size() >= kBufferSize) {
    errno_ = WriteAll(fd_, bytes);
  } else {
    buffer_.append(bytes);
  }
}

bool OutputFile::Commit(std::string* error) {
  if (fd_ < 0) {
    *error = CannotWrite(path_, EBADF);
    return false;
  }
  Flush();
  if (errno_ == 0 && !temporary_.empty()) {
    // mkstemp makes the file 0600; an export is an ordinary file of the user.
    const mode_t mask = umask(0);
    umask(mask);
    if (fchmod(fd_, 0666 & ~mask) != 0 || fsync(fd_) != 0) errno_ = errno;
  }
  if (close(fd_) != 0 && errno_ == 0) errno_ = errno;
  fd_ = -1;
  if (errno_ == 0 && !temporary_.empty()) {
    if (std::rename(temporary_.c_str(), target_.c_str()) == 0) {
      temporary_.clear();
    } else {
      errno_ = errno;
    }
  }
  if (errno_ != 0) *error = CannotWrite(path_, errno_);
  return errno_ == 0;
}

bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         std::string* error) {
  OutputFile file;
  if (!file.Open(path, error, /*alwaysRename=*/true)) return false;
  file.Write(bytes);
  return file.Commit(error);
}

bool WriteOutputFile(const std::filesystem::path& path, std::string_view bytes,
                     std::string* error) {
  OutputFile file;
  if (!file.Open(path, error)) return false;
  file.Write(bytes);
  return file.Commit(error);
}

}  // namespace phonepim::tool
