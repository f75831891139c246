#include "phonepim/sync/AlarmContainer.h"

#include "phonepim/sync/CalendarRecord.h"

namespace phonepim {

using namespace calendar_record;

Dictionary AlarmContainer::createAlarmDataForDB(Date triggerDate) const {
  Dictionary record = newSubRecord(kAudioAlarmEntityName);
  record.insert_or_assign(kTriggerDate, triggerDate);
  return record;
}

void AlarmContainer::addAlarm(Date triggerDate) { addRecord(createAlarmDataForDB(triggerDate)); }

std::vector<String> AlarmContainer::createMetaData() {
  return createMetaDataInCalendarWithKey(kAudioAlarms, kTriggerDate);
}

}  // namespace phonepim
