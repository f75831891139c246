#include "phonepim/model/CMessengerID.h"

namespace phonepim {

CMessengerID::CMessengerID() = default;

CMessengerID::CMessengerID(const char* messengerID) : CItem(messengerID, 0, -1) {}

CMessengerID::CMessengerID(const char* messengerID, std::uint32_t messengerType,
                           std::int32_t theID)
    : CItem(messengerID, messengerType, theID) {}

bool CMessengerID::isEqual(const CItem* other) const {
  return other != nullptr && GetMessengerID() == other->Data() && GetType() == other->Param();
}

}  // namespace phonepim
