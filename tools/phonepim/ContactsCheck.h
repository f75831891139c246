// `phonepim contacts check`: what reading lost of each card, and what a
// round trip through the writer would lose on top.
//
// Reading: every property of the card is accounted for by the reader
// (vCard::Parse with a ReadAccount): read into a field, dropped by design
// (BEGIN, END, VERSION, X-GENDER, a nested card's BEGIN: that card is read
// as a contact of its own), kept as an extension item, empty (no value:
// nothing to keep), or lost. Only "lost" counts as a loss.
//
// Writing: each card is written with the writer options given and read
// again; the two contacts are compared as their JSON (ContactToJson). Some
// changes are the writer's by design: it has no property for a field
// (account name and type, LMT, extension items, the reading first name
// without the reading-name option), a group carries only its own fields and
// a person only its own, and each telephone dialect has its own words
// (phone style 0 writes neither X-CALLBACK nor a number's own label; phone
// style 1 drops VOICE and sends a mobile as HOME;CELL). Those are listed as
// "by design" and do not count. Every other difference is something the
// vCard text could have carried and the round trip lost.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "CardWriter.h"
#include "ContactReader.h"

namespace phonepim::tool {

/// Differences between two JSON values, one line each:
/// "PATH: BEFORE -> AFTER", paths like "telephones[0].types". Objects and
/// arrays of objects are compared member by member and element by element;
/// anything else whole.
std::vector<std::string> JsonDifferences(const nlohmann::ordered_json& before,
                                         const nlohmann::ordered_json& after,
                                         const std::string& path = "");

/// Reads, writes and reads again every card of `text`, and prints on `out`
/// one line with its property account for each card that lost something or
/// kept something as an extension item, those properties, and what the
/// round trip changed; then the totals. Quiet prints only the cards with
/// losses, and no "kept" or "by design" lines. Returns 0 when nothing was lost, 4 when some card lost something
/// in reading or on writing, else 1 when some cards could not be read, 2
/// for no vCard at all.
int CheckContacts(const std::string& text, const std::string& sourceName,
                  const ContactReadOptions& readOptions, const WriterOptions& writer,
                  std::ostream& out, std::ostream& err);

}  // namespace phonepim::tool
