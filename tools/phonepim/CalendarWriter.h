// The vCalendar codec's class-wide options as a person sets them on the
// command line, and writing entries back with them.
#pragma once

#include <string>

#include <phonepim/model/CCalendar.h>

namespace phonepim::tool {

struct CalendarOptions {
  // Reading.
  bool strict = false;             ///< the reading rules as they stand, not lenient
  bool localTime = false;          ///< times without "Z" kept as they stand
  bool carriageReturn = false;     ///< quoted-printable line ends as the phones with CR send them
  bool weekdayCorrection = false;  ///< recurrence weekdays moved across the TZ offset
  bool specialOccasion = false;    ///< SPECIAL OCCASION is an anniversary
  bool escape = false;             ///< backslash escapes in text values
  // Writing.
  bool holiday = false;              ///< X-TYPE:HOLIDAY for holidays
  bool taskLocalTime = false;        ///< to-dos in local time
  bool alarmLocalTime = false;       ///< alarms in local time
  bool holidayLocalTime = false;     ///< holidays in local time
  bool anniversaryLocalTime = false; ///< anniversaries in local time
  int timezoneBias = 0;              ///< minutes from GMT, written as TZ; 0 none
  bool noW0 = false;                 ///< open rules without "#0", for phones that refuse it
  bool categoryWords = false;        ///< categories by their words
  bool reduced = false;              ///< no CLASS, CATEGORIES, STATUS or PRIORITY
};

/// Sets the codec's class-wide options from `options`. Some hold for the
/// reader, so call it before the first entry is read.
void ApplyCalendarOptions(const CalendarOptions& options);

/// The vCalendar 1.0 text vCalendar::Generate writes for `calendar` as
/// `kind`, in the reduced form when asked.
std::string GenerateCalendar(const CCalendar& calendar, unsigned int kind, bool reduced);

}  // namespace phonepim::tool
