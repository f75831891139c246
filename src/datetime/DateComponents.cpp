#include "phonepim/datetime/DateComponents.h"

namespace phonepim {

DateComponents MakeDateComponents(std::int64_t year, std::int64_t month, std::int64_t day,
                                  std::int64_t hour, std::int64_t minute,
                                  std::int64_t second) {
  DateComponents comps;
  comps.year = year;
  comps.month = month;
  comps.day = day;
  comps.hour = hour;
  comps.minute = minute;
  comps.second = second;
  return comps;
}

}  // namespace phonepim
