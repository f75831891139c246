// The calendar's way back out: one phone's calendar entries rebuilt from the
// store's records, ready for the vCalendar writer.
#pragma once

#include <memory>
#include <vector>

#include "phonepim/model/CCalendar.h"

namespace phonepim {

class SyncStore;

/// The entries the store holds for the phone `imei`, as its calendar table
/// lists them, in the order of their numbers. Each is filled from its event
/// record (texts, dates, all-day, class, status, priority, categories, UID)
/// and its sub-records (attendees with their status, alarms by the instant
/// they ring, rules by frequency, interval, end and days). Its kind comes
/// from its phone record ID ("_Task" a to-do, "_Anniversary" an
/// anniversary). A yearly rule comes back in the start's month: the record
/// keeps no months. Empty when the store has no calendar table of the
/// phone. Throws StoreError when the store cannot be read.
std::vector<std::unique_ptr<CCalendar>> CalendarFromStore(const SyncStore& store,
                                                          const String& imei);

}  // namespace phonepim
