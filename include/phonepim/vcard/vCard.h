// The vCard 2.1 codec: reading a phone's vCard text into a CContact and
// writing a CContact back as the text phones expect.
//
// All members are static. The class-wide options are process-wide and
// unguarded: set them before use and call the codec from one thread.
#pragma once

#include <cstdint>

#include "phonepim/platform/String.h"

namespace phonepim {

class CContact;
class vObject;

class vCard {
 public:
  vCard() = delete;

  // --- Class-wide options (all off by default) ---

  /// The reader undoes backslash escapes in text values, and the writer
  /// escapes `\` and `;` in them, only when this is set.
  static bool sm_fNonstandardEscChar;
  /// The writer puts the reading (phonetic) name on "SOUND;X-IRMC-N" with
  /// both parts when set; only the reading last name, plainly, when clear.
  static bool sm_fUseReadingLastName;
  /// The writer leaves URLs as they are instead of quoted-printable.
  static bool sm_fURLNotQPEncode;

  static void NonstandardEscChar(bool on);
  static void UseReadingLastName(bool on);
  static void URLNotQPEncode(bool on);

  // --- Reading ---
  //
  // The model types below are named with their class keys so that this
  // section needs no includes; include CContact.h (which brings CName,
  // CPostalAddress, COrganization and DateComponents) to call them.

  /// Fills `contact` from the vCard 2.1 text held in `object`: every
  /// property the reader knows sets a field or adds an element; anything
  /// else is skipped (logged when gVCARD_DEBUGMODE is set). Fields the text
  /// does not mention are left as they are. A null `object` reads as empty
  /// text.
  ///
  /// Throws the std::uint16_t kVersitParseError (65529) when the tokenizer
  /// rejects the text (an empty parameter such as "TEL;:", a bad BASE64
  /// group, memory exhausted). "VERSION" other than 2.1 fails the assertion
  /// "_strnicmp(data, \"2.1\", len) == 0", an "X-SPEEDDIAL" value of 256
  /// bytes or more "len < 256", and a null `contact` "pData->pContact" (at
  /// the first value).
  ///
  /// Failures raised while a value is stored (an AssertionFailure from a
  /// throwing assertion handler, std::out_of_range from a custom label the
  /// label table cannot register) must not unwind through the tokenizer,
  /// which is C: the callbacks catch them, every later callback does
  /// nothing, and the exception is rethrown from here once the tokenizer has
  /// returned and been freed. The contact then keeps what was stored before.
  /// Nothing leaks on any of these paths.
  static void Parse(CContact* contact, const vObject* object);

  /// The tokenizer's user data for one Parse (defined in the library's
  /// private src/vcard/vCardReaderInternal.h).
  struct vCardParseData;

  /// The tokenizer's property callback: classifies the property, its
  /// charset, encoding and type parameters into the vCardParseData that
  /// `data` points at (null: nothing happens). Never throws; see Parse.
  static void vCardPropHandler(void* data, const char* name, char** params) noexcept;
  /// The tokenizer's data callback: collects the value bytes and stores the
  /// value into the contact at the end of the property (`value` null).
  /// Never throws; see Parse.
  static void vCardDataHandler(void* data, const char* value, int length) noexcept;

  // The value readers. Each takes the value bytes `text` of length `len`
  // (not terminated; a NUL among them ends the text where a C string would
  // end); the structured ones split them at every ';' not preceded by a
  // backslash, undo each component's escapes with DecodeEscapedCharString
  // and decode it with Decode(`charset`, `encoding`). A component that
  // cannot be decoded counts as empty.

  /// Components 0 to 7 become the name parts of the same index; the rest are
  /// ignored. Every component present is set, empty ones to empty.
  static void ParseName(const char* text, int len, int charset, int encoding,
                        class CName* name);
  /// "SOUND;X-IRMC-N": the reading of the family name (component 0) and of
  /// the given name (component 1), in the order of N and of what Generate
  /// writes; Parse stores them as RLName and RFName. An empty component
  /// leaves its output empty (nothing); reading stops after component 2.
  static void ParseRName(const char* text, int len, int charset, int encoding,
                         std::optional<String>* lastName, std::optional<String>* firstName);
  /// Plain "SOUND": component 0 only, as above, stored as RLName (the one
  /// reading Generate writes without X-IRMC-N).
  static void ParseRName(const char* text, int len, int charset, int encoding,
                         std::optional<String>* lastName);
  /// "A" 1 (only the value "A" itself, looked at over at most two bytes),
  /// "B" 2, "AB" 3, "O" 4, each compared over the value's length, so a
  /// prefix of a word matches it; anything else 0.
  static void ParseBloodType(const char* text, int len, std::uint32_t* bloodType);
  /// YYYYMMDD or YYYY-MM-DD, optionally followed by 'L' (`*dateType` 1) or
  /// 'Y' (2); otherwise `*dateType` is 0. Year, month and day as written,
  /// unchecked; nothing for any other form.
  static std::optional<struct DateComponents> ParseBirthdate(const char* text, int len,
                                                             std::uint32_t* dateType);
  /// Components 0 to 7 become the address parts of the same index.
  static void ParseAddress(const char* text, int len, int charset, int encoding,
                           class CPostalAddress* address);
  /// Name, unit, position, then every further non-empty component as an
  /// additional line.
  static void ParseOrg(const char* text, int len, int charset, int encoding,
                       class COrganization* org);
  /// "Normal" 1, "Smart" 2, "SYSTEM" 3, each compared over the value's length
  /// (a prefix matches); anything else 0.
  static void ParseGroupType(const char* text, int len, std::uint32_t* groupType);
  /// The revision time of "REV". It needs the vCalendar codec's date-time
  /// reader, which is not part of the library yet: until it is, no revision
  /// is read (nothing), and Parse leaves the contact's revision unset.
  static std::optional<struct DateComponents> ParseLastRevision(const char* text, int len);
  /// Empties `groups` and appends the atoi value of every ','-separated
  /// piece (an empty piece gives 0).
  static void ParseGroups(const char* text, int len, std::vector<std::int32_t>* groups);
  /// Fills the first slots of `speedDial` (ten entries) from the pieces of
  /// ", " + value split by strtok at ',': empty pieces vanish, a piece " "
  /// (the writer's mark for no slot) gives -1, any other its atoi value.
  /// Slots beyond the pieces keep their values. So " ,5" gives 0 and 5,
  /// while "3, ,5" gives 3, -1 and 5 (through Parse the first never
  /// arrives: the tokenizer drops a value's leading blanks, and ",5" gives
  /// -1 and 5). A value of 256 bytes or more fails the assertion
  /// "len < 256".
  static void ParseSpeedDial(const char* text, int len, std::int32_t* speedDial);
  /// The bytes of the BASE64 text (Base64decode: decoding ends at the first
  /// byte outside the alphabet).
  static Bytes ParsePhoto(const char* text, int len, int charset, int encoding);
  /// Components 0 (the assistant's name) and 1 (the number); a missing one
  /// gives nothing.
  static void ParseAssistant(const char* text, int len, int charset, int encoding,
                             std::optional<String>* name, std::optional<String>* number);

  // --- Writing ---
  // (writer declarations)
};

}  // namespace phonepim
