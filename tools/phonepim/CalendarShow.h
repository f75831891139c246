// `phonepim calendar show`: what is in a phone's calendar, as a readable
// summary per entry or as JSON.
#pragma once

#include <iosfwd>
#include <string>

#include <nlohmann/json.hpp>

#include "CalendarReader.h"

namespace phonepim::tool {

/// A few lines on one entry, from its JSON (CalendarToJson): a heading with
/// its object number, summary and kind, then one line per field that holds
/// anything.
void WriteCalendarSummary(const nlohmann::ordered_json& entry, std::ostream& out);

/// How a rule reads: "every 2 weeks on MO, FR, 10 times".
std::string RuleSummary(const nlohmann::ordered_json& rule);

/// The JSON document of a whole calendar: {"source", "entries": [...],
/// "failed"}.
nlohmann::ordered_json CalendarFileJson(const std::string& sourceName,
                                        nlohmann::ordered_json entries,
                                        const CalendarTally& tally);

/// Reads every entry of `text` and prints the summaries and the tally, or
/// the JSON document, on `out`; failures go to `err`. Returns the exit
/// status of ForEachCalendar.
int ShowCalendar(const std::string& text, const std::string& sourceName,
                 const ReadOptions& options, bool json, std::ostream& out, std::ostream& err);

}  // namespace phonepim::tool
