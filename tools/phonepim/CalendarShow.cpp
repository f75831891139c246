#include "CalendarShow.h"

#include <ostream>
#include <set>

#include "CalendarJson.h"
#include "ObjectReport.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

// A word of the JSON, or the number a phone sent where no word fits.
std::string Word(const Json& word) { return word.is_string() ? word.get<std::string>() : word.dump(); }

std::string Joined(const Json& words, const char* separator) {
  std::string out;
  for (const Json& word : words) {
    if (!out.empty()) out += separator;
    out += Word(word);
  }
  return out;
}

// "1st", "2nd", "last", "2nd last".
std::string Ordinal(std::int64_t n) {
  if (n == -1) return "last";
  const std::int64_t k = n < 0 ? -n : n;
  static const char* const kSuffix[] = {"th", "st", "nd", "rd"};
  const char* suffix = k % 100 / 10 != 1 && k % 10 < 4 ? kSuffix[k % 10] : "th";
  return std::to_string(k) + suffix + (n < 0 ? " last" : "");
}

std::string Ordinals(const Json& numbers) {
  std::string out;
  for (const Json& n : numbers) {
    if (!out.empty()) out += ", ";
    out += Ordinal(n.get<std::int64_t>());
  }
  return out;
}

// "2026-12-03T08:30:00Z" as "2026-12-03 08:30 UTC"; a local time without
// the zone.
std::string When(const Json& date) {
  std::string text = date.get<std::string>();
  const bool utc = !text.empty() && text.back() == 'Z';
  if (text.size() >= 16) text = text.substr(0, 10) + " " + text.substr(11, 5);
  return utc ? text + " UTC" : text;
}

}  // namespace

std::string RuleSummary(const Json& rule) {
  static const std::pair<const char*, const char*> kUnits[] = {
      {"daily", "day"},         {"weekly", "week"},       {"monthlyByPosition", "month"},
      {"monthlyByDay", "month"}, {"yearlyByMonth", "year"}, {"yearlyByDay", "year"}};
  const std::string frequency = rule["frequency"].is_string() ? rule["frequency"] : "";
  std::string unit = "period";
  for (const auto& [word, name] : kUnits) {
    if (frequency == word) unit = name;
  }
  const std::int64_t interval = rule["interval"];
  std::string text = interval == 1 ? "every " + unit
                                   : "every " + std::to_string(interval) + " " + unit + "s";
  if (frequency == "weekly" && !rule["weekdays"].empty()) {
    text += " on " + Joined(rule["weekdays"], ", ");
  } else if (frequency == "monthlyByPosition") {
    text += " on the " + Ordinals(rule["weekPositions"]) + " " + Joined(rule["weekdays"], ", ");
  } else if (frequency == "monthlyByDay") {
    text += " on the " + Ordinals(rule["monthDays"]) + " day";
  } else if (frequency == "yearlyByMonth") {
    text += " in month " + Joined(rule["months"], ", ");
  } else if (frequency == "yearlyByDay" && !rule["yearDays"].empty()) {
    text += " on the " + Ordinals(rule["yearDays"]) + " day of the year";
  }
  if (!rule["count"].is_null()) {
    text += ", " + Counted(rule["count"].get<std::size_t>(), "time");
  }
  if (!rule["until"].is_null()) text += ", until " + When(rule["until"]);
  if (rule["count"].is_null() && rule["until"].is_null()) text += ", forever";
  return text;
}

void WriteCalendarSummary(const Json& e, std::ostream& out) {
  const std::string summary = e["summary"].is_string() ? e["summary"] : "(no summary)";
  std::string heading;
  AppendVisible(heading, summary);
  out << "object " << e["object"].get<std::size_t>() << " (line " << e["line"].get<std::size_t>()
      << "): " << heading << " [" << e["kind"].get<std::string>() << "]\n";
  const auto line = [&](const char* label, const std::string& text) {
    if (text.empty()) return;
    std::string shown;
    AppendVisible(shown, text);
    out << "  " << label << ": " << shown << '\n';
  };
  const auto text = [&](const char* label, const Json& value) {
    if (value.is_string()) line(label, value.get<std::string>());
  };
  const auto date = [&](const char* label, const Json& value) {
    if (value.is_string()) line(label, When(value));
  };
  text("location", e["location"]);
  text("description", e["description"]);
  date("start", e["start"]);
  date("end", e["end"]);
  date("due", e["due"]);
  if (e["allDay"] == true) line("all day", "yes");
  if (e["holiday"] == true) line("holiday", "yes");
  line("categories", Joined(e["categories"], ", "));
  if (e["classification"] != "PUBLIC") line("class", Word(e["classification"]));
  if (e["status"] != "NONE") line("status", Word(e["status"]));
  if (e["priority"] != 0) line("priority", e["priority"].dump());
  for (const Json& alarm : e["alarms"]) {
    std::string entry = alarm["runTime"].is_string() ? When(alarm["runTime"]) : "(no time)";
    if (alarm["type"].is_string()) entry += ", " + alarm["type"].get<std::string>();
    line("alarm", entry);
  }
  for (const Json& a : e["attendees"]) {
    line("attendee", a["name"].get<std::string>() + " (" + Word(a["status"]) + ")");
  }
  for (const Json& rule : e["recurrence"]) {
    if (rule.is_null()) continue;
    line("repeats", rule["text"].get<std::string>() + " (" + RuleSummary(rule) + ")");
  }
  if (const Json& except = e["exceptRule"]; except.is_object()) {
    line("except", except["text"].get<std::string>() + " (" + RuleSummary(except) + ")");
  }
  if (const Json& zone = e["timeZone"]; zone.is_object()) {
    std::string entry = zone["bias"].is_string() ? "TZ " + zone["bias"].get<std::string>() : "";
    if (zone["daylightBias"].is_string()) {
      entry += (entry.empty() ? "" : ", ") + std::string("daylight ") +
               zone["daylightBias"].get<std::string>();
    }
    line("time zone", entry);
  }
  text("uid", e["uid"]);
  date("created", e["created"]);
  date("completed", e["completed"]);
  text("last modified", e["lastModified"]);
  text("account", e["account"]);
  // The lenient reader keeps these both in their field and as an item, for
  // the writer, which has no line of its own for them; the field says it.
  static const std::set<std::string> kShownByField = {
      "TZ",    "DAYLIGHT", "DTCREATE",  "LAST-MODIFIED", "COMPLETED",     "UID",
      "XRULE", "X-TYPE",   "X-ACCOUNT", "X-ACCOUNT-N",   "X-ACCOUNT-TYPE"};
  for (const Json& x : e["extensions"]) {
    const std::string name = x["name"];
    const std::string value = x["value"];
    if (name == "RRULE") {
      // A rule the model cannot hold, kept as the phone wrote it.
      line("repeats", value + " (kept as written)");
    } else if (kShownByField.count(name) == 0) {
      line("extension", name + ": " + value);
    }
  }
}

Json CalendarFileJson(const std::string& sourceName, Json entries, const CalendarTally& tally) {
  return Json{{"source", sourceName}, {"entries", std::move(entries)}, {"failed", tally.failed}};
}

int ShowCalendar(const std::string& text, const std::string& sourceName,
                 const ReadOptions& options, bool json, std::ostream& out, std::ostream& err) {
  CalendarTally tally;
  Json entries = Json::array();
  const int status = ForEachCalendar(
      text, sourceName, options, err,
      [&](const EntryInFile& entry, const CCalendar& calendar) {
        if (!json && options.quiet) return;
        Json j = CalendarToJson(calendar, entry.kind, entry.object.index + 1,
                                entry.entry.span.firstLine, options.imei);
        if (json) {
          entries.push_back(std::move(j));
        } else if (!options.quiet) {
          WriteCalendarSummary(j, out);
        }
      },
      &tally);
  if (status == 2) return status;
  if (json) {
    out << CalendarFileJson(sourceName, std::move(entries), tally).dump(2) << '\n';
  } else {
    out << CalendarTallyLine(tally) << '\n';
  }
  return status;
}

}  // namespace phonepim::tool
