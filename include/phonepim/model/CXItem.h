// CXItem: an extension item of a record ("X-EXPIRY", "X-PBOEXTENSION", ...).
#pragma once

#include <cstdint>

#include "phonepim/model/CItem.h"

namespace phonepim {

/// A CItem (text, type mask, ID) under a property name.
class CXItem : public CItem {
 public:
  /// Empty name and text, Param 0, thisID -1.
  CXItem();
  /// The name, the text from a UTF-8 C string (null gives empty), Param and
  /// ID.
  CXItem(const String& name, const char* data, std::uint32_t parameter, std::int32_t theID);

  const String& Name() const { return Name_; }
  void SetName(const String& name) { Name_ = name; }

 private:
  String Name_;
};

}  // namespace phonepim
