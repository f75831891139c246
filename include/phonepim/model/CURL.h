// CURL: a web address of a contact.
#pragma once

#include <cstdint>

#include "phonepim/model/CItem.h"
#include "phonepim/model/TypeMasks.h"

namespace phonepim {

/// A web address (the item's Data) with a URL type mask (kURLType... bits).
class CURL : public CItem {
 public:
  /// Empty address, type 0, ID -1.
  CURL();
  /// The address from a UTF-8 C string; type 0, ID -1.
  explicit CURL(const char* url);
  /// Address, type and ID.
  CURL(const char* url, std::uint32_t urlType, std::int32_t theID);
  /// The same from an address already decoded.
  CURL(String url, std::uint32_t urlType, std::int32_t theID);

  const String& GetURL() const { return Data(); }
  void SetURL(const String& url) { setDataWithString(url); }

  std::uint32_t GetType() const { return Param(); }
  void SetType(std::uint32_t urlType) { setParam(urlType); }

  /// Equal address text and equal types once PREF is cleared on both sides.
  /// ID ignored; null is unequal.
  bool isEqual(const CItem* other) const override;
};

}  // namespace phonepim
