// The date-time value of the PIM model: every start, end, due, alarm, until
// and modification time is a CDateTime.
#pragma once

#include <cstdint>
#include <optional>

#include "phonepim/datetime/CDateTimeSpan.h"
#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/datetime/DateComponents.h"
#include "phonepim/datetime/SystemTimeRecords.h"
#include "phonepim/platform/String.h"

namespace phonepim {

/// An instant together with its calendar fields, a time zone, a time-zone
/// type (0 local, 1 GMT) and a status (0 valid, 2 null), plus two Windows
/// records mirroring it.
///
/// The fields are not kept in step with each other: the setters of single
/// fields (`setYear`, ...) change only the fields, and several operations
/// read the fields in another zone than the one they keep. Each operation
/// says which parts it changes; the quirks are the behaviour the phones'
/// calendar data was written against, so they stay.
///
/// A CDateTime is a value: copies are independent.
class CDateTime {
 public:
  static constexpr int kTimeZoneTypeLocal = 0;
  static constexpr int kTimeZoneTypeGMT = 1;
  static constexpr int kStatusValid = 0;
  static constexpr int kStatusNull = 2;

  /// Now, in the default zone: the fields are year, month, day, hour, minute
  /// and second of now there, the bias is the zone's offset now. Full mirror
  /// refresh.
  CDateTime();

  /// The instant `date` (seconds since 1970). The fields are read in the
  /// default zone whatever the type. Type 0 keeps the default zone and a
  /// bias of 0, NOT the zone's offset: callers rely on local values made
  /// from instants carrying no bias. Type 1 keeps the zone "GMT" and bias 0.
  /// Full mirror refresh.
  CDateTime(double date, int timeZoneType);

  /// The instant whose wall-clock time in the default zone is `comps`; the
  /// fields are kept as given. The zone is the default zone for both types;
  /// type 0 takes the zone's offset at the instant as bias, type 1 a bias of
  /// 0. Only `systemTime()` is refreshed (with the given weekday, 0xFFFF
  /// when there is none); `timeZoneInformation()` stays all zero.
  CDateTime(const DateComponents& comps, int timeZoneType);

  /// Type 1 value made from the six fields as in CDateTime(comps, 1).
  static CDateTime dateWithYear(int year, int month, int day, int hour, int minute,
                                int second);

  /// A value made as in CDateTime(comps, type) from the calendar date's year,
  /// month, hour, minute and second, and its DAY OF THE WEEK (0 to 6) as the
  /// day: this is how the phones' calendar bridge always filled it, so a
  /// date read back this way lands on a day from 0 to 6 of its month. The
  /// type is 1 when the date's zone is the system zone, else 0.
  static CDateTime dateTimeWithCalendarDate(const CalendarDate& date);
  /// Nothing gives nothing.
  static std::optional<CDateTime> dateTimeWithCalendarDate(
      const std::optional<CalendarDate>& date);

  // --- Accessors. ---

  /// The instant, seconds since 1970-01-01 00:00:00 UTC.
  double date() const { return _date; }
  /// The ICU name of the zone.
  const String& timeZone() const { return _timeZone; }
  /// Seconds east of GMT, as the constructor or operation left it.
  int bias() const { return _bias; }
  int timeZoneType() const { return _timeZoneType; }
  const DateComponents& dateComponents() const { return _comp; }
  int GetStatus() const { return m_status; }
  void SetStatus(int status) { m_status = status; }
  /// The Windows mirrors; see the constructors and operations for when they
  /// are refreshed.
  const _SYSTEMTIME& systemTime() const { return _systemTime; }
  const _TIME_ZONE_INFORMATION& timeZoneInformation() const { return _timeZoneIno; }

  // The single fields. The setters change the fields only: the instant and
  // the mirrors stay as they were.
  std::int64_t era() const { return _comp.era; }
  std::int64_t year() const { return _comp.year; }
  std::int64_t month() const { return _comp.month; }
  std::int64_t day() const { return _comp.day; }
  std::int64_t hour() const { return _comp.hour; }
  std::int64_t minute() const { return _comp.minute; }
  std::int64_t second() const { return _comp.second; }
  std::int64_t week() const { return _comp.week; }
  std::int64_t weekday() const { return _comp.weekday; }
  std::int64_t weekdayOrdinal() const { return _comp.weekdayOrdinal; }
  void setEra(std::int64_t value) { _comp.era = value; }
  void setYear(std::int64_t value) { _comp.year = value; }
  void setMonth(std::int64_t value) { _comp.month = value; }
  void setDay(std::int64_t value) { _comp.day = value; }
  void setHour(std::int64_t value) { _comp.hour = value; }
  void setMinute(std::int64_t value) { _comp.minute = value; }
  void setSecond(std::int64_t value) { _comp.second = value; }
  void setWeek(std::int64_t value) { _comp.week = value; }
  void setWeekday(std::int64_t value) { _comp.weekday = value; }
  void setWeekdayOrdinal(std::int64_t value) { _comp.weekdayOrdinal = value; }

  // --- Operations. ---

  /// Sets the six fields and makes the instant of them read as GMT
  /// wall-clock time; the zone (and the calendar) become "GMT" while the
  /// type and the bias stay. This is how the vCalendar reader turns
  /// "20090221T103000" into a value. Short mirror refresh.
  void SetYear(int year, int month, int day, int hour, int minute, int second);

  /// Days (with fraction) from 1 January of year 0, 00:00 in the zone of the
  /// value's calendar, to the instant. Dates before 15 October 1582 are
  /// Julian, as in every Gregorian calendar of the platforms.
  double daysSinceEra() const;

  /// For type 1, a copy. Otherwise a type 1 value, made as by
  /// CDateTime(date, 1), at the instant PLUS the zone's offset from GMT now
  /// (not at the instant).
  CDateTime SystemTime() const;
  /// For type 0, a copy. Otherwise a type 0 value, made as by
  /// CDateTime(date, 0), at the instant minus the zone's offset now.
  CDateTime LocalTime() const;

  /// Seconds from `other` to this value, positive when this one is later.
  double DiffFromDate(const CDateTime& other) const;
  /// The distance to `other` as a span, never negative.
  CDateTimeSpan spanFromDate(const CDateTime& other) const;
  /// A type 0 value, made as by CDateTime(date, 0), `seconds` later.
  CDateTime dateAfterTimeInterval(double seconds) const;
  /// A type 0 value, made as by CDateTime(date, 0), `seconds` earlier.
  CDateTime dateBeforeTimeInterval(double seconds) const;

  /// Sets year, month, day, hour, minute and second to 0 and the instant to
  /// what the calendar makes of them (a day in 2 BC). Short mirror refresh.
  void reset();
  /// `reset`, then takes `other`'s instant and type, the default zone, the
  /// fields of the instant in that zone and, for type 0, the zone's offset
  /// at the instant as bias (type 1: 0). Full mirror refresh; the status is
  /// left alone.
  void resetWithDateTime(const CDateTime& other);

  /// The calendar date whose fields in the value's zone are the value's
  /// year, month, day, hour, minute and second.
  CalendarDate calendarDate() const;

  /// Same instant, same type and same zone.
  bool IsEqual(const CDateTime& other) const;
  /// Same instant.
  bool isEqualToDate(double date) const;
  /// Year, month, day, hour, minute, second, week and weekday all equal.
  bool isEqualToDateComponents(const DateComponents& comps) const;
  /// -1 when this value is earlier than `other`, 0 at the same instant, 1
  /// when later.
  int compare(const CDateTime& other) const;

 private:
  void RefreshMirrorsFully();
  void RefreshSystemTime(bool withWeekday);

  double _date = 0.0;
  DateComponents _comp;
  String _timeZone;
  // The Gregorian calendar is kept as the zone it works in: that is all of
  // its state that any result depends on.
  String _calendar;
  int _bias = 0;
  int _timeZoneType = kTimeZoneTypeLocal;
  int m_status = kStatusValid;
  _SYSTEMTIME _systemTime{};
  _TIME_ZONE_INFORMATION _timeZoneIno{};
};

}  // namespace phonepim
