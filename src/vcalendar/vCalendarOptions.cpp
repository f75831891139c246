#include "phonepim/vcalendar/vCalendar.h"

namespace phonepim {

bool vCalendar::sm_fSupportSetHoliday = false;
bool vCalendar::sm_fUseLocalTime = false;
bool vCalendar::sm_fTaskUseLocalTime = false;
bool vCalendar::sm_fAlarmUseLocalTime = false;
bool vCalendar::sm_fHolidayUseLocalTime = false;
int vCalendar::sm_fAnniversaryUseLocalTime = 0;
bool vCalendar::sm_fMemoUseLocalTime = false;
int vCalendar::sm_nTimezoneBias = 0;
bool vCalendar::sm_fUseCarrageReturn = false;
bool vCalendar::sm_fTimezone = false;
int vCalendar::sm_nUseW0 = 1;
bool vCalendar::sm_fAnniversaryConvertToSpecialOccasion = false;
bool vCalendar::sm_fScheduleUseCategoryType = false;

void vCalendar::SupportSetHoliday(bool on) { sm_fSupportSetHoliday = on; }
void vCalendar::UseLocalTime(bool on) { sm_fUseLocalTime = on; }
void vCalendar::TaskUseLocalTime(bool on) { sm_fTaskUseLocalTime = on; }
void vCalendar::AlarmUseLocalTime(bool on) { sm_fAlarmUseLocalTime = on; }
void vCalendar::HolidayUseLocalTime(bool on) { sm_fHolidayUseLocalTime = on; }
void vCalendar::AnniversaryUseLocalTime(int on) { sm_fAnniversaryUseLocalTime = on; }
void vCalendar::SetTimezoneBias(int minutes) { sm_nTimezoneBias = minutes; }
void vCalendar::UseCarrageReturn(bool on) { sm_fUseCarrageReturn = on; }
void vCalendar::UseTimezone(bool on) { sm_fTimezone = on; }
void vCalendar::UseW0(int on) { sm_nUseW0 = on; }
void vCalendar::AnniversaryConvertToSpecialOccasion(bool on) {
  sm_fAnniversaryConvertToSpecialOccasion = on;
}
void vCalendar::ScheduleUseCategoryType(bool on) { sm_fScheduleUseCategoryType = on; }

}  // namespace phonepim
