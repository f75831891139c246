#include "vcalendar/vCalendarText.h"

#include <algorithm>
#include <cstdio>

#include "datetime/Gregorian.h"

namespace phonepim::vcalendar_text {

std::size_t DateTimeChars(const CalendarDate& date, bool dateOnly, char (&out)[40]) {
  // All six fields from one calendar computation: asking the date for each
  // would cost six, and dates are most of what a writer does.
  const DateComponents f = gregorian::ComponentsInZone(
      date.date, date.timeZone, gregorian::kEraUnit | gregorian::kDateAndTimeUnits);
  // Years before the common era count down to 1 BC, which is year 0 here.
  const long long year = f.era == 0 ? 1 - f.year : f.year;
  const long long fields[] = {f.month, f.day, f.hour, f.minute, f.second};
  bool plain = year >= 0 && year <= 9999;
  for (long long field : fields) plain = plain && field >= 0 && field <= 99;
  if (!plain) {
    // Only a date made outside the reader gets here.
    const int n = std::snprintf(out, sizeof out, dateOnly ? "%04lld%02lld%02lld"
                                                          : "%04lld%02lld%02lldT%02lld%02lld%02lld",
                                year, fields[0], fields[1], fields[2], fields[3], fields[4]);
    return n < 0 ? 0 : std::min<std::size_t>(static_cast<std::size_t>(n), sizeof out - 1);
  }
  // Digits by hand: a formatted print per date shows in the writer's time.
  auto two = [&out](std::size_t at, long long v) {
    out[at] = static_cast<char>('0' + v / 10);
    out[at + 1] = static_cast<char>('0' + v % 10);
  };
  two(0, year / 100);
  two(2, year % 100);
  two(4, fields[0]);
  two(6, fields[1]);
  if (dateOnly) return 8;
  out[8] = 'T';
  two(9, fields[2]);
  two(11, fields[3]);
  two(13, fields[4]);
  return 15;
}

}  // namespace phonepim::vcalendar_text
