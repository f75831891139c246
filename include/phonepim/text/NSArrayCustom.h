// Integer lists kept in value arrays (the recurrence model's day and month
// lists). Every element written here is a Value holding an integer.
#pragma once

#include "phonepim/platform/Value.h"

namespace phonepim {

/// Appends `value`.
void addIntValue(Array& array, int value);
/// Inserts `value` before the element at `index`; `index` may equal the
/// size (append). Throws std::out_of_range outside [0, size].
void insertIntValue(Array& array, int value, int index);
/// Replaces the element at `index`. Throws std::out_of_range outside
/// [0, size).
void setIntValue(Array& array, int value, int index);
/// The element's int value: an integer (its low 32 bits), a real (truncated
/// toward zero, saturated at the int range, NaN gives 0), a boolean (0 or 1)
/// or a string's leading decimal number (after leading white space, with an
/// optional sign, saturated); 0 for anything else. Throws std::out_of_range
/// outside [0, size).
int intValueAtIndex(const Array& array, int index);

}  // namespace phonepim
