#include "AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace phonepim::tool {

bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         std::string* error) {
  // In the same folder, because rename is atomic only within a file system.
  const std::string pattern = path.string() + ".tmp-XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  const int fd = mkstemp(name.data());
  if (fd < 0) {
    *error = path.string() + ": cannot write: " + std::strerror(errno);
    return false;
  }
  const auto fail = [&](int code) {
    *error = path.string() + ": cannot write: " + std::strerror(code);
    unlink(name.data());
    return false;
  };
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t n = write(fd, bytes.data() + written, bytes.size() - written);
    if (n < 0) {
      if (errno == EINTR) continue;
      const int code = errno;
      close(fd);
      return fail(code);
    }
    written += static_cast<std::size_t>(n);
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

}  // namespace phonepim::tool
