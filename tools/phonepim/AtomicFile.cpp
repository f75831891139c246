#include "AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace phonepim::tool {

namespace {

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

bool WriteStraight(const std::filesystem::path& path, std::string_view bytes,
                   std::string* error) {
  const int fd = open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) {
    *error = CannotWrite(path, errno);
    return false;
  }
  const int code = WriteAll(fd, bytes);
  if (close(fd) != 0 || code != 0) {
    *error = CannotWrite(path, code != 0 ? code : errno);
    return false;
  }
  return true;
}

}  // namespace

bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         std::string* error) {
  // In the same folder, because rename is atomic only within a file system.
  const std::string pattern = path.string() + ".tmp-XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  const int fd = mkstemp(name.data());
  if (fd < 0) {
    *error = CannotWrite(path, errno);
    return false;
  }
  const auto fail = [&](int code) {
    *error = CannotWrite(path, code);
    unlink(name.data());
    return false;
  };
  if (const int code = WriteAll(fd, bytes); code != 0) {
    close(fd);
    return fail(code);
  }
  // mkstemp makes the file 0600; an export is an ordinary file of the user.
  const mode_t mask = umask(0);
  umask(mask);
  if (fchmod(fd, 0666 & ~mask) != 0 || fsync(fd) != 0) {
    const int code = errno;
    close(fd);
    return fail(code);
  }
  if (close(fd) != 0) return fail(errno);
  if (std::rename(name.data(), path.c_str()) != 0) return fail(errno);
  return true;
}

bool WriteOutputFile(const std::filesystem::path& path, std::string_view bytes,
                     std::string* error) {
  struct stat target {};
  if (stat(path.c_str(), &target) != 0) {
    if (errno == ENOENT) return WriteFileAtomically(path, bytes, error);
    *error = CannotWrite(path, errno);
    return false;
  }
  if (S_ISDIR(target.st_mode)) {
    *error = CannotWrite(path, EISDIR);
    return false;
  }
  if (!S_ISREG(target.st_mode)) return WriteStraight(path, bytes, error);
  std::error_code ignored;
  const std::filesystem::path file = std::filesystem::is_symlink(path, ignored)
                                         ? std::filesystem::canonical(path, ignored)
                                         : path;
  return WriteFileAtomically(file.empty() ? path : file, bytes, error);
}

}  // namespace phonepim::tool
