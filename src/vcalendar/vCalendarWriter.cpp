// vCalendar::Generate and the line writers.
#include <cstdio>
#include <iterator>
#include <string>

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

using vcard_writer::EncodeText;
using vcard_writer::IsQuotedPrintable;

void AppendASCII(String& out, const char* text) {
  for (; *text != '\0'; ++text) out += static_cast<char16_t>(static_cast<unsigned char>(*text));
}

void AppendFields(String& out, const CalendarDate& date) {
  out += StringFromASCII(vcalendar_text::DateTimeText(date));
}

CalendarDate InGMT(double instant) { return CalendarDate{instant, GMTTimeZoneName()}; }

// The quoted-printable form of a value. A TAB is escaped too: left
// literal, one that starts a line after a soft break would read as folding
// and vanish.
String Encoded(const String& text) {
  String encoded = EncodeText(text, false);
  if (encoded.find(u'\t') == String::npos || !IsQuotedPrintable(encoded)) return encoded;
  String out;
  for (char16_t c : encoded) {
    if (c == u'\t') {
      out += u"=09";
    } else {
      out += c;
    }
  }
  return out;
}

// A text value: quoted-printable with its parameters when encoding changed
// it. The backslash escapes are never written here, whatever the escape
// option says: phones read vCalendar text values without them.
void AddText(String& out, std::u16string_view name, const std::optional<String>& text) {
  if (!text || text->empty()) return;
  const String encoded = Encoded(*text);
  vCalendar::AddItem(out, name,
                     IsQuotedPrintable(encoded) ? String(vCalendar::szParams_QPEncodedUTF8)
                                                : String(),
                     encoded);
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
void AddExtensionItems(String& out, const CCalendar& cal) {
  for (int i = 0; i < cal.GetXItemCount(); ++i) {
    const CXItem* item = cal.GetXItem(i);
    if (IsPlainLine(item->Data())) {
      vCalendar::AddItem(out, item->Name(), std::nullopt, item->Data());
    } else {
      AddText(out, item->Name(), item->Data());
    }
  }
}

}  // namespace

void vCalendar::AddItem(String& out, std::u16string_view name,
                        const std::optional<String>& params, const std::optional<String>& value) {
  if (!value) return;
  out += name;
  if (params) out += *params;
  out += u':';
  out += *value;
  out += u"\r\n";
}

void vCalendar::AddStatus(String& out, std::int32_t status) {
  static constexpr const char16_t* kWords[] = {
      u"NEEDS ACTION", u"COMPLETED", u"ACCEPTED", u"SENT",     u"TENTATIVE", u"CONFIRMED",
      u"DECLINED",     u"DELEGATED", u"CANCELED", u"INPROCESS", u"NONE"};
  // 4 is TENTATIVE like every value outside the table.
  const char16_t* word = status >= 0 && status <= 10 ? kWords[status] : u"TENTATIVE";
  AddItem(out, u"STATUS", String(), String(word));
}

void vCalendar::AddPriority(String& out, std::int32_t priority) {
  AddItem(out, u"PRIORITY", String(), StringFromASCII(std::to_string(priority)));
}

void vCalendar::AddClassification(String& out, std::int32_t classification) {
  out += classification == 1   ? u"CLASS:PRIVATE\r\n"
         : classification == 2 ? u"CLASS:CONFIDENTIAL\r\n"
                               : u"CLASS:PUBLIC\r\n";
}

void vCalendar::AddCategories(String& out, std::uint32_t categories) {
  if (categories == 0) {
    out += u"CATEGORIES:APPOINTMENT\r\n";
    return;
  }
  if (!sm_fScheduleUseCategoryType) return;
  String words;
  for (std::size_t bit = 0; bit < std::size(kCategoryWords); ++bit) {
    if ((categories & (1u << bit)) == 0 || kCategoryWords[bit] == nullptr) continue;
    if (!words.empty()) words += u';';
    AppendASCII(words, kCategoryWords[bit]);
  }
  if (!words.empty()) AddItem(out, u"CATEGORIES", std::nullopt, words);
}

void vCalendar::AddAllDay(String& out, bool allDay) {
  out += allDay ? u"X-ALLDAY:SET\r\n" : u"X-ALLDAY:UNSET\r\n";
}

void vCalendar::AddXType(String& out, bool holiday) {
  if (holiday && sm_fSupportSetHoliday) out += u"X-TYPE:HOLIDAY\r\n";
}

void vCalendar::AddSummary(String& out, const std::optional<String>& text) {
  AddText(out, u"SUMMARY", text);
}
void vCalendar::AddDescription(String& out, const std::optional<String>& text) {
  AddText(out, u"DESCRIPTION", text);
}
void vCalendar::AddLocation(String& out, const std::optional<String>& text) {
  AddText(out, u"LOCATION", text);
}
void vCalendar::AddAccount(String& out, const std::optional<String>& text) {
  AddText(out, u"X-ACCOUNT", text);
}

void vCalendar::AddDateTime(String& out, std::u16string_view name,
                            const std::optional<CalendarDate>& date, int flag) {
  if (!date) return;
  // An all-day entry ends on its last day, not at the start of the next.
  const double instant = flag != 0 ? date->date : date->date - 86400;
  out += name;
  out += u':';
  AppendFields(out, InGMT(instant));
  if (flag == 1) out += u'Z';
  out += u"\r\n";
}

void vCalendar::AddDateTimeLocal(String& out, std::u16string_view name, const CDateTime& date) {
  char text[96];
  std::snprintf(text, sizeof text, "%04lld%02lld%02lldT%02lld%02lld%02lld",
                static_cast<long long>(date.year()), static_cast<long long>(date.month()),
                static_cast<long long>(date.day()), static_cast<long long>(date.hour()),
                static_cast<long long>(date.minute()), static_cast<long long>(date.second()));
  out += name;
  out += u':';
  AppendASCII(out, text);
  out += u"\r\n";
}

String vCalendar::GenerateTimeToVcalendar(const CalendarDate& date) {
  String out;
  AppendFields(out, InGMT(date.date));
  out += u'Z';
  return out;
}

void vCalendar::AddAudioReminder(String& out, const CalendarDate& runTime, bool utc) {
  out += u"AALARM;ENCODING=QUOTED-PRINTABLE:";
  AppendFields(out, runTime);
  if (utc) out += u'Z';
  out += u";;;\r\n";
}

void vCalendar::addAlarm(String& out, const CCalendar& cal, unsigned int kind) {
  if (cal.AlarmTriggerdate) {
    AddAudioReminder(out, InGMT(cal.AlarmTriggerdate->date), true);
    return;
  }
  if (cal.AlarmTriggerduration) {
    const std::optional<CalendarDate>& base = kind == kKindToDo ? cal.dtDueComp : cal.dtStartComp;
    if (!base) return;
    double instant = base->date + static_cast<double>(*cal.AlarmTriggerduration);
    if (kind == kKindToDo) instant -= 43200;  // to-dos ring half a day before they are due
    AddAudioReminder(out, InGMT(instant), true);
    return;
  }
  // No store form: the alarms as read, in the form they were read.
  for (int i = 0; i < cal.GetAlarmcount(); ++i) {
    const CReminder* reminder = cal.GetAlarm(i);
    if (reminder->AlarmTime()) {
      AddAudioReminder(out, *reminder->AlarmTime(), cal.isdtRecurrenceisUTC);
    }
  }
}

void vCalendar::AddTimeZone(String& out, int biasMinutes) {
  const int magnitude = biasMinutes < 0 ? -biasMinutes : biasMinutes;
  char text[32];
  std::snprintf(text, sizeof text, "TZ:%c%02d:%02d\r\n", biasMinutes < 0 ? '-' : '+',
                magnitude / 60, magnitude % 60);
  AppendASCII(out, text);
}

void vCalendar::AddAttendees(String& out, const CCalendar& cal) {
  static constexpr const char16_t* kStatusWords[] = {
      u"NEEDS ACTION", u"COMPLETE",  u"ACCEPTED",  u"SEND",
      u"TENTATIVE",    u"CONFIRMED", u"DECLIENED", u"DELEGATED"};
  for (int i = 0; i < cal.GetAttendeecount(); ++i) {
    const CAttendee* attendee = cal.GetAttendee(i);
    if (attendee->Data().empty()) continue;
    String params;
    if (attendee->mRole_t() == ATTENDEE_ROLE_ATTENDEE) params += u";ROLE=ATTENDEE";
    params += u";STATUS=";
    params += attendee->mStatus_t() < std::size(kStatusWords) ? kStatusWords[attendee->mStatus_t()]
                                                              : kStatusWords[0];
    const String encoded = Encoded(attendee->Data());
    if (IsQuotedPrintable(encoded)) params += szParams_QPEncodedUTF8;
    AddItem(out, u"ATTENDEE", params, encoded);
  }
}

void vCalendar::addattendees(String& out, const CCalendar& cal) {
  if (!cal.AttendeeArray) return;
  for (const Value& entry : *cal.AttendeeArray) {
    const Dictionary* attendee = entry.getIf<Dictionary>();
    if (attendee == nullptr) continue;
    for (const char16_t* key : {u"email", u"common name"}) {
      const auto found = attendee->find(key);
      const String* text = found == attendee->end() ? nullptr : found->second.getIf<String>();
      if (text == nullptr || text->empty()) continue;
      String params = u";ROLE=ATTENDEE;STATUS=NEEDS ACTION";
      const String encoded = Encoded(*text);
      if (IsQuotedPrintable(encoded)) params += szParams_QPEncodedUTF8;
      AddItem(out, u"ATTENDEE", params, encoded);
      break;
    }
  }
}

void vCalendar::addrecurrences(String& out, const CCalendar& cal) {
  for (int i = 0; i < cal.GetRecurrencecount(); ++i) {
    const RecurrenceData* rule = cal.GetRecurrence(i)->GetRecurrenceData();
    if (rule == nullptr) continue;
    const String text = RecurrenceRuleText(*rule, sm_nUseW0);
    if (!text.empty()) AddItem(out, u"RRULE", std::nullopt, text);
  }
}

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

void GenerateText(const CCalendar& cal, vObject& object, unsigned int kind, bool full) {
  const bool todo = kind == vCalendar::kKindToDo;
  String out;
  out.reserve(512);
  out += u"BEGIN:VCALENDAR\r\nVERSION:1.0\r\n";
  if (vCalendar::sm_nTimezoneBias != 0) vCalendar::AddTimeZone(out, vCalendar::sm_nTimezoneBias);
  out += todo ? u"BEGIN:VTODO\r\n" : u"BEGIN:VEVENT\r\n";
  if (full) vCalendar::AddClassification(out, cal.classification);
  vCalendar::AddDescription(out, cal.strDescription);
  vCalendar::AddSummary(out, cal.strSummary);
  vCalendar::AddLocation(out, cal.strLocation);
  vCalendar::AddDateTime(out, u"DTSTART", cal.dtStartComp, 1);
  vCalendar::AddDateTime(out, u"DTEND", cal.dtEndComp, cal.bIsAllDay ? 0 : 1);
  if (todo) vCalendar::AddDateTime(out, u"DUE", cal.dtDueComp, 1);
  if (full) {
    vCalendar::AddCategories(out, cal.categories);
    vCalendar::AddStatus(out, cal.status);
    vCalendar::AddPriority(out, cal.priority);
  }
  vCalendar::AddAllDay(out, cal.bIsAllDay);
  vCalendar::AddXType(out, cal.bIsHoliday);
  vCalendar::addrecurrences(out, cal);
  vCalendar::addAlarm(out, cal, kind);
  if (cal.GetAttendeecount() > 0) {
    vCalendar::AddAttendees(out, cal);
  } else {
    vCalendar::addattendees(out, cal);
  }
  AddExtensionItems(out, cal);
  out += todo ? u"END:VTODO\r\nEND:VCALENDAR" : u"END:VEVENT\r\nEND:VCALENDAR";
  const std::string bytes = vcard_writer::Utf8Of(out);
  object.object()->SetData(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
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
