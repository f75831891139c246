#include "phonepim/model/CAttendee.h"

namespace phonepim {

CAttendee::CAttendee(const String& name, std::uint32_t role, std::uint32_t status,
                     std::int32_t theID)
    : mRole_t_(role), mStatus_t_(status) {
  setDataWithString(name);
  setThisID(theID);
}

bool CAttendee::isEqual(const CItem* other) const {
  const auto* attendee = dynamic_cast<const CAttendee*>(other);
  return attendee != nullptr && Data() == attendee->Data() && mRole_t_ == attendee->mRole_t_ &&
         mStatus_t_ == attendee->mStatus_t_;
}

}  // namespace phonepim
