#include "CalendarReader.h"

#include <phonepim/vcalendar/CalendarEntries.h>
#include <phonepim/vcalendar/vCalendar.h>
#include <phonepim/versit/vObject.h>

#include <ostream>

#include "ObjectReport.h"

namespace phonepim::tool {
namespace {

constexpr unsigned int kKindAppointment = 1;
constexpr std::uint32_t kCategoryAnniversary = 0x2;
constexpr std::uint32_t kCategoryHoliday = 0x4;
constexpr const char* kNotACalendar = "not a vCalendar, skipped";

// The entries of one VCALENDAR object, each with its own lines in the file
// for the messages.
void AddEntries(std::string_view object, const VersitObjectSpan& span,
                std::vector<CalendarFileEntry>* entries) {
  std::vector<CalendarEntry> split = SplitCalendarEntries(object);
  if (split.empty()) {
    entries->push_back({span, object, {}, false, "no VEVENT or VTODO in it, skipped"});
    return;
  }
  std::size_t line = 1;
  std::size_t at = 0;
  for (CalendarEntry& entry : split) {
    for (; line < entry.firstLine && at < object.size(); ++line) {
      const std::size_t end = object.find('\n', at);
      at = end == std::string_view::npos ? object.size() : end + 1;
    }
    const std::string_view own = object.substr(at);
    const VersitObjectSpan where{span.offset + at, own.size(), span.firstLine + line - 1,
                                 span.terminated};
    entries->push_back({where, own, std::move(entry.text), entry.todo, nullptr});
  }
}

}  // namespace

std::vector<CalendarFileEntry> FindCalendarEntries(std::string_view text) {
  std::vector<CalendarFileEntry> entries;
  for (const VersitObjectSpan& span : FindVersitObjects(text)) {
    const std::string_view object = text.substr(span.offset, span.length);
    if (BeginsWith(object, "VCALENDAR")) {
      AddEntries(object, span, &entries);
    } else {
      entries.push_back({span, object, {}, false, kNotACalendar});
    }
  }
  return entries;
}

unsigned int CalendarKind(const CCalendar& calendar, bool todo) {
  if (todo) return vCalendar::kKindToDo;
  if ((calendar.categories & kCategoryAnniversary) != 0) return vCalendar::kKindAnniversary;
  if (calendar.bIsHoliday || (calendar.categories & kCategoryHoliday) != 0) {
    return vCalendar::kKindHoliday;
  }
  return kKindAppointment;
}

std::unique_ptr<CCalendar> ParseCalendar(std::string_view text, std::uint16_t vcalID,
                                         ReadAccount* account) {
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  object.setObjectID(vcalID);
  auto calendar = std::make_unique<CCalendar>();
  vCalendar::Parse(calendar.get(), &object, account);
  return calendar;
}

std::unique_ptr<CCalendar> TryParseCalendar(std::string_view text, std::uint16_t vcalID,
                                            std::string* error, ReadAccount* account) {
  std::unique_ptr<CCalendar> calendar;
  CatchReadFailure([&] { calendar = ParseCalendar(text, vcalID, account); }, "1.0", error);
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
  const std::vector<CalendarFileEntry> entries = FindCalendarEntries(text);
  if (entries.empty()) {
    err << sourceName << ": no versit object (no BEGIN: line)\n";
    return 2;
  }
  std::vector<ObjectInFile> objects;
  std::size_t calendars = 0;
  for (const CalendarFileEntry& entry : entries) {
    calendars += entry.skipped != kNotACalendar ? 1 : 0;
    objects.push_back({objects.size(), &entry.span, entry.own, entry.skipped});
  }
  if (calendars == 0) {
    err << sourceName << ": no vCalendar among its " << Counted(entries.size(), "object")
        << " (no BEGIN:VCALENDAR line)\n";
    return 2;
  }
  std::unique_ptr<CCalendar> calendar;
  ReadAccount account;
  return ForEachObject(
      objects, sourceName, options, {"entries", "entry", "entries"}, err,
      [&](const ObjectInFile& object, std::string* error) {
        // The entry's number is its record number, so record IDs follow the
        // file.
        account = ReadAccount();
        calendar = TryParseCalendar(entries[object.index].text,
                                    static_cast<std::uint16_t>(object.index + 1), error, &account);
        return calendar != nullptr;
      },
      [&](const ObjectInFile& object) {
        const CalendarFileEntry& entry = entries[object.index];
        const unsigned int kind = CalendarKind(*calendar, entry.todo);
        ++(kind == vCalendar::kKindToDo          ? tally->todos
           : kind == vCalendar::kKindAnniversary ? tally->anniversaries
                                                 : tally->events);
        if (calendar->GetRecurrencecount() > 0) ++tally->recurring;
        visit({object, entry, kind, account}, *calendar);
      },
      &tally->failed);
}

}  // namespace phonepim::tool
