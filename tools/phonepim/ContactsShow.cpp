#include "ContactsShow.h"

#include <ostream>

#include "ContactJson.h"
#include "ObjectReport.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

std::string Joined(const Json& parts, const char* separator) {
  std::string out;
  for (const Json& part : parts) {
    if (part.is_null()) continue;
    const std::string text = part.is_string() ? part.get<std::string>() : part.dump();
    if (text.empty()) continue;
    if (!out.empty()) out += separator;
    out += text;
  }
  return out;
}

// Notes and other free text may hold line ends; a summary line must not.
std::string Visible(const std::string& text) {
  std::string line;
  AppendVisible(line, text);
  return line;
}

std::string DisplayName(const Json& c) {
  if (c["formattedName"].is_string() && !c["formattedName"].get<std::string>().empty()) {
    return c["formattedName"];
  }
  const Json& n = c["name"];
  const std::string name =
      Joined(Json::array({n["prefix"], n["given"], n["middle"], n["family"], n["suffix"]}), " ");
  if (!name.empty()) return name;
  if (c["groupDisplayName"].is_string()) return c["groupDisplayName"];
  if (c["groupName"].is_string()) return c["groupName"];
  return "(no name)";
}

// " (HOME CELL)", " (label "Desk")" or nothing.
std::string TypesAndLabels(const Json& element) {
  std::string words = Joined(element["types"], " ");
  for (const char* key : {"customLabel", "label"}) {
    if (element.contains(key) && element[key].is_string()) {
      if (!words.empty()) words += ", ";
      words += "label \"" + element[key].get<std::string>() + "\"";
    }
  }
  return words.empty() ? std::string() : " (" + words + ")";
}

std::string DateText(const Json& date) {
  const auto part = [](const Json& v, int width) {
    std::string text = v.is_null() ? std::string(static_cast<std::size_t>(width), '?')
                                   : std::to_string(v.get<std::int64_t>());
    if (text.size() < static_cast<std::size_t>(width)) {
      text.insert(0, static_cast<std::size_t>(width) - text.size(), '0');
    }
    return text;
  };
  std::string text =
      part(date["year"], 4) + "-" + part(date["month"], 2) + "-" + part(date["day"], 2);
  static const char* const kSuffix[] = {"", " (L)", " (Y)"};
  const auto type = date["type"].get<std::uint32_t>();
  return text + (type < 3 ? kSuffix[type] : " (type " + std::to_string(type) + ")");
}

}  // namespace

void WriteContactSummary(const Json& c, std::ostream& out) {
  out << "object " << c["object"].get<std::size_t>() << " (line " << c["line"].get<std::size_t>()
      << "): " << DisplayName(c) << (c["kind"] == "group" ? " [group]" : "") << '\n';
  const auto line = [&](const char* label, const std::string& text) {
    if (!text.empty()) out << "  " << label << ": " << Visible(text) << '\n';
  };
  const auto text = [&](const char* label, const Json& value) {
    if (value.is_string()) line(label, value.get<std::string>());
  };
  const Json& n = c["name"];
  line("name",
       Joined(Json::array({n["family"], n["given"], n["middle"], n["prefix"], n["suffix"]}), "; "));
  line("phonetic name",
       Joined(Json::array({n["phoneticFamily"], n["phoneticGiven"], n["phoneticMiddle"]}), " "));
  line("reading", Joined(Json::array({c["readingLastName"], c["readingFirstName"]}), " "));
  line("nicknames", Joined(c["nicknames"], ", "));
  const Json& speedDials = c["speedDials"];
  for (std::size_t i = 0; i < c["telephones"].size(); ++i) {
    const Json& tel = c["telephones"][i];
    std::string entry = tel["number"].get<std::string>() + TypesAndLabels(tel);
    if (i < speedDials.size() && speedDials[i] != -1) {
      entry += ", speed dial " + speedDials[i].dump();
    }
    line("tel", entry);
  }
  for (const Json& email : c["emails"]) {
    line("email", email["address"].get<std::string>() + TypesAndLabels(email));
  }
  for (const Json& url : c["urls"])
    line("url", url["url"].get<std::string>() + TypesAndLabels(url));
  for (const Json& a : c["addresses"]) {
    line("address",
         Joined(Json::array({a["poBox"], a["extended"], a["street"], a["locality"], a["region"],
                             a["postalCode"], a["country"], a["neighborhood"]}),
                ", ") +
             TypesAndLabels(a));
  }
  for (const Json& org : c["organizations"]) {
    Json parts = Json::array({org["name"], org["unit"], org["position"]});
    for (const Json& more : org["additional"]) parts.push_back(more);
    line("organization", Joined(parts, " / ") + TypesAndLabels(org));
  }
  for (const Json& im : c["messengers"])
    line("messenger", im["id"].get<std::string>() + TypesAndLabels(im));
  text("title", c["title"]);
  text("role", c["role"]);
  for (const Json& note : c["notes"]) text("note", note);
  if (!c["birthday"].is_null()) line("birthday", DateText(c["birthday"]));
  if (!c["anniversary"].is_null()) line("anniversary", DateText(c["anniversary"]));
  text("blood type", c["bloodType"]);
  text("hobby", c["hobby"]);
  text("account", c["account"]);
  text("spouse", c["spouse"]);
  text("children", c["children"]);
  line("assistant", Joined(Json::array({c["assistant"], c["assistantNumber"]}), ", "));
  line("groups", Joined(c["groups"], ", "));
  text("group name", c["groupName"]);
  text("group display name", c["groupDisplayName"]);
  text("group type", c["groupType"]);
  if (const Json& photo = c["photo"]; !photo.is_null()) {
    line("photo", photo["bytes"].dump() + " bytes, " + photo["format"].get<std::string>());
  }
}

std::string TallyLine(const ContactTally& tally) {
  return Counted(tally.persons + tally.groups + tally.failed, "object") + ": " +
         Counted(tally.persons, "contact") + ", " + Counted(tally.groups, "group") + ", " +
         std::to_string(tally.withPhotos) + " with photos, " + std::to_string(tally.failed) +
         " failed";
}

Json BookJson(const std::string& sourceName, Json contacts, const ContactTally& tally) {
  return Json{{"source", sourceName}, {"contacts", std::move(contacts)}, {"failed", tally.failed}};
}

int ShowContacts(const std::string& text, const std::string& sourceName,
                 const ContactReadOptions& options, bool json, std::ostream& out,
                 std::ostream& err) {
  ContactTally tally;
  Json contacts = Json::array();
  const int status = ForEachContact(
      text, sourceName, options, err,
      [&](const CardInFile& card, const CContact& contact) {
        Json entry = ContactToJson(contact, card.index + 1, card.span->firstLine);
        if (json) {
          contacts.push_back(std::move(entry));
        } else if (!options.quiet) {
          WriteContactSummary(entry, out);
        }
      },
      &tally);
  if (status == 2) return status;
  if (json) {
    out << BookJson(sourceName, std::move(contacts), tally).dump(2) << '\n';
  } else {
    out << TallyLine(tally) << '\n';
  }
  return status;
}

}  // namespace phonepim::tool
