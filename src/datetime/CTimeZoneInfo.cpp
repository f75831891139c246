#include "phonepim/datetime/CTimeZoneInfo.h"

namespace phonepim {
namespace {

// The spans were compared with the root object's equality, which is
// identity: the span class only has its own IsEqual.
bool SameObject(const std::optional<CDateTimeSpan>& a, const std::optional<CDateTimeSpan>& b) {
  return a && b && &*a == &*b;
}

bool EqualDates(const std::optional<CDateTime>& a, const std::optional<CDateTime>& b) {
  return a && b && a->IsEqual(*b);
}

bool EqualNames(const std::optional<String>& a, const std::optional<String>& b) {
  return a && b && *a == *b;
}

}  // namespace

bool CTimeZoneInfo::IsEqual(const CTimeZoneInfo& other) const {
  return SameObject(Bias, other.Bias) && SameObject(DaylightBias, other.DaylightBias) &&
         EqualDates(DaylightBegin, other.DaylightBegin) &&
         EqualDates(DaylightEnd, other.DaylightEnd) &&
         EqualNames(StandardName, other.StandardName) &&
         EqualNames(DaylightName, other.DaylightName);
}

}  // namespace phonepim
