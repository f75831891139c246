// `phonepim calendar check`: what a round trip through the library would
// change, entry by entry and field by field.
//
// Each entry is read, written with the codec options given, and read
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
/// each entry that changed with its differences, then a tally. Returns 0
/// when nothing was lost, 4 when some entry lost something, else 1 when
/// some entries could not be read, 2 for no vCalendar at all.
int CheckCalendar(const std::string& text, const std::string& sourceName,
                  const ReadOptions& readOptions, const CalendarOptions& options,
                  std::ostream& out, std::ostream& err);

}  // namespace phonepim::tool
