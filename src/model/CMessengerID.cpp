#include "phonepim/model/CMessengerID.h"

#include <utility>

namespace phonepim {

CMessengerID::CMessengerID() = default;

CMessengerID::CMessengerID(const char* messengerID) : CItem(messengerID, 0, -1) {}

CMessengerID::CMessengerID(const char* messengerID, std::uint32_t messengerType,
                           std::int32_t theID)
    : CItem(messengerID, messengerType, theID) {}

CMessengerID::CMessengerID(String messengerID, std::uint32_t messengerType,
                           std::int32_t theID)
    : CItem(std::move(messengerID), messengerType, theID) {}

bool CMessengerID::isEqual(const CItem* other) const {
  return other != nullptr && GetMessengerID() == other->Data() && GetType() == other->Param();
}

}  // namespace phonepim
