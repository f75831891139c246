// Free date functions of the vCalendar codec.
#pragma once

#include <cstdint>

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/datetime/DateComponents.h"
#include "phonepim/datetime/SystemTimeRecords.h"

namespace phonepim {

/// The instant (seconds since 1970) whose wall-clock time in the default
/// zone is `comps`. A missing year counts as year 1, a missing month or day
/// as 1, a missing time as 00:00:00. Fields the calendar cannot place give
/// the instant 0.
double DateFromComponents(const DateComponents& comps);

/// The same as DateFromComponents: despite its name it keeps the time.
double FloorTime(const DateComponents& comps);

/// `dt.LocalTime()` when `convert` is true, else a copy of `dt`.
CDateTime LocalTime(const CDateTime& dt, bool convert);

/// Writes nothing and returns 0, Windows' "zone unknown": the zone of a
/// calendar entry is taken from its own vCalendar text.
std::uint32_t GetTimeZoneInformation(_TIME_ZONE_INFORMATION* info);

}  // namespace phonepim
