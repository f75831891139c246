// A signed length of time.
#pragma once

#include <cstdint>

namespace phonepim {

/// A span in seconds; fractions and negative spans are allowed. Every getter
/// truncates toward zero, so the parts of a negative span are negative.
class CDateTimeSpan {
 public:
  CDateTimeSpan() = default;
  explicit CDateTimeSpan(double seconds) : m_span(seconds) {}

  /// days*86400 + hours*3600 + minutes*60 + seconds (computed without
  /// integer overflow).
  void SetDateTimeSpan(int days, int hours, int minutes, int seconds);

  long GetDays() const;
  /// The hours left after the whole days.
  long GetHours() const;
  /// The minutes left after the whole days and hours.
  long GetMinutes() const;
  /// The seconds left after the whole days, hours and minutes.
  long GetSeconds() const;

  // The totals saturate at the int64 limits (0 for a NaN span).
  std::int64_t GetTotalHours() const;
  std::int64_t GetTotalMinutes() const;
  std::int64_t GetTotalSeconds() const;

  /// True when `other`'s whole seconds equal this span exactly. The
  /// asymmetry is old and kept: a span with a fraction of a second equals
  /// nothing, not even itself, while a whole span equals a longer one that
  /// differs only in the fraction.
  bool IsEqual(const CDateTimeSpan& other) const;

 private:
  double m_span = 0.0;
};

}  // namespace phonepim
