#include "phonepim/model/CTelephoneNumber.h"

#include <utility>

namespace phonepim {

CTelephoneNumber::CTelephoneNumber() = default;

CTelephoneNumber::CTelephoneNumber(const char* number) : CItem(number, 0, -1) {}

CTelephoneNumber::CTelephoneNumber(const char* number, std::uint32_t telephoneType,
                                   std::int32_t theID)
    : CItem(number, telephoneType, theID) {}

CTelephoneNumber::CTelephoneNumber(const char* number, std::uint32_t telephoneType,
                                   std::int32_t theID, std::shared_ptr<const String> Label)
    : CItem(number, telephoneType, theID), label_(std::move(Label)) {}

CTelephoneNumber::CTelephoneNumber(String number, std::uint32_t telephoneType,
                                   std::int32_t theID, std::shared_ptr<const String> Label)
    : CItem(std::move(number), telephoneType, theID), label_(std::move(Label)) {}

bool CTelephoneNumber::isEqual(const CItem* other) const {
  if (other == nullptr || DataObject() != other->DataObject()) {
    return false;
  }
  constexpr std::uint32_t kCellHome = kTelephoneTypeCell | kTelephoneTypeHome;
  const std::uint32_t mine = GetType();
  const std::uint32_t theirs = other->Param();
  return mine == theirs || (mine == kTelephoneTypeCell && theirs == kCellHome) ||
         (mine == kCellHome && theirs == kTelephoneTypeCell);
}

}  // namespace phonepim
