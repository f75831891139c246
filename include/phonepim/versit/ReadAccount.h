// What reading did with each property of one versit object: the readers
// (vCard::Parse, vCalendar::Parse) fill it when the caller hands one in, so
// that a caller can tell which fields a property went to and what, if
// anything, was lost, without reading the text a second time.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace phonepim {

/// What became of one property.
enum class PropertyFate {
  kRead,       ///< stored in a field of the record (`where` names it)
  kByDesign,   ///< nothing to keep: BEGIN, END, VERSION, X-GENDER, nested cards
  kExtension,  ///< kept as an extension item under `where`
  kEmpty,      ///< the property had no value: nothing to keep, nothing lost
  kLost,       ///< the value was thrown away (`where` says why)
};

/// One property of the object, in text order.
struct PropertyAccount {
  std::string name;   ///< as the reader saw it (upper case when lenient)
  PropertyFate fate = PropertyFate::kRead;
  std::string where;  ///< the field, the extension item, or the reason
  /// How the value was read when that is worth saying (lenient reading:
  /// bytes not valid in its charset, a charset word no one knows).
  std::string note;
};

/// The account of one object.
struct ReadAccount {
  std::vector<PropertyAccount> properties;
  /// The object began but its END never came (lenient reading only; the
  /// reader then also throws): what was read is not the whole object.
  bool truncated = false;

  /// How many properties had `fate`.
  std::size_t Count(PropertyFate fate) const {
    std::size_t n = 0;
    for (const PropertyAccount& p : properties) n += p.fate == fate ? 1 : 0;
    return n;
  }
};

/// "read", "dropped by design", "extension", "empty", "lost".
const char* FateWord(PropertyFate fate);

}  // namespace phonepim
