// `phonepim contacts show`: what is in a phone's address book, as a
// readable summary per contact or as JSON.
#pragma once

#include <iosfwd>
#include <string>

#include <nlohmann/json.hpp>

#include "ContactReader.h"

namespace phonepim::tool {

/// A few lines on one contact, from its JSON (ContactToJson): a heading with
/// its object number and name, then one line per field that holds anything.
void WriteContactSummary(const nlohmann::ordered_json& contact, std::ostream& out);

/// "22 cards: 19 contacts, 3 groups, 2 with photos, 1 failed".
std::string TallyLine(const ContactTally& tally);

/// The JSON document of a whole book: {"source", "contacts": [...],
/// "failed"}. `contacts` is an array of ContactToJson objects.
nlohmann::ordered_json BookJson(const std::string& sourceName, nlohmann::ordered_json contacts,
                                const ContactTally& tally);

/// Reads every card of `text` and prints the summaries and the tally, or
/// the JSON document, on `out`; failures go to `err`. Returns the exit
/// status of ForEachContact.
int ShowContacts(const std::string& text, const std::string& sourceName,
                 const ContactReadOptions& options, bool json, std::ostream& out,
                 std::ostream& err);

}  // namespace phonepim::tool
