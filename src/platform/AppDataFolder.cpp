#include "phonepim/platform/AppDataFolder.h"

#include <cstdlib>
#include <stdexcept>
#include <system_error>

#include "phonepim/platform/Log.h"

namespace phonepim {

std::filesystem::path ApplicationDataFolder() {
  // XDG: a relative XDG_DATA_HOME is invalid and must be ignored.
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg == '/') {
    return std::filesystem::path(xdg);
  }
  if (const char* home = std::getenv("HOME"); home && *home) {
    return std::filesystem::path(home) / ".local" / "share";
  }
  throw std::runtime_error(
      "no application-data folder: neither XDG_DATA_HOME nor HOME is set");
}

bool CreateFolderChain(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!error && std::filesystem::is_directory(folder, error)) return true;
  if (gVCARD_DEBUGMODE) {
    Log("[%s] Cannot create folder %s: %s", __func__, folder.string().c_str(),
        error ? error.message().c_str() : "not a folder");
  }
  return false;
}

}  // namespace phonepim
