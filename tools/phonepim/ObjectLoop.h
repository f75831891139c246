// The walk a reading command makes over a file's objects: a progress
// line, timing, and the failures of single objects reported and counted
// rather than fatal.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include <phonepim/platform/String.h>
#include <phonepim/versit/ObjectSplitter.h>

namespace phonepim::tool {

/// What the reading commands share.
struct ReadOptions {
  String imei;           ///< part of every record ID
  bool quiet = false;    ///< no progress line, no tally, no per-object output
  bool verbose = false;  ///< how long each object took, the slowest one
  /// The reader itself fails an object cut off by the end of the file
  /// (lenient vCard reading), so the walk need not warn of it.
  bool readerReportsTruncation = false;
};

/// One object of the file and where it stands.
struct ObjectInFile {
  std::size_t index = 0;  ///< from 0; messages count from 1
  const VersitObjectSpan* span = nullptr;
  std::string_view text;
  /// Why the object is not read ("not a vCard, skipped"); null when it is.
  const char* skipped = nullptr;
};

/// The names the walk uses for what it reads.
struct ObjectNouns {
  const char* progress;  ///< "entries", on the progress line
  const char* one;       ///< "entry", in the verbose closing line
  const char* many;      ///< "entries"
};

/// Calls `read` for every object not skipped, timing it; `read` returns
/// false with a message when the object cannot be read, else `visit` is
/// called for it. A skipped or failed object is reported on `err` in one
/// line that names `sourceName`, the object's number and its first line,
/// and counted in `failed`; the others go on. An object whose END line is
/// missing is read, with a warning (unless the reader reports it). Long files show a progress line on
/// standard error when it is a terminal, unless quiet. Returns 1 when some
/// object failed, else 0.
int ForEachObject(const std::vector<ObjectInFile>& objects, const std::string& sourceName,
                  const ReadOptions& options, const ObjectNouns& nouns, std::ostream& err,
                  const std::function<bool(const ObjectInFile&, std::string* error)>& read,
                  const std::function<void(const ObjectInFile&)>& visit, std::size_t* failed);

/// Runs `read` and turns the failures that belong to the object (the
/// tokenizer's rejection, an assertion of the reader, a value out of range)
/// into a message; anything else (memory exhausted) still propagates.
/// `version` is the VERSION the reader insists on ("2.1"), for the message.
bool CatchReadFailure(const std::function<void()>& read, const char* version,
                      std::string* error);

/// Whether `object` begins with the line "BEGIN:" + `name`, in any case.
bool BeginsWith(std::string_view object, std::string_view name);

}  // namespace phonepim::tool
