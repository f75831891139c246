// `phonepim calendar check`: what reading lost of each entry, and what a
// round trip through the writer would lose on top.
//
// Reading: every property of the entry is accounted for by the reader
// (vCalendar::Parse with a ReadAccount): read into a field, dropped by
// design (BEGIN:VCALENDAR, END, VERSION), kept as an extension item, empty
// (nothing to keep), or lost. Only "lost" counts as a loss.
//
// Writing: each entry is written with the codec options given and read
// again; the two records are compared as their JSON (CalendarToJson). The
// differences in fields the writer has no way to write are "by design"
// (see ByDesignReason) and do not count; every other difference is
// something the vCalendar text could have carried and the round trip lost.
#pragma once

#include <iosfwd>
#include <string>

#include <nlohmann/json.hpp>

#include "CalendarReader.h"
#include "CalendarWriter.h"

namespace phonepim::tool {

/// Why the writer cannot carry the change of the field at JSON `path`
/// ("alarms[0].type") from `before` to `after`, for an entry of `kind`
/// with `options`; null when it could, so that the change is a loss.
const char* ByDesignReason(const std::string& path, const nlohmann::ordered_json& before,
                           const nlohmann::ordered_json& after, unsigned int kind, bool allDay,
                           const CalendarOptions& options);

/// Reads, writes and reads again every entry of `text`, and prints on `out`
/// one line with its property account for each entry that lost something,
/// kept something as an extension item or changed by design on writing,
/// with those properties and changes; then the totals. Quiet prints only
/// the entries with losses, and no "kept" or "by design" lines. Returns 0
/// when nothing was lost, 4 when some entry lost something in reading or on
/// writing, else 1 when some entries could not be read, 2 for no vCalendar
/// at all.
int CheckCalendar(const std::string& text, const std::string& sourceName,
                  const ReadOptions& readOptions, const CalendarOptions& options,
                  std::ostream& out, std::ostream& err);

}  // namespace phonepim::tool
