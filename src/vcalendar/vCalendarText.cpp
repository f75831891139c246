#include "vcalendar/vCalendarText.h"

#include <cstdio>

#include "datetime/Gregorian.h"

namespace phonepim::vcalendar_text {

std::string DateTimeText(const CalendarDate& date, bool dateOnly) {
  // All six fields from one calendar computation: asking the date for each
  // would cost six, and dates are most of what a writer does.
  const DateComponents f = gregorian::ComponentsInZone(
      date.date, date.timeZone,
      gregorian::kEraUnit | gregorian::kDateAndTimeUnits);
  // Years before the common era count down to 1 BC, which is year 0 here.
  const long long year = f.era == 0 ? 1 - f.year : f.year;
  char text[96];
  if (dateOnly) {
    std::snprintf(text, sizeof text, "%04lld%02lld%02lld", year, static_cast<long long>(f.month),
                  static_cast<long long>(f.day));
  } else {
    std::snprintf(text, sizeof text, "%04lld%02lld%02lldT%02lld%02lld%02lld", year,
                  static_cast<long long>(f.month), static_cast<long long>(f.day),
                  static_cast<long long>(f.hour), static_cast<long long>(f.minute),
                  static_cast<long long>(f.second));
  }
  return text;
}

}  // namespace phonepim::vcalendar_text
