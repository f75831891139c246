// CalendarContainer: the base of the calendar entry's sub-record containers
// (attendees, alarms, recurrence rules).
#pragma once

#include <memory>

#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/sync/BaseContainer.h"

namespace phonepim {

/// A container whose parent is a calendar entry. Its parent ID (vObjectID)
/// is the entry's phone record ID, the key of its meta entry in the
/// calendar table, whose kind ("Appointment", "Anniversary", "Task") tells
/// createMetaDataInCalendarWithKey where the identifiers go. The records
/// name their event by its store ID, `ownerID` (the phone record ID stands
/// in until the store has the event, as for contacts).
class CalendarContainer : public BaseContainer {
 public:
  CalendarContainer(String vObjectID, std::shared_ptr<CalendarIDMappingTable> idMapper,
                    String ownerID)
      : BaseContainer(std::move(vObjectID), std::move(idMapper)), mOwnerID(std::move(ownerID)) {}

  const String& ownerID() const { return mOwnerID; }

 protected:
  /// A new record of `entityName` with "owner" = [ownerID].
  Dictionary newSubRecord(const String& entityName) const;

 private:
  String mOwnerID;
};

}  // namespace phonepim
