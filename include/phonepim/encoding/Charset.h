// Value decoding for lenient reading (vCard::sm_fLenientReading): any
// charset ICU knows, quoted-printable as vCard values use it, and the
// backslash escapes of structured values undone so that they round-trip.
// Both readers call these where lenient reading differs from Decode and
// DecodeEscapedCharString.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "phonepim/platform/String.h"

namespace phonepim {

/// A value decoded by DecodeCharset. The text is never dropped: what could
/// not be decoded is kept and said so.
struct CharsetText {
  String text;
  /// Some bytes were not valid in the charset the value claims: with UTF-8
  /// (claimed or assumed) the whole value was read as Latin-1, with any
  /// other charset the bad bytes became U+FFFD.
  bool replaced = false;
  /// ICU does not know the charset word: the value was read as UTF-8.
  bool unknownCharset = false;
};

/// Quoted-printable decoding for vCard values: "=XX" (either case) gives
/// the byte and a soft break ("=" before CR or LF) vanishes. Unlike the
/// decoder for mail header words, `_` stays `_`; an '=' that starts
/// neither is kept as it stands rather than failing the value.
std::string DecodeQuotedPrintableValue(std::string_view text);

/// Decodes the bytes of a value by its CHARSET word (empty: none given),
/// after quoted-printable decoding for kEncodingQuotedPrintable and
/// kEncodingQuotedPrintableCR, and BASE64 decoding (DecodeBase64Text) for
/// kEncodingBase64. "UTF-8", its common typo "UTF8" and no word
/// read UTF-8; any other word is handed to ICU ("ISO-8859-1",
/// "WINDOWS-1252", "SHIFT_JIS", ...), case-blind.
CharsetText DecodeCharset(std::string_view bytes, std::string_view charset, int encoding);
/// The same into `result`, whose text keeps its buffer when it has room: a
/// reader that decodes value after value into one scratch text allocates
/// for the long ones only.
void DecodeCharsetInto(std::string_view bytes, std::string_view charset, int encoding,
                       CharsetText* result);

/// What a reader's account says of how `decoded` was read (its CHARSET
/// word was `charset`): "charset X unknown, read as UTF-8", "bytes not valid
/// in its charset kept as Latin-1 or U+FFFD", or empty when nothing is
/// worth saying.
std::string CharsetNote(const CharsetText& decoded, std::string_view charset);

/// The value encoding an ENCODING word (or a bare encoding parameter)
/// names, in any case and as exports spell it: "QUOTED-PRINTABLE" and
/// "QUOTEDPRINTABLE" kEncodingQuotedPrintable, "BASE64" and "B"
/// kEncodingBase64, anything else kEncodingUnknown.
int EncodingOfWord(std::string_view word);

/// Whether `word` names UTF-8, in any case, the typo "UTF8" included.
bool NamesUTF8(std::string_view word);

/// The bytes of BASE64 text as the lenient tokenizer hands it over (whole,
/// with the white space of its folding): white space is skipped, and
/// decoding stops at the padding or at the first other byte outside the
/// alphabet, so a damaged tail costs only the tail.
Bytes DecodeBase64Text(std::string_view text);

/// Undoes the escapes phones write in values: "\;" ";", "\\" "\", "\,"
/// ",", "\:" ":", "\n" and "\N" a line feed. A backslash before anything
/// else, or at the end, stays as it is, so unescaping text that was never
/// escaped ("Sales Dept.\Manager") changes nothing.
String UnescapeValue(std::u16string_view text);

/// Splits a structured value at every ';' that no backslash escapes (a
/// backslash escapes the unit after it, whatever it is, so "a\\;b" splits
/// after the backslash) and, with `unescape`, undoes each component's
/// escapes with UnescapeValue; without, the components keep their text as
/// written, so that a writer that does not escape gives the same value
/// back. A value with n separators gives n + 1 components.
std::vector<String> SplitStructuredValue(std::u16string_view value, bool unescape);
/// The same into `components`, emptied first; it keeps its capacity.
void SplitStructuredValueInto(std::u16string_view value, bool unescape,
                              std::vector<String>* components);

}  // namespace phonepim
