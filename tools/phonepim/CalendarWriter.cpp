#include "CalendarWriter.h"

#include <phonepim/vcalendar/vCalendar.h>
#include <phonepim/vcard/vCard.h>
#include <phonepim/versit/vObject.h>

namespace phonepim::tool {

void ApplyCalendarOptions(const CalendarOptions& options) {
  // Real phone exports need the lenient reading, which keeps what the
  // reading rules would drop.
  vCard::LenientReading(!options.strict);
  vCalendar::UseLocalTime(options.localTime);
  vCalendar::UseCarrageReturn(options.carriageReturn);
  vCalendar::UseTimezone(options.weekdayCorrection);
  vCalendar::AnniversaryConvertToSpecialOccasion(options.specialOccasion);
  // One escaping flag serves both codecs.
  vCard::NonstandardEscChar(options.escape);
  vCalendar::SupportSetHoliday(options.holiday);
  vCalendar::TaskUseLocalTime(options.taskLocalTime);
  vCalendar::AlarmUseLocalTime(options.alarmLocalTime);
  vCalendar::HolidayUseLocalTime(options.holidayLocalTime);
  vCalendar::AnniversaryUseLocalTime(options.anniversaryLocalTime ? 1 : 0);
  vCalendar::SetTimezoneBias(options.timezoneBias);
  vCalendar::UseW0(options.noW0 ? 0 : 1);
  vCalendar::ScheduleUseCategoryType(options.categoryWords);
}

std::string GenerateCalendar(const CCalendar& calendar, unsigned int kind, bool reduced) {
  vObject object;
  if (reduced) {
    vCalendar::Generate(&calendar, &object, kind, 1);
  } else {
    vCalendar::Generate(&calendar, &object, kind);
  }
  return std::string(reinterpret_cast<const char*>(object.object()->GetData()),
                     object.object()->GetSize());
}

}  // namespace phonepim::tool
