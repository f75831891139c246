// Broken-down calendar fields of a date, as a Gregorian calendar gives them.
#pragma once

#include <cstdint>

namespace phonepim {

/// The value of a field that was never set or asked for. Its low 16 bits
/// are 0xFFFF, which is what a 16-bit mirror field receives when it copies
/// an undefined component.
inline constexpr std::int64_t kUndefinedComponent = INT64_MAX;

/// Calendar fields. Months count from 1, weekdays from 1 (Sunday) to 7,
/// `weekdayOrdinal` is the n-th such weekday of the month and `week` the
/// week of the year; `era` is 0 before and 1 from the common era. Values are
/// taken leniently when turned into an instant: month 13 is January of the
/// next year, day 0 the last day of the previous month.
struct DateComponents {
  std::int64_t era = kUndefinedComponent;
  std::int64_t year = kUndefinedComponent;
  std::int64_t month = kUndefinedComponent;
  std::int64_t day = kUndefinedComponent;
  std::int64_t hour = kUndefinedComponent;
  std::int64_t minute = kUndefinedComponent;
  std::int64_t second = kUndefinedComponent;
  std::int64_t week = kUndefinedComponent;
  std::int64_t weekday = kUndefinedComponent;
  std::int64_t weekdayOrdinal = kUndefinedComponent;

  friend bool operator==(const DateComponents&, const DateComponents&) = default;
};

/// The components year, month, day, hour, minute and second; the others
/// stay undefined.
DateComponents MakeDateComponents(std::int64_t year, std::int64_t month, std::int64_t day,
                                  std::int64_t hour, std::int64_t minute,
                                  std::int64_t second);

}  // namespace phonepim
