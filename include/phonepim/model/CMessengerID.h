// CMessengerID: an instant-messaging account of a contact.
#pragma once

#include <cstdint>

#include "phonepim/model/CItem.h"
#include "phonepim/model/TypeMasks.h"

namespace phonepim {

/// An account name (the item's Data) with a messenger type mask
/// (kMessengerType... bits, one service meant).
class CMessengerID : public CItem {
 public:
  /// Empty ID, type 0, ID -1.
  CMessengerID();
  /// The account from a UTF-8 C string; type 0, ID -1.
  explicit CMessengerID(const char* messengerID);
  /// Account, type and ID.
  CMessengerID(const char* messengerID, std::uint32_t messengerType, std::int32_t theID);
  /// The same from an account name already decoded.
  CMessengerID(String messengerID, std::uint32_t messengerType, std::int32_t theID);

  const String& GetMessengerID() const { return Data(); }
  /// Sets the account name. (Named as for telephone numbers.)
  void SetNumber(const String& messengerID) { setDataWithString(messengerID); }

  std::uint32_t GetType() const { return Param(); }
  void SetType(std::uint32_t messengerType) { setParam(messengerType); }

  /// Equal account text and exactly equal types (PREF included). ID ignored;
  /// null is unequal.
  bool isEqual(const CItem* other) const override;
};

}  // namespace phonepim
