// CPostalAddress: a postal address of a contact (the vCard ADR property).
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "phonepim/model/TypeMasks.h"
#include "phonepim/platform/String.h"

namespace phonepim {

/// The number of address parts.
inline constexpr unsigned int kPostalAddressMax = 8;

/// An address ID, an address type mask (kAddressType... bits), eight parts
/// that are never absent (empty when unknown) and an optional custom label.
/// The label is shared with whoever made it and kept alive as long as the
/// address lives; copies share it.
class CPostalAddress {
 public:
  /// AddressID -1, type 0, the eight parts empty, no label.
  CPostalAddress();
  /// `address` (UTF-8; null gives empty) goes to Street; the other seven
  /// parts empty; no label.
  CPostalAddress(const char* address, std::uint32_t addressType, std::int32_t addressID);
  /// As above, with a custom label (null for none).
  CPostalAddress(const char* address, std::uint32_t addressType, std::int32_t addressID,
                 std::shared_ptr<const String> label);
  /// The eight parts from UTF-8 C strings (null gives empty), type and ID;
  /// no label.
  CPostalAddress(const char* POBox, const char* extraAddress, const char* street,
                 const char* locality, const char* region, const char* postalCode,
                 const char* country, const char* neighbor, std::uint32_t addressType,
                 std::int32_t theID);
  /// As above, with a custom label (null for none).
  CPostalAddress(const char* POBox, const char* extraAddress, const char* street,
                 const char* locality, const char* region, const char* postalCode,
                 const char* country, const char* neighbor, std::uint32_t addressType,
                 std::int32_t theID, std::shared_ptr<const String> label);

  /// The address's ID within its contact; -1 for none.
  std::int32_t AddressID() const { return AddressID_; }
  std::uint32_t Type() const { return Type_; }
  void SetType(std::uint32_t addressType) { Type_ = addressType; }

  const String& POBox() const { return parts_[0]; }       ///< index 0
  const String& ExtAddr() const { return parts_[1]; }     ///< index 1
  const String& Street() const { return parts_[2]; }      ///< index 2
  const String& Locality() const { return parts_[3]; }    ///< index 3
  const String& Region() const { return parts_[4]; }      ///< index 4
  const String& PostalCode() const { return parts_[5]; }  ///< index 5
  const String& Country() const { return parts_[6]; }     ///< index 6
  const String& Neighbor() const { return parts_[7]; }    ///< index 7

  /// The custom label; null when there is none.
  const std::shared_ptr<const String>& Label() const { return Label_; }

  /// Stores a copy of `address` as the part at `nIndex` (0 to 7). A larger
  /// index is a programming error: it fails the assertion
  /// "nIndex < kPostalAddressMax" and nothing is stored.
  void SetAddress(String address, unsigned int nIndex);

  /// Equal AddressID, equal types once PREF is cleared on both sides, and
  /// the eight parts equal. The label is not compared: a relabelled address
  /// is the same address. Null is unequal.
  bool isEqual(const CPostalAddress* other) const;

  /// True when all eight parts are empty; type, ID and label do not count,
  /// so an address that has nothing but a label is empty.
  bool IsEmpty() const;

 private:
  std::int32_t AddressID_ = -1;
  std::uint32_t Type_ = 0;
  std::array<String, kPostalAddressMax> parts_;
  std::shared_ptr<const String> Label_;
};

}  // namespace phonepim
