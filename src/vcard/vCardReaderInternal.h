// The vCard reader's parse state and the helpers its source files share.
// Private to the library; tests include it to drive the callbacks directly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <array>
#include <vector>

#include "phonepim/platform/String.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/ReadAccount.h"
#include "versit/PropertyOutcome.h"

namespace phonepim {
class CPostalAddress;
class COrganization;
}  // namespace phonepim

namespace phonepim {

/// The reader's property codes (vCardParseData::propertyID).
enum vCardPropertyID : int {
  kvCardPropertyUnknown = -1,
  kvCardPropertyNone = 0,  // between properties
  kvCardPropertyBEGIN = 1,
  kvCardPropertyVERSION = 2,
  kvCardPropertyFN = 3,
  kvCardPropertyN = 4,
  kvCardPropertyNICKNAME = 5,
  kvCardPropertySOUND = 6,
  kvCardPropertyBDAY = 7,
  kvCardPropertyBLOOD = 8,
  kvCardPropertyTEL = 9,
  kvCardPropertyEMAIL = 10,
  kvCardPropertyURL = 11,
  kvCardPropertyADR = 12,
  kvCardPropertyNOTE = 13,
  kvCardPropertyTITLE = 14,
  kvCardPropertyROLE = 15,
  kvCardPropertyORG = 16,
  kvCardPropertyHOBBY = 17,
  kvCardPropertyPHOTO = 18,
  kvCardPropertyGENDER = 19,
  kvCardPropertyGN = 20,
  kvCardPropertyGT = 21,
  kvCardPropertyGROUP = 22,
  kvCardPropertyIM = 23,
  kvCardPropertySPEEDDIAL = 24,
  kvCardPropertyACCOUNT = 25,
  kvCardPropertyACCOUNT_N = 26,
  kvCardPropertyACCOUNT_TYPE = 27,
  kvCardPropertyREV = 28,
  kvCardPropertyANNIVERSARY = 29,
  kvCardPropertyGDISPN = 30,
  kvCardPropertySPOUSE = 31,
  kvCardPropertyCHILDREN = 32,
  kvCardPropertyASSISTANT = 33,
  kvCardPropertyEND = 34,
};

/// The type bit "SOUND;X-IRMC-N" sets: the value is a structured reading
/// name, family reading first. It lives only in the parse state.
inline constexpr std::uint32_t kReadingNameTypeIrmcN = 0x1;

/// Charset codes of the parse state beyond those of Decode: a CHARSET word
/// the reader does not know (Decode reads it as UTF-8), and none given.
inline constexpr int kCharsetOther = -1;
inline constexpr int kCharsetNone = 0;

struct vCard::vCardParseData {
  explicit vCardParseData(CContact* contact) : pContact(contact) {}

  /// The record being filled.
  CContact* pContact;
  /// The current property (vCardPropertyID); kvCardPropertyUnknown for a
  /// name the reader does not know.
  int propertyID = 0;
  /// From CHARSET: kCharsetUTF8, kCharsetShiftJIS, kCharsetOther, or
  /// kCharsetNone when absent.
  int charset = 0;
  /// kEncodingQuotedPrintable, kEncodingBase64, kEncodingUnknown for another
  /// ENCODING word, kEncodingNone when absent.
  int encoding = 0;
  /// The OR of the type bits of the property's recognised parameters.
  std::uint32_t typeFlags = 0;
  /// The label of the property's "X-CUSTOM(...)" parameter: the decoded
  /// text of a quoted-printable label, null for a plain one (the label table
  /// keeps that) and for a property without one.
  std::shared_ptr<const String> customLabel;

  /// The current value's bytes. The tokenizer hands a value over in one
  /// piece, but the reader stores it only at the end of the property; the
  /// buffer keeps its capacity from property to property.
  std::string value;
  /// A value call came for the current property (an empty value has none).
  bool hasValue = false;
  /// The first exception a callback caught; once set, every callback does
  /// nothing and Parse rethrows it.
  std::exception_ptr failure;

  /// The property name as the tokenizer gave it, and its CHARSET word.
  std::string propertyName;
  std::string charsetName;
  /// Where Parse reports what became of each property; may be null.
  ReadAccount* account = nullptr;
  /// A remark on how the current value was decoded (lenient reading: bytes
  /// not valid in their charset), added to its account.
  std::string decodeNote;

  // Lenient reading only.
  /// BEGIN:VCARD lines open minus END lines seen; a property at depth 2 or
  /// more belongs to a nested card and is left to that card's own reading.
  int depth = 0;
  bool begun = false;
  bool ended = false;
  /// Per single-value property: the value its field holds now (its bytes,
  /// charset word and encoding) and its account entry, so that a later
  /// value of the same property can move it to an extension item instead
  /// of overwriting it. One entry per property seen (a card has a few):
  /// the standard reading never makes one. The first `heldCount` entries
  /// are this card's; the rest are spares from earlier cards of the thread,
  /// whose buffers the value swaps with instead of allocating.
  struct HeldValue {
    int propertyID = 0;
    std::string value;
    std::string charsetName;
    int encoding = 0;
    std::size_t account = 0;
  };
  std::vector<HeldValue> held;
  std::size_t heldCount = 0;
};

/// True when `text[index]` is ';' and the byte before it (if any) is not a
/// backslash: the separators of a structured value. "\\;" therefore does not
/// separate either.
bool IsSemicolon(const char* text, int index);

namespace vcard_reader {

/// strncmp(text, word, n) == 0 for `text` of `len` bytes (bytes past `len`
/// read as NUL): the first n bytes match, or both end (a NUL) together
/// before. With `ignoreCase`, ASCII letters match in either case
/// (_strnicmp).
bool StrNEqual(const char* text, std::size_t len, const char* word, std::size_t n,
               bool ignoreCase = false);

/// atoi of the C string in `text` (at most `len` bytes, a NUL ends it
/// earlier): leading white space, a sign, digits; 0 without digits. Values
/// beyond the range of long saturate and are then cut to 32 bits, as
/// glibc's atoi does.
std::int32_t Atoi(const char* text, std::size_t len);

/// Decode(text, len, charset, encoding), byte for byte the same result, with
/// the quoted-printable work done in buffers that the calling thread keeps
/// from value to value: a card has a dozen such values and components, and
/// four allocations each would cost more than the decoding.
std::optional<String> DecodeValue(const char* text, std::size_t len, int charset,
                                  int encoding);

/// One component of a structured value: escapes undone
/// (DecodeEscapedCharString), then decoded (Decode); nothing when the bytes
/// are not valid in the charset.
std::optional<String> DecodeComponent(const char* text, std::size_t len, int charset,
                                      int encoding);

/// Calls `visit(index, begin, length)` for the components of a structured
/// value, in order, until `visit` returns false. A value with n separators
/// has n + 1 components, so "a;" has an empty second component.
template <class Visit>
void ForEachComponent(const char* text, int len, Visit&& visit) {
  int start = 0;
  int index = 0;
  // Structured values are short and their components shorter: a plain scan
  // costs less than a library call per separator.
  for (int i = 0; i < len; ++i) {
    if (text[i] == ';' && IsSemicolon(text, i)) {
      if (!visit(index++, text + start, static_cast<std::size_t>(i - start))) return;
      start = i + 1;
    }
  }
  visit(index, text + start, static_cast<std::size_t>(len - start));
}

using Outcome = PropertyOutcome;
inline Outcome Read(const char* field) { return ReadInto(field); }
inline Outcome Empty() { return NoValue(); }

/// Appends the current property's outcome to the parse's account.
void AddToAccount(vCard::vCardParseData& d, Outcome outcome);
/// The same when there is an account; most reading has none.
inline void Note(vCard::vCardParseData& d, Outcome outcome) {
  if (d.account != nullptr) AddToAccount(d, outcome);
}

// --- Lenient reading (vCard::sm_fLenientReading) ---------------------------

/// The CHARSET and ENCODING words in any case, with the spellings real
/// exports use ("UTF8", "QUOTEDPRINTABLE", "B"); the charset word is kept
/// for DecodeCharset. True when `parameter` was one of them.
bool ClassifyEncodingWordLenient(vCard::vCardParseData& d, const char* parameter,
                                 const char* value);

/// Calls `visit` with each ','-separated word of a TYPE value, upper-cased
/// and terminated.
template <class Visit>
void ForEachTypeValue(const char* value, Visit&& visit) {
  std::string word;
  for (const char* p = value;; ++p) {
    if (*p == ',' || *p == '\0') {
      if (!word.empty()) visit(word.c_str());
      word.clear();
      if (*p == '\0') return;
    } else {
      word.push_back(*p >= 'a' && *p <= 'z' ? static_cast<char>(*p - 'a' + 'A') : *p);
    }
  }
}

/// The value as text by its charset word (DecodeCharset, never nothing),
/// escapes undone when `undoEscapes` and sm_fNonstandardEscChar are set.
std::optional<String> DecodeTextLenient(vCard::vCardParseData& d, bool undoEscapes);

/// The property's value kept whole as an extension item under its name.
Outcome KeepAsExtension(vCard::vCardParseData& d);

/// The structured values, split and unescaped after decoding.
Outcome StoreNameLenient(vCard::vCardParseData& d);
Outcome StoreReadingNameLenient(vCard::vCardParseData& d);
Outcome StoreAddressLenient(vCard::vCardParseData& d, CPostalAddress& address);
Outcome StoreOrgLenient(vCard::vCardParseData& d, COrganization& org);
Outcome StoreAssistantLenient(vCard::vCardParseData& d);

/// Before a value is stored: follows BEGIN and END (nested cards), and
/// accounts for empty values. False when there is nothing to store.
bool BeginLenientStore(vCard::vCardParseData& d);
/// After it: accounts for it, and moves the value a single-value field
/// held before to an extension item.
void EndLenientStore(vCard::vCardParseData& d, Outcome outcome);

}  // namespace vcard_reader
}  // namespace phonepim
