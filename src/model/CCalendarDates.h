// How the calendar record and its alarms tell dates apart.
#pragma once

#include <optional>

#include "phonepim/datetime/CDateTimeNull.h"
#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/platform/String.h"

namespace phonepim::model_detail {

/// Absent, or present with the null status.
inline bool IsNullDate(const std::optional<CDateTimeNull>& date) {
  return !date.has_value() || date->GetStatus() == CDateTime::kStatusNull;
}

/// Both null, or both valid at the same instant. The zone and type a date
/// was read in do not count: the same moment read as GMT or as local time
/// is the same entry.
inline bool SameMoment(const std::optional<CDateTimeNull>& a,
                       const std::optional<CDateTimeNull>& b) {
  if (IsNullDate(a) || IsNullDate(b)) {
    return IsNullDate(a) == IsNullDate(b);
  }
  return a->isEqualToDate(b->date());
}

/// Both absent, or both at the same instant.
inline bool SameMoment(const std::optional<CalendarDate>& a, const std::optional<CalendarDate>& b) {
  if (!a.has_value() || !b.has_value()) {
    return a.has_value() == b.has_value();
  }
  return a->date == b->date;
}

/// An absent text reads as empty.
inline bool SameText(const std::optional<String>& a, const std::optional<String>& b) {
  return a.value_or(String()) == b.value_or(String());
}

}  // namespace phonepim::model_detail
