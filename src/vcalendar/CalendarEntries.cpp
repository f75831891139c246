#include "phonepim/vcalendar/CalendarEntries.h"

#include "vcalendar/vCalendarText.h"

namespace phonepim {
namespace {

using vcalendar_text::EqualsIgnoringCase;
using vcalendar_text::Trim;

// "BEGIN:WORD" / "END:WORD" in any case, blanks around the value allowed;
// any word when `word` is empty.
bool IsLine(std::string_view line, std::string_view key, std::string_view word) {
  line = Trim(line);
  if (line.size() <= key.size() || line[key.size()] != ':' ||
      !EqualsIgnoringCase(line.substr(0, key.size()), key)) {
    return false;
  }
  return word.empty() || EqualsIgnoringCase(Trim(line.substr(key.size() + 1)), word);
}

bool IsBlankLine(std::string_view line) {
  return line.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// The text's line break, for the lines this function adds.
std::string_view LineBreakOf(std::string_view text) {
  const std::size_t lf = text.find('\n');
  return lf != std::string_view::npos && lf > 0 && text[lf - 1] == '\r' ? "\r\n" : "\n";
}

struct Pending {
  std::string lines;
  bool todo = false;
  std::size_t firstLine = 0;
};

}  // namespace

std::vector<CalendarEntry> SplitCalendarEntries(std::string_view text) {
  const std::string_view br = LineBreakOf(text);
  std::string calendarLines;
  std::vector<Pending> pending;
  Pending* open = nullptr;
  int depth = 0;  // nesting inside the open entry
  std::size_t lineNumber = 0;
  for (std::size_t pos = 0; pos < text.size();) {
    std::size_t end = text.find('\n', pos);
    end = end == std::string_view::npos ? text.size() : end + 1;
    const std::string_view line = text.substr(pos, end - pos);
    pos = end;
    ++lineNumber;
    if (open != nullptr) {
      open->lines += line;
      if (IsLine(line, "BEGIN", "")) {
        ++depth;
      } else if (IsLine(line, "END", "") && --depth == 0) {
        open = nullptr;
      }
      continue;
    }
    const bool event = IsLine(line, "BEGIN", "VEVENT");
    if (event || IsLine(line, "BEGIN", "VTODO")) {
      open = &pending.emplace_back(Pending{std::string(line), !event, lineNumber});
      depth = 1;
      if (line.back() != '\n') open->lines += br;
    } else if (!IsBlankLine(line) && !IsLine(line, "BEGIN", "VCALENDAR") &&
               !IsLine(line, "END", "VCALENDAR")) {
      // Blank lines between the entries carry nothing, and a blank line
      // before an entry would end the calendar's last property early.
      calendarLines += line;
      if (line.back() != '\n') calendarLines += br;
    }
  }
  std::vector<CalendarEntry> entries;
  entries.reserve(pending.size());
  for (Pending& p : pending) {
    if (!p.lines.empty() && p.lines.back() != '\n') p.lines += br;
    if (&p == open) p.lines.append(p.todo ? "END:VTODO" : "END:VEVENT").append(br);
    std::string entry = "BEGIN:VCALENDAR";
    entry.append(br).append(calendarLines).append(p.lines).append("END:VCALENDAR").append(br);
    entries.push_back(CalendarEntry{std::move(entry), p.todo, p.firstLine});
  }
  return entries;
}

}  // namespace phonepim
