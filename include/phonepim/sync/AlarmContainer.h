// AlarmContainer: the store's audio-alarm sub-records of one calendar entry.
#pragma once

#include "phonepim/sync/CalendarContainer.h"

namespace phonepim {

/// Builds "com.apple.calendars.AudioAlarm" records: "triggerdate" (the
/// instant the alarm rings) and "owner". Reconciled under "audio alarms",
/// matching on "triggerdate".
///
/// The alarm is always given as an instant, never as "triggerduration"
/// (seconds from the start): the matching compares strings and dates only,
/// so a numeric trigger would make a new alarm record on every sync.
class AlarmContainer : public CalendarContainer {
 public:
  using CalendarContainer::CalendarContainer;

  Dictionary createAlarmDataForDB(Date triggerDate) const;
  void addAlarm(Date triggerDate);

  /// Reconciles under "audio alarms" on "triggerdate".
  std::vector<String> createMetaData() override;
};

}  // namespace phonepim
