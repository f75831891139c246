// CName: the structured name of a contact (the vCard N property and the
// phonetic reading of its parts).
#pragma once

#include <array>

#include "phonepim/platform/String.h"

namespace phonepim {

/// Eight name parts, each a string that is never absent (empty when
/// unknown). The index numbers are those of SetName and of the N value's
/// components.
class CName {
 public:
  /// The number of parts.
  static constexpr unsigned int kNamePartCount = 8;

  /// All eight parts empty.
  CName();
  /// `Family` from a UTF-8 C string (a null pointer gives empty); the other
  /// seven parts empty.
  explicit CName(const char* family);
  /// Each part from its UTF-8 C string; a null pointer gives an empty part.
  CName(const char* family, const char* givenName, const char* middleName,
        const char* prefix, const char* suffix, const char* phoneticFamily,
        const char* phoneticGiven, const char* phoneticMiddle);

  const String& Family() const { return parts_[0]; }           ///< index 0
  const String& Given() const { return parts_[1]; }            ///< index 1
  const String& Middle() const { return parts_[2]; }           ///< index 2
  const String& Prefix() const { return parts_[3]; }           ///< index 3
  const String& Suffix() const { return parts_[4]; }           ///< index 4
  const String& Phonetic_Family() const { return parts_[5]; }  ///< index 5
  const String& Phonetic_Given() const { return parts_[6]; }   ///< index 6
  const String& Phonetic_Middle() const { return parts_[7]; }  ///< index 7

  /// Stores a copy of `name` as the part at `nIndex` (0 to 7). A larger
  /// index is a programming error: it fails the assertion "nIndex < 8" and
  /// nothing is stored.
  void SetName(String name, unsigned int nIndex);

  /// All eight parts equal, compared in index order; null is unequal.
  bool IsEqual(const CName* other) const;

  /// True when all eight parts are empty.
  bool IsEmpty() const;

 private:
  std::array<String, kNamePartCount> parts_;
};

}  // namespace phonepim
