// EmailContainer: the store's e-mail sub-records of one contact.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "phonepim/sync/BaseContainer.h"

namespace phonepim {

/// Builds "com.apple.contacts.Email Address" records: "type", "value",
/// "label" (only when the kind has one) and "contact". Reconciled under
/// "email addresses", matching on "value".
///
/// The whole e-mail type (not its bits) gives "type" and "label":
///   0 "other"; HOME (1) "home"; WORK (2) "work"; CELL (4) "other"/"mobile";
///   X-ETC (8) "other"; custom (0x10) "other" with the address's own label
///   text (none without one); PREF alone "other"/"prefered";
///   any other type, combinations included, "other"/"Etc".
class EmailContainer : public BaseContainer {
 public:
  enum Kind { Other, Home, Work, Mobile, Etc, X_CUSTOM, Prefered, Unknown, kKindCount };

  using BaseContainer::BaseContainer;

  Dictionary createEmailDataForDB(const String& email, std::uint32_t emailType,
                                  const std::optional<String>& label);
  void addEmail(const String& email, std::uint32_t emailType,
                const std::optional<String>& label);

  int TypeCount(Kind kind) const { return mTypeCounts[kind]; }

  /// Reconciles under "email addresses" on "value".
  std::vector<String> createMetaData() override;

 private:
  std::array<int, kKindCount> mTypeCounts{};
};

}  // namespace phonepim
