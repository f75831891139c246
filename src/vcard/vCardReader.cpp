// vCard::Parse and the two tokenizer callbacks: property and parameter
// classification, and storing each value into the contact.
#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "phonepim/encoding/Charset.h"
#include "phonepim/encoding/Encoding.h"
#include "phonepim/model/CContact.h"
#include "phonepim/model/CCustomType.h"
#include "phonepim/model/TypeMasks.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/platform/Log.h"
#include "phonepim/versit/vObject.h"
#include "phonepim/versit/vParser.h"
#include "vcard/vCardReaderInternal.h"
#include "versit/TokenizeObject.h"

namespace phonepim {

namespace {

using vcard_reader::StrNEqual;

// --- Property and parameter vocabulary --------------------------------------

struct PropertyName {
  std::string_view name;
  int id;
};

constexpr PropertyName kPropertyNames[] = {
    {"ADR", kvCardPropertyADR},
    {"BDAY", kvCardPropertyBDAY},
    {"BEGIN", kvCardPropertyBEGIN},
    {"EMAIL", kvCardPropertyEMAIL},
    {"END", kvCardPropertyEND},
    {"FN", kvCardPropertyFN},
    {"GN", kvCardPropertyGN},
    {"GT", kvCardPropertyGT},
    {"N", kvCardPropertyN},
    {"NICKNAME", kvCardPropertyNICKNAME},
    {"NOTE", kvCardPropertyNOTE},
    {"ORG", kvCardPropertyORG},
    {"PHOTO", kvCardPropertyPHOTO},
    {"REV", kvCardPropertyREV},
    {"ROLE", kvCardPropertyROLE},
    {"SOUND", kvCardPropertySOUND},
    {"TEL", kvCardPropertyTEL},
    {"TITLE", kvCardPropertyTITLE},
    {"URL", kvCardPropertyURL},
    {"VERSION", kvCardPropertyVERSION},
    {"X-ACCOUNT", kvCardPropertyACCOUNT},
    {"X-ACCOUNT-N", kvCardPropertyACCOUNT_N},
    {"X-ACCOUNT-TYPE", kvCardPropertyACCOUNT_TYPE},
    {"X-ANNIVERSARY", kvCardPropertyANNIVERSARY},
    {"X-ASSISTANT", kvCardPropertyASSISTANT},
    {"X-BLOOD", kvCardPropertyBLOOD},
    {"X-CHILDREN", kvCardPropertyCHILDREN},
    {"X-GDISPN", kvCardPropertyGDISPN},
    {"X-GENDER", kvCardPropertyGENDER},
    {"X-GROUP", kvCardPropertyGROUP},
    {"X-HOBBY", kvCardPropertyHOBBY},
    {"X-IM", kvCardPropertyIM},
    {"X-SPEEDDIAL", kvCardPropertySPEEDDIAL},
    {"X-SPOUSE", kvCardPropertySPOUSE},
};

// `word` (a literal of the tables) equals the C string `text`. The
// tokenizer hands names over as C strings; comparing them in place spares a
// strlen of every name and parameter, and almost every candidate already
// differs in its first letter.
bool SameWord(std::string_view word, const char* text) {
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (text[i] != word[i]) return false;  // a shorter text stops at its NUL
  }
  return text[word.size()] == '\0';
}

// A perfect hash of the property names over their first and last letters
// and their length (the constants were searched for that; the table below
// fails to compile if a name is added that collides): a name is looked up
// with one comparison.
constexpr std::size_t PropertyHash(unsigned char first, unsigned char last, std::size_t length) {
  return (first * 2u + last * 53u + length * 7u) & 127u;
}

constexpr std::array<std::int8_t, 128> kPropertySlots = [] {
  std::array<std::int8_t, 128> slots{};
  for (std::int8_t& slot : slots) slot = -1;
  for (std::size_t i = 0; i < std::size(kPropertyNames); ++i) {
    const std::string_view name = kPropertyNames[i].name;
    const std::size_t hash = PropertyHash(static_cast<unsigned char>(name.front()),
                                          static_cast<unsigned char>(name.back()), name.size());
    if (slots[hash] != -1) throw "two property names share a hash slot";
    slots[hash] = static_cast<std::int8_t>(i);
  }
  return slots;
}();

int PropertyIDOf(const char* name) {
  if (name == nullptr || name[0] == '\0') return kvCardPropertyUnknown;
  std::size_t length = 1;
  while (name[length] != '\0') ++length;  // names are a few letters
  const int slot = kPropertySlots[PropertyHash(static_cast<unsigned char>(name[0]),
                                               static_cast<unsigned char>(name[length - 1]),
                                               length)];
  if (slot < 0) return kvCardPropertyUnknown;
  const PropertyName& entry = kPropertyNames[static_cast<std::size_t>(slot)];
  return entry.name.size() == length && SameWord(entry.name, name) ? entry.id
                                                                   : kvCardPropertyUnknown;
}

// A type word and its bit. A word that `replaces` sets the flags to its bit
// alone, dropping what came before it: phones send DTMF and PTT as the only
// meaning of a number, and a HOME before them is noise, one after them not.
struct TypeWord {
  std::string_view word;
  std::uint32_t bit;
  bool replaces = false;
};

// The words are distinct, so their order is free: the common ones first.
constexpr TypeWord kTelephoneTypes[] = {
    {"CELL", kTelephoneTypeCell},       {"HOME", kTelephoneTypeHome},
    {"WORK", kTelephoneTypeWork},       {"VOICE", kTelephoneTypeVoice},
    {"PREF", kTelephoneTypePref},       {"FAX", kTelephoneTypeFax},
    {"MSG", kTelephoneTypeMsg},         {"PAGER", kTelephoneTypePager},
    {"BBS", kTelephoneTypeBBS},         {"MODEM", kTelephoneTypeModem},
    {"CAR", kTelephoneTypeCar},         {"ISDN", kTelephoneTypeISDN},
    {"VIDEO", kTelephoneTypeVideo},     {"INTERNET", kTelephoneTypeInternet},
    {"DTMF", kTelephoneTypeDTMF, true}, {"PTT", kTelephoneTypePTT, true},
    {"X-ETC", kTelephoneTypeEtc},       {"X-CALLBACK", kTelephoneTypeCallback},
};

constexpr TypeWord kEmailTypes[] = {
    {"PREF", kEmailTypePref}, {"HOME", kEmailTypeHome}, {"WORK", kEmailTypeWork},
    {"CELL", kEmailTypeCell}, {"X-ETC", kEmailTypeEtc},
};

// CELL and X-ETC take the opposite bits from the e-mail words (see
// TypeMasks.h).
constexpr TypeWord kAddressTypes[] = {
    {"PREF", kAddressTypePref}, {"HOME", kAddressTypeHome}, {"WORK", kAddressTypeWork},
    {"CELL", kAddressTypeCell}, {"X-ETC", kAddressTypeEtc},
};

constexpr TypeWord kURLTypes[] = {
    {"PREF", kURLTypePref}, {"HOME", kURLTypeHome}, {"WORK", kURLTypeWork}};

constexpr TypeWord kOrganizationTypes[] = {
    {"HOME", kOrganizationTypeHome}, {"WORK", kOrganizationTypeWork},
    {"X-ETC", kOrganizationTypeEtc}};

constexpr TypeWord kMessengerTypes[] = {
    {"AIM", kMessengerTypeAIM},       {"WINDOWSLIVE", kMessengerTypeWindowsLive},
    {"YAHOO", kMessengerTypeYahoo},   {"SKYPE", kMessengerTypeSkype},
    {"QQ", kMessengerTypeQQ},         {"GOOGLETALK", kMessengerTypeGoogleTalk},
    {"ICQ", kMessengerTypeICQ},       {"JABBER", kMessengerTypeJabber},
};

constexpr TypeWord kReadingNameTypes[] = {{"X-IRMC-N", kReadingNameTypeIrmcN}};

// What an unmatched parameter containing "X-CUSTOM" does.
enum class CustomParameter {
  kIgnored,
  kLabel,  // joined into a label text; sets `customBit` and customLabel
  kCode,   // the parameter itself registered; its code ORed into the flags
};

struct TypeRule {
  std::span<const TypeWord> words;
  CustomParameter custom = CustomParameter::kIgnored;
  std::uint32_t customBit = 0;
};

constexpr TypeRule kTelephoneRule{kTelephoneTypes, CustomParameter::kLabel,
                                  kTelephoneTypeCustom};
constexpr TypeRule kEmailRule{kEmailTypes, CustomParameter::kLabel, kEmailTypeCustom};
constexpr TypeRule kAddressRule{kAddressTypes, CustomParameter::kLabel, kAddressTypeCustom};
constexpr TypeRule kURLRule{kURLTypes};
constexpr TypeRule kOrganizationRule{kOrganizationTypes, CustomParameter::kCode};
constexpr TypeRule kMessengerRule{kMessengerTypes, CustomParameter::kCode};
constexpr TypeRule kReadingNameRule{kReadingNameTypes};

const TypeRule* TypeRuleOf(int propertyID) {
  switch (propertyID) {
    case kvCardPropertyTEL:
      return &kTelephoneRule;
    case kvCardPropertyEMAIL:
      return &kEmailRule;
    case kvCardPropertyADR:
      return &kAddressRule;
    case kvCardPropertyURL:
      return &kURLRule;
    case kvCardPropertyORG:
      return &kOrganizationRule;
    case kvCardPropertyIM:
      return &kMessengerRule;
    case kvCardPropertySOUND:
      return &kReadingNameRule;
    default:
      return nullptr;
  }
}

// Parameter text as a string: UTF-8 when it is, else byte for byte, so that
// every label registers.
String ParameterString(std::string_view bytes) {
  if (std::optional<String> text = StringFromUTF8(bytes)) return std::move(*text);
  return StringFromASCII(bytes);
}

// The label text of an "X-CUSTOM(...)" parameter: the parameter list from
// the first parameter's name through the first ')', with the NULs the
// tokenizer put between names and values turned back into '='. That undoes
// the split of "X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,=41)" at its
// first '=', and keeps the parameters written before the label
// ("PREF;X-CUSTOM(Main)" gives "PREF=X-CUSTOM(Main)"). Without a ')' the
// text runs to the end of the last parameter.
std::string JoinCustomLabel(char** params) {
  const char* begin = params[0];
  const char* end = begin;
  for (char** pair = params; pair[0] != nullptr; pair += 2) {
    for (const char* text : {pair[0], pair[1]}) {
      if (text != nullptr) end = std::max(end, text + std::strlen(text));
    }
  }
  const auto span = static_cast<std::size_t>(end - begin);
  if (const void* close = std::memchr(begin, ')', span)) {
    end = static_cast<const char*>(close) + 1;
  }
  std::string label(begin, static_cast<std::size_t>(end - begin));
  std::replace(label.begin(), label.end(), '\0', '=');
  return label;
}

// Whether "X-CUSTOM" occurs in the C string `text`. Most parameters that
// reach this test are short words ("CHARSET", "INTERNET") without an 'X':
// a plain scan costs less than setting up the library's search.
bool ContainsCustomMark(const char* text) {
  constexpr std::string_view kMark = "X-CUSTOM";
  for (; *text != '\0'; ++text) {
    if (*text != 'X') continue;
    std::size_t i = 1;
    while (i < kMark.size() && text[i] == kMark[i]) ++i;
    if (i == kMark.size()) return true;
  }
  return false;
}

// A type word of `rule`, or an "X-CUSTOM(...)" parameter, in `name`.
// Every X-CUSTOM parameter registers its label, as the label table expects;
// `labelsRegistered` counts them so that a hostile line of thousands stops
// at kMaxCustomLabelsPerProperty instead of filling the table, which keeps
// every entry for the life of the process.
void ClassifyTypeWord(vCard::vCardParseData& d, const TypeRule& rule, const char* name,
                      char** params, int& labelsRegistered) {
  const auto word = std::find_if(rule.words.begin(), rule.words.end(),
                                 [&](const TypeWord& w) { return SameWord(w.word, name); });
  if (word != rule.words.end()) {
    d.typeFlags = word->replaces ? word->bit : d.typeFlags | word->bit;
    return;
  }
  if (rule.custom == CustomParameter::kIgnored || !ContainsCustomMark(name)) return;
  // Upper-cased, "X-CustomProperty" would pass for a label: a lenient
  // reading wants the bracket that opens one.
  if (vCard::sm_fLenientReading && std::strstr(name, "X-CUSTOM(") == nullptr) return;
  if (rule.custom == CustomParameter::kCode) {
    d.typeFlags |= CCustomType::Inst().ConvertCustomTypeFromString(ParameterString(name));
    return;
  }
  if (labelsRegistered < vCard::kMaxCustomLabelsPerProperty) {
    std::optional<String> label = CCustomType::Inst().ConvertCustomStrFromString(
        ParameterString(JoinCustomLabel(params)));
    d.customLabel = label ? std::make_shared<const String>(std::move(*label)) : nullptr;
    ++labelsRegistered;
  }
  d.typeFlags |= rule.customBit;
}

// CHARSET=..., ENCODING=... and the bare QUOTED-PRINTABLE and BASE64:
// recorded, and true, when `parameter` is one of them. One jump on the
// first letter sends the type words past them.
bool ClassifyEncodingWord(vCard::vCardParseData& d, const char* parameter, const char* value) {
  switch (parameter[0]) {
    case 'C':
      if (!SameWord("CHARSET", parameter)) return false;
      d.charset = value == nullptr                ? kCharsetOther
                  : SameWord("UTF-8", value)      ? kCharsetUTF8
                  : SameWord("SHIFT_JIS", value)  ? kCharsetShiftJIS
                                                  : kCharsetOther;
      return true;
    case 'E':
      if (!SameWord("ENCODING", parameter)) return false;
      d.encoding = value == nullptr                       ? kEncodingUnknown
                   : SameWord("QUOTED-PRINTABLE", value)  ? kEncodingQuotedPrintable
                   : SameWord("BASE64", value)            ? kEncodingBase64
                                                          : kEncodingUnknown;
      return true;
    case 'Q':
      if (value != nullptr || !SameWord("QUOTED-PRINTABLE", parameter)) return false;
      d.encoding = kEncodingQuotedPrintable;
      return true;
    case 'B':
      if (value != nullptr || !SameWord("BASE64", parameter)) return false;
      d.encoding = kEncodingBase64;
      return true;
    default:
      return false;
  }
}

void ClassifyProperty(vCard::vCardParseData& d, const char* name, char** params) {
  d.charset = kCharsetNone;
  d.encoding = kEncodingNone;
  d.typeFlags = 0;
  d.customLabel.reset();
  d.charsetName.clear();
  d.value.clear();
  d.hasValue = false;
  d.propertyID = PropertyIDOf(name);
  // Kept for extension items and the account only: a copy per property
  // would cost the standard reading for nothing.
  if (vCard::sm_fLenientReading || d.account != nullptr) {
    d.propertyName = name != nullptr ? name : "";
  }

  if (params == nullptr) return;
  int labelsRegistered = 0;
  if (!vCard::sm_fLenientReading) {
    const TypeRule* const rule = TypeRuleOf(d.propertyID);
    for (char** pair = params; pair[0] != nullptr; pair += 2) {
      if (ClassifyEncodingWord(d, pair[0], pair[1])) continue;
      if (rule != nullptr) ClassifyTypeWord(d, *rule, pair[0], params, labelsRegistered);
    }
    return;
  }
  // A nested card's labels are registered when that card is read.
  const TypeRule* const rule = d.depth > 1 ? nullptr : TypeRuleOf(d.propertyID);
  for (char** pair = params; pair[0] != nullptr; pair += 2) {
    if (vcard_reader::ClassifyEncodingWordLenient(d, pair[0], pair[1])) continue;
    if (rule == nullptr) continue;
    ClassifyTypeWord(d, *rule, pair[0], params, labelsRegistered);
    if (pair[1] != nullptr && SameWord("TYPE", pair[0])) {
      // "TYPE=CELL,VOICE": the words as values, as newer exports write them.
      vcard_reader::ForEachTypeValue(pair[1], [&](const char* word) {
        ClassifyTypeWord(d, *rule, word, params, labelsRegistered);
      });
    }
  }
}

// --- Storing values ----------------------------------------------------------

// A text property's value: escapes undone first when the option asks for it
// (never for EMAIL, whose addresses carry backslashes literally), then
// charset and transfer encoding.
std::optional<String> DecodeText(vCard::vCardParseData& d, bool undoEscapes) {
  if (vCard::sm_fLenientReading) return vcard_reader::DecodeTextLenient(d, undoEscapes);
  if (undoEscapes && vCard::sm_fNonstandardEscChar) {
    const Bytes unescaped = DecodeEscapedCharString(d.value.data(), d.value.size());
    return vcard_reader::DecodeValue(reinterpret_cast<const char*>(unescaped.data()),
                                     unescaped.size(), d.charset, d.encoding);
  }
  return vcard_reader::DecodeValue(d.value.data(), d.value.size(), d.charset, d.encoding);
}

// Whether `text` holds a U+0000. Rare, and looked for in every element
// text: eight units at a time, through the test for a zero 16-bit lane.
bool HasNul(const String& text) {
  const char16_t* p = text.data();
  const char16_t* const end = p + text.size();
  constexpr std::uint64_t kOnes = 0x0001000100010001ULL;
  constexpr std::uint64_t kHighs = 0x8000800080008000ULL;
  for (; end - p >= 8; p += 8) {
    std::uint64_t a;
    std::uint64_t b;
    std::memcpy(&a, p, sizeof a);
    std::memcpy(&b, p + 4, sizeof b);
    if ((((a - kOnes) & ~a) | ((b - kOnes) & ~b)) & kHighs) return true;
  }
  for (; p != end; ++p) {
    if (*p == u'\0') return true;
  }
  return false;
}

// The text an element keeps of a decoded value: up to the first U+0000, as
// for the creators that take C strings, and empty when the value could not
// be decoded. Handing the element the decoded text spares a trip through
// UTF-8 and a value object made empty only to be replaced.
String ElementText(std::optional<String> text) {
  if (!text) return String();
  if (HasNul(*text)) text->resize(text->find(u'\0'));
  return std::move(*text);
}

// Removes the backslash of every "\<c>" pair, in one pass from the left.
void UnescapeInPlace(std::string& s, char c) {
  std::size_t out = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '\\' && i + 1 < s.size() && s[i + 1] == c) ++i;
    s[out++] = s[i];
  }
  s.resize(out);
}

void StoreTelephone(vCard::vCardParseData& d) {
  // Numbers are read as plain UTF-8 whatever the parameters say; only the
  // separators that the phones escape are unescaped. Lenient reading
  // decodes them like any text: some phones send them quoted-printable.
  if (d.value.find('\\') != std::string::npos) {
    UnescapeInPlace(d.value, ',');
    UnescapeInPlace(d.value, ';');
  }
  if (vCard::sm_fLenientReading) {
    // The decoded text becomes the number's value object as it is: four
    // numbers a card.
    d.pContact->NewTelephone(*vcard_reader::DecodeTextLenient(d, false), d.typeFlags, -1,
                             (d.typeFlags & kTelephoneTypeCustom) != 0 ? d.customLabel
                                                                       : nullptr);
    return;
  }
  if ((d.typeFlags & kTelephoneTypeCustom) != 0) {
    d.pContact->NewTelephone(d.value.c_str(), d.typeFlags, -1, d.customLabel);
  } else {
    d.pContact->NewTelephone(d.value.c_str(), d.typeFlags, -1);
  }
}

void StoreEmail(vCard::vCardParseData& d, std::optional<String> address) {
  d.pContact->NewEmail(ElementText(std::move(address)), d.typeFlags, -1,
                       (d.typeFlags & kEmailTypeCustom) != 0 ? d.customLabel : nullptr);
}

void StoreReadingName(vCard::vCardParseData& d) {
  CContact& contact = *d.pContact;
  const auto len = static_cast<int>(d.value.size());
  std::optional<String> lastName;
  if ((d.typeFlags & kReadingNameTypeIrmcN) != 0) {
    std::optional<String> firstName;
    vCard::ParseRName(d.value.data(), len, d.charset, d.encoding, &lastName, &firstName);
    contact.SetRFName(std::move(firstName));
  } else {
    vCard::ParseRName(d.value.data(), len, d.charset, d.encoding, &lastName);
  }
  contact.SetRLName(std::move(lastName));
}

void StoreSpeedDial(vCard::vCardParseData& d) {
  CContact& contact = *d.pContact;
  std::array<std::int32_t, CContact::kSpeedDialCount> slots = contact.SpeedDial();
  vCard::ParseSpeedDial(d.value.data(), static_cast<int>(d.value.size()), slots.data());
  for (int i = 0; i < CContact::kSpeedDialCount; ++i) {
    contact.SetSpeedDial(slots[static_cast<std::size_t>(i)], i);
  }
}

void StoreAssistant(vCard::vCardParseData& d) {
  std::optional<String> name;
  std::optional<String> number;
  vCard::ParseAssistant(d.value.data(), static_cast<int>(d.value.size()), d.charset,
                        d.encoding, &name, &number);
  d.pContact->setAssistant(std::move(name));
  d.pContact->setAssistantNumber(std::move(number));
}

// Lends the calling thread's value buffer to one Parse and takes it back,
// so that an address book of thousands of cards allocates it once; a
// buffer grown past kKeptValueBuffer by a large photo is let go.
class LentValueBuffer {
 public:
  explicit LentValueBuffer(std::string& value) : value_(value) {
    value_.swap(Spare());
    if (value_.capacity() < kInitialValueBuffer) value_.reserve(kInitialValueBuffer);
  }
  ~LentValueBuffer() {
    value_.clear();
    if (value_.capacity() <= kKeptValueBuffer) value_.swap(Spare());
  }
  LentValueBuffer(const LentValueBuffer&) = delete;
  LentValueBuffer& operator=(const LentValueBuffer&) = delete;

 private:
  static constexpr std::size_t kInitialValueBuffer = 256;  // most values fit
  static constexpr std::size_t kKeptValueBuffer = 64 * 1024;
  static std::string& Spare() {
    thread_local std::string spare;
    return spare;
  }
  std::string& value_;
};

// Lends the calling thread's held-value entries to one Parse, the same way:
// their buffers trade places with the value buffer as single-value
// properties are read, so without them each FN, N and photo would cost an
// allocation for the next value and a release with the card.
class LentHeldValues {
 public:
  explicit LentHeldValues(vCard::vCardParseData& d) : d_(d) { d_.held.swap(Spare()); }
  ~LentHeldValues() {
    for (auto& entry : d_.held) {
      if (entry.value.capacity() > kKeptHeldValue) entry.value = std::string();
    }
    d_.held.swap(Spare());
  }
  LentHeldValues(const LentHeldValues&) = delete;
  LentHeldValues& operator=(const LentHeldValues&) = delete;

 private:
  static constexpr std::size_t kKeptHeldValue = 64 * 1024;
  static std::vector<vCard::vCardParseData::HeldValue>& Spare() {
    thread_local std::vector<vCard::vCardParseData::HeldValue> spare;
    return spare;
  }
  vCard::vCardParseData& d_;
};

// Stores the value of the property that just ended and says where it went.
// Under lenient reading a value that a field cannot take is kept as an
// extension item instead of lost; the strict rules drop it, and say so.
vcard_reader::Outcome StoreValue(vCard::vCardParseData& d) {
  using vcard_reader::Outcome;
  using vcard_reader::Read;
  CContact& contact = *d.pContact;
  const bool lenient = vCard::sm_fLenientReading;
  const char* text = d.value.data();
  const auto len = static_cast<int>(d.value.size());
  const auto unless = [&](bool stored, const char* field, const char* reason) {
    if (stored) return Read(field);
    return lenient ? vcard_reader::KeepAsExtension(d) : Outcome{PropertyFate::kLost, reason};
  };
  // A text value: decoded, stored by `store`, accounted.
  const auto decoded = [&](const char* field, const auto& store, bool undoEscapes = true) {
    std::optional<String> value = DecodeText(d, undoEscapes);
    const bool valid = value.has_value();
    store(std::move(value));
    return unless(valid, field, "not valid in its charset");
  };
  switch (d.propertyID) {
    case kvCardPropertyVERSION:
      if (lenient && !StrNEqual(text, d.value.size(), "2.1", d.value.size(), true)) {
        return vcard_reader::KeepAsExtension(d);
      }
      // The check belongs to the data callback, and says so when it fails.
      if (!StrNEqual(text, d.value.size(), "2.1", d.value.size(), true)) {
        AssertionFailed("_strnicmp(data, \"2.1\", len) == 0", "vCardDataHandler", __FILE__,
                        __LINE__);
      }
      return {PropertyFate::kByDesign, "the version, checked"};
    case kvCardPropertyFN:
      return decoded("formattedName", [&](auto v) { contact.SetFName(std::move(v)); });
    case kvCardPropertyN:
      if (lenient) return vcard_reader::StoreNameLenient(d);
      vCard::ParseName(text, len, d.charset, d.encoding, &contact.Name());
      return Read("name");
    case kvCardPropertyNICKNAME:
      return decoded("nicknames", [&](auto v) {
        if (v) contact.NickNames().push_back(std::move(*v));
      });
    case kvCardPropertySOUND:
      if (lenient) return vcard_reader::StoreReadingNameLenient(d);
      StoreReadingName(d);
      return Read("readingLastName");
    case kvCardPropertyBDAY:
    case kvCardPropertyANNIVERSARY: {
      std::uint32_t dateType = 0;
      std::optional<DateComponents> date = vCard::ParseBirthdate(text, len, &dateType);
      const bool birthday = d.propertyID == kvCardPropertyBDAY;
      if (date && birthday) {
        contact.SetBirthDate(date);
        contact.SetBirthDateType(dateType);
      } else if (date) {
        contact.SetAnniversary_Date(date);
        contact.SetAnniversary_Luna(dateType);
      }
      return unless(date.has_value(), birthday ? "birthday" : "anniversary", "not a date");
    }
    case kvCardPropertyBLOOD: {
      std::uint32_t bloodType = 0;
      vCard::ParseBloodType(text, len, &bloodType);
      contact.SetBloodType(bloodType);
      return unless(bloodType != 0, "bloodType", "not a blood type");
    }
    case kvCardPropertyTEL:
      StoreTelephone(d);
      return Read("telephones");
    case kvCardPropertyEMAIL:
      return decoded("emails", [&](auto v) { StoreEmail(d, std::move(v)); }, false);
    case kvCardPropertyURL:
      return decoded("urls",
          [&](auto v) { contact.NewURL(ElementText(std::move(v)), d.typeFlags, -1); });
    case kvCardPropertyADR: {
      CPostalAddress* address = contact.NewAddress(
          nullptr, d.typeFlags, -1,
          (d.typeFlags & kAddressTypeCustom) != 0 ? d.customLabel : nullptr);
      if (lenient) return vcard_reader::StoreAddressLenient(d, *address);
      vCard::ParseAddress(text, len, d.charset, d.encoding, address);
      return Read("addresses");
    }
    case kvCardPropertyNOTE:
      return decoded("notes", [&](auto v) { contact.NewNotes(ElementText(std::move(v)), -1); });
    case kvCardPropertyTITLE:
      return decoded("title", [&](auto v) { contact.SetTitle(std::move(v)); });
    case kvCardPropertyROLE:
      return decoded("role", [&](auto v) { contact.SetRole(std::move(v)); });
    case kvCardPropertyORG: {
      COrganization* org = contact.NewOrg(nullptr, nullptr, nullptr, nullptr, d.typeFlags);
      if (lenient) return vcard_reader::StoreOrgLenient(d, *org);
      vCard::ParseOrg(text, len, d.charset, d.encoding, org);
      return Read("organizations");
    }
    case kvCardPropertyHOBBY:
      return decoded("hobby", [&](auto v) { contact.SetHobby(std::move(v)); });
    case kvCardPropertyPHOTO: {
      // A picture given by reference (TYPE=URL) is no BASE64 text.
      if (lenient && d.encoding != kEncodingBase64) return vcard_reader::KeepAsExtension(d);
      Bytes photo = lenient ? DecodeBase64Text(d.value)
                            : vCard::ParsePhoto(text, len, d.charset, d.encoding);
      const bool decoded = !photo.empty();
      if (decoded || !lenient) contact.SetPhotoData(std::move(photo));
      return unless(decoded, "photo", "no picture bytes in it");
    }
    case kvCardPropertyGN:
      return decoded("groupName", [&](auto v) { contact.SetGroupName(std::move(v)); });
    case kvCardPropertyGT: {
      std::uint32_t groupType = 0;
      vCard::ParseGroupType(text, len, &groupType);
      contact.SetGroupType(groupType);
      return unless(groupType != 0, "groupType", "not a group type");
    }
    case kvCardPropertyGROUP:
      vCard::ParseGroups(text, len, &contact.Groups());
      return Read("groups");
    case kvCardPropertyIM:
      return decoded("messengers",
          [&](auto v) { contact.NewMessengerID(ElementText(std::move(v)), d.typeFlags, -1); });
    case kvCardPropertySPEEDDIAL:
      if (lenient && d.value.size() >= 256) return vcard_reader::KeepAsExtension(d);
      StoreSpeedDial(d);
      return Read("speedDials");
    case kvCardPropertyACCOUNT:
      return decoded("account", [&](auto v) { contact.SetAccount(std::move(v)); });
    case kvCardPropertyACCOUNT_N:
      return decoded("accountName", [&](auto v) { contact.SetAccountName(std::move(v)); });
    case kvCardPropertyACCOUNT_TYPE:
      return decoded("accountType", [&](auto v) { contact.SetAccountType(std::move(v)); });
    case kvCardPropertyREV: {
      std::optional<DateComponents> revision = vCard::ParseLastRevision(text, len);
      if (revision) contact.SetLastRevision(revision);
      return unless(revision.has_value(), "lastRevision", "not read: no date-time reader");
    }
    case kvCardPropertyGDISPN:
      return decoded("groupDisplayName",
          [&](auto v) { contact.SetGroupDisplayName(std::move(v)); });
    case kvCardPropertySPOUSE:
      return decoded("spouse", [&](auto v) { contact.setSpouse(std::move(v)); });
    case kvCardPropertyCHILDREN:
      return decoded("children", [&](auto v) { contact.setChildren(std::move(v)); });
    case kvCardPropertyASSISTANT:
      if (lenient) return vcard_reader::StoreAssistantLenient(d);
      StoreAssistant(d);
      return Read("assistant");
    case kvCardPropertyUnknown:
      if (gVCARD_DEBUGMODE) Log("[%s] Warning: Unknown vCard property.", "vCardDataHandler");
      return unless(false, "", "unknown property");
    default:  // BEGIN, END, X-GENDER: recognised, nothing to keep
      return NothingToKeep();
  }
}

}  // namespace

void vCard::Parse(CContact* contact, const vObject* object) { Parse(contact, object, nullptr); }

void vCard::Parse(CContact* contact, const vObject* object, ReadAccount* account) {
  vCardParseData parseData(contact);
  parseData.account = account;
  const LentValueBuffer lent(parseData.value);
  const LentHeldValues lentHeld(parseData);
  const bool parsed = TokenizeObject(object, &parseData, &vCard::vCardPropHandler,
                                     &vCard::vCardDataHandler, sm_fLenientReading);
  // A failure inside a callback came first: the tokenizer may have gone on
  // (and even failed) only because the callbacks stopped storing.
  if (parseData.failure) std::rethrow_exception(parseData.failure);
  if (!parsed) throw kVersitParseError;
  if (parseData.begun && !parseData.ended) {
    // Cut short: what was read is not the whole card.
    if (account != nullptr) account->truncated = true;
    throw kVersitParseError;
  }
}

void vCard::vCardPropHandler(void* data, const char* name, char** params) noexcept {
  if (data == nullptr) return;
  auto& d = *static_cast<vCardParseData*>(data);
  if (d.failure) return;
  try {
    ClassifyProperty(d, name, params);
  } catch (...) {
    d.failure = std::current_exception();
  }
}

void vCard::vCardDataHandler(void* data, const char* value, int length) noexcept {
  if (data == nullptr) return;
  auto& d = *static_cast<vCardParseData*>(data);
  if (d.failure) return;
  try {
    if (value != nullptr) {
      PHONEPIM_ASSERT(d.pContact, "pData->pContact");
      if (length > 0) d.value.append(value, static_cast<std::size_t>(length));
      d.hasValue = true;
      return;
    }
    if (!vCard::sm_fLenientReading) {
      vcard_reader::Note(d, d.hasValue ? StoreValue(d) : vcard_reader::Empty());
    } else if (vcard_reader::BeginLenientStore(d)) {
      vcard_reader::EndLenientStore(d, StoreValue(d));
    }
    d.propertyID = kvCardPropertyNone;
    d.typeFlags = 0;
    d.value.clear();
    d.hasValue = false;
  } catch (...) {
    d.failure = std::current_exception();
  }
}

}  // namespace phonepim
