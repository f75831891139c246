#include "CalendarCheck.h"

#include <phonepim/vcalendar/vCalendar.h>

#include <algorithm>
#include <ostream>
#include <vector>

#include "AccountReport.h"
#include "CalendarJson.h"
#include "ContactsCheck.h"
#include "ObjectReport.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

// The value at a path of JsonDifferences ("alarms[0].type"); null when
// there is none.
Json At(const Json& json, const std::string& path) {
  std::string pointer = "/";
  for (char c : path) {
    if (c == '.' || c == '[') {
      pointer += '/';
    } else if (c != ']') {
      pointer += c;
    }
  }
  const Json::json_pointer at(pointer);
  return json.contains(at) ? json.at(at) : Json();
}

// Whether `path` is `field` or lies inside it.
bool Within(const std::string& path, const std::string& field) {
  return path.compare(0, field.size(), field) == 0 &&
         (path.size() == field.size() || path[field.size()] == '.' || path[field.size()] == '[');
}

// The items of `a` that `b` lacks, each item of `b` matching once. The
// extension items are compared as a bag: the writer puts its own lines (TZ)
// among them, and their order carries nothing.
std::vector<Json> Missing(const Json& a, Json b) {
  std::vector<Json> missing;
  for (const Json& item : a) {
    const auto found = std::find(b.begin(), b.end(), item);
    if (found == b.end()) {
      missing.push_back(item);
    } else {
      b.erase(found);
    }
  }
  return missing;
}

}  // namespace

const char* ByDesignReason(const std::string& path, const Json& before, const Json& after,
                           unsigned int kind, bool allDay, const CalendarOptions& options) {
  if (Within(path, "end") && allDay) return "an all-day end is written as the day before";
  // The writer picks UTC or local time by the property (DTSTART in UTC, an
  // all-day end local), not by the form the time was read in.
  const bool time = Within(path, "start") || Within(path, "end") || Within(path, "due") ||
                    (Within(path, "alarms") && path.ends_with(".runTime"));
  if (time && before.is_string() && after.is_string()) {
    const std::string a = before.get<std::string>();
    const std::string b = after.get<std::string>();
    if (a + "Z" == b || a == b + "Z") return "the writer's choice of UTC or local time";
  }
  if (Within(path, "extensions") && options.timezoneBias != 0 && before.is_null() &&
      after.is_object() && after["name"] == "TZ") {
    return "TZ written from --timezone-bias as well";
  }
  // Fields no property of the writer carries.
  for (const char* field : {"uid", "created", "completed", "lastModified", "timeZone",
                            "exceptRule", "account", "accountName", "accountType"}) {
    if (Within(path, field)) return "not written";
  }
  if (Within(path, "due") && kind != vCalendar::kKindToDo) return "DUE only for a to-do";
  const bool categoriesWritten = options.categoryWords && !options.reduced;
  if (!categoriesWritten &&
      (Within(path, "categories") || Within(path, "kind") || Within(path, "recordId"))) {
    return "categories written only as APPOINTMENT, for none";
  }
  if (Within(path, "holiday") && !options.holiday) return "X-TYPE written only with --holiday";
  if (options.reduced && (Within(path, "classification") || Within(path, "status") ||
                          Within(path, "priority"))) {
    return "not in the reduced form";
  }
  // AALARM carries one time: the first alarm's, and nothing else of it.
  if (Within(path, "alarms") && !Within(path, "alarms[0]")) return "one alarm written";
  if (Within(path, "alarms[0]") && path != "alarms[0]" && !Within(path, "alarms[0].runTime")) {
    return "only the alarm's time written";
  }
  return nullptr;
}

int CheckCalendar(const std::string& text, const std::string& sourceName,
                  const ReadOptions& readOptions, const CalendarOptions& options,
                  std::ostream& out, std::ostream& err) {
  CalendarTally tally;
  CheckTotals totals;
  const bool quiet = readOptions.quiet;
  const int status = ForEachCalendar(
      text, sourceName, readOptions, err,
      [&](const EntryInFile& entry, const CCalendar& calendar) {
        ObjectCheck check;
        check.AddAccount(entry.account, quiet);
        // What writing the entry and reading it again would change.
        const std::size_t number = entry.object.index + 1;
        const std::size_t line = entry.entry.span.firstLine;
        Json before = CalendarToJson(calendar, entry.kind, number, line, readOptions.imei);
        const std::string written = GenerateCalendar(calendar, entry.kind, options.reduced);
        std::string error;
        const std::unique_ptr<CCalendar> again =
            TryParseCalendar(written, static_cast<std::uint16_t>(number), &error);
        std::vector<std::string> lost;
        std::vector<std::string> byDesign;
        if (!again) {
          lost.push_back("the written entry cannot be read back: " + error);
        } else {
          const unsigned int kindAgain =
              CalendarKind(*again, entry.kind == vCalendar::kKindToDo);
          Json after = CalendarToJson(*again, kindAgain, number, line, readOptions.imei);
          const auto sort = [&](const std::string& path, const Json& was, const Json& is,
                                std::string difference) {
            if (const char* reason =
                    ByDesignReason(path, was, is, entry.kind, calendar.bIsAllDay, options)) {
              byDesign.push_back(difference + " (" + reason + ")");
            } else {
              lost.push_back(std::move(difference));
            }
          };
          for (const Json& item : Missing(before["extensions"], after["extensions"])) {
            sort("extensions", item, nullptr, "extensions: lost " + item.dump());
          }
          for (const Json& item : Missing(after["extensions"], before["extensions"])) {
            sort("extensions", nullptr, item, "extensions: added " + item.dump());
          }
          before.erase("extensions");
          after.erase("extensions");
          for (std::string& difference : JsonDifferences(before, after)) {
            const std::string path = difference.substr(0, difference.find(": "));
            sort(path, At(before, path), At(after, path), std::move(difference));
          }
        }
        check.AddRoundTrip(lost, byDesign, quiet);
        totals.Report(
            ObjectHeading(sourceName, entry.object.index, entry.entry.span, entry.entry.own),
            check, quiet, out);
      },
      &tally);
  if (status == 2) return status;
  return totals.Close(tally.events + tally.anniversaries + tally.todos + tally.failed,
                      tally.failed, status, out);
}

}  // namespace phonepim::tool
