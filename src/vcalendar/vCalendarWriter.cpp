// vCalendar::Generate and the line writers.
#include <cstdio>
#include <iterator>
#include <string>
#include <string_view>

#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/datetime/TimeZones.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/vcalendar/RecurrenceRule.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "phonepim/versit/vObject.h"
#include "vcalendar/vCalendarText.h"
#include "vcard/vCardWriterText.h"

namespace phonepim {
namespace {

// Every line writer serves two outputs: the model's UTF-16 text, which the
// public line writers append to, and the UTF-8 bytes of a whole entry, which
// Generate writes straight rather than converting a UTF-16 text after.
void Put(String& out, std::string_view ascii) { out.append(ascii.begin(), ascii.end()); }
void Put(std::string& out, std::string_view ascii) { out += ascii; }
void Put(String& out, std::u16string_view text) { out += text; }
void Put(std::string& out, std::u16string_view text) { vcard_writer::AppendUtf8(out, text); }

template <class Out>
void PutFields(Out& out, const CalendarDate& date) {
  char text[40];
  Put(out, std::string_view(text, vcalendar_text::DateTimeChars(date, false, text)));
}

CalendarDate InGMT(double instant) { return CalendarDate{instant, GMTTimeZoneName()}; }

// The quoted-printable form of a value in the output's characters, in a
// buffer kept from value to value (valid until the next call). A TAB is
// escaped too: left literal, one that starts a line after a soft break
// would read as folding and vanish.
template <class Out>
const Out& Encoded(const String& text) {
  using Char = typename Out::value_type;
  thread_local Out encoded;
  thread_local Out escaped;
  encoded.clear();
  vcard_writer::AppendEncodedText(encoded, text, false);
  if (encoded.find(Char('\t')) == Out::npos || encoded.find(Char('=')) == Out::npos) {
    return encoded;
  }
  escaped.clear();
  for (Char c : encoded) {
    if (c == Char('\t')) {
      Put(escaped, "=09");
    } else {
      escaped += c;
    }
  }
  return escaped;
}

template <class Text>
bool IsQuotedPrintable(const Text& encoded) {
  return encoded.find(typename Text::value_type('=')) != Text::npos;
}

// "name params:value\r\n"; no line for a missing value.
template <class Out, class Params, class Text>
void PutItem(Out& out, std::u16string_view name, const Params& params, const Text& value) {
  Put(out, name);
  Put(out, params);
  Put(out, ":");
  Put(out, value);
  Put(out, "\r\n");
}

// A text value: quoted-printable with its parameters when encoding changed
// it. The backslash escapes are never written here, whatever the escape
// option says: phones read vCalendar text values without them.
template <class Out>
void PutText(Out& out, std::u16string_view name, const std::optional<String>& text) {
  if (!text || text->empty()) return;
  const Out& encoded = Encoded<Out>(*text);
  const std::u16string_view params =
      IsQuotedPrintable(encoded) ? vCalendar::szParams_QPEncodedUTF8 : u"";
  PutItem(out, name, params, encoded);
}

constexpr const char* kCategoryWords[] = {
    "APPOINTMENT", "ANNIVERSARY", "HOLIDAY", "IMPORTANT", "PRIVATE", "MISCELLANEOUS",
    nullptr /* 0x40: a to-do, not a word */, "MEMO", "BUSINESS", "EDUCATION", "MEETING",
    "PERSONAL", "PHONE CALL", "SICK DAY", "SPECIAL OCCASION", "TRAVEL", "VACATION",
    "BIRTHDAY", "DATE", "SHOPPING", "ACCOUNT", "NOCATEGORY",
};

bool IsPlainLine(const String& text) {
  for (char16_t c : text) {
    if (c < u' ' || c > u'~') return false;
  }
  return true;
}

// Extension items as they were read: printable ASCII as it stands (rules
// kept verbatim, vendor codes), anything else quoted-printable.
template <class Out>
void PutExtensionItems(Out& out, const CCalendar& cal) {
  for (int i = 0; i < cal.GetXItemCount(); ++i) {
    const CXItem* item = cal.GetXItem(i);
    if (IsPlainLine(item->Data())) {
      PutItem(out, item->Name(), "", item->Data());
    } else {
      PutText(out, item->Name(), item->Data());
    }
  }
}

template <class Out>
void PutStatus(Out& out, std::int32_t status) {
  static constexpr std::string_view kWords[] = {
      "NEEDS ACTION", "COMPLETED", "ACCEPTED", "SENT",      "TENTATIVE", "CONFIRMED",
      "DECLINED",     "DELEGATED", "CANCELED", "INPROCESS", "NONE"};
  // 4 is TENTATIVE like every value outside the table.
  PutItem(out, u"STATUS", "", status >= 0 && status <= 10 ? kWords[status] : kWords[4]);
}

template <class Out>
void PutPriority(Out& out, std::int32_t priority) {
  PutItem(out, u"PRIORITY", "", std::to_string(priority));
}

template <class Out>
void PutClassification(Out& out, std::int32_t classification) {
  Put(out, classification == 1   ? "CLASS:PRIVATE\r\n"
           : classification == 2 ? "CLASS:CONFIDENTIAL\r\n"
                                 : "CLASS:PUBLIC\r\n");
}

template <class Out>
void PutCategories(Out& out, std::uint32_t categories) {
  if (categories == 0) {
    Put(out, "CATEGORIES:APPOINTMENT\r\n");
    return;
  }
  if (!vCalendar::sm_fScheduleUseCategoryType) return;
  std::string words;
  for (std::size_t bit = 0; bit < std::size(kCategoryWords); ++bit) {
    if ((categories & (1u << bit)) == 0 || kCategoryWords[bit] == nullptr) continue;
    if (!words.empty()) words += ';';
    words += kCategoryWords[bit];
  }
  if (!words.empty()) PutItem(out, u"CATEGORIES", "", words);
}

template <class Out>
void PutAllDay(Out& out, bool allDay) {
  Put(out, allDay ? "X-ALLDAY:SET\r\n" : "X-ALLDAY:UNSET\r\n");
}

template <class Out>
void PutXType(Out& out, bool holiday) {
  if (holiday && vCalendar::sm_fSupportSetHoliday) Put(out, "X-TYPE:HOLIDAY\r\n");
}

template <class Out>
void PutDateTime(Out& out, std::u16string_view name, const std::optional<CalendarDate>& date,
                 int flag) {
  if (!date) return;
  // An all-day entry ends on its last day, not at the start of the next.
  const double instant = flag != 0 ? date->date : date->date - 86400;
  Put(out, name);
  Put(out, ":");
  PutFields(out, InGMT(instant));
  if (flag == 1) Put(out, "Z");
  Put(out, "\r\n");
}

template <class Out>
void PutAudioReminder(Out& out, const CalendarDate& runTime, bool utc) {
  Put(out, "AALARM;ENCODING=QUOTED-PRINTABLE:");
  PutFields(out, runTime);
  if (utc) Put(out, "Z");
  Put(out, ";;;\r\n");
}

template <class Out>
void PutAlarm(Out& out, const CCalendar& cal, unsigned int kind) {
  if (cal.AlarmTriggerdate) {
    PutAudioReminder(out, InGMT(cal.AlarmTriggerdate->date), true);
    return;
  }
  if (cal.AlarmTriggerduration) {
    const bool todo = kind == vCalendar::kKindToDo;
    const std::optional<CalendarDate>& base = todo ? cal.dtDueComp : cal.dtStartComp;
    if (!base) return;
    double instant = base->date + static_cast<double>(*cal.AlarmTriggerduration);
    if (todo) instant -= 43200;  // to-dos ring half a day before they are due
    PutAudioReminder(out, InGMT(instant), true);
    return;
  }
  // No store form: the alarms as read, in the form they were read.
  for (int i = 0; i < cal.GetAlarmcount(); ++i) {
    const CReminder* reminder = cal.GetAlarm(i);
    if (reminder->AlarmTime()) {
      PutAudioReminder(out, *reminder->AlarmTime(), cal.isdtRecurrenceisUTC);
    }
  }
}

template <class Out>
void PutTimeZone(Out& out, int biasMinutes) {
  const int magnitude = biasMinutes < 0 ? -biasMinutes : biasMinutes;
  char text[32];
  std::snprintf(text, sizeof text, "TZ:%c%02d:%02d\r\n", biasMinutes < 0 ? '-' : '+',
                magnitude / 60, magnitude % 60);
  Put(out, std::string_view(text));
}

// "ATTENDEE;ROLE=ATTENDEE;STATUS=...": `params` up to the status word.
template <class Out>
void PutAttendee(Out& out, std::string_view params, const String& text) {
  const Out& encoded = Encoded<Out>(text);
  Put(out, "ATTENDEE");
  Put(out, params);
  if (IsQuotedPrintable(encoded)) Put(out, vCalendar::szParams_QPEncodedUTF8);
  Put(out, ":");
  Put(out, encoded);
  Put(out, "\r\n");
}

template <class Out>
void PutAttendees(Out& out, const CCalendar& cal) {
  static constexpr std::string_view kStatusWords[] = {
      "NEEDS ACTION", "COMPLETE",  "ACCEPTED",  "SEND",
      "TENTATIVE",    "CONFIRMED", "DECLIENED", "DELEGATED"};
  std::string params;
  for (int i = 0; i < cal.GetAttendeecount(); ++i) {
    const CAttendee* attendee = cal.GetAttendee(i);
    if (attendee->Data().empty()) continue;
    params.clear();
    if (attendee->mRole_t() == ATTENDEE_ROLE_ATTENDEE) params += ";ROLE=ATTENDEE";
    params += ";STATUS=";
    params += attendee->mStatus_t() < std::size(kStatusWords) ? kStatusWords[attendee->mStatus_t()]
                                                              : kStatusWords[0];
    PutAttendee(out, params, attendee->Data());
  }
}

template <class Out>
void PutStoreAttendees(Out& out, const CCalendar& cal) {
  if (!cal.AttendeeArray) return;
  for (const Value& entry : *cal.AttendeeArray) {
    const Dictionary* attendee = entry.getIf<Dictionary>();
    if (attendee == nullptr) continue;
    for (const char16_t* key : {u"email", u"common name"}) {
      const auto found = attendee->find(key);
      const String* text = found == attendee->end() ? nullptr : found->second.getIf<String>();
      if (text == nullptr || text->empty()) continue;
      PutAttendee(out, ";ROLE=ATTENDEE;STATUS=NEEDS ACTION", *text);
      break;
    }
  }
}

template <class Out>
void PutRecurrences(Out& out, const CCalendar& cal) {
  for (int i = 0; i < cal.GetRecurrencecount(); ++i) {
    const RecurrenceData* rule = cal.GetRecurrence(i)->GetRecurrenceData();
    if (rule == nullptr) continue;
    const String text = RecurrenceRuleText(*rule, vCalendar::sm_nUseW0);
    if (!text.empty()) PutItem(out, u"RRULE", "", text);
  }
}

}  // namespace

void vCalendar::AddItem(String& out, std::u16string_view name,
                        const std::optional<String>& params, const std::optional<String>& value) {
  if (!value) return;
  PutItem(out, name, params ? std::u16string_view(*params) : std::u16string_view(), *value);
}

void vCalendar::AddStatus(String& out, std::int32_t status) { PutStatus(out, status); }

void vCalendar::AddPriority(String& out, std::int32_t priority) { PutPriority(out, priority); }

void vCalendar::AddClassification(String& out, std::int32_t classification) {
  PutClassification(out, classification);
}

void vCalendar::AddCategories(String& out, std::uint32_t categories) {
  PutCategories(out, categories);
}

void vCalendar::AddAllDay(String& out, bool allDay) { PutAllDay(out, allDay); }

void vCalendar::AddXType(String& out, bool holiday) { PutXType(out, holiday); }

void vCalendar::AddSummary(String& out, const std::optional<String>& text) {
  PutText(out, u"SUMMARY", text);
}
void vCalendar::AddDescription(String& out, const std::optional<String>& text) {
  PutText(out, u"DESCRIPTION", text);
}
void vCalendar::AddLocation(String& out, const std::optional<String>& text) {
  PutText(out, u"LOCATION", text);
}
void vCalendar::AddAccount(String& out, const std::optional<String>& text) {
  PutText(out, u"X-ACCOUNT", text);
}

void vCalendar::AddDateTime(String& out, std::u16string_view name,
                            const std::optional<CalendarDate>& date, int flag) {
  PutDateTime(out, name, date, flag);
}

void vCalendar::AddDateTimeLocal(String& out, std::u16string_view name, const CDateTime& date) {
  char text[96];
  std::snprintf(text, sizeof text, "%04lld%02lld%02lldT%02lld%02lld%02lld",
                static_cast<long long>(date.year()), static_cast<long long>(date.month()),
                static_cast<long long>(date.day()), static_cast<long long>(date.hour()),
                static_cast<long long>(date.minute()), static_cast<long long>(date.second()));
  PutItem(out, name, "", std::string_view(text));
}

String vCalendar::GenerateTimeToVcalendar(const CalendarDate& date) {
  String out;
  PutFields(out, InGMT(date.date));
  out += u'Z';
  return out;
}

void vCalendar::AddAudioReminder(String& out, const CalendarDate& runTime, bool utc) {
  PutAudioReminder(out, runTime, utc);
}

void vCalendar::addAlarm(String& out, const CCalendar& cal, unsigned int kind) {
  PutAlarm(out, cal, kind);
}

void vCalendar::AddTimeZone(String& out, int biasMinutes) { PutTimeZone(out, biasMinutes); }

void vCalendar::AddAttendees(String& out, const CCalendar& cal) { PutAttendees(out, cal); }

void vCalendar::addattendees(String& out, const CCalendar& cal) { PutStoreAttendees(out, cal); }

void vCalendar::addrecurrences(String& out, const CCalendar& cal) { PutRecurrences(out, cal); }

bool vCalendar::IsLocalTime(const CCalendar* cal) {
  if (cal == nullptr) return false;
  const auto kind = static_cast<unsigned int>(cal->GetType());
  if ((kind == kKindAnniversary && sm_fAnniversaryUseLocalTime != 0) ||
      (kind == kKindHoliday && sm_fHolidayUseLocalTime) ||
      (kind == kKindToDo && sm_fTaskUseLocalTime) || (kind == kKindMemo && sm_fMemoUseLocalTime)) {
    return true;
  }
  return cal->bIsNoTime;
}

bool vCalendar::IsAlarmLocalTime(const CCalendar* cal) {
  if (cal == nullptr) return false;
  if (cal->bIsNoTime && sm_fAlarmUseLocalTime) return true;
  const auto kind = static_cast<unsigned int>(cal->GetType());
  if (kind != kKindToDo && kind != kKindAnniversary && kind != kKindHoliday) return false;
  return sm_fAlarmUseLocalTime;
}

namespace {

// A record made a while ago is out of the caches, and the fields an entry
// needs lie on a dozen lines of a record of some 5 KB: fetched one after
// another as the lines are written, their waits took a third of the time.
// Asked for together, they arrive together. (Inlined by force: a call to a
// function that only prefetches looks free of effects, and is dropped.)
[[gnu::always_inline]] inline void FetchFields(const CCalendar& cal) {
  __builtin_prefetch(&cal.categories);
  __builtin_prefetch(&cal.dtStartComp);
  __builtin_prefetch(&cal.dtEndComp);
  __builtin_prefetch(&cal.dtDueComp);
  __builtin_prefetch(&cal.strSummary);
  __builtin_prefetch(&cal.strLocation);
  __builtin_prefetch(&cal.AttendeeArray);
  __builtin_prefetch(&cal.AlarmTriggerdate);
  __builtin_prefetch(&cal.AlarmTriggerduration);
  __builtin_prefetch(&cal.status);
  __builtin_prefetch(&cal.bIsHoliday);
  __builtin_prefetch(&cal.bIsLunar);
  // The lists of attendees, alarms and rules close the record, and the
  // extension items open it.
  const char* const bytes = reinterpret_cast<const char*>(&cal);
  __builtin_prefetch(bytes);
  __builtin_prefetch(bytes + sizeof cal - 96);
  __builtin_prefetch(bytes + sizeof cal - 1);
}

void GenerateText(const CCalendar& cal, vObject& object, unsigned int kind, bool full) {
  FetchFields(cal);
  const bool todo = kind == vCalendar::kKindToDo;
  // Keeps its room from entry to entry.
  thread_local std::string out;
  out.clear();
  out += "BEGIN:VCALENDAR\r\nVERSION:1.0\r\n";
  if (vCalendar::sm_nTimezoneBias != 0) PutTimeZone(out, vCalendar::sm_nTimezoneBias);
  out += todo ? "BEGIN:VTODO\r\n" : "BEGIN:VEVENT\r\n";
  if (full) PutClassification(out, cal.classification);
  PutText(out, u"DESCRIPTION", cal.strDescription);
  PutText(out, u"SUMMARY", cal.strSummary);
  PutText(out, u"LOCATION", cal.strLocation);
  PutDateTime(out, u"DTSTART", cal.dtStartComp, 1);
  PutDateTime(out, u"DTEND", cal.dtEndComp, cal.bIsAllDay ? 0 : 1);
  if (todo) PutDateTime(out, u"DUE", cal.dtDueComp, 1);
  if (full) {
    PutCategories(out, cal.categories);
    PutStatus(out, cal.status);
    PutPriority(out, cal.priority);
  }
  PutAllDay(out, cal.bIsAllDay);
  PutXType(out, cal.bIsHoliday);
  PutRecurrences(out, cal);
  PutAlarm(out, cal, kind);
  if (cal.GetAttendeecount() > 0) {
    PutAttendees(out, cal);
  } else {
    PutStoreAttendees(out, cal);
  }
  PutExtensionItems(out, cal);
  out += todo ? "END:VTODO\r\nEND:VCALENDAR" : "END:VEVENT\r\nEND:VCALENDAR";
  object.object()->SetData(reinterpret_cast<const unsigned char*>(out.data()), out.size());
  // A long description must not pin its size for the rest of the calendar.
  if (out.capacity() > 64 * 1024) std::string().swap(out);
}

}  // namespace

void vCalendar::Generate(const CCalendar* cal, vObject* object, unsigned int kind) {
  if (cal == nullptr || object == nullptr) return;
  GenerateText(*cal, *object, kind, true);
}

void vCalendar::Generate(const CCalendar* cal, vObject* object, unsigned int kind,
                         unsigned int /*reduced*/) {
  if (cal == nullptr || object == nullptr) return;
  GenerateText(*cal, *object, kind, false);
}

}  // namespace phonepim
