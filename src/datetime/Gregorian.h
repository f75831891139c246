// The ICU side of the date values: fields <-> instants in a named zone,
// zone offsets, and the clock. Private to the library.
#pragma once

#include "phonepim/datetime/DateComponents.h"
#include "phonepim/platform/String.h"

namespace phonepim::gregorian {

/// Which fields ComponentsInZone fills.
enum Unit : unsigned {
  kEraUnit = 1u << 0,
  kYearUnit = 1u << 1,
  kMonthUnit = 1u << 2,
  kDayUnit = 1u << 3,
  kHourUnit = 1u << 4,
  kMinuteUnit = 1u << 5,
  kSecondUnit = 1u << 6,
  kWeekUnit = 1u << 7,
  kWeekdayUnit = 1u << 8,
  kWeekdayOrdinalUnit = 1u << 9,
};

/// Year, month, day, hour, minute and second: the units the value types
/// take from the current calendar (no weekday, which the mirrors show).
inline constexpr unsigned kDateAndTimeUnits =
    kYearUnit | kMonthUnit | kDayUnit | kHourUnit | kMinuteUnit | kSecondUnit;

/// The fields named in `units` of the instant `date` read in `zone`; the
/// others are undefined. A non-finite instant gives no fields at all.
DateComponents ComponentsInZone(double date, const String& zone, unsigned units);

/// The instant whose wall-clock fields in `zone` are `comps` (lenient). A
/// missing year counts as 1, a missing month or day as 1, missing time
/// fields as 0; when the day is missing, weekday with weekdayOrdinal or week
/// place it instead. Values ICU cannot place give 0, the platform's answer
/// for a date it could not make.
double DateInZone(const DateComponents& comps, const String& zone);

/// Seconds east of GMT in `zone` at `date`; 0 for a non-finite instant.
int OffsetFromGMT(const String& zone, double date);

/// The ICU default zone's name.
String DefaultZone();

/// The host's zone name.
String HostZone();

/// Now, in seconds since 1970.
double Now();

/// Replaces the clock (nullptr restores the system clock) and returns the
/// previous one. Lets tests pin "now", which decides the fields of a new
/// value and the offsets SystemTime and LocalTime apply.
using Clock = double (*)();
Clock SetClockForTesting(Clock clock);

}  // namespace phonepim::gregorian
