#include "phonepim/sync/CalendarContainer.h"

#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/SyncRecordSchema.h"

namespace phonepim {

Dictionary CalendarContainer::newSubRecord(const String& entityName) const {
  return Dictionary{{ISyncRecordEntityNameKey, entityName},
                    {calendar_record::kOwner, Array{Value(mOwnerID)}}};
}

}  // namespace phonepim
