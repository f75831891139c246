// Where the library keeps its own files.
#pragma once

#include <filesystem>

namespace phonepim {

/// The user's application-data folder: $XDG_DATA_HOME when it is set to an
/// absolute path, else $HOME/.local/share. The folder is not created.
/// Throws std::runtime_error when neither variable gives a folder.
std::filesystem::path ApplicationDataFolder();

/// Creates `folder` and every missing parent. Returns false (and logs in
/// debug mode) when that fails or a file stands in the way.
bool CreateFolderChain(const std::filesystem::path& folder);

}  // namespace phonepim
