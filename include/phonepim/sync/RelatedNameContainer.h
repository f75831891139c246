// RelatedNameContainer: the store's related-name sub-records of one contact.
#pragma once

#include <array>
#include <cstdint>

#include "phonepim/sync/BaseContainer.h"

namespace phonepim {

/// Builds "com.apple.contacts.Related Name" records: "type", "value",
/// "label" (only for "other") and "contact". Reconciled under "related
/// names", matching on "value".
///
/// Related-name type 0 is "spouse", 1 "child", 2 "assistant"; any other
/// type "other"/"Etc".
class RelatedNameContainer : public BaseContainer {
 public:
  static constexpr std::uint32_t kSpouseType = 0;
  static constexpr std::uint32_t kChildType = 1;
  static constexpr std::uint32_t kAssistantType = 2;

  enum Kind { Spouse, Child, Assistant, Other, kKindCount };

  using BaseContainer::BaseContainer;

  Dictionary createRelatedNameDataForDB(const String& name, std::uint32_t relatedNameType);
  void addRelatedName(const String& name, std::uint32_t relatedNameType);

  int TypeCount(Kind kind) const { return mTypeCounts[kind]; }

  /// Reconciles under "related names" on "value".
  std::vector<String> createMetaData() override;

 private:
  std::array<int, kKindCount> mTypeCounts{};
};

}  // namespace phonepim
