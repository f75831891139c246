// `phonepim store show` and `phonepim store export`: what the store holds,
// listed or written back as phone text.
#pragma once

#include <iosfwd>
#include <string>

namespace phonepim::tool {

struct StoreShowOptions {
  std::string store;   ///< empty: the default store
  std::string entity;  ///< empty: the entities and their counts only
  bool json = false;
};

/// Returns 0, or 2 when the store cannot be opened (reported on `err`).
int RunStoreShow(const StoreShowOptions& options, std::ostream& out, std::ostream& err);

struct StoreExportOptions {
  std::string store;
  std::string imei;
  std::string format;  ///< "vcf" or "vcs"
  std::string output;  ///< empty: standard output
};

/// Writes the contacts (vcf) or calendar entries (vcs) the store holds for
/// the phone `imei` as vCard 2.1 or vCalendar 1.0.
/// Returns 0, or 2 when the store or the output cannot be used.
int RunStoreExport(const StoreExportOptions& options, std::ostream& out, std::ostream& err);

}  // namespace phonepim::tool
