#include "phonepim/model/CPostalAddress.h"

#include <utility>

#include "model/CStringText.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {

using model_detail::TextFromUTF8;

CPostalAddress::CPostalAddress() = default;

CPostalAddress::CPostalAddress(const char* address, std::uint32_t addressType,
                               std::int32_t addressID)
    : CPostalAddress(address, addressType, addressID, nullptr) {}

CPostalAddress::CPostalAddress(const char* address, std::uint32_t addressType,
                               std::int32_t addressID, std::shared_ptr<const String> label)
    : AddressID_(addressID), Type_(addressType), Label_(std::move(label)) {
  parts_[2] = TextFromUTF8(address);
}

CPostalAddress::CPostalAddress(const char* POBox, const char* extraAddress,
                               const char* street, const char* locality, const char* region,
                               const char* postalCode, const char* country,
                               const char* neighbor, std::uint32_t addressType,
                               std::int32_t theID)
    : CPostalAddress(POBox, extraAddress, street, locality, region, postalCode, country,
                     neighbor, addressType, theID, nullptr) {}

CPostalAddress::CPostalAddress(const char* POBox, const char* extraAddress,
                               const char* street, const char* locality, const char* region,
                               const char* postalCode, const char* country,
                               const char* neighbor, std::uint32_t addressType,
                               std::int32_t theID, std::shared_ptr<const String> label)
    : AddressID_(theID),
      Type_(addressType),
      parts_{TextFromUTF8(POBox),    TextFromUTF8(extraAddress), TextFromUTF8(street),
             TextFromUTF8(locality), TextFromUTF8(region),       TextFromUTF8(postalCode),
             TextFromUTF8(country),  TextFromUTF8(neighbor)},
      Label_(std::move(label)) {}

void CPostalAddress::SetAddress(String address, unsigned int nIndex) {
  PHONEPIM_ASSERT(nIndex < kPostalAddressMax, "nIndex < kPostalAddressMax");
  parts_[nIndex] = std::move(address);
}

bool CPostalAddress::isEqual(const CPostalAddress* other) const {
  return other != nullptr && AddressID_ == other->AddressID_ &&
         (Type_ & ~kTypePref) == (other->Type_ & ~kTypePref) && parts_ == other->parts_;
}

bool CPostalAddress::IsEmpty() const {
  for (const String& part : parts_) {
    if (!part.empty()) {
      return false;
    }
  }
  return true;
}

}  // namespace phonepim
