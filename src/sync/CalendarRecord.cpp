#include "phonepim/sync/CalendarRecord.h"

#include "phonepim/sync/SyncRecordSchema.h"

namespace phonepim::calendar_record {

Dictionary NewCalendarRecord(const String& title) {
  return Dictionary{{ISyncRecordEntityNameKey, kCalendarEntityName}, {kTitle, title}};
}

}  // namespace phonepim::calendar_record
