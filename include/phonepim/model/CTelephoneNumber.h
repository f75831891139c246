// CTelephoneNumber: a telephone number of a contact.
#pragma once

#include <cstdint>
#include <memory>

#include "phonepim/model/CItem.h"
#include "phonepim/model/TypeMasks.h"

namespace phonepim {

/// A number (the item's Data) with a telephone type mask (kTelephoneType...
/// bits) and an optional custom label.
///
/// The label is shared with whoever made it (the reader's custom-label text):
/// the number keeps it alive for as long as the number lives, and copies of
/// the number share it.
class CTelephoneNumber : public CItem {
 public:
  /// Empty number, type 0, ID -1, no label.
  CTelephoneNumber();
  /// The number from a UTF-8 C string; type 0, ID -1, no label.
  explicit CTelephoneNumber(const char* number);
  /// Number, type and ID; no label.
  CTelephoneNumber(const char* number, std::uint32_t telephoneType, std::int32_t theID);
  /// Number, type, ID and a custom label (null for none).
  CTelephoneNumber(const char* number, std::uint32_t telephoneType, std::int32_t theID,
                   std::shared_ptr<const String> Label);
  /// The same with the number's text as it is, taken over.
  CTelephoneNumber(String number, std::uint32_t telephoneType, std::int32_t theID,
                   std::shared_ptr<const String> Label);

  const String& GetNumber() const { return Data(); }
  void SetNumber(const String& number) { setDataWithString(number); }

  std::uint32_t GetType() const { return Param(); }
  void SetType(std::uint32_t telephoneType) { setParam(telephoneType); }

  /// The custom label given at construction; null when there is none.
  const std::shared_ptr<const String>& GetLabel() const { return label_; }

  /// Change detection, deliberately by identity: the two numbers must hold
  /// the very same value object (a copy of this number, not merely the same
  /// digits; a number built or set from equal text is unequal). Then the
  /// types must be equal, except that CELL (0x20) and CELL|HOME (0x21) match
  /// each other in either order, because a mobile number written for some
  /// phones goes out as HOME;CELL and reads back with HOME added. ID and
  /// label are ignored; null is unequal.
  bool isEqual(const CItem* other) const override;

 private:
  std::shared_ptr<const String> label_;
};

}  // namespace phonepim
