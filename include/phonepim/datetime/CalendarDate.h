// A calendar date: an instant read in one time zone.
#pragma once

#include <cstdint>

#include "phonepim/platform/String.h"

namespace phonepim {

/// An instant (seconds since 1970-01-01 00:00:00 UTC) with the zone in which
/// its fields are read. The vCalendar codec keeps the dates it read in this
/// form beside the CDateTime values.
struct CalendarDate {
  double date = 0.0;
  /// ICU zone name; an unknown name reads as GMT.
  String timeZone;

  /// The date whose wall-clock fields in `timeZone` are the given ones
  /// (lenient: month 13 is January of the next year).
  static CalendarDate dateWithYear(std::int64_t year, std::int64_t month, std::int64_t day,
                                   std::int64_t hour, std::int64_t minute,
                                   std::int64_t second, const String& timeZone);

  std::int64_t yearOfCommonEra() const;
  /// 1 to 12.
  std::int64_t monthOfYear() const;
  /// 1 to 31.
  std::int64_t dayOfMonth() const;
  /// 0 (Sunday) to 6.
  std::int64_t dayOfWeek() const;
  std::int64_t hourOfDay() const;
  std::int64_t minuteOfHour() const;
  std::int64_t secondOfMinute() const;

  friend bool operator==(const CalendarDate&, const CalendarDate&) = default;
};

}  // namespace phonepim
