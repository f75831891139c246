// vCalendar::Parse and the two tokenizer callbacks: property and parameter
// classification, and storing each value into the calendar record.
#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "phonepim/datetime/CDateTimeNull.h"
#include "phonepim/datetime/TimeZones.h"
#include "phonepim/encoding/Encoding.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/platform/Log.h"
#include "phonepim/text/NSArrayCustom.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"
#include "vcalendar/vCalendarReaderInternal.h"
#include "vcalendar/vCalendarText.h"
#include "phonepim/encoding/Charset.h"
#include "versit/PropertyOutcome.h"
#include "versit/TokenizeObject.h"

namespace phonepim {

namespace {

using Data = vCalendar::vCalendarParseData;
using vcalendar_text::EqualsIgnoringCase;
using vcalendar_text::LeadingInt;
using vcalendar_text::SameWord;
using vcalendar_text::LenientNames;

struct PropertyName {
  std::string_view name;
  int id;
};

constexpr PropertyName kPropertyNames[] = {
    {"VERSION", kvCalPropertyVERSION},       {"TZ", kvCalPropertyTZ},
    {"DAYLIGHT", kvCalPropertyDAYLIGHT},     {"BEGIN", kvCalPropertyBEGIN},
    {"CATEGORIES", kvCalPropertyCATEGORIES}, {"CLASS", kvCalPropertyCLASS},
    {"AALARM", kvCalPropertyAALARM},         {"DTCREATE", kvCalPropertyDTCREATE},
    {"LAST-MODIFIED", kvCalPropertyLAST_MODIFIED}, {"DTSTART", kvCalPropertyDTSTART},
    {"DTEND", kvCalPropertyDTEND},           {"DUE", kvCalPropertyDUE},
    {"COMPLETED", kvCalPropertyCOMPLETED},   {"SUMMARY", kvCalPropertySUMMARY},
    {"DESCRIPTION", kvCalPropertyDESCRIPTION}, {"LOCATION", kvCalPropertyLOCATION},
    {"RRULE", kvCalPropertyRRULE},           {"XRULE", kvCalPropertyXRULE},
    {"PRIORITY", kvCalPropertyPRIORITY},     {"STATUS", kvCalPropertySTATUS},
    {"ATTENDEE", kvCalPropertyATTENDEE},     {"X-ACCOUNT", kvCalPropertyACCOUNT},
    {"X-ACCOUNT-N", kvCalPropertyACCOUNT_N}, {"X-ACCOUNT-TYPE", kvCalPropertyACCOUNT_TYPE},
    {"X-TYPE", kvCalPropertyX_TYPE},         {"X-ALLDAY", kvCalPropertyX_ALLDAY},
    {"UID", kvCalPropertyUID},               {"END", kvCalPropertyEND},
};

constexpr std::uint64_t Bit(int id) { return std::uint64_t{1} << id; }

// Properties of one value per entry: under lenient reading a second one is
// kept as an extension item instead of replacing the first.
constexpr std::uint64_t kSingleValued =
    Bit(kvCalPropertyCLASS) | Bit(kvCalPropertyDTSTART) | Bit(kvCalPropertyDTEND) |
    Bit(kvCalPropertyDUE) | Bit(kvCalPropertySUMMARY) | Bit(kvCalPropertyDESCRIPTION) |
    Bit(kvCalPropertyLOCATION) | Bit(kvCalPropertyPRIORITY) | Bit(kvCalPropertySTATUS) |
    Bit(kvCalPropertyX_ALLDAY);

// Properties the record has a field for but the writer has no line for:
// under lenient reading each one is also kept as an extension item, which
// the writer writes back, so that a phone's entry read and written again
// keeps them (TZ and DAYLIGHT come once per year of daylight saving).
constexpr std::uint64_t kKeptAsWell =
    Bit(kvCalPropertyTZ) | Bit(kvCalPropertyDAYLIGHT) | Bit(kvCalPropertyDTCREATE) |
    Bit(kvCalPropertyLAST_MODIFIED) | Bit(kvCalPropertyCOMPLETED) | Bit(kvCalPropertyXRULE) |
    Bit(kvCalPropertyACCOUNT) | Bit(kvCalPropertyACCOUNT_N) | Bit(kvCalPropertyACCOUNT_TYPE) |
    Bit(kvCalPropertyUID) | Bit(kvCalPropertyX_TYPE);

bool ClassifyEncodingWord(Data& d, const char* name, const char* value, bool anyCase) {
  const int qp = vCalendar::sm_fUseCarrageReturn ? kEncodingQuotedPrintableCR
                                                 : kEncodingQuotedPrintable;
  if (SameWord("CHARSET", name, anyCase)) {
    if (value == nullptr) return true;
    if (anyCase) d.charsetWord = value;
    if (SameWord("UTF-8", value, anyCase)) {
      d.charset = kCharsetUTF8;
    } else if (SameWord("SHIFT_JIS", value, anyCase)) {
      d.charset = kCharsetShiftJIS;
    }
    return true;
  }
  if (SameWord("ENCODING", name, anyCase)) {
    if (value == nullptr) return true;
    d.encoding = SameWord("QUOTED-PRINTABLE", value, anyCase) ? qp
                 : SameWord("BASE64", value, anyCase)         ? kEncodingBase64
                                                              : kEncodingUnknown;
    return true;
  }
  if (value == nullptr && SameWord("QUOTED-PRINTABLE", name, anyCase)) {
    d.encoding = qp;
    return true;
  }
  if (value == nullptr && SameWord("BASE64", name, anyCase)) {
    d.encoding = kEncodingBase64;
    return true;
  }
  return false;
}

// What a parameter kept in an extension item's name may hold so that it
// reads back as it was written: printable ASCII and spaces, without the
// separators ';' and ':', and without a backslash, which escaping would double.
bool WritableInParameter(std::string_view text) {
  for (const char c : text) {
    if (c < ' ' || c > '~' || c == ';' || c == ':' || c == '\\') return false;
  }
  return true;
}

void ClassifyProperty(Data& d, const char* name, char** params) {
  const bool lenient = LenientNames();
  d.propertyID = vCalendarPropertyIDOf(name, lenient);
  d.charset = 0;
  d.charsetWord.clear();
  d.encoding = 0;
  d.reminderParams = 0;
  d.attendeeRole = 0;
  d.attendeeStatus = 0;
  d.hasValue = false;
  d.categoriesValue.clear();
  if (lenient) d.itemName = name != nullptr ? name : "";
  if (d.account != nullptr) {
    d.propertyName = name != nullptr ? name : "";
    d.decodeNote.clear();
  }
  if (params != nullptr) {
    for (char** pair = params; pair[0] != nullptr; pair += 2) {
      if (ClassifyEncodingWord(d, pair[0], pair[1], lenient) || !lenient) continue;
      // Empty names are what the tokenizer refuses, and a parameter that
      // would not read back as written (a value the tokenizer took across a
      // broken line, say) would change on every pass: neither is kept.
      if (pair[0][0] == '\0' || !WritableInParameter(pair[0]) ||
          (pair[1] != nullptr && !WritableInParameter(pair[1]))) {
        continue;
      }
      d.itemName.append(";").append(pair[0]);
      if (pair[1] != nullptr && pair[1][0] != '\0') d.itemName.append("=").append(pair[1]);
    }
  }
  if (d.propertyID == kvCalPropertyAALARM) {
    d.reminderParams = vCalendar::ParseAudioReminderParams(params);
  } else if (d.propertyID == kvCalPropertyATTENDEE) {
    vCalendar::ParseAttendeesParams(params, &d.attendeeRole, &d.attendeeStatus);
  }
}

// The value as text in its charset and encoding. Under lenient reading any
// charset ICU knows is decoded, and a value whose bytes do not fit the
// charset it claims is kept (as Latin-1 or with replacement characters),
// never lost.
std::optional<String> DecodeText(Data& d, std::string_view value) {
  if (!LenientNames()) {
    return Decode(value.data(), static_cast<int>(value.size()), d.charset, d.encoding);
  }
  CharsetText decoded = DecodeCharset(value, d.charsetWord, d.encoding);
  if (d.account != nullptr) d.decodeNote = CharsetNote(decoded, d.charsetWord);
  return std::move(decoded.text);
}

std::optional<String> DecodeEscapedText(Data& d, std::string_view value) {
  if (!vCard::sm_fNonstandardEscChar) return DecodeText(d, value);
  const Bytes unescaped = DecodeEscapedCharString(value.data(), value.size());
  return DecodeText(
      d, std::string_view(reinterpret_cast<const char*>(unescaped.data()), unescaped.size()));
}

// Summary, description and location keep the phone's line breaks as "\n".
std::optional<String> WithNewlines(std::optional<String> text) {
  if (!text) return text;
  String& s = *text;
  std::size_t out = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == u'\r' && i + 1 < s.size() && s[i + 1] == u'\n') continue;
    s[out++] = s[i];
  }
  s.resize(out);
  return text;
}

// A name is UTF-8 when it can be, so that one written back reads the same.
String ItemName(const Data& d) {
  std::optional<String> name = StringFromUTF8(d.itemName);
  return name ? std::move(*name) : StringFromASCII(d.itemName);
}

PropertyOutcome KeepAsItem(Data& d, std::string_view value) {
  if (d.itemName.empty()) return {PropertyFate::kLost, "no name to keep it under"};
  const std::optional<String> text = DecodeText(d, value);
  d.pCalendar->NewXItem(ItemName(d), text.value_or(String()), 0, -1);
  return {PropertyFate::kExtension, nullptr};
}

// The value went into `field`, or, when it could not: under lenient reading
// into an extension item (unless one holds it already), else nowhere.
PropertyOutcome ReadOr(Data& d, std::string_view v, bool stored, const char* field,
                       const char* reason, bool keptAlready = false) {
  if (stored) return ReadInto(field);
  if (!LenientNames()) return {PropertyFate::kLost, reason};
  return keptAlready ? PropertyOutcome{PropertyFate::kExtension, nullptr} : KeepAsItem(d, v);
}

// "1.0" compared over the value's length, in any case.
bool IsVersion10(std::string_view value) {
  constexpr std::string_view kVersion = "1.0";
  for (std::size_t i = 0; i < value.size(); ++i) {
    const char expected = i < kVersion.size() ? kVersion[i] : '\0';
    if (std::tolower(static_cast<unsigned char>(value[i])) != expected) return false;
    if (expected == '\0') break;
  }
  return true;
}

std::optional<CDateTimeNull> NullableDate(std::string_view value) {
  const std::optional<CDateTime> date = vCalendar::ParseDateTime(value);
  if (!date) return std::nullopt;
  return CDateTimeNull(*date);
}

// Whether some word of a CATEGORIES value is none the table knows.
bool HasUnknownCategory(std::string_view value) {
  for (std::size_t i = 0; i <= value.size();) {
    const std::string_view word = vcalendar_text::Trim(vcalendar_text::Field(value, i));
    if (!word.empty() && vCalendar::ParseCategory(word) == 0) return true;
  }
  return false;
}

PropertyOutcome StoreCategories(Data& d, std::string_view value) {
  CCalendar& cal = *d.pCalendar;
  d.categoriesValue.assign(value);
  if (!LenientNames()) {
    cal.categories = vCalendar::ParseCategories(value);
    if (d.account != nullptr && HasUnknownCategory(value)) {
      return {PropertyFate::kLost, "a word with no category"};
    }
    return ReadInto("categories");
  }
  // Lenient: known words OR into the field (the first such value replaces
  // what BEGIN set), and the words the table does not know are kept
  // together as a CATEGORIES extension item.
  std::uint32_t known = 0;
  std::string unknown;
  for (std::size_t i = 0; i <= value.size();) {
    const std::string_view word = vcalendar_text::Trim(vcalendar_text::Field(value, i));
    const std::uint32_t bit = vCalendar::ParseCategory(word);
    if (bit != 0) {
      known |= bit;
    } else if (!word.empty()) {
      if (!unknown.empty()) unknown += ';';
      unknown += word;
    }
  }
  const bool read = known != 0 || value.empty();
  if (read) {
    cal.categories = d.categoriesRead ? cal.categories | known : vCalendar::ParseCategories(value);
    d.categoriesRead = true;
  }
  if (unknown.empty()) return ReadInto("categories");
  const PropertyOutcome kept = KeepAsItem(d, unknown);
  return read ? ReadInto("categories, the other words as an extension item") : kept;
}

PropertyOutcome StoreRule(Data& d, std::string_view value, bool exceptRule) {
  CCalendar& cal = *d.pCalendar;
  auto rule = std::make_unique<CRecurrence>();
  std::string decoded;
  if (d.encoding != 0) {
    // A rule is ASCII; one sent quoted-printable is read through its text.
    decoded = UTF8FromString(DecodeText(d, value).value_or(String())).value_or(std::string());
    value = decoded;
  }
  const bool held = vCalendar::ParseRecurrence(value, rule.get());
  if (!held && LenientNames()) {
    // The model has no place for this rule: kept as written (an XRULE is
    // kept so whatever it holds, see kKeptAsWell).
    if (!exceptRule) {
      cal.NewXItem(ItemName(d), StringFromUTF8(value).value_or(StringFromASCII(value)), 0, -1);
    }
    return {PropertyFate::kExtension, nullptr};
  }
  if (exceptRule) {
    cal.ExceptRule = std::move(*rule);
  } else {
    cal.addRecurrence(std::move(rule));
  }
  return held ? ReadInto(exceptRule ? "exceptRule" : "recurrence")
              : PropertyOutcome{PropertyFate::kLost, "a rule the recurrence model cannot hold"};
}

// Lenient reading keeps a date it cannot read as an item, and the next
// one of its name may still fill the field.
PropertyOutcome StoreDate(Data& d, std::string_view v, std::optional<CalendarDate>& field,
                          bool& isUTC, const char* name) {
  std::optional<CalendarDate> date = vCalendar::ParseDateTimeComponent(v, &isUTC);
  if (!date && LenientNames()) {
    d.seen &= ~Bit(d.propertyID);
    return KeepAsItem(d, v);
  }
  const bool read = date.has_value();
  field = std::move(date);
  return ReadOr(d, v, read, name, "not a date");
}

// A decoded text into its field. Only the standard reading can fail to
// decode, and it drops the value.
PropertyOutcome StoreText(std::optional<String> text, std::optional<String>& field,
                          const char* name) {
  const bool read = text.has_value();
  field = std::move(text);
  return read ? ReadInto(name) : PropertyOutcome{PropertyFate::kLost, "not valid in its charset"};
}

// Stores one value and says where it went.
PropertyOutcome StoreValue(Data& d, std::string_view v) {
  CCalendar& cal = *d.pCalendar;
  const int id = d.propertyID;
  bool kept = false;  // lenient: an extension item holds the value as well
  if (LenientNames() && id > 0) {
    const std::uint64_t bit = Bit(id);
    if ((kSingleValued & bit) != 0 && (d.seen & bit) != 0) return KeepAsItem(d, v);
    d.seen |= bit;
    if ((kKeptAsWell & bit) != 0 &&
        !(id == kvCalPropertyX_TYPE && vCalendar::sm_fSupportSetHoliday)) {
      kept = KeepAsItem(d, v).fate == PropertyFate::kExtension;
    }
  }
  const auto date = [&](std::optional<CDateTimeNull>& field, const char* name) {
    field = NullableDate(v);
    return ReadOr(d, v, field.has_value(), name, "not a date", kept);
  };
  switch (id) {
    case kvCalPropertyVERSION:
      PHONEPIM_ASSERT(IsVersion10(v), "_strnicmp(data, \"1.0\", len) == 0");
      return {PropertyFate::kByDesign, "the version, checked"};
    case kvCalPropertyTZ:
      cal.TimeZoneInfo = vCalendar::ParseTimeZone(v);
      return ReadInto("timeZone");
    case kvCalPropertyDAYLIGHT:
      if (!cal.TimeZoneInfo) cal.TimeZoneInfo.emplace();
      vCalendar::ParseDaylight(v, d.charset, d.encoding, &*cal.TimeZoneInfo);
      return ReadInto("timeZone");
    case kvCalPropertyBEGIN: {
      const bool anyCase = LenientNames();
      auto is = [&](std::string_view w) { return anyCase ? EqualsIgnoringCase(v, w) : v == w; };
      cal.categories = is("VTODO") ? 64 : is("VEVENT") ? 1 : 0;
      return cal.categories != 0 ? ReadInto("kind") : NothingToKeep();
    }
    case kvCalPropertyCATEGORIES:
      return StoreCategories(d, v);
    case kvCalPropertyCLASS:
      cal.classification = vCalendar::ParseClassification(v);
      return ReadInto("classification");
    case kvCalPropertyAALARM: {
      CReminder* reminder = cal.addAlarm(
          std::make_unique<CReminder>(vCalendar::ParseReminder(v, &cal.isdtRecurrenceisUTC)));
      reminder->SetType(d.reminderParams & 0xF0);
      reminder->SetValueType(d.reminderParams & 0x0F);
      return ReadInto("alarms");
    }
    case kvCalPropertyDTCREATE:
      return date(cal.dtCreate, "created");
    case kvCalPropertyCOMPLETED:
      return date(cal.dtCompleted, "completed");
    case kvCalPropertyLAST_MODIFIED:
      cal.LMT = StringFromUTF8(v);
      cal.dtModifiedComp = vCalendar::ParseDateTimeComponent(v, &cal.isdtModifiedisUTC);
      return ReadOr(d, v, cal.LMT.has_value(), "lastModified", "not UTF-8", kept);
    case kvCalPropertyDTSTART:
      return StoreDate(d, v, cal.dtStartComp, cal.isdtStartisUTC, "start");
    case kvCalPropertyDTEND:
      return StoreDate(d, v, cal.dtEndComp, cal.isdtEndisUTC, "end");
    case kvCalPropertyDUE:
      return StoreDate(d, v, cal.dtDueComp, cal.isdtDueisUTC, "due");
    case kvCalPropertySUMMARY:
      return StoreText(WithNewlines(DecodeEscapedText(d, v)), cal.strSummary, "summary");
    case kvCalPropertyDESCRIPTION:
      return StoreText(WithNewlines(DecodeEscapedText(d, v)), cal.strDescription, "description");
    case kvCalPropertyLOCATION:
      return StoreText(WithNewlines(DecodeEscapedText(d, v)), cal.strLocation, "location");
    case kvCalPropertyACCOUNT:
      return StoreText(DecodeEscapedText(d, v), cal.Account, "account");
    case kvCalPropertyACCOUNT_N:
      return StoreText(DecodeEscapedText(d, v), cal.AccountName, "accountName");
    case kvCalPropertyACCOUNT_TYPE:
      return StoreText(DecodeEscapedText(d, v), cal.AccountType, "accountType");
    case kvCalPropertyRRULE:
      return StoreRule(d, v, false);
    case kvCalPropertyXRULE:
      return StoreRule(d, v, true);
    case kvCalPropertyPRIORITY:
      cal.priority = static_cast<std::int32_t>(LeadingInt(v));
      return ReadInto("priority");
    case kvCalPropertySTATUS:
      cal.status = vCalendar::ParseStatus(v);
      return ReadInto("status");
    case kvCalPropertyATTENDEE: {
      std::optional<String> name = DecodeText(d, v);
      const bool read = name.has_value();
      cal.NewAttendee(std::move(name).value_or(String()), d.attendeeRole, d.attendeeStatus, -1);
      return read ? ReadInto("attendees")
                  : PropertyOutcome{PropertyFate::kLost, "not valid in its charset"};
    }
    case kvCalPropertyX_TYPE:
      cal.bIsHoliday = EqualsIgnoringCase(v, "HOLIDAY");
      return ReadInto("holiday");
    case kvCalPropertyX_ALLDAY:
      cal.bIsAllDay = EqualsIgnoringCase(v, "SET");
      return ReadInto("allDay");
    case kvCalPropertyUID:
      cal.UID = StringFromUTF8(v);
      return ReadOr(d, v, cal.UID.has_value(), "uid", "not UTF-8", kept);
    case kvCalPropertyEND:
      return NothingToKeep();
    default:
      if (LenientNames()) return KeepAsItem(d, v);
      if (gVCARD_DEBUGMODE) {
        Log("[%s] Warning: Unknown vCalendar property.", "vCalendarDataHandler");
      }
      return {PropertyFate::kLost, "unknown property"};
  }
}

// Adds the current property's outcome to the account. A value that replaces
// the one a single-value field held makes the earlier one lost.
void Account(Data& d, PropertyOutcome outcome) {
  ReadAccount& account = *d.account;
  if (outcome.fate == PropertyFate::kRead && d.propertyID > 0 &&
      (kSingleValued & Bit(d.propertyID)) != 0) {
    std::size_t& held = d.heldEntry[static_cast<std::size_t>(d.propertyID)];
    if (held != 0) {
      account.properties[held - 1].fate = PropertyFate::kLost;
      account.properties[held - 1].where = "replaced by a later " + d.propertyName;
    }
    held = account.properties.size() + 1;
  }
  account.properties.push_back(
      {d.propertyName, outcome.fate,
       outcome.where != nullptr ? outcome.where : "extension item " + d.itemName, d.decodeNote});
}

void EndProperty(Data& d) {
  CCalendar& cal = *d.pCalendar;
  if (d.propertyID == kvCalPropertyCATEGORIES && cal.categories == 0 && !LenientNames()) {
    cal.categories = vCalendar::ParseCategories(d.categoriesValue);
  }
  if (!d.hasValue) {
    // An empty value of a property the record has no field for is kept too.
    const PropertyOutcome outcome =
        d.propertyID == kvCalPropertyUnknown && LenientNames() ? KeepAsItem(d, {}) : NoValue();
    if (d.account != nullptr) Account(d, outcome);
  }
  d.propertyID = kvCalPropertyNone;
  d.reminderParams = 0;
}

// A weekly rule's weekdays moved one day on (+1) or back (-1).
void ShiftWeekdays(WeeklyData& weekly, int by) {
  Array shifted;
  for (int i = 0; i < static_cast<int>(weekly.ArrayWeekday().size()); ++i) {
    AddSorted(shifted, (intValueAtIndex(weekly.ArrayWeekday(), i) + 7 + by) % 7);
  }
  weekly.ArrayWeekday() = std::move(shifted);
}

// Phones that keep their rules in their own zone name the weekdays of that
// zone: a start that falls on another day in GMT takes its weekdays along.
void CorrectRecurrence(CCalendar& cal) {
  if (!vCalendar::sm_fTimezone || cal.GetRecurrencecount() == 0 || !cal.TimeZoneInfo ||
      !cal.TimeZoneInfo->Bias || !cal.dtStartComp ||
      cal.TimeZoneInfo->TimeZone() != DefaultTimeZoneName()) {
    return;
  }
  const std::int64_t bias = cal.TimeZoneInfo->Bias->GetTotalSeconds();
  if (bias == 0) return;
  const CalendarDate start{cal.dtStartComp->date, DefaultTimeZoneName()};
  for (int i = 0; i < cal.GetRecurrencecount(); ++i) {
    RecurrenceData* rule = cal.GetRecurrence(i)->GetRecurrenceData();
    if (auto* weekly = dynamic_cast<WeeklyData*>(rule)) {
      ShiftWeekdays(*weekly, bias < 0 ? 1 : -1);
    } else if (auto* byPos = dynamic_cast<MonthlyByPosData*>(rule)) {
      byPos->ArrayWeekday() = Array{Value(static_cast<int>(start.dayOfWeek()))};
      byPos->ArrayWeekPos() = Array{Value(static_cast<int>((start.dayOfMonth() - 1) / 7 + 1))};
    }
  }
}

// Phones write an all-day entry's end as its last day (the writer does the
// same); read leniently, it becomes the day after again, so that an entry
// read and written keeps its end.
void CorrectAllDayEnd(CCalendar& cal) {
  if (!LenientNames() || !cal.bIsAllDay || !cal.dtEndComp || cal.isdtEndisUTC) return;
  cal.dtEndComp->date += 86400;
}

}  // namespace

int vCalendarPropertyIDOf(const char* name, bool anyCase) {
  if (name == nullptr) return kvCalPropertyUnknown;
  // The names by first letter: a name is compared with at most five.
  static constexpr auto kByLetter = [] {
    std::array<std::array<std::int8_t, 6>, 26> table{};
    for (auto& row : table) row.fill(-1);
    for (std::size_t i = 0; i < std::size(kPropertyNames); ++i) {
      auto& row = table[static_cast<std::size_t>(kPropertyNames[i].name[0] - 'A')];
      std::size_t slot = 0;
      while (row[slot] != -1) ++slot;
      row[slot] = static_cast<std::int8_t>(i);
    }
    return table;
  }();
  const char first = anyCase ? vcalendar_text::AsciiUpper(name[0]) : name[0];
  if (first < 'A' || first > 'Z') return kvCalPropertyUnknown;
  for (const std::int8_t i : kByLetter[static_cast<std::size_t>(first - 'A')]) {
    if (i < 0) break;
    const PropertyName& entry = kPropertyNames[static_cast<std::size_t>(i)];
    if (SameWord(entry.name, name, anyCase)) return entry.id;
  }
  return kvCalPropertyUnknown;
}

void vCalendar::Parse(CCalendar* calendar, const vObject* object) {
  Parse(calendar, object, nullptr);
}

void vCalendar::Parse(CCalendar* calendar, const vObject* object, ReadAccount* account) {
  vCalendarParseData parseData(calendar);
  parseData.account = account;
  if (calendar != nullptr && object != nullptr) {
    calendar->mVcalID = static_cast<std::uint16_t>(object->objectID());
  }
  const bool parsed = TokenizeObject(object, &parseData, &vCalendar::vCalendarPropHandler,
                                     &vCalendar::vCalendarDataHandler, LenientNames());
  // A failure inside a callback came first: the tokenizer may have gone on
  // (and even failed) only because the callbacks stopped storing.
  if (parseData.failure) std::rethrow_exception(parseData.failure);
  if (!parsed) {
    if (gVCARD_DEBUGMODE) Log("Error parsing vCalendar");
    throw kVersitParseError;
  }
  if (calendar != nullptr) {
    CorrectRecurrence(*calendar);
    CorrectAllDayEnd(*calendar);
  }
}

void vCalendar::vCalendarPropHandler(void* data, const char* name, char** params) noexcept {
  if (data == nullptr) return;
  auto& d = *static_cast<vCalendarParseData*>(data);
  if (d.failure) return;
  try {
    ClassifyProperty(d, name, params);
  } catch (...) {
    d.failure = std::current_exception();
  }
}

void vCalendar::vCalendarDataHandler(void* data, const char* value, int length) noexcept {
  if (data == nullptr) return;
  auto& d = *static_cast<vCalendarParseData*>(data);
  if (d.failure) return;
  try {
    PHONEPIM_ASSERT(d.pCalendar, "pData->pCalendar");
    if (value == nullptr) {
      EndProperty(d);
      return;
    }
    d.hasValue = true;
    const PropertyOutcome outcome =
        StoreValue(d, std::string_view(value, static_cast<std::size_t>(std::max(length, 0))));
    if (d.account != nullptr) Account(d, outcome);
  } catch (...) {
    d.failure = std::current_exception();
  }
}

}  // namespace phonepim
