// `phonepim calendar convert`: a phone's calendar written back as
// vCalendar 1.0 by the library's writer, or as JSON.
#pragma once

#include <iosfwd>
#include <string>

#include "CalendarReader.h"
#include "CalendarWriter.h"

namespace phonepim::tool {

struct CalendarConvertOptions {
  std::string format = "vcs";  ///< "vcs" or "json"
  std::string output;          ///< the file to write; empty for standard output
  CalendarOptions codec;
};

/// Reads every entry of `text` and writes them in the chosen format to the
/// output file (atomically) or `out`, one VCALENDAR per entry, CRLF between
/// them. Entries that cannot be read are reported on `err` and left out.
/// Returns 0, 1 when some entries failed, 2 when the input holds no
/// vCalendar or the output file cannot be written (then it is left as it
/// was).
int ConvertCalendar(const std::string& text, const std::string& sourceName,
                    const ReadOptions& readOptions, const CalendarConvertOptions& options,
                    std::ostream& out, std::ostream& err);

}  // namespace phonepim::tool
