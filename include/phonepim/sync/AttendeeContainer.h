// AttendeeContainer: the store's attendee sub-records of one calendar entry.
#pragma once

#include <cstdint>

#include "phonepim/sync/CalendarContainer.h"

namespace phonepim {

/// Builds "com.apple.calendars.Attendee" records: "common name" (the
/// attendee's name or address), "status" and "owner". Reconciled under
/// "attendees", matching on "common name": a changed status alone keeps
/// the attendee's identifier and its stored data.
class AttendeeContainer : public CalendarContainer {
 public:
  using CalendarContainer::CalendarContainer;

  /// The status word of an attendee status (attendee_status_t): the
  /// calendar's status words in lower case, "needsaction", "complete",
  /// "accepted", "sent", "tentative", "confirmed", "declined", "delegated";
  /// "needsaction" for any other number.
  static const String& statusWord(std::uint32_t status);

  Dictionary createAttendeeDataForDB(const String& commonName, std::uint32_t status) const;
  void addAttendee(const String& commonName, std::uint32_t status);

  /// Reconciles under "attendees" on "common name".
  std::vector<String> createMetaData() override;
};

}  // namespace phonepim
