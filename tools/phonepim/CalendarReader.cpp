#include "CalendarReader.h"

#include <phonepim/vcalendar/vCalendar.h>
#include <phonepim/versit/vObject.h>

#include <ostream>

#include "ObjectReport.h"

namespace phonepim::tool {
namespace {

constexpr std::uint32_t kCategoryAnniversary = 0x2;
constexpr std::uint32_t kCategoryHoliday = 0x4;
constexpr const char* kNotACalendar = "not a vCalendar, skipped";

bool StartsWithWord(std::string_view line, std::string_view word) {
  if (line.size() < word.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    const char c = line[i];
    if ((c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) != word[i]) return false;
  }
  return true;
}

// Splits one VCALENDAR into its entries. `header` collects the calendar's
// own lines; the entries' texts are made once it is complete, since a
// phone may put TZ after the entries.
void SplitCalendar(std::string_view object, const VersitObjectSpan& span,
                   std::vector<CalendarEntry>* entries) {
  std::string header;
  std::string_view endLine;
  const std::size_t first = entries->size();
  std::size_t depth = 0;
  std::size_t lineNumber = span.firstLine;
  for (std::size_t at = 0; at < object.size(); ++lineNumber) {
    const std::size_t end = object.find('\n', at);
    const std::size_t next = end == std::string_view::npos ? object.size() : end + 1;
    const std::string_view line = object.substr(at, next - at);
    const bool begins = StartsWithWord(line, "BEGIN:");
    const bool ends = StartsWithWord(line, "END:");
    if (begins && depth++ == 1) {
      CalendarEntry entry;
      entry.own = object.substr(at);
      entry.span = {span.offset + at, entry.own.size(), lineNumber, false};
      if (!BeginsWith(entry.own, "VEVENT") && !BeginsWith(entry.own, "VTODO")) {
        entry.skipped = "not a VEVENT or VTODO, skipped";
      }
      entries->push_back(entry);
    } else if (ends && depth == 2) {
      CalendarEntry& entry = entries->back();
      entry.own = entry.own.substr(0, next - (entry.span.offset - span.offset));
      entry.span.length = entry.own.size();
      entry.span.terminated = true;
    } else if (ends && depth == 1) {
      endLine = line;
    } else if (depth == 1) {
      header += line;
    }
    if (ends && depth > 0) --depth;
    at = next;
  }
  if (entries->size() == first) {
    CalendarEntry none;
    none.span = span;
    none.own = object;
    none.skipped = "no VEVENT or VTODO in it, skipped";
    entries->push_back(none);
    return;
  }
  for (std::size_t i = first; i < entries->size(); ++i) {
    CalendarEntry& entry = (*entries)[i];
    entry.span.terminated = entry.span.terminated && span.terminated;
    if (!entry.skipped) entry.text = header + std::string(entry.own) + std::string(endLine);
  }
}

}  // namespace

std::vector<CalendarEntry> FindCalendarEntries(std::string_view text) {
  std::vector<CalendarEntry> entries;
  for (const VersitObjectSpan& span : FindVersitObjects(text)) {
    const std::string_view object = text.substr(span.offset, span.length);
    if (BeginsWith(object, "VCALENDAR")) {
      SplitCalendar(object, span, &entries);
    } else {
      entries.push_back({span, object, {}, kNotACalendar});
    }
  }
  return entries;
}

bool IsToDo(std::string_view own) { return BeginsWith(own, "VTODO"); }

unsigned int CalendarKind(const CCalendar& calendar, bool todo) {
  if (todo) return vCalendar::kKindToDo;
  if ((calendar.categories & kCategoryAnniversary) != 0) return vCalendar::kKindAnniversary;
  if (calendar.bIsHoliday || (calendar.categories & kCategoryHoliday) != 0) {
    return vCalendar::kKindHoliday;
  }
  return 1;
}

std::unique_ptr<CCalendar> ParseCalendar(std::string_view text, std::uint16_t vcalID) {
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  object.setObjectID(vcalID);
  auto calendar = std::make_unique<CCalendar>();
  vCalendar::Parse(calendar.get(), &object);
  return calendar;
}

std::unique_ptr<CCalendar> TryParseCalendar(std::string_view text, std::uint16_t vcalID,
                                            std::string* error) {
  std::unique_ptr<CCalendar> calendar;
  CatchReadFailure([&] { calendar = ParseCalendar(text, vcalID); }, "1.0", error);
  return calendar;
}

std::string CalendarTallyLine(const CalendarTally& tally) {
  return Counted(tally.events + tally.anniversaries + tally.todos + tally.failed, "object") +
         ": " + Counted(tally.events, "event") + ", " +
         (tally.anniversaries == 1 ? "1 anniversary"
                                   : std::to_string(tally.anniversaries) + " anniversaries") +
         ", " + Counted(tally.todos, "to-do") + ", " + std::to_string(tally.recurring) +
         " recurring, " + std::to_string(tally.failed) + " failed";
}

int ForEachCalendar(const std::string& text, const std::string& sourceName,
                    const ReadOptions& options, std::ostream& err,
                    const std::function<void(const EntryInFile&, const CCalendar&)>& visit,
                    CalendarTally* tally) {
  const std::vector<CalendarEntry> entries = FindCalendarEntries(text);
  if (entries.empty()) {
    err << sourceName << ": no versit object (no BEGIN: line)\n";
    return 2;
  }
  std::vector<ObjectInFile> objects;
  std::size_t calendars = 0;
  for (const CalendarEntry& entry : entries) {
    calendars += entry.skipped != kNotACalendar ? 1 : 0;
    objects.push_back({objects.size(), &entry.span, entry.own, entry.skipped});
  }
  if (calendars == 0) {
    err << sourceName << ": no vCalendar among its " << Counted(entries.size(), "object")
        << " (no BEGIN:VCALENDAR line)\n";
    return 2;
  }
  std::unique_ptr<CCalendar> calendar;
  return ForEachObject(
      objects, sourceName, options, {"entries", "entry"}, err,
      [&](const ObjectInFile& object, std::string* error) {
        // The entry's number is its record number, so record IDs follow the
        // file.
        calendar = TryParseCalendar(entries[object.index].text,
                                    static_cast<std::uint16_t>(object.index + 1), error);
        return calendar != nullptr;
      },
      [&](const ObjectInFile& object) {
        const CalendarEntry& entry = entries[object.index];
        const unsigned int kind = CalendarKind(*calendar, IsToDo(entry.own));
        ++(kind == vCalendar::kKindToDo          ? tally->todos
           : kind == vCalendar::kKindAnniversary ? tally->anniversaries
                                                 : tally->events);
        if (calendar->GetRecurrencecount() > 0) ++tally->recurring;
        visit({object, entry, kind}, *calendar);
      },
      &tally->failed);
}

}  // namespace phonepim::tool
