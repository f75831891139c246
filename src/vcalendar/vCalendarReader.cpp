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
std::optional<String> DecodeText(const Data& d, std::string_view value) {
  if (LenientNames()) return DecodeCharset(value, d.charsetWord, d.encoding).text;
  std::optional<String> text =
      Decode(value.data(), static_cast<int>(value.size()), d.charset, d.encoding);
  if (!text && LenientNames()) text = StringFromASCII(value);
  return text;
}

std::optional<String> DecodeEscapedText(const Data& d, std::string_view value) {
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

void KeepAsItem(Data& d, std::string_view value) {
  if (d.itemName.empty()) return;  // no name to write it back under
  const std::optional<String> text = DecodeText(d, value);
  d.pCalendar->NewXItem(ItemName(d), text.value_or(String()), 0, -1);
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

void StoreCategories(Data& d, std::string_view value) {
  CCalendar& cal = *d.pCalendar;
  d.categoriesValue.assign(value);
  if (!LenientNames()) {
    cal.categories = vCalendar::ParseCategories(value);
    return;
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
  if (known != 0 || value.empty()) {
    cal.categories = d.categoriesRead ? cal.categories | known : vCalendar::ParseCategories(value);
    d.categoriesRead = true;
  }
  if (!unknown.empty()) KeepAsItem(d, unknown);
}

void StoreRule(Data& d, std::string_view value, bool exceptRule) {
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
    if (exceptRule) return;
    cal.NewXItem(ItemName(d), StringFromUTF8(value).value_or(StringFromASCII(value)),
                 0, -1);
    return;
  }
  if (exceptRule) {
    cal.ExceptRule = std::move(*rule);
  } else {
    cal.addRecurrence(std::move(rule));
  }
}

// Lenient reading keeps a date it cannot read as an item, and the next
// one of its name may still fill the field.
void StoreDate(Data& d, std::string_view v, std::optional<CalendarDate>& field, bool& isUTC) {
  std::optional<CalendarDate> date = vCalendar::ParseDateTimeComponent(v, &isUTC);
  if (!date && LenientNames()) {
    d.seen &= ~Bit(d.propertyID);
    return KeepAsItem(d, v);
  }
  field = std::move(date);
}

void StoreValue(Data& d, std::string_view v) {
  CCalendar& cal = *d.pCalendar;
  const int id = d.propertyID;
  if (LenientNames() && id > 0) {
    const std::uint64_t bit = Bit(id);
    if ((kSingleValued & bit) != 0 && (d.seen & bit) != 0) return KeepAsItem(d, v);
    d.seen |= bit;
    if ((kKeptAsWell & bit) != 0 &&
        !(id == kvCalPropertyX_TYPE && vCalendar::sm_fSupportSetHoliday)) {
      KeepAsItem(d, v);
    }
  }
  switch (id) {
    case kvCalPropertyVERSION:
      PHONEPIM_ASSERT(IsVersion10(v), "_strnicmp(data, \"1.0\", len) == 0");
      break;
    case kvCalPropertyTZ:
      cal.TimeZoneInfo = vCalendar::ParseTimeZone(v);
      break;
    case kvCalPropertyDAYLIGHT:
      if (!cal.TimeZoneInfo) cal.TimeZoneInfo.emplace();
      vCalendar::ParseDaylight(v, d.charset, d.encoding, &*cal.TimeZoneInfo);
      break;
    case kvCalPropertyBEGIN: {
      const bool anyCase = LenientNames();
      auto is = [&](std::string_view w) { return anyCase ? EqualsIgnoringCase(v, w) : v == w; };
      cal.categories = is("VTODO") ? 64 : is("VEVENT") ? 1 : 0;
      break;
    }
    case kvCalPropertyCATEGORIES:
      StoreCategories(d, v);
      break;
    case kvCalPropertyCLASS:
      cal.classification = vCalendar::ParseClassification(v);
      break;
    case kvCalPropertyAALARM: {
      CReminder* reminder = cal.addAlarm(
          std::make_unique<CReminder>(vCalendar::ParseReminder(v, &cal.isdtRecurrenceisUTC)));
      reminder->SetType(d.reminderParams & 0xF0);
      reminder->SetValueType(d.reminderParams & 0x0F);
      break;
    }
    case kvCalPropertyDTCREATE:
      cal.dtCreate = NullableDate(v);
      break;
    case kvCalPropertyCOMPLETED:
      cal.dtCompleted = NullableDate(v);
      break;
    case kvCalPropertyLAST_MODIFIED:
      cal.LMT = StringFromUTF8(v);
      cal.dtModifiedComp = vCalendar::ParseDateTimeComponent(v, &cal.isdtModifiedisUTC);
      break;
    case kvCalPropertyDTSTART:
      StoreDate(d, v, cal.dtStartComp, cal.isdtStartisUTC);
      break;
    case kvCalPropertyDTEND:
      StoreDate(d, v, cal.dtEndComp, cal.isdtEndisUTC);
      break;
    case kvCalPropertyDUE:
      StoreDate(d, v, cal.dtDueComp, cal.isdtDueisUTC);
      break;
    case kvCalPropertySUMMARY:
      cal.strSummary = WithNewlines(DecodeEscapedText(d, v));
      break;
    case kvCalPropertyDESCRIPTION:
      cal.strDescription = WithNewlines(DecodeEscapedText(d, v));
      break;
    case kvCalPropertyLOCATION:
      cal.strLocation = WithNewlines(DecodeEscapedText(d, v));
      break;
    case kvCalPropertyACCOUNT:
      cal.Account = DecodeEscapedText(d, v);
      break;
    case kvCalPropertyACCOUNT_N:
      cal.AccountName = DecodeEscapedText(d, v);
      break;
    case kvCalPropertyACCOUNT_TYPE:
      cal.AccountType = DecodeEscapedText(d, v);
      break;
    case kvCalPropertyRRULE:
      StoreRule(d, v, false);
      break;
    case kvCalPropertyXRULE:
      StoreRule(d, v, true);
      break;
    case kvCalPropertyPRIORITY:
      cal.priority = static_cast<std::int32_t>(LeadingInt(v));
      break;
    case kvCalPropertySTATUS:
      cal.status = vCalendar::ParseStatus(v);
      break;
    case kvCalPropertyATTENDEE:
      cal.NewAttendee(DecodeText(d, v).value_or(String()), d.attendeeRole, d.attendeeStatus, -1);
      break;
    case kvCalPropertyX_TYPE:
      cal.bIsHoliday = EqualsIgnoringCase(v, "HOLIDAY");
      break;
    case kvCalPropertyX_ALLDAY:
      cal.bIsAllDay = EqualsIgnoringCase(v, "SET");
      break;
    case kvCalPropertyUID:
      cal.UID = StringFromUTF8(v);
      break;
    case kvCalPropertyEND:
      break;
    default:
      if (LenientNames()) {
        KeepAsItem(d, v);
      } else if (gVCARD_DEBUGMODE) {
        Log("[%s] Warning: Unknown vCalendar property.", "vCalendarDataHandler");
      }
      break;
  }
}

void EndProperty(Data& d) {
  CCalendar& cal = *d.pCalendar;
  if (d.propertyID == kvCalPropertyCATEGORIES && cal.categories == 0 && !LenientNames()) {
    cal.categories = vCalendar::ParseCategories(d.categoriesValue);
  }
  // An empty value of a property the record has no field for is kept too.
  if (!d.hasValue && d.propertyID == kvCalPropertyUnknown && LenientNames()) KeepAsItem(d, {});
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
  vCalendarParseData parseData(calendar);
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
    StoreValue(d, std::string_view(value, static_cast<std::size_t>(std::max(length, 0))));
  } catch (...) {
    d.failure = std::current_exception();
  }
}

}  // namespace phonepim
