// Placeholder bodies while the codec is filled in.
#include "phonepim/model/CCalendar.h"
#include "phonepim/vcalendar/RecurrenceRule.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "phonepim/versit/vObject.h"

namespace phonepim {

void vCalendar::Parse(CCalendar*, const vObject*) {}
void vCalendar::Generate(const CCalendar*, vObject*, unsigned int) {}
void vCalendar::Generate(const CCalendar*, vObject*, unsigned int, unsigned int) {}
bool ParseRecurrenceRule(std::string_view, CRecurrence*) { return false; }
String RecurrenceRuleText(const RecurrenceData&, int) { return {}; }

}  // namespace phonepim
