// URLContainer: the store's web-address sub-records of one contact.
#pragma once

#include <array>
#include <cstdint>

#include "phonepim/sync/BaseContainer.h"

namespace phonepim {

/// Builds "com.apple.contacts.URL" records: "type", "value", "label" (only
/// for PREF) and "contact". Reconciled under "URLs", matching on "value".
///
/// The whole URL type gives: 0 "home page"; HOME (1) "home"; WORK (2)
/// "work"; PREF alone "other"/"prefered"; any other type "home page".
class URLContainer : public BaseContainer {
 public:
  enum Kind { HomePage, Home, Work, Prefered, Other, kKindCount };

  using BaseContainer::BaseContainer;

  Dictionary createURLDataForDB(const String& url, std::uint32_t urlType);
  void addURL(const String& url, std::uint32_t urlType);

  int TypeCount(Kind kind) const { return mTypeCounts[kind]; }

  /// Reconciles under "URLs" on "value".
  std::vector<String> createMetaData() override;

 private:
  std::array<int, kKindCount> mTypeCounts{};
};

}  // namespace phonepim
