// CEmail: an e-mail address of a contact.
#pragma once

#include <cstdint>
#include <memory>

#include "phonepim/model/CItem.h"
#include "phonepim/model/TypeMasks.h"

namespace phonepim {

/// An address (the item's Data) with an e-mail type mask (kEmailType... bits)
/// and an optional custom label, shared and kept alive as for
/// CTelephoneNumber.
class CEmail : public CItem {
 public:
  /// Empty address, type 0, ID -1, no label.
  CEmail();
  /// The address from a UTF-8 C string; type 0, ID -1, no label.
  explicit CEmail(const char* email);
  /// Address, type and ID; no label.
  CEmail(const char* email, std::uint32_t emailType, std::int32_t theID);
  /// Address, type, ID and a custom label (null for none).
  CEmail(const char* email, std::uint32_t emailType, std::int32_t theID,
         std::shared_ptr<const String> Label);
  /// The same from an address already decoded.
  CEmail(String email, std::uint32_t emailType, std::int32_t theID,
         std::shared_ptr<const String> Label);

  const String& GetEmail() const { return Data(); }
  void SetEmail(const String& email) { setDataWithString(email); }

  std::uint32_t GetType() const { return Param(); }
  void SetType(std::uint32_t emailType) { setParam(emailType); }

  /// The custom label given at construction; null when there is none.
  const std::shared_ptr<const String>& GetLabel() const { return label_; }

  /// Equal address text and equal types once PREF is cleared on both sides:
  /// marking an address preferred is not a change of the address. ID and
  /// label are ignored. A null `email` fails the assertion "email != nil".
  bool isEqual(const CItem* email) const override;

 private:
  std::shared_ptr<const String> label_;
};

}  // namespace phonepim
