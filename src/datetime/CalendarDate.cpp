#include "phonepim/datetime/CalendarDate.h"

#include "datetime/Gregorian.h"

namespace phonepim {
namespace {

DateComponents Fields(const CalendarDate& date, unsigned units) {
  return gregorian::ComponentsInZone(date.date, date.timeZone, units);
}

}  // namespace

CalendarDate CalendarDate::dateWithYear(std::int64_t year, std::int64_t month,
                                        std::int64_t day, std::int64_t hour,
                                        std::int64_t minute, std::int64_t second,
                                        const String& timeZone) {
  const DateComponents comps = MakeDateComponents(year, month, day, hour, minute, second);
  return CalendarDate{gregorian::DateInZone(comps, timeZone), timeZone};
}

std::int64_t CalendarDate::yearOfCommonEra() const {
  const DateComponents comps = Fields(*this, gregorian::kEraUnit | gregorian::kYearUnit);
  // Years before the common era count down to 1 BC, which is year 0 here.
  return comps.era == 0 ? 1 - comps.year : comps.year;
}

std::int64_t CalendarDate::monthOfYear() const {
  return Fields(*this, gregorian::kMonthUnit).month;
}

std::int64_t CalendarDate::dayOfMonth() const { return Fields(*this, gregorian::kDayUnit).day; }

std::int64_t CalendarDate::dayOfWeek() const {
  const std::int64_t weekday = Fields(*this, gregorian::kWeekdayUnit).weekday;
  return weekday == kUndefinedComponent ? weekday : weekday - 1;
}

std::int64_t CalendarDate::hourOfDay() const { return Fields(*this, gregorian::kHourUnit).hour; }

std::int64_t CalendarDate::minuteOfHour() const {
  return Fields(*this, gregorian::kMinuteUnit).minute;
}

std::int64_t CalendarDate::secondOfMinute() const {
  return Fields(*this, gregorian::kSecondUnit).second;
}

}  // namespace phonepim
