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
  /// Lenient reading, for real phone exports: both readers (vCard and
  /// vCalendar) keep what the standard reading rules would lose (blank
  /// lines in CRLF files, Base64 that starts on the property line, other
  /// charsets, lower-case names, nested objects, repeated single-value
  /// properties). Off by default: the standard rules stay the library's
  /// behaviour. The phonepim tool turns it on unless given --strict.
  static bool sm_fLenientReading;

  static void NonstandardEscChar(bool on);
  static void UseReadingLastName(bool on);
  static void URLNotQPEncode(bool on);
  static void LenientReading(bool on);

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
  /// The revision time of "REV", read by the vCalendar codec's date-time
  /// reader (vCalendar::ParseDateTimeComponent): the fields as written,
  /// seconds dropped, "Z" or not; nothing for a date of 0.
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
  //
  // Generate walks a contact in a fixed property order and appends one
  // CRLF-terminated line per property to a growing text; the writers below
  // are its steps, each appending zero or more lines to `out`. Empty and
  // missing values write nothing. Text values that need it are written
  // quoted-printable (QPEncode) with ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE";
  // a value is taken to need it when its encoded form holds a '='.
  //
  // Custom labels. A type that the custom-label table knows (CCustomType)
  // is written as ";X-CUSTOM(label)". The label is quoted-printable encoded,
  // backslash-escaped when sm_fNonstandardEscChar is set, and, when that
  // left a '=' in it, preceded inside the brackets by
  // "CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,". The table keeps a plain
  // label as the reader handed it in ("X-CUSTOM(Main)", "PREF=X-CUSTOM(Main)");
  // the writers print only the text inside the brackets, so that a label
  // read and written again stays "X-CUSTOM(Main)". Label codes share their
  // range with the PREF bit, and the table is asked first: a PREF element
  // whose other bits happen to equal a registered code (PREF with HOME is
  // the first code) is written with that label.
  //
  // The model types are named with their class key, which declares them in
  // namespace phonepim: this header needs none of the model's headers.

  /// ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE": the parameters of a
  /// quoted-printable value.
  static constexpr char16_t szParams_QPEncodedUTF8[] =
      u";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE";
  /// "CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,": the same inside the
  /// brackets of a custom label.
  static constexpr char16_t szParams_QPEncodedUTF8_CUSTOM[] =
      u"CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,";

  /// Writes `contact` as vCard 2.1 and stores the UTF-8 bytes (no NUL) in
  /// `object` with SetData, replacing what it held. A person gets its
  /// properties in the order of the writers below, a group its group name,
  /// type, display name and photo, any other kind only the BEGIN, VERSION
  /// and END lines. A non-zero `phoneStyle` writes the telephone numbers
  /// with AddTelephoneAtZandor, zero with AddTelephone. Neither pointer is
  /// kept; a null one makes the call do nothing. A date type outside the
  /// suffix table fails the assertions of AddBirtyDate / AddAnnivesaryDate.
  /// An unpaired surrogate, which has no UTF-8 form and can only reach the
  /// text through a telephone number (numbers are written as they are), is
  /// stored as U+FFFD.
  static void Generate(const CContact* contact, vObject* object, int phoneStyle);
  /// Generate with AddTelephone.
  static void Generate(const CContact* contact, vObject* object);

  /// Appends "name params:value\r\n" and then turns every "::" of that line,
  /// value included, into ":" (left to right, so ":::" becomes "::").
  static void AddItem(String& out, std::u16string_view name, std::u16string_view params,
                      std::u16string_view value);
  /// Appends "name params value\r\n" with no colon added (`value` starts
  /// with its own, behind the parameters it carries) and no "::" rule.
  static void AddItemEncoding(String& out, std::u16string_view name, std::u16string_view params,
                              std::u16string_view value);
  /// Appends `prefix` and `value`: one piece of the X-SPEEDDIAL line.
  static void AddSpeedDial(String& out, std::u16string_view prefix, std::u16string_view value);

  /// "N": the eight parts, family first, each encoded like an ordinary text
  /// value, joined by ';'. Nothing for an empty name.
  static void AddName(String& out, const class CName& name);
  /// "FN", "NICKNAME", "TITLE", "ROLE", "NOTE", "X-HOBBY", "X-ACCOUNT",
  /// "X-SPOUSE", "X-CHILDREN", "GN", "X-GDISPN": ordinary text values,
  /// quoted-printable where needed and backslash-escaped when
  /// sm_fNonstandardEscChar is set.
  static void AddFName(String& out, const std::optional<String>& text);
  static void AddNName(String& out, const std::optional<String>& text);
  static void AddTitle(String& out, const std::optional<String>& text);
  static void AddRole(String& out, const std::optional<String>& text);
  static void AddNote(String& out, const std::optional<String>& text);
  static void AddHobby(String& out, const std::optional<String>& text);
  static void AddAccount(String& out, const std::optional<String>& text);
  static void AddSpouse(String& out, const std::optional<String>& text);
  static void AddChildren(String& out, const std::optional<String>& text);
  static void AddGroupName(String& out, const std::optional<String>& text);
  static void AddGroupDisplayName(String& out, const std::optional<String>& text);
  /// "SOUND": the reading name. With sm_fUseReadingLastName,
  /// "SOUND;X-IRMC-N:last;first;;;" (both parts escaped); without it only
  /// the reading last name, as an ordinary text value (nothing when it is
  /// empty, whatever the first name holds).
  static void AddRName(String& out, const std::optional<String>& firstName,
                       const std::optional<String>& lastName);
  /// "BDAY" and "X-ANNIVERSARY": YYYYMMDD and the date type's suffix letter
  /// (none for 0, 'L' for 1, 'Y' for 2). A type whose int value is above 3
  /// fails the assertion "(int)birthDateType <= _countof(chTypes)",
  /// respectively "(int)AnniversaryDateType <= _countof(chTypes)". The
  /// assertion lets 3 through, and every type whose int value is negative;
  /// those have no suffix letter and write the plain date. Each component is
  /// printed as a 32-bit number (an undefined one as -1).
  static void AddBirtyDate(String& out, const std::optional<struct DateComponents>& date,
                           std::uint32_t birthDateType);
  static void AddAnnivesaryDate(String& out, const std::optional<struct DateComponents>& date,
                                std::uint32_t AnniversaryDateType);
  /// "X-BLOOD": 1 A, 2 B, 3 AB, 4 O; nothing for any other value.
  static void AddBloodType(String& out, std::uint32_t bloodType);
  /// "GT": 1 Normal, 2 Smart, 3 READ_ONLY; nothing for any other value. The
  /// reader knows 3 as "SYSTEM", so a read-only group loses its type on the
  /// way back.
  static void AddGroupType(String& out, std::uint32_t groupType);
  /// "X-GROUP": the group numbers joined by ','; nothing for none.
  static void AddGroups(String& out, const std::vector<std::int32_t>& groups);
  /// "X-ASSISTANT": "name;number", both quoted-printable where needed and
  /// always backslash-escaped. Nothing when both are empty.
  static void AddAssistant(String& out, const std::optional<String>& name,
                           const std::optional<String>& number);
  /// "ORG": "name;unit;position" and ";line" for each further line, each
  /// part an ordinary text value. The type is a custom label or HOME, WORK,
  /// X-ETC. Nothing for an empty organization.
  static void AddOrganization(String& out, const class COrganization& org);
  /// "ADR": the eight parts, post office box first, each an ordinary text
  /// value, each followed by ';' except the last. Types: the address's own
  /// label when the custom bit is set and it has a non-empty one, else PREF,
  /// CELL, HOME, WORK, X-ETC. Nothing for an empty address.
  static void AddAddress(String& out, const class CPostalAddress& address);
  /// "EMAIL": the address quoted-printable where needed and always
  /// backslash-escaped; the quoted-printable parameters follow the type
  /// parameters. Types: a custom label, else PREF, WORK, HOME, CELL, X-ETC
  /// and, for the custom bit, the e-mail's own label as ";X-CUSTOM(label)"
  /// (encoded like the address, no charset prefix inside the brackets) or
  /// ";X-ETC" without one. Nothing for an empty address.
  static void AddEmail(String& out, const class CEmail& email);
  /// "URL": quoted-printable unless sm_fURLNotQPEncode is set; types PREF,
  /// WORK, HOME. The quoted-printable parameters go with any value holding
  /// a '=', encoded or not. Nothing for an empty address.
  static void AddURL(String& out, const class CURL& url);
  /// "X-IM": the ID encoded as for EMAIL; the type is a custom label or the
  /// first service of AIM, GOOGLETALK, ICQ, JABBER, QQ, SKYPE, WINDOWSLIVE,
  /// YAHOO. Nothing for an empty ID.
  static void AddMessengerID(String& out, const class CMessengerID& messengerID);
  /// "TEL": the number as it is (no encoding, never the quoted-printable
  /// parameters). Types: a custom label alone, else PREF, WORK, HOME, VOICE,
  /// FAX, MSG, CELL, PAGER, BBS, MODEM, CAR, ISDN, X-ETC, INTERNET, VIDEO,
  /// DTMF, PTT in that order. The number's own label is not written.
  /// Nothing for an empty number.
  static void AddTelephone(String& out, const class CTelephoneNumber& tel);
  /// "TEL" for the phones that send mobile numbers as HOME;CELL. As
  /// AddTelephone, except: no VOICE; CELL is written ";HOME;CELL";
  /// X-CALLBACK follows PTT; a type of exactly the "main" bit is
  /// ";X-CUSTOM(Main)"; the custom bit writes the number's own label as
  /// ";X-CUSTOM(label)" (quoted-printable and escaped, no charset prefix
  /// inside the brackets), or ";X-ETC" when it has none.
  static void AddTelephoneAtZandor(String& out, const class CTelephoneNumber& tel);
  /// "PHOTO;TYPE=JPEG;ENCODING=BASE64": the Base64 text on one line of its
  /// own between a line break and a blank folded line. Nothing without
  /// picture bytes.
  static void AddPhoto(String& out, const Bytes* photo);
  /// Writes nothing: "REV" is never generated (and Generate does not call
  /// it). Kept for callers that expect it.
  static void AddLastRevision(String& out, const std::optional<struct DateComponents>& date);
};

}  // namespace phonepim
