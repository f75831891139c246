// The string vocabulary every codec and model class uses. Several helpers
// differ on purpose from what their names suggest; each says how.
//
// Indexes and lengths count UTF-16 units. Functions that take "a C string of
// characters" treat it as a set of bytes compared against the UTF-8 form of
// the string.
#pragma once

#include <optional>

#include "phonepim/platform/String.h"

namespace phonepim {

/// The not-found index of Find and ReverseFind (the largest 32-bit int).
inline constexpr int kNotFound = 2147483647;

// --- Reading helpers (the receiver comes first and is not changed). ---

/// Removes leading tab, space, CR and LF bytes; empty when nothing is left.
String TrimLeft(const String& s);
/// Removes leading bytes that are in `chars`; empty when nothing is left.
String TrimLeft(const String& s, const char* chars);
/// Removes white space (tab and the Unicode space separators, not line
/// breaks) from both ends.
String Trim(const String& s);
/// True for the empty string.
bool IsEmpty(const String& s);
/// Upper-case copy (full Unicode mapping: "ß" becomes "SS").
String MakeUpper(const String& s);
/// CASE-INSENSITIVE comparison, -1, 0 or 1. The name is deliberately the
/// reverse of its meaning: callers that want a case-blind test call Compare.
int Compare(const String& s, const String& other);
/// LITERAL, case-sensitive comparison of UTF-16 units, -1, 0 or 1 (see
/// Compare).
int CompareNoCase(const String& s, const String& other);
/// Splits at the first byte of the UTF-8 form that is in `delimiters`.
/// When one is found, returns the text before it and stores the text after
/// it in `*next` (empty when the delimiter was last). When none is found,
/// returns an EMPTY token and stores the whole string in `*next`: the last
/// field comes back in the out-parameter, so callers loop until the
/// remainder has no delimiter and then use the remainder. `next` may be null.
String Tokenize(const String& s, const char* delimiters, String* next);
/// The units [start, start + length); throws std::out_of_range when the
/// range is not inside the string.
String Mid(const String& s, int start, int length);
/// The units from `start` to the end; throws std::out_of_range past the end.
String Mid(const String& s, int start);
/// Index of the first unit of `s` that is ANY of the units of `chars` (a
/// character-set search, not a substring search), or kNotFound.
int Find(const String& s, const String& chars);
/// As Find, searching from `index` on; throws std::out_of_range when `index`
/// is past the end.
int Find(const String& s, const String& chars, int index);
/// Index of the last unit of `s` that is any of the units of `chars`, or
/// kNotFound.
int ReverseFind(const String& s, const String& chars);
/// The length in UTF-16 units.
int GetLength(const String& s);

// --- Changing helpers (the string is changed in place). ---

/// Decodes exactly `length` bytes as UTF-8; nothing when they are invalid.
std::optional<String> stringWithBytes(const void* bytes, std::size_t length);
/// Makes the string empty.
void Empty(String& s);
/// Replaces every occurrence of `target` with `replacement`, case-sensitive.
/// An empty target changes nothing.
void Replace(String& s, const String& target, const String& replacement);
/// Replaces the unit at `index` with the one-byte string of `c` (decoded as
/// UTF-8, so a byte above 0x7F removes the unit). Throws std::out_of_range.
void set(String& s, char c, int index);
/// Deletes the units [index, index + length); throws std::out_of_range.
void deleteAtIndex(String& s, int index, int length);
/// Deletes the unit at `index`; throws std::out_of_range.
void deleteAtIndex(String& s, int index);

}  // namespace phonepim
