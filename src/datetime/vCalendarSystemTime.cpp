#include "phonepim/datetime/vCalendarSystemTime.h"

namespace phonepim {

CDateTime vCalendar::SystemTime(const CDateTime& dt, int convert) {
  return convert != 0 ? dt.SystemTime() : dt;
}

}  // namespace phonepim
