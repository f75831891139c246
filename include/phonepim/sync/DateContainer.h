// DateContainer: the store's date sub-records of one contact.
#pragma once

#include <array>
#include <cstdint>

#include "phonepim/sync/BaseContainer.h"

namespace phonepim {

/// Builds "com.apple.contacts.Date" records: "type", "value" (a date),
/// "label" (only for "other") and "contact". Reconciled under "dates",
/// matching on "value" as instants.
///
/// Date type 0 (the anniversary) is "anniversary"; any other type is
/// "other"/"Etc". (The birthday is a field of the contact record itself.)
class DateContainer : public BaseContainer {
 public:
  /// The date type of an anniversary.
  static constexpr std::uint32_t kAnniversaryDateType = 0;

  enum Kind { Anniversary, Other, kKindCount };

  using BaseContainer::BaseContainer;

  Dictionary createDateDataForDB(Date date, std::uint32_t dateType);
  void addDate(Date date, std::uint32_t dateType);

  int TypeCount(Kind kind) const { return mTypeCounts[kind]; }

  /// Reconciles under "dates" on "value".
  std::vector<String> createMetaData() override;

 private:
  std::array<int, kKindCount> mTypeCounts{};
};

}  // namespace phonepim
