// The time-zone description of a vCalendar object (its TZ and DAYLIGHT
// properties).
#pragma once

#include <optional>

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/datetime/CDateTimeSpan.h"
#include "phonepim/platform/String.h"

namespace phonepim {

/// Filled field by field by the vCalendar reader; every field may be
/// missing. The fields are public and named as the reader and writer know
/// them; `TimeZone()` reads `mTimezone`.
class CTimeZoneInfo {
 public:
  /// The standard offset ("TZ").
  std::optional<CDateTimeSpan> Bias;
  /// The daylight offset ("DAYLIGHT").
  std::optional<CDateTimeSpan> DaylightBias;
  std::optional<phonepim::CDateTime> DaylightBegin;
  std::optional<phonepim::CDateTime> DaylightEnd;
  std::optional<String> StandardName;
  std::optional<String> DaylightName;
  /// The ICU zone the TZ offset names ("GMT+09:00").
  std::optional<String> mTimezone;

  const std::optional<String>& TimeZone() const { return mTimezone; }

  /// Change detection, in this order: `Bias` and `DaylightBias` by IDENTITY
  /// (the span objects themselves, never their lengths), `DaylightBegin` and
  /// `DaylightEnd` by CDateTime::IsEqual, the two names by string equality.
  /// A missing field on either side makes the result false, and the zone is
  /// not compared. No two infos share a span, so an info equals only
  /// itself, and only when every compared field is present.
  bool IsEqual(const CTimeZoneInfo& other) const;
};

}  // namespace phonepim
