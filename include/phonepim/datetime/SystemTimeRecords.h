// Fixed-layout date records in the form the phones' desktop software used on
// Windows; CDateTime keeps both filled as mirrors of its value.
#pragma once

#include <cstddef>
#include <cstdint>

namespace phonepim {

// The names keep their Windows spelling, leading underscore included.

/// A broken-down date; every field is the calendar field truncated to 16
/// bits.
struct _SYSTEMTIME {
  std::uint16_t wYear;
  std::uint16_t wMonth;
  std::uint16_t wDayOfWeek;
  std::uint16_t wDay;
  std::uint16_t wHour;
  std::uint16_t wMinute;
  std::uint16_t wSecond;
  std::uint16_t wMilliseconds;
};

/// A zone description. The names are NUL-terminated 8-bit (UTF-8) text.
struct _TIME_ZONE_INFORMATION {
  std::int32_t Bias;
  char StandardName[32];
  _SYSTEMTIME StandardDate;
  std::int32_t StandardBias;
  char DaylightName[32];
  _SYSTEMTIME DaylightDate;
  std::int32_t DaylightBias;
};

static_assert(sizeof(_SYSTEMTIME) == 16);
static_assert(offsetof(_TIME_ZONE_INFORMATION, StandardName) == 4);
static_assert(offsetof(_TIME_ZONE_INFORMATION, StandardDate) == 36);
static_assert(offsetof(_TIME_ZONE_INFORMATION, StandardBias) == 52);
static_assert(offsetof(_TIME_ZONE_INFORMATION, DaylightName) == 56);
static_assert(offsetof(_TIME_ZONE_INFORMATION, DaylightDate) == 88);
static_assert(offsetof(_TIME_ZONE_INFORMATION, DaylightBias) == 104);
static_assert(sizeof(_TIME_ZONE_INFORMATION) == 108);

}  // namespace phonepim
