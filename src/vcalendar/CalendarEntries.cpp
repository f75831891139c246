#include "phonepim/vcalendar/CalendarEntries.h"

#include <cctype>

namespace phonepim {
namespace {

// "BEGIN:WORD" / "END:WORD" in any case, blanks around the value allowed.
bool IsLine(std::string_view line, std::string_view key, std::string_view word) {
  while (!line.empty() && (line.back() == '\r' || line.back() == '\n' || line.back() == ' ' ||
                           line.back() == '\t')) {
    line.remove_suffix(1);
  }
  if (line.size() < key.size() + 1) return false;
  for (std::size_t i = 0; i < key.size(); ++i) {
    if (std::toupper(static_cast<unsigned char>(line[i])) != key[i]) return false;
  }
  if (line[key.size()] != ':') return false;
  line.remove_prefix(key.size() + 1);
  while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
  if (word.empty()) return true;
  if (line.size() != word.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (std::toupper(static_cast<unsigned char>(line[i])) != word[i]) return false;
  }
  return true;
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
