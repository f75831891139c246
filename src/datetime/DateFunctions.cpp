#include "phonepim/datetime/DateFunctions.h"

#include "datetime/Gregorian.h"

namespace phonepim {

double DateFromComponents(const DateComponents& comps) {
  return gregorian::DateInZone(comps, gregorian::DefaultZone());
}

double FloorTime(const DateComponents& comps) { return DateFromComponents(comps); }

CDateTime LocalTime(const CDateTime& dt, bool convert) {
  return convert ? dt.LocalTime() : dt;
}

std::uint32_t GetTimeZoneInformation(_TIME_ZONE_INFORMATION* /*info*/) { return 0; }

}  // namespace phonepim
