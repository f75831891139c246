// What a reader says of one property before it goes into a ReadAccount.
// Private to the readers.
#pragma once

#include "phonepim/versit/ReadAccount.h"

namespace phonepim {

/// A property's fate and the field or reason: a literal, so that saying it
/// costs nothing when no one keeps an account (every property of every
/// object makes one). For an extension item `where` is null: the item bears
/// the property's name.
struct PropertyOutcome {
  PropertyFate fate;
  const char* where;
};

inline PropertyOutcome ReadInto(const char* field) { return {PropertyFate::kRead, field}; }
inline PropertyOutcome NoValue() { return {PropertyFate::kEmpty, "no value"}; }
inline PropertyOutcome NothingToKeep() {
  return {PropertyFate::kByDesign, "recognised, nothing to keep"};
}

}  // namespace phonepim
