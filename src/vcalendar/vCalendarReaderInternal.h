// The vCalendar reader's parse state and property codes. Private to the
// library; tests include it to drive the callbacks directly.
#pragma once

#include <cstdint>
#include <exception>
#include <array>
#include <cstddef>
#include <string>

#include "phonepim/vcalendar/vCalendar.h"
#include "phonepim/versit/ReadAccount.h"

namespace phonepim {

/// The reader's property codes (vCalendarParseData::propertyID).
enum vCalendarPropertyID : int {
  kvCalPropertyUnknown = -1,
  kvCalPropertyNone = 0,  // between properties
  kvCalPropertyVERSION = 1,
  kvCalPropertyTZ = 2,
  kvCalPropertyDAYLIGHT = 3,
  kvCalPropertyBEGIN = 4,
  kvCalPropertyCATEGORIES = 5,
  kvCalPropertyCLASS = 6,
  kvCalPropertyAALARM = 7,
  kvCalPropertyDTCREATE = 8,
  kvCalPropertyLAST_MODIFIED = 9,
  kvCalPropertyDTSTART = 10,
  kvCalPropertyDTEND = 11,
  kvCalPropertyDUE = 12,
  kvCalPropertyCOMPLETED = 13,
  kvCalPropertySUMMARY = 14,
  kvCalPropertyDESCRIPTION = 15,
  kvCalPropertyLOCATION = 16,
  kvCalPropertyRRULE = 17,
  kvCalPropertyXRULE = 18,
  kvCalPropertyPRIORITY = 19,
  kvCalPropertySTATUS = 20,
  kvCalPropertyATTENDEE = 21,
  kvCalPropertyACCOUNT = 22,
  kvCalPropertyACCOUNT_N = 23,
  kvCalPropertyACCOUNT_TYPE = 24,
  kvCalPropertyX_TYPE = 25,
  kvCalPropertyX_ALLDAY = 26,
  kvCalPropertyUID = 27,
  kvCalPropertyEND = 28,
};

/// The property code of `name`: exact and case-sensitive, or in any case
/// when `anyCase`; kvCalPropertyUnknown for any other name.
int vCalendarPropertyIDOf(const char* name, bool anyCase);

struct vCalendar::vCalendarParseData {
  explicit vCalendarParseData(CCalendar* calendar) : pCalendar(calendar) {}

  /// The record being filled.
  CCalendar* pCalendar;
  /// The current property (vCalendarPropertyID).
  int propertyID = 0;
  /// From CHARSET: kCharsetUTF8, kCharsetShiftJIS, or 0.
  int charset = 0;
  /// Lenient reading: the CHARSET word as written, for charsets beyond the
  /// two codes above.
  std::string charsetWord;
  /// From ENCODING or a bare word: kEncodingQuotedPrintable (or
  /// kEncodingQuotedPrintableCR under UseCarrageReturn), kEncodingBase64,
  /// kEncodingUnknown, or 0.
  int encoding = 0;
  /// An AALARM's TYPE (0xF0) and VALUE (0x0F) bits.
  std::uint32_t reminderParams = 0;

  /// An ATTENDEE's role and status words.
  std::uint32_t attendeeRole = 0;
  std::uint32_t attendeeStatus = 0;
  /// Lenient reading: the property name and its parameters other than
  /// CHARSET and ENCODING (";NAME=VALUE"...), the name of the extension item
  /// that keeps a value the record has no place for.
  std::string itemName;
  /// Lenient reading: the properties read once already (bit = code).
  std::uint64_t seen = 0;
  /// Lenient reading: a CATEGORIES value with known words has been read.
  bool categoriesRead = false;
  /// A value came for the current property (an empty value has none).
  bool hasValue = false;
  /// The current CATEGORIES value, for its second reading at the end.
  std::string categoriesValue;
  /// The first exception a callback caught; once set, every callback does
  /// nothing and Parse rethrows it.
  std::exception_ptr failure;

  /// Where Parse reports what became of each property; may be null. The
  /// rest is kept only when there is one.
  ReadAccount* account = nullptr;
  /// The property name as the tokenizer gave it.
  std::string propertyName;
  /// A remark on how the current value was decoded (lenient reading).
  std::string decodeNote;
  /// Per property code: 1 + the account entry of the value its field
  /// holds, so that the entry can say so when a later value replaces it.
  std::array<std::size_t, kvCalPropertyEND + 1> heldEntry{};
};

}  // namespace phonepim
