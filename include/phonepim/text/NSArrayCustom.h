// Integer lists kept in value arrays (the recurrence model's day and month
// lists).
#pragma once

#include "phonepim/platform/Value.h"

namespace phonepim {

/// Appends `value`.
void addIntValue(Array& array, int value);
/// Inserts `value` at `index`; throws std::out_of_range past the end.
void insertIntValue(Array& array, int value, int index);
/// Replaces the element at `index`; throws std::out_of_range.
void setIntValue(Array& array, int value, int index);
/// The element's int value: an integer, a real (truncated), a boolean (0 or
/// 1) or a string's leading decimal number; 0 for anything else. Throws
/// std::out_of_range past the end.
int intValueAtIndex(const Array& array, int index);

}  // namespace phonepim
