// CNote: a free-text note of a contact.
#pragma once

#include <cstdint>

#include "phonepim/model/CItem.h"

namespace phonepim {

/// A note (the item's Data). Notes have no type words; the type stays 0
/// unless someone sets it.
class CNote : public CItem {
 public:
  /// Empty note, type 0, ID -1.
  CNote();
  /// The note from a UTF-8 C string; type 0, ID -1.
  explicit CNote(const char* note);
  /// The note and its ID; type 0.
  CNote(const char* note, std::int32_t theID);
  /// The same from a text already decoded.
  CNote(String note, std::int32_t theID);

  const String& GetNote() const { return Data(); }
  void SetNote(const String& note) { setDataWithString(note); }

  std::uint32_t GetType() const { return Param(); }
  void SetType(std::uint32_t type) { setParam(type); }

  /// Equal text and exactly equal types; ID ignored; null is unequal.
  /// (Spelled with a capital I, beside the inherited isEqual, whose rule
  /// also compares the ID.)
  bool IsEqual(const CNote* note) const;
};

}  // namespace phonepim
