// Test helpers that pin what date values depend on: the default time zone
// and the clock.
#pragma once

#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <memory>
#include <string>

#include "datetime/Gregorian.h"
#include "phonepim/platform/String.h"

namespace phonepim::testing {

/// Makes `zone` the ICU default zone for the lifetime of the object and
/// restores the previous default afterwards.
class ScopedDefaultZone {
 public:
  explicit ScopedDefaultZone(const std::string& zone)
      : previous_(icu::TimeZone::createDefault()) {
    icu::TimeZone::adoptDefault(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone)));
  }
  ~ScopedDefaultZone() { icu::TimeZone::adoptDefault(previous_.release()); }

 private:
  std::unique_ptr<icu::TimeZone> previous_;
};

/// Pins "now" to `date` (seconds since 1970) for the lifetime of the object.
class ScopedClock {
 public:
  explicit ScopedClock(double date) {
    pinned_ = date;
    previous_ = gregorian::SetClockForTesting(&Pinned);
  }
  ~ScopedClock() { gregorian::SetClockForTesting(previous_); }
  ScopedClock(const ScopedClock&) = delete;
  ScopedClock& operator=(const ScopedClock&) = delete;

 private:
  static double Pinned() { return pinned_; }
  static inline double pinned_ = 0.0;
  gregorian::Clock previous_;
};

inline String U16(const std::string& ascii) { return String(ascii.begin(), ascii.end()); }

}  // namespace phonepim::testing
