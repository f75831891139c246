// The entries of a VCALENDAR object, one text each, as vCalendar::Parse
// takes them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace phonepim {

/// One VEVENT or VTODO of a calendar, made a calendar of its own.
struct CalendarEntry {
  /// "BEGIN:VCALENDAR", the calendar's own lines (VERSION, TZ, DAYLIGHT,
  /// ...: every line outside the entries, in order), the entry's lines from
  /// its BEGIN to its END, and "END:VCALENDAR"; the lines keep their ends
  /// (folded continuation lines stay with their line).
  std::string text;
  /// BEGIN:VTODO rather than BEGIN:VEVENT.
  bool todo = false;
  /// The 1-based line of the entry's BEGIN in the given text.
  std::size_t firstLine = 0;
};

/// The entries of one VCALENDAR object's text (as ObjectSplitter cuts a
/// file): phones send one entry per calendar, desktop programs many. The
/// BEGIN and END lines are matched in any case; an entry still open when the
/// text ends is given as it stands, closed. Nested objects (an iCalendar
/// VALARM) stay inside their entry. A text without entries gives none.
std::vector<CalendarEntry> SplitCalendarEntries(std::string_view vcalendar);

}  // namespace phonepim
