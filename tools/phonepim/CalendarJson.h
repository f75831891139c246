// A calendar entry as JSON: every field the vCalendar codec reads or
// writes, codes as their vCalendar words, dates as ISO 8601 text and the
// recurrence rules in a readable form. README.md documents the schema; keep
// the two together.
#pragma once

#include <cstddef>
#include <string>

#include <nlohmann/json.hpp>

#include <phonepim/model/CCalendar.h>
#include <phonepim/platform/String.h>

namespace phonepim::tool {

/// The entry read from object `objectNumber` (from 1) at line `line`, of
/// vCalendar::Generate's `kind`, its record ID made with `imei`.
nlohmann::ordered_json CalendarToJson(const CCalendar& calendar, unsigned int kind,
                                      std::size_t objectNumber, std::size_t line,
                                      const String& imei);

/// "appointment", "anniversary", "holiday" or "to-do".
const char* KindWord(unsigned int kind);

/// "2026-12-03T08:30:00": the fields of `date` in its own zone, with "Z"
/// when `utc`.
std::string DateText(const CalendarDate& date, bool utc);

}  // namespace phonepim::tool
