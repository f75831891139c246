#include "phonepim/datetime/CDateTime.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "datetime/Gregorian.h"
#include "phonepim/datetime/TimeZones.h"

namespace phonepim {
namespace {

// The mirrors take every field truncated to 16 bits; an undefined field
// (INT64_MAX) therefore shows as 0xFFFF.
std::uint16_t Low16(std::int64_t value) { return static_cast<std::uint16_t>(value); }

// The names in the zone record are fixed 32-byte fields. Every zone name in
// use is far shorter, but a longer one is cut rather than written past the
// field.
void CopyZoneName(char (&field)[32], const String& zone) {
  const std::string name = ToDisplayUTF8(zone);
  const std::size_t length = std::min(name.size(), sizeof field - 1);
  std::memcpy(field, name.data(), length);
  field[length] = '\0';
}

}  // namespace

CDateTime::CDateTime() {
  const String zone = gregorian::DefaultZone();
  _date = gregorian::Now();
  _calendar = zone;
  _comp = gregorian::ComponentsInZone(_date, zone, gregorian::kDateAndTimeUnits);
  _timeZone = zone;
  _timeZoneType = kTimeZoneTypeLocal;
  _bias = gregorian::OffsetFromGMT(_timeZone, _date);
  RefreshMirrorsFully();
}

CDateTime::CDateTime(double date, int timeZoneType) {
  const String zone = gregorian::DefaultZone();
  _date = date;
  _calendar = zone;
  _comp = gregorian::ComponentsInZone(_date, zone, gregorian::kDateAndTimeUnits);
  _timeZoneType = timeZoneType;
  // A local value made from an instant has bias 0, not the zone's offset:
  // the offset was always asked of the zone before the zone was set. Kept
  // on purpose.
  _bias = 0;
  _timeZone = timeZoneType == kTimeZoneTypeLocal ? zone : GMTTimeZoneName();
  RefreshMirrorsFully();
}

CDateTime::CDateTime(const DateComponents& comps, int timeZoneType) {
  const String zone = gregorian::DefaultZone();
  _comp = comps;
  _calendar = zone;
  _date = gregorian::DateInZone(_comp, zone);
  _timeZone = zone;
  _timeZoneType = timeZoneType;
  _bias = timeZoneType == kTimeZoneTypeLocal ? gregorian::OffsetFromGMT(zone, _date) : 0;
  RefreshSystemTime(true);
}

CDateTime CDateTime::dateWithYear(int year, int month, int day, int hour, int minute,
                                  int second) {
  return CDateTime(MakeDateComponents(year, month, day, hour, minute, second),
                   kTimeZoneTypeGMT);
}

CDateTime CDateTime::dateTimeWithCalendarDate(const CalendarDate& date) {
  using namespace gregorian;
  const DateComponents fields =
      ComponentsInZone(date.date, date.timeZone,
                       kYearUnit | kEraUnit | kMonthUnit | kWeekdayUnit | kHourUnit |
                           kMinuteUnit | kSecondUnit);
  const std::int64_t year = fields.era == 0 ? 1 - fields.year : fields.year;
  // The weekday (0 = Sunday) goes into the day, as it always has.
  const std::int64_t dayOfWeek =
      fields.weekday == kUndefinedComponent ? fields.weekday : fields.weekday - 1;
  const int type =
      date.timeZone == SystemTimeZoneName() ? kTimeZoneTypeGMT : kTimeZoneTypeLocal;
  return CDateTime(MakeDateComponents(year, fields.month, dayOfWeek, fields.hour,
                                      fields.minute, fields.second),
                   type);
}

std::optional<CDateTime> CDateTime::dateTimeWithCalendarDate(
    const std::optional<CalendarDate>& date) {
  if (!date) return std::nullopt;
  return dateTimeWithCalendarDate(*date);
}

void CDateTime::SetYear(int year, int month, int day, int hour, int minute, int second) {
  _comp.year = year;
  _comp.month = month;
  _comp.day = day;
  _comp.hour = hour;
  _comp.minute = minute;
  _comp.second = second;
  _timeZone = GMTTimeZoneName();
  _calendar = _timeZone;
  _date = gregorian::DateInZone(_comp, _calendar);
  RefreshSystemTime(false);
}

double CDateTime::daysSinceEra() const {
  const double start = gregorian::DateInZone(MakeDateComponents(0, 1, 1, 0, 0, 0), _calendar);
  return (_date - start) / 86400.0;
}

CDateTime CDateTime::SystemTime() const {
  if (_timeZoneType == kTimeZoneTypeGMT) return *this;
  return CDateTime(_date + gregorian::OffsetFromGMT(_timeZone, gregorian::Now()),
                   kTimeZoneTypeGMT);
}

CDateTime CDateTime::LocalTime() const {
  if (_timeZoneType == kTimeZoneTypeLocal) return *this;
  return CDateTime(_date - gregorian::OffsetFromGMT(_timeZone, gregorian::Now()),
                   kTimeZoneTypeLocal);
}

double CDateTime::DiffFromDate(const CDateTime& other) const { return _date - other._date; }

CDateTimeSpan CDateTime::spanFromDate(const CDateTime& other) const {
  return CDateTimeSpan(std::fabs(DiffFromDate(other)));
}

CDateTime CDateTime::dateAfterTimeInterval(double seconds) const {
  return CDateTime(_date + seconds, kTimeZoneTypeLocal);
}

CDateTime CDateTime::dateBeforeTimeInterval(double seconds) const {
  return CDateTime(_date - seconds, kTimeZoneTypeLocal);
}

void CDateTime::reset() {
  _comp.year = 0;
  _comp.month = 0;
  _comp.day = 0;
  _comp.hour = 0;
  _comp.minute = 0;
  _comp.second = 0;
  _date = gregorian::DateInZone(_comp, _calendar);
  RefreshSystemTime(false);
}

void CDateTime::resetWithDateTime(const CDateTime& other) {
  // Read before reset(), which would change them when other is this value.
  const double date = other._date;
  const int timeZoneType = other._timeZoneType;
  reset();
  const String zone = gregorian::DefaultZone();
  _date = date;
  _calendar = zone;
  _comp = gregorian::ComponentsInZone(_date, zone, gregorian::kDateAndTimeUnits);
  _timeZone = zone;
  _timeZoneType = timeZoneType;
  _bias = timeZoneType == kTimeZoneTypeLocal ? gregorian::OffsetFromGMT(zone, _date) : 0;
  RefreshMirrorsFully();
}

CalendarDate CDateTime::calendarDate() const {
  return CalendarDate::dateWithYear(_comp.year, _comp.month, _comp.day, _comp.hour,
                                    _comp.minute, _comp.second, _timeZone);
}

bool CDateTime::IsEqual(const CDateTime& other) const {
  return _date == other._date && _timeZoneType == other._timeZoneType &&
         _timeZone == other._timeZone;
}

bool CDateTime::isEqualToDate(double date) const { return _date == date; }

bool CDateTime::isEqualToDateComponents(const DateComponents& comps) const {
  return _comp.year == comps.year && _comp.month == comps.month && _comp.day == comps.day &&
         _comp.hour == comps.hour && _comp.minute == comps.minute &&
         _comp.second == comps.second && _comp.week == comps.week &&
         _comp.weekday == comps.weekday;
}

int CDateTime::compare(const CDateTime& other) const {
  if (_date < other._date) return -1;
  if (_date > other._date) return 1;
  return 0;
}

void CDateTime::RefreshSystemTime(bool withWeekday) {
  _systemTime = {};
  _systemTime.wYear = Low16(_comp.year);
  _systemTime.wMonth = Low16(_comp.month);
  // The short refresh never wrote the weekday; it stays 0 there.
  if (withWeekday) _systemTime.wDayOfWeek = Low16(_comp.weekday);
  _systemTime.wDay = Low16(_comp.day);
  _systemTime.wHour = Low16(_comp.hour);
  _systemTime.wMinute = Low16(_comp.minute);
  _systemTime.wSecond = Low16(_comp.second);
}

void CDateTime::RefreshMirrorsFully() {
  RefreshSystemTime(true);
  _timeZoneIno = {};
  _timeZoneIno.Bias = _bias;
  CopyZoneName(_timeZoneIno.StandardName, _timeZone);
  _timeZoneIno.StandardDate = _systemTime;
  _timeZoneIno.StandardBias = _bias;
  CopyZoneName(_timeZoneIno.DaylightName, _timeZone);
}

}  // namespace phonepim
