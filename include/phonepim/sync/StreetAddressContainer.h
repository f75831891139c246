// StreetAddressContainer: the store's street-address sub-records of one
// contact.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "phonepim/sync/BaseContainer.h"

namespace phonepim {

/// Builds "com.apple.contacts.Street Address" records: "type", "label"
/// (only when the kind has one), "street", "city", "state", "postal code",
/// "country" (always set, empty when unknown) and "contact". Reconciled
/// under "street addresses", matching on "street".
///
/// "street" is the street and the extended address joined as "%@ %@" when
/// both are there, else whichever is there.
///
/// The whole address type gives "type" and "label". The store knows the
/// types "home", "work" and "other"; the kinds it has no type for become
/// "other" with the phone's word for them as the label, so that they come
/// back recognisable:
///   0 (no kind, "null") "other" without a label; HOME (1) "home";
///   WORK (2) "work"; X-ETC (4) "other"/"X_ETC"; CELL (8) "other"/"mobile";
///   custom (0x10) "other" with the address's own label text, or "X_CUSTOM"
///   without one; PREF alone "other"/"prefered"; any other type,
///   combinations included, "other"/"Etc".
class StreetAddressContainer : public BaseContainer {
 public:
  enum Kind { Null, Home, Work, X_ETC, Mobile, X_CUSTOM, Prefered, Etc, kKindCount };

  using BaseContainer::BaseContainer;

  Dictionary createStreetAddressDataForDB(const String& street, const String& extendedStreet,
                                          const String& city, const String& state,
                                          const String& postalCode, const String& country,
                                          std::uint32_t addressType,
                                          const std::optional<String>& label);
  void addStreetAddress(const String& street, const String& extendedStreet, const String& city,
                        const String& state, const String& postalCode, const String& country,
                        std::uint32_t addressType, const std::optional<String>& label);

  int TypeCount(Kind kind) const { return mTypeCounts[kind]; }

  /// Reconciles under "street addresses" on "street".
  std::vector<String> createMetaData() override;

 private:
  std::array<int, kKindCount> mTypeCounts{};
};

}  // namespace phonepim
