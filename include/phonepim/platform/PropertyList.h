// Property lists: the file format of the identity tables' meta files. Values
// go in and out as phonepim::Value; the property-list library stays inside
// the implementation.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>

#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

/// The two encodings of a property list.
enum class PropertyListFormat {
  XML,     ///< "<?xml ...><plist version="1.0">", UTF-8.
  Binary,  ///< "bplist00".
};

/// Deepest nesting of arrays and dictionaries read or written (the root
/// container is level 1). Meta files need about six levels; the limit keeps
/// a hostile file from exhausting the stack.
inline constexpr int kPropertyListMaxDepth = 256;

/// Parses an XML or a binary property list; files starting with "bplist" are
/// binary, everything else is taken as XML.
///
/// Types map one to one: string <-> String, integer <-> std::int64_t, real <->
/// double, true/false <-> bool, date <-> Date, data <-> Bytes, array <->
/// Array, dict <-> Dictionary. An integer above INT64_MAX (a binary list can
/// hold unsigned 64-bit values) becomes the nearest real. Dates keep the
/// microseconds a binary list carries; XML dates are whole seconds.
///
/// Returns nothing for bytes that are not a property list, and also for a
/// list holding a string or key that is not valid Unicode or holds U+0000
/// (the writer refuses those too), a UID (keyed archives), nesting deeper
/// than kPropertyListMaxDepth, or a binary list whose shared or cyclic object
/// references would expand beyond its own size. Never crashes or hangs on
/// bad bytes.
std::optional<Value> ValueFromPropertyList(const void* bytes, std::size_t size);
std::optional<Value> ValueFromPropertyList(const Bytes& bytes);

/// Encodes `value` as a property list. Reading the result back with
/// ValueFromPropertyList gives an equal value, except that XML dates are cut
/// to the whole second that holds them (the XML format has no fractions).
///
/// Returns nothing when the value cannot be stored faithfully: a string or
/// dictionary key holding U+0000 or an unpaired surrogate, a date outside
/// the years 1 to 9999 (or not finite), or nesting deeper than
/// kPropertyListMaxDepth.
std::optional<Bytes> PropertyListFromValue(const Value& value,
                                           PropertyListFormat format);

/// Reads and parses the file. Nothing when it is missing, unreadable or not
/// a property list (see ValueFromPropertyList).
std::optional<Value> ReadPropertyListFile(const std::filesystem::path& path);

/// Writes `value` as an XML property list. The bytes go to a new temporary
/// file in the same folder (mode 0600, flushed to disk), which then replaces
/// `path` in one rename: a failed write leaves the old file as it was and no
/// partly written file behind. Returns false when the value cannot be encoded
/// (see PropertyListFromValue) or the file cannot be written.
bool WritePropertyListFile(const std::filesystem::path& path, const Value& value);

/// Writes `bytes` to `path` the same way: a flushed temporary file in the
/// same folder renamed over `path`, so that `path` holds the old bytes or
/// all the new ones. Returns false (leaving `path` as it was) on failure.
bool WriteFileAtomically(const std::filesystem::path& path, const Bytes& bytes);

}  // namespace phonepim
