// Reading and writing calendar entries in tests, with every class-wide
// option of both codecs restored afterwards.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "datetime/DateTimeFixtures.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace phonepim::testing_vcalendar {

/// Defaults (as a host that sets nothing) for the lifetime of the object,
/// in the zone "UTC" unless another is given.
class ScopedCalendarDefaults {
 public:
  explicit ScopedCalendarDefaults(const std::string& zone = "UTC") : zone_(zone) { Reset(); }
  ~ScopedCalendarDefaults() { Reset(); }
  ScopedCalendarDefaults(const ScopedCalendarDefaults&) = delete;
  ScopedCalendarDefaults& operator=(const ScopedCalendarDefaults&) = delete;

  static void Reset() {
    vCalendar::SupportSetHoliday(false);
    vCalendar::UseLocalTime(false);
    vCalendar::TaskUseLocalTime(false);
    vCalendar::AlarmUseLocalTime(false);
    vCalendar::HolidayUseLocalTime(false);
    vCalendar::AnniversaryUseLocalTime(0);
    vCalendar::sm_fMemoUseLocalTime = false;
    vCalendar::SetTimezoneBias(0);
    vCalendar::UseCarrageReturn(false);
    vCalendar::UseTimezone(false);
    vCalendar::UseW0(1);
    vCalendar::AnniversaryConvertToSpecialOccasion(false);
    vCalendar::ScheduleUseCategoryType(false);
    vCard::NonstandardEscChar(false);
    vCard::LenientReading(false);
  }

 private:
  testing::ScopedDefaultZone zone_;
};

inline vObject MakeObject(std::string_view text) {
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  return object;
}

/// `lines` (each ending in CRLF) inside a VCALENDAR 1.0 with one VEVENT.
inline std::string Event(std::string_view lines) {
  return "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\n" + std::string(lines) +
         "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

inline std::unique_ptr<CCalendar> Read(std::string_view text) {
  auto calendar = std::make_unique<CCalendar>();
  const vObject object = MakeObject(text);
  vCalendar::Parse(calendar.get(), &object);
  return calendar;
}

inline std::string Write(const CCalendar& calendar, unsigned int kind = 1) {
  vObject object;
  vCalendar::Generate(&calendar, &object, kind);
  const auto* data = object.object()->GetData();
  return data == nullptr ? std::string()
                         : std::string(reinterpret_cast<const char*>(data),
                                       object.object()->GetSize());
}

}  // namespace phonepim::testing_vcalendar
