// Reading a phone's calendar export entry by entry into calendar records,
// with the failures of single entries reported and counted rather than
// fatal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <phonepim/model/CCalendar.h>
#include <phonepim/platform/String.h>
#include <phonepim/versit/ReadAccount.h>
#include <phonepim/versit/ObjectSplitter.h>

#include "ObjectLoop.h"

namespace phonepim::tool {

/// One event or to-do of a file, as the commands number them.
struct CalendarFileEntry {
  VersitObjectSpan span;  ///< from its BEGIN line to the end of its calendar
  std::string_view own;   ///< the file from its BEGIN line on, for messages
  std::string text;       ///< a VCALENDAR of its own, for the reader; empty when skipped
  bool todo = false;      ///< a VTODO
  const char* skipped = nullptr;
};

/// The entries of `text`, in file order: a phone's export holds either one
/// VCALENDAR per entry or one around them all (SplitCalendarEntries). A
/// top-level object that is no VCALENDAR, and a calendar with no entry in
/// it, are entries marked skipped, so that they are reported.
std::vector<CalendarFileEntry> FindCalendarEntries(std::string_view text);

/// The kind an entry is written as (vCalendar::Generate's kind): a to-do
/// (read from a VTODO), an anniversary (category ANNIVERSARY), a holiday
/// (X-TYPE:HOLIDAY or category HOLIDAY), else an appointment (1).
unsigned int CalendarKind(const CCalendar& calendar, bool todo);

/// Reads `text` (one VCALENDAR with one entry) into a new record whose
/// phone record number is `vcalID`. Throws what vCalendar::Parse throws.
/// `account`, when given, receives what reading did with each property.
std::unique_ptr<CCalendar> ParseCalendar(std::string_view text, std::uint16_t vcalID,
                                         ReadAccount* account = nullptr);

/// ParseCalendar with the failures that belong to the entry turned into a
/// message (see CatchReadFailure).
std::unique_ptr<CCalendar> TryParseCalendar(std::string_view text, std::uint16_t vcalID,
                                            std::string* error, ReadAccount* account = nullptr);

/// The counts a command closes with.
struct CalendarTally {
  std::size_t events = 0;
  std::size_t anniversaries = 0;
  std::size_t todos = 0;
  std::size_t recurring = 0;
  std::size_t failed = 0;  ///< entries not read, and objects that are no entry
};

/// "5 objects: 3 events, 1 anniversary, 1 to-do, 2 recurring, 0 failed".
std::string CalendarTallyLine(const CalendarTally& tally);

/// What a visit gets: the entry as ForEachObject numbers it, its kind and
/// its text as read.
struct EntryInFile {
  const ObjectInFile& object;
  const CalendarFileEntry& entry;
  unsigned int kind;
  /// What reading did with each property of the entry.
  const ReadAccount& account;
};

/// Splits `text` into entries and reads each, calling `visit` with each
/// record in file order; failures as ForEachObject reports them. Returns 0
/// all read, 1 some failed, 2 no object or no vCalendar at all (reported on
/// `err`).
int ForEachCalendar(const std::string& text, const std::string& sourceName,
                    const ReadOptions& options, std::ostream& err,
                    const std::function<void(const EntryInFile&, const CCalendar&)>& visit,
                    CalendarTally* tally);

}  // namespace phonepim::tool
