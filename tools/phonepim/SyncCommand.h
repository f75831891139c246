// `phonepim sync`: phone exports into the store, through the library's
// synchronisation session.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace phonepim::tool {

struct SyncOptions {
  std::vector<std::string> files;
  std::string store;  ///< empty: the default store
  std::string imei;
  std::string model = "phone";
  bool dryRun = false;
  bool json = false;
  bool quiet = false;
  bool verbose = false;
  bool strict = false;  ///< the standard reading rules instead of lenient reading
};

/// Runs the command; returns its exit status (0 synchronised, 1 some
/// objects not read, 2 a file or the store cannot be used).
int RunSync(const SyncOptions& options, std::ostream& out, std::ostream& err);

/// The store the commands use: `--store` when given, else the default.
std::string StorePathOption(const std::string& option);

}  // namespace phonepim::tool
