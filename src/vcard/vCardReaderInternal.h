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

#include "phonepim/platform/String.h"
#include "phonepim/vcard/vCard.h"

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

}  // namespace vcard_reader
}  // namespace phonepim
