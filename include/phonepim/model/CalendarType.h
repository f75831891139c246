// The kind of a calendar entry (appointment, anniversary, to-do, ...) and
// the kinds the connected phone supports.
#pragma once

#include <array>
#include <cstdint>

namespace phonepim {

/// The kinds of calendar entry the connected phone supports, ended by the
/// first 0; all zeros (the initial state) means "every kind". The host
/// fills it once it knows the phone model. Process-wide and unguarded: the
/// host sets it up before use and calls the library from one thread at a
/// time.
extern std::array<std::int32_t, 32> ds_arrCalendar;

/// The kind of an entry from its type bit mask (CCalendar::vCalendarType),
/// by the first of these bits that is set, tested in this order: 0x2 gives
/// 2 (anniversary), 0x4 gives 3 (holiday), 0x8 gives 4, 0x10 gives 5, 0x20
/// gives 6, 0x40 gives 7 (to-do), 0x80 gives 8 (memo), 0x20000 gives 9; no
/// bit gives 1 (appointment). When ds_arrCalendar lists kinds and this one
/// is not among them, the entry is an appointment (1): a phone that has no
/// anniversaries keeps them as plain appointments.
std::int32_t CalendarType(std::int32_t mask);

}  // namespace phonepim
