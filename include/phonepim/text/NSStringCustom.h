// The string vocabulary every codec and model class uses. Several helpers
// differ on purpose from what their names suggest; each says how.
//
// Indexes and lengths count UTF-16 units. Functions that take "a C string of
// characters" treat it as a set of bytes compared against the UTF-8 form of
// the string; a null pointer there is the empty set.
//
// The byte-based helpers (TrimLeft, Tokenize) read their results back the way
// a C string is read: a result ends at the first U+0000. A result whose bytes
// are not UTF-8 (cut inside a multi-byte character, which only a set holding
// a byte above 0x7F can do) is the empty string. An unpaired surrogate, which
// has no UTF-8 form, passes through them unchanged.
#pragma once

#include <cstddef>
#include <optional>

#include "phonepim/platform/String.h"

namespace phonepim {

/// The not-found index of Find and ReverseFind (the largest 32-bit int).
inline constexpr int kNotFound = 2147483647;

// --- Reading helpers (the receiver comes first and is not changed). ---

/// Removes leading tab, space, CR and LF bytes and returns the rest, up to
/// its first U+0000; empty when nothing is left. Any number of leading bytes
/// is skipped (the count does not wrap at 128).
String TrimLeft(const String& s);
/// As TrimLeft, skipping the leading bytes that are in `chars` (the codecs
/// pass "= " for parameter values).
String TrimLeft(const String& s, const char* chars);
/// Removes white space from both ends: tab and the Unicode space separators
/// (category Zs: space, no-break space, ideographic space, ...). Line breaks
/// stay.
String Trim(const String& s);
/// True for the empty string.
bool IsEmpty(const String& s);
/// Upper-case copy with the full, locale-independent mapping ("ß" becomes
/// "SS", so the result may be longer).
String MakeUpper(const String& s);
/// CASE-INSENSITIVE comparison, -1, 0 or 1. Canonically equivalent text is
/// equal ("é" precomposed or as "e" and a combining accent) and case folding
/// is full ("ß" equals "SS"). The name is deliberately the reverse of its
/// meaning: callers that want a case-blind test call Compare.
int Compare(const String& s, const String& other);
/// LITERAL, case-sensitive comparison of UTF-16 units, -1, 0 or 1 (see
/// Compare).
int CompareNoCase(const String& s, const String& other);
/// Splits at the first byte of the UTF-8 form that is in `delimiters`.
/// When one is found, returns the text before it and stores the text after
/// it in `*next` (empty when the delimiter was last); both end at their
/// first U+0000. When none is found, returns an EMPTY token and stores the
/// whole string in `*next`: the last field comes back in the out-parameter,
/// so callers loop until no delimiter is left and then use the remainder.
/// `next` may be null, and may point at `s` itself.
String Tokenize(const String& s, const char* delimiters, String* next);
/// The units [start, start + length). Throws std::out_of_range unless
/// 0 <= start, 0 <= length and start + length <= GetLength(s).
String Mid(const String& s, int start, int length);
/// The units from `start` to the end; `start` may equal the length (empty
/// result). Throws std::out_of_range outside [0, GetLength(s)].
String Mid(const String& s, int start);
/// Index of the first character of `s` that is ANY of the characters of
/// `chars` (a character-set search, not a substring search), or kNotFound;
/// an empty `chars` finds nothing. A surrogate pair is one character: it
/// matches only the same pair and reports the index of its first unit.
int Find(const String& s, const String& chars);
/// As Find, searching only the units [index, GetLength(s)); an index equal to
/// the length finds nothing. Throws std::out_of_range outside
/// [0, GetLength(s)].
int Find(const String& s, const String& chars, int index);
/// Index of the last character of `s` that is any of the characters of
/// `chars` (the first unit of a pair), or kNotFound.
int ReverseFind(const String& s, const String& chars);
/// The length in UTF-16 units.
int GetLength(const String& s);

// --- Changing helpers (the string is changed in place). ---

/// Decodes exactly `length` bytes as strict UTF-8, U+0000 included; nothing
/// when they are invalid. Zero bytes give the empty string.
std::optional<String> stringWithBytes(const void* bytes, std::size_t length);
/// Makes the string empty.
void Empty(String& s);
/// Replaces every occurrence of `target` with `replacement`, left to right
/// without overlaps ("aaa" with "aa" -> "b" gives "ba"). Case-sensitive and
/// unit for unit. An empty target changes nothing.
void Replace(String& s, const String& target, const String& replacement);
/// Replaces the unit at `index` with the one-byte string of `c` (decoded as
/// UTF-8, so a byte above 0x7F, which is no UTF-8 text on its own, removes
/// the unit). Throws std::out_of_range unless 0 <= index < GetLength(s).
void set(String& s, char c, int index);
/// Deletes the units [index, index + length). Throws std::out_of_range
/// unless 0 <= index, 0 <= length and index + length <= GetLength(s).
void deleteAtIndex(String& s, int index, int length);
/// Deletes the unit at `index` (half of a surrogate pair, if it is one).
/// Throws std::out_of_range unless 0 <= index < GetLength(s).
void deleteAtIndex(String& s, int index);

}  // namespace phonepim
