// CItem: a typed text value, the base of the single-value contact elements
// (telephone numbers, e-mail and web addresses, messenger IDs, notes) and of
// the records' extension items.
#pragma once

#include <cstdint>
#include <memory>

#include "phonepim/platform/String.h"

namespace phonepim {

/// A text value (`Data`) with a type mask (`Param`) and an ID (`thisID`).
///
/// The text is held in an immutable value object shared through a
/// shared_ptr, never null. Setters do not change the text in place: each puts
/// in a new value object made from its argument, so two elements built or
/// set from text never share one, even when the texts are equal. Copying an
/// element copies the reference: the copy shares the value object with the
/// original until either is set again. Telephone numbers compare by that
/// object, not by its text (see CTelephoneNumber::isEqual).
///
/// C-string arguments are UTF-8. A null pointer gives an empty text, and so
/// do bytes that are not valid UTF-8: an element is never without text.
class CItem {
 public:
  /// thisID -1, Param 0, empty Data.
  CItem();
  /// Data from the UTF-8 C string `data`, Param = `param`, thisID = `theID`.
  CItem(const char* data, std::uint32_t param, std::int32_t theID);
  /// Data holding `data` as it is (a U+0000 included), for callers that
  /// already hold the text decoded.
  CItem(String data, std::uint32_t param, std::int32_t theID);
  virtual ~CItem();

  /// The copy shares the original's value object. There is no separate
  /// move: a moved-from element must keep a value object too.
  CItem(const CItem&) = default;
  CItem& operator=(const CItem&) = default;

  /// The element's ID within its record; -1 for none.
  std::int32_t thisID() const { return thisID_; }
  void setThisID(std::int32_t theID) { thisID_ = theID; }

  /// The type mask (the subclass's bits of TypeMasks.h, or a custom-label
  /// code).
  std::uint32_t Param() const { return Param_; }
  void setParam(std::uint32_t param) { Param_ = param; }

  /// The text.
  const String& Data() const { return *Data_; }
  /// The text (the same as Data()).
  const String& GetValue() const { return *Data_; }
  /// The value object holding the text; its identity is what telephone
  /// numbers compare.
  const std::shared_ptr<const String>& DataObject() const { return Data_; }

  /// Replace the text with a new value object made from a UTF-8 C string.
  void SetValue(const char* data);
  /// The same as SetValue.
  void setData(const char* data);
  /// Replace the text with a new value object holding a copy of `data`.
  void setDataWithString(String data);

  /// True when `other` is not null and has the same Data text, thisID and
  /// Param. Subclasses replace the rule; the receiver's rule decides.
  virtual bool isEqual(const CItem* other) const;

  /// True when the text is empty. (Type and ID do not count.)
  virtual bool IsEmpty() const;

 private:
  std::int32_t thisID_ = -1;
  std::uint32_t Param_ = 0;
  std::shared_ptr<const String> Data_;
};

}  // namespace phonepim
