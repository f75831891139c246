// `phonepim dump`: every property of every object in a versit file, with its
// parameters and its value decoded.
#pragma once

#include <iosfwd>
#include <string>

namespace phonepim::tool {

struct DumpOptions {
  bool quiet = false;  ///< only errors and the closing tally
};

/// Dumps the versit objects in `text` (read from `sourceName`) to `out` and
/// reports rejected objects on `err`. Returns the process exit status: 0 when
/// every object tokenized, 1 when some were rejected, 2 when `text` holds no
/// object at all.
int DumpVersitText(const std::string& text, const std::string& sourceName,
                   const DumpOptions& options, std::ostream& out, std::ostream& err);

}  // namespace phonepim::tool
