#include "datetime/Gregorian.h"

#include <unicode/gregocal.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>

namespace phonepim::gregorian {
namespace {

icu::UnicodeString ToICU(const String& text) {
  const auto length = static_cast<std::int32_t>(
      std::min<std::size_t>(text.size(), std::numeric_limits<std::int32_t>::max()));
  return icu::UnicodeString(text.data(), length);
}

String FromICU(const icu::UnicodeString& text) {
  return String(text.getBuffer(), static_cast<std::size_t>(text.length()));
}

bool IsDefined(std::int64_t component) { return component != kUndefinedComponent; }

std::int32_t ClampToInt32(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      value, std::numeric_limits<std::int32_t>::min(),
      std::numeric_limits<std::int32_t>::max()));
}

// Building a calendar means loading zone rules, which costs far more than
// any field computation. Values are made over and over in a handful of zones
// (the default zone and "GMT", as the reader alternates between them), so
// each thread keeps the calendars of the last few zones it used.
icu::GregorianCalendar* CalendarFor(const String& zone) {
  struct Cached {
    String zone;
    std::unique_ptr<icu::GregorianCalendar> calendar;
  };
  constexpr std::size_t kSlots = 4;
  thread_local std::array<Cached, kSlots> cache;
  thread_local std::size_t nextSlot = 0;
  // Every caller starts from a cleared calendar: a new one holds the fields
  // of now, milliseconds included, and a cached one those of its last use.
  for (Cached& entry : cache) {
    if (entry.calendar && entry.zone == zone) {
      entry.calendar->clear();
      return entry.calendar.get();
    }
  }
  UErrorCode status = U_ZERO_ERROR;
  auto calendar = std::make_unique<icu::GregorianCalendar>(
      icu::TimeZone::createTimeZone(ToICU(zone)), status);
  if (U_FAILURE(status)) return nullptr;
  Cached& entry = cache[nextSlot];
  nextSlot = (nextSlot + 1) % kSlots;
  entry.zone = zone;
  entry.calendar = std::move(calendar);
  entry.calendar->clear();
  return entry.calendar.get();
}

std::int64_t Field(const icu::Calendar& calendar, UCalendarDateFields field) {
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t value = calendar.get(field, status);
  return U_FAILURE(status) ? kUndefinedComponent : value;
}

std::atomic<Clock> g_clock{nullptr};

double SystemClock() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

// "GMT" has no offsets to look up, and from the Gregorian cutover on its
// fields are plain day arithmetic: the writers put every date in GMT, and a
// calendar computation per date was most of their date cost. The floors
// are the calendar's own (the day of the millisecond instant, then the
// whole milliseconds into it), so the fields are the same.
bool ComponentsInGMT(double date, unsigned units, DateComponents& comps) {
  constexpr unsigned kArithmetic = kEraUnit | kDateAndTimeUnits | kWeekdayUnit;
  if ((units & ~kArithmetic) != 0) return false;
  constexpr double kDay = 86400000.0;
  const double millis = date * 1000.0;
  const double days = std::floor(millis / kDay);
  // 1582-10-15, the first Gregorian day, to 9999-12-31.
  if (!(days >= -141427.0 && days <= 2932896.0)) return false;
  const double intoDay = millis - days * kDay;
  // An instant a hair before midnight rounds to the next day's start here;
  // the calendar has its own answer for that.
  if (!(intoDay < kDay)) return false;
  const auto millisInDay = static_cast<std::int32_t>(intoDay);
  const auto day = static_cast<std::int64_t>(days);
  // Days since 0000-03-01, so that the leap day ends a year; the range
  // keeps them positive.
  const std::int64_t z = day + 719468;
  const std::int64_t era = z / 146097;
  const std::int64_t dayOfEra = z - era * 146097;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
  const std::int64_t month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
  if (units & kEraUnit) comps.era = 1;
  if (units & kYearUnit) comps.year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
  if (units & kMonthUnit) comps.month = month;
  if (units & kDayUnit) comps.day = dayOfYear - (153 * marchMonth + 2) / 5 + 1;
  if (units & kHourUnit) comps.hour = millisInDay / 3600000;
  if (units & kMinuteUnit) comps.minute = millisInDay / 60000 % 60;
  if (units & kSecondUnit) comps.second = millisInDay / 1000 % 60;
  // 1970-01-01 was a Thursday, weekday 5.
  if (units & kWeekdayUnit) comps.weekday = ((day + 4) % 7 + 7) % 7 + 1;
  return true;
}

}  // namespace

DateComponents ComponentsInZone(double date, const String& zone, unsigned units) {
  DateComponents comps;
  if (!std::isfinite(date)) return comps;
  if (zone == u"GMT" && ComponentsInGMT(date, units, comps)) return comps;
  icu::GregorianCalendar* calendar = CalendarFor(zone);
  if (!calendar) return comps;
  UErrorCode status = U_ZERO_ERROR;
  // A lenient calendar pins instants outside its range to the range ends.
  calendar->setTime(date * 1000.0, status);
  if (U_FAILURE(status)) return comps;
  if (units & kEraUnit) comps.era = Field(*calendar, UCAL_ERA);
  if (units & kYearUnit) comps.year = Field(*calendar, UCAL_YEAR);
  if (units & kMonthUnit) {
    const std::int64_t month = Field(*calendar, UCAL_MONTH);
    comps.month = IsDefined(month) ? month + 1 : month;
  }
  if (units & kDayUnit) comps.day = Field(*calendar, UCAL_DATE);
  if (units & kHourUnit) comps.hour = Field(*calendar, UCAL_HOUR_OF_DAY);
  if (units & kMinuteUnit) comps.minute = Field(*calendar, UCAL_MINUTE);
  if (units & kSecondUnit) comps.second = Field(*calendar, UCAL_SECOND);
  if (units & kWeekUnit) comps.week = Field(*calendar, UCAL_WEEK_OF_YEAR);
  if (units & kWeekdayUnit) comps.weekday = Field(*calendar, UCAL_DAY_OF_WEEK);
  if (units & kWeekdayOrdinalUnit) {
    comps.weekdayOrdinal = Field(*calendar, UCAL_DAY_OF_WEEK_IN_MONTH);
  }
  return comps;
}

double DateInZone(const DateComponents& comps, const String& zone) {
  icu::GregorianCalendar* calendar = CalendarFor(zone);
  if (!calendar) return 0.0;
  auto set = [calendar](UCalendarDateFields field, std::int64_t value) {
    calendar->set(field, ClampToInt32(value));
  };
  if (IsDefined(comps.era)) set(UCAL_ERA, comps.era);
  set(UCAL_YEAR, IsDefined(comps.year) ? comps.year : 1);
  // Clamped before the shift to ICU's 0-based months so that the
  // subtraction cannot overflow.
  set(UCAL_MONTH, IsDefined(comps.month) ? ClampToInt32(comps.month) - std::int64_t{1} : 0);
  if (IsDefined(comps.day)) {
    set(UCAL_DATE, comps.day);
  } else if (IsDefined(comps.weekday)) {
    set(UCAL_DAY_OF_WEEK, comps.weekday);
    if (IsDefined(comps.weekdayOrdinal)) {
      set(UCAL_DAY_OF_WEEK_IN_MONTH, comps.weekdayOrdinal);
    } else if (IsDefined(comps.week)) {
      set(UCAL_WEEK_OF_YEAR, comps.week);
    }
  } else {
    set(UCAL_DATE, 1);
  }
  if (IsDefined(comps.hour)) set(UCAL_HOUR_OF_DAY, comps.hour);
  if (IsDefined(comps.minute)) set(UCAL_MINUTE, comps.minute);
  if (IsDefined(comps.second)) set(UCAL_SECOND, comps.second);
  UErrorCode status = U_ZERO_ERROR;
  const UDate millis = calendar->getTime(status);
  if (U_FAILURE(status) || !std::isfinite(millis)) return 0.0;
  return millis / 1000.0;
}

int OffsetFromGMT(const String& zone, double date) {
  if (!std::isfinite(date)) return 0;
  const icu::GregorianCalendar* calendar = CalendarFor(zone);
  if (!calendar) return 0;
  std::int32_t raw = 0;
  std::int32_t daylight = 0;
  UErrorCode status = U_ZERO_ERROR;
  calendar->getTimeZone().getOffset(date * 1000.0, false, raw, daylight, status);
  if (U_FAILURE(status)) return 0;
  return (raw + daylight) / 1000;
}

String DefaultZone() {
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createDefault());
  icu::UnicodeString id;
  return FromICU(zone->getID(id));
}

String HostZone() {
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
  icu::UnicodeString id;
  return FromICU(zone->getID(id));
}

double Now() {
  const Clock clock = g_clock.load();
  return clock ? clock() : SystemClock();
}

Clock SetClockForTesting(Clock clock) { return g_clock.exchange(clock); }

}  // namespace phonepim::gregorian
