// CAttendee: an attendee of a calendar entry (the vCalendar ATTENDEE
// property).
#pragma once

#include <cstdint>

#include "phonepim/model/CItem.h"
#include "phonepim/platform/String.h"

namespace phonepim {

/// The role word of an ATTENDEE. Phones send only ROLE=ATTENDEE.
enum attendee_role_t : std::uint32_t {
  ATTENDEE_ROLE_NONE = 0,
  ATTENDEE_ROLE_ATTENDEE = 1,
};

/// The status word of an ATTENDEE, numbered as the calendar's own status
/// words (CCalendar::findStatus). The names are the words the reader
/// matches, "SEND" and "DECLIENED" included: phones write them so.
enum attendee_status_t : std::uint32_t {
  ATTENDEE_STATUS_NEEDSACTION = 0,
  ATTENDEE_STATUS_COMPLETE = 1,
  ATTENDEE_STATUS_ACCEPTED = 2,
  ATTENDEE_STATUS_SEND = 3,
  ATTENDEE_STATUS_TENTATIVE = 4,
  ATTENDEE_STATUS_CONFIRMED = 5,
  ATTENDEE_STATUS_DECLIENED = 6,
  ATTENDEE_STATUS_DELEGATED = 7,
};

/// An attendee: the address or name as the item's `Data`, with a role and a
/// status. `Param` and `thisID` are the item's, unused by the codecs.
class CAttendee : public CItem {
 public:
  /// Empty name, role and status 0, ID -1.
  CAttendee() = default;
  /// A copy of `name` as the text, the role, the status and the ID; Param 0.
  CAttendee(const String& name, std::uint32_t role, std::uint32_t status, std::int32_t theID);

  std::uint32_t mRole_t() const { return mRole_t_; }
  void setRole(std::uint32_t role) { mRole_t_ = role; }
  std::uint32_t mStatus_t() const { return mStatus_t_; }
  void setStatus(std::uint32_t status) { mStatus_t_ = status; }

  /// Change detection: the same text, role and status. The ID and the type
  /// mask do not decide: they number and tag the attendee within one
  /// record only. Null, or an item that is not an attendee, is unequal.
  bool isEqual(const CItem* other) const override;

 private:
  std::uint32_t mRole_t_ = 0;
  std::uint32_t mStatus_t_ = 0;
};

}  // namespace phonepim
