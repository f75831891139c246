// What the recurrence-rule text says that the rule itself does not: kept in
// the rule's WeeklyDayType so that a rule read and written again keeps its
// spelling. Private to the library.
#pragma once

namespace phonepim::recurrence_form {

/// The end date had no "Z": a local time, written back as it was read.
inline constexpr int kLocalEndDate = 0x1;
/// The end date was a date alone (yyyymmdd).
inline constexpr int kEndDateOnly = 0x2;
/// Month days were written "13+" rather than "13".
inline constexpr int kPlusMonthDays = 0x4;
/// The last day of the month was written "LD" rather than "1-".
inline constexpr int kLastDayWord = 0x8;

/// The weekday words, Sunday first: their index is the model's weekday.
inline constexpr const char* kWeekdayWords[7] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

}  // namespace phonepim::recurrence_form
