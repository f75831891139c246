// The vCalendar codec's conversion of a date into GMT.
//
// The class vCalendar is the vCalendar codec; only this member of it is
// declared here, where the date values are. It belongs in the codec's own
// header once that exists.
#pragma once

#include "phonepim/datetime/CDateTime.h"

namespace phonepim {

class vCalendar {
 public:
  /// `dt.SystemTime()` when `convert` is non-zero, else a copy of `dt`.
  static CDateTime SystemTime(const CDateTime& dt, int convert);
};

}  // namespace phonepim
