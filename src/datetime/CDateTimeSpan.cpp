#include "phonepim/datetime/CDateTimeSpan.h"

#include <cmath>
#include <limits>

namespace phonepim {
namespace {

// Truncation toward zero. Out-of-range doubles would make the plain cast
// undefined; they saturate instead, and NaN gives 0.
std::int64_t Truncate(double value) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (std::isnan(value)) return 0;
  if (value >= kLimit) return std::numeric_limits<std::int64_t>::max();
  if (value < -kLimit) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

}  // namespace

void CDateTimeSpan::SetDateTimeSpan(int days, int hours, int minutes, int seconds) {
  m_span = static_cast<double>(std::int64_t{days} * 86400 + std::int64_t{hours} * 3600 +
                               std::int64_t{minutes} * 60 + seconds);
}

long CDateTimeSpan::GetDays() const { return Truncate(m_span / 86400); }

long CDateTimeSpan::GetHours() const {
  const double days = static_cast<double>(GetDays());
  return Truncate((m_span - 86400 * days) / 3600);
}

long CDateTimeSpan::GetMinutes() const {
  const double days = static_cast<double>(GetDays());
  const double hours = static_cast<double>(GetHours());
  return Truncate((m_span - 86400 * days - 3600 * hours) / 60);
}

long CDateTimeSpan::GetSeconds() const {
  const double days = static_cast<double>(GetDays());
  const double hours = static_cast<double>(GetHours());
  const double minutes = static_cast<double>(GetMinutes());
  return Truncate(m_span - 86400 * days - 3600 * hours - 60 * minutes);
}

std::int64_t CDateTimeSpan::GetTotalHours() const { return Truncate(m_span / 3600); }

std::int64_t CDateTimeSpan::GetTotalMinutes() const { return Truncate(m_span / 60); }

std::int64_t CDateTimeSpan::GetTotalSeconds() const { return Truncate(m_span); }

bool CDateTimeSpan::IsEqual(const CDateTimeSpan& other) const {
  return static_cast<double>(other.GetTotalSeconds()) == m_span;
}

}  // namespace phonepim
