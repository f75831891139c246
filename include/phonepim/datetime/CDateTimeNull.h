// An optional date: a CDateTime whose status can say "no date".
#pragma once

#include "phonepim/datetime/CDateTime.h"

namespace phonepim {

/// The calendar record's dates. The status (`GetStatus`, 2 = null) is what
/// marks a missing date; the date itself is kept, so a null value still has
/// an instant, fields and zone.
class CDateTimeNull : public phonepim::CDateTime {
 public:
  /// Now, like CDateTime(), but null.
  CDateTimeNull();
  /// The CDateTime constructors; they leave the value valid (status 0).
  using phonepim::CDateTime::CDateTime;
  /// A copy of `value` with its status.
  explicit CDateTimeNull(const phonepim::CDateTime& value) : phonepim::CDateTime(value) {}

  /// Marks the value null.
  void Null() { SetStatus(kStatusNull); }

  /// The value seen as a plain CDateTime.
  phonepim::CDateTime& CDateTime() { return *this; }
  const phonepim::CDateTime& CDateTime() const { return *this; }

  /// `resetWithDateTime(value)`. The status is not touched: a null value
  /// that is given a date still reports null.
  void SetDateTime(const phonepim::CDateTime& value) { resetWithDateTime(value); }
};

}  // namespace phonepim
