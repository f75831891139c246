// The vCalendar 1.0 codec: reading a phone's event or to-do into a
// CCalendar and writing a CCalendar back as the text phones expect.
//
// All members are static. The class-wide options are process-wide and
// unguarded: set them before use and call the codec from one thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/datetime/CDateTimeSpan.h"
#include "phonepim/datetime/CTimeZoneInfo.h"
#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/model/CReminder.h"
#include "phonepim/platform/String.h"

namespace phonepim {

class CCalendar;
class CRecurrence;
class vObject;
struct ReadAccount;

class vCalendar {
 public:
  vCalendar() = delete;

  /// The kinds Generate takes and the local-time rules test; every other
  /// kind is written as an event.
  static constexpr unsigned int kKindAnniversary = 2;
  static constexpr unsigned int kKindHoliday = 3;
  static constexpr unsigned int kKindToDo = 7;
  static constexpr unsigned int kKindMemo = 8;

  // --- Class-wide options (all off or 0 by default, but sm_nUseW0) ---
  //
  // Backslash escaping of text values follows the vCard codec's
  // vCard::sm_fNonstandardEscChar, and lenient reading its
  // vCard::sm_fLenientReading: one flag each for both codecs.

  /// AddXType writes "X-TYPE:HOLIDAY" for a holiday only when set.
  static bool sm_fSupportSetHoliday;
  /// Reader: times without "Z" are taken as they stand when set, else
  /// converted to GMT (vCalendar::SystemTime).
  static bool sm_fUseLocalTime;
  /// IsLocalTime for to-dos.
  static bool sm_fTaskUseLocalTime;
  /// IsAlarmLocalTime.
  static bool sm_fAlarmUseLocalTime;
  /// IsLocalTime for holidays.
  static bool sm_fHolidayUseLocalTime;
  /// IsLocalTime for anniversaries (non-zero: on).
  static int sm_fAnniversaryUseLocalTime;
  /// IsLocalTime for memos; no setter, as the phones never needed one.
  static bool sm_fMemoUseLocalTime;
  /// The phone's offset from GMT in minutes. Non-zero: Generate writes it
  /// as "TZ" (AddTimeZone) right after "VERSION:1.0"; 0 writes no TZ.
  static int sm_nTimezoneBias;
  /// Reader: quoted-printable values get the encoding code
  /// kEncodingQuotedPrintableCR instead of kEncodingQuotedPrintable.
  static bool sm_fUseCarrageReturn;
  /// Reader: the weekday correction of recurrence rules read in a zone
  /// other than the phone's (see Parse).
  static bool sm_fTimezone;
  /// Writer: an open rule (no count, no end date) is written with "#0"
  /// when non-zero (the default), with no duration at all when 0, for the
  /// phones that refuse "#0" (see RecurrenceRule.h).
  static int sm_nUseW0;
  /// Reader: "SPECIAL OCCASION" (any case) is an anniversary, and an empty
  /// CATEGORIES value means no category (0x200000).
  static bool sm_fAnniversaryConvertToSpecialOccasion;
  /// Writer: a schedule's categories other than 0 are written by their
  /// words (AddCategories) when set; clear, only 0 is written, as
  /// "APPOINTMENT".
  static bool sm_fScheduleUseCategoryType;

  static void SupportSetHoliday(bool on);
  static void UseLocalTime(bool on);
  static void TaskUseLocalTime(bool on);
  static void AlarmUseLocalTime(bool on);
  static void HolidayUseLocalTime(bool on);
  static void AnniversaryUseLocalTime(int on);
  static void SetTimezoneBias(int minutes);
  static void UseCarrageReturn(bool on);
  static void UseTimezone(bool on);
  static void UseW0(int on);
  static void AnniversaryConvertToSpecialOccasion(bool on);
  static void ScheduleUseCategoryType(bool on);

  // --- Reading ---

  /// Fills `calendar` from the vCalendar 1.0 text held in `object` (one
  /// VCALENDAR with one VEVENT or VTODO); the object ID becomes mVcalID.
  /// Fields the text does not mention are left as they are. A null `object`
  /// reads as empty text.
  ///
  /// Throws the std::uint16_t kVersitParseError (65529) when the tokenizer
  /// rejects the text. "VERSION" other than 1.0 fails the assertion
  /// "_strnicmp(data, \"1.0\", len) == 0", a null `calendar`
  /// "pData->pCalendar" (at the first value).
  ///
  /// With vCard::sm_fLenientReading set, nothing of the text is dropped:
  /// names and parameters are matched in any case, a property the record
  /// has no field for (or a second one of a single-value property) is kept
  /// as an extension item under its name, and rules the recurrence model
  /// cannot hold are kept as "RRULE" extension items, verbatim.
  ///
  /// Failures raised while a value is stored (an AssertionFailure from a
  /// throwing assertion handler) do not unwind through the tokenizer, which
  /// is C: the callbacks catch them, every later callback does nothing, and
  /// the exception is rethrown from here once the tokenizer is freed. The
  /// record keeps what was stored before. Nothing leaks.
  static void Parse(CCalendar* calendar, const vObject* object);
  /// The same, and `account` (when not null) receives what became of each
  /// property of the text, in order: read into a field (named as in the
  /// tool's JSON: "summary", "start", "alarms"...), dropped by design
  /// (BEGIN:VCALENDAR, END, VERSION), kept as an extension item, empty, or
  /// lost with the reason (a value the standard reading cannot decode, an
  /// unknown property, a rule the recurrence model cannot hold, a value a
  /// later one of the same property replaced). Lenient reading loses
  /// nothing but a property without a name.
  static void Parse(CCalendar* calendar, const vObject* object, ReadAccount* account);

  /// The tokenizer's user data for one Parse (defined in the library's
  /// private src/vcalendar/vCalendarReaderInternal.h).
  struct vCalendarParseData;

  /// The tokenizer's callbacks. Never throw; see Parse.
  static void vCalendarPropHandler(void* data, const char* name, char** params) noexcept;
  static void vCalendarDataHandler(void* data, const char* value, int length) noexcept;

  /// `dt.SystemTime()` when `convert` is non-zero, else a copy of `dt`.
  static CDateTime SystemTime(const CDateTime& dt, int convert);

  // The value readers. `text` is the value, not terminated.

  /// yyyymmdd[Thhmmss[Z]]: the fields read as GMT, seconds dropped; without
  /// "Z" converted with SystemTime(value, !sm_fUseLocalTime). A date of 0
  /// (or no digits) gives nothing, and so does one whose fields no text of
  /// this form could give back (year outside 1 to 9999, month outside 1 to
  /// 12, day outside 1 to 31, hour past 24, minute past 59).
  static std::optional<CDateTime> ParseDateTime(std::string_view text);
  /// The same fields as a calendar date in "GMT", seconds dropped; `isUTC`
  /// (may be null) becomes whether the text holds a "Z". A date
  /// ParseDateTime refuses gives nothing and leaves `isUTC` alone.
  static std::optional<CalendarDate> ParseDateTimeComponent(std::string_view text, bool* isUTC);
  /// The OR of ParseCategory over the ';'-separated, trimmed words; with
  /// sm_fAnniversaryConvertToSpecialOccasion an empty value is 0x200000.
  static std::uint32_t ParseCategories(std::string_view text);
  /// One category word's bit, 0 for a word not in the table.
  static std::uint32_t ParseCategory(std::string_view word);
  /// The event status number of a STATUS word, the value compared over its
  /// length (so "COMP" is COMPLETED); 10 for any other word ("NEEDS
  /// ACTION" included).
  static std::int32_t ParseStatus(std::string_view text);
  /// 1 "PRIVATE" (compared over at most 8 characters, so "PRIV" too), 2
  /// "CONFIDENTIAL", else 0.
  static std::int32_t ParseClassification(std::string_view text);
  /// The AALARM parameter bits: TYPE in 0xF0, VALUE in 0x0F. `params` is the
  /// tokenizer's list of (name, value) pairs ended by a null name.
  static std::uint32_t ParseAudioReminderParams(char** params);
  /// The ATTENDEE parameters: ROLE=ATTENDEE gives `*role`
  /// ATTENDEE_ROLE_ATTENDEE, STATUS words give their attendee_status_t.
  static void ParseAttendeesParams(char** params, std::uint32_t* role, std::uint32_t* status);
  /// "TZ": a new info naming the zone "GMT" + value ("+09" names
  /// "GMT+09:00"), with the value as Bias.
  static CTimeZoneInfo ParseTimeZone(std::string_view text);
  /// "DAYLIGHT": flag;bias;begin;end;standard name;daylight name into `info`.
  static void ParseDaylight(std::string_view text, int charset, int encoding,
                            CTimeZoneInfo* info);
  /// "h" or "h:mm" (sign from the hours) as a span of minutes; hours and
  /// minutes beyond a million are taken as a million.
  static CDateTimeSpan ParseBias(std::string_view text);
  /// An "AALARM" value (run time;snooze;repeat count;content): a new alarm
  /// whose run time is ParseDateTime and whose AlarmTime is
  /// ParseDateTimeComponent of the first field; `isUTC` as there.
  static CReminder ParseReminder(std::string_view text, bool* isUTC);
  /// One RRULE or XRULE value into `rule`. False when the recurrence model
  /// cannot hold it (the rule is then left empty).
  static bool ParseRecurrence(std::string_view text, CRecurrence* rule);

  // --- Writing ---

  /// ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE".
  static constexpr char16_t szParams_QPEncodedUTF8[] =
      u";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE";

  /// Writes `cal` as vCalendar 1.0 with CRLF line ends (none after the last
  /// "END:VCALENDAR") and stores the UTF-8 bytes in `object`, replacing
  /// what it held. The order: BEGIN:VCALENDAR, VERSION, [TZ], BEGIN:VEVENT
  /// (VTODO for kind 7), CLASS, DESCRIPTION, SUMMARY, LOCATION, DTSTART,
  /// DTEND, [DUE], CATEGORIES, STATUS, PRIORITY, X-ALLDAY, [X-TYPE],
  /// RRULE, AALARM, ATTENDEE, the extension items, END lines. A null
  /// pointer makes the call do nothing.
  static void Generate(const CCalendar* cal, vObject* object, unsigned int kind);
  /// The reduced form: no CLASS, CATEGORIES, STATUS or PRIORITY. The last
  /// argument changes nothing; it is kept for callers that pass it.
  static void Generate(const CCalendar* cal, vObject* object, unsigned int kind,
                       unsigned int reduced);

  /// Nothing for a missing value; "name params:value\r\n" (params may be
  /// empty); "name:value\r\n" when params is missing.
  static void AddItem(String& out, std::u16string_view name,
                      const std::optional<String>& params, const std::optional<String>& value);

  static void AddStatus(String& out, std::int32_t status);
  static void AddPriority(String& out, std::int32_t priority);
  static void AddClassification(String& out, std::int32_t classification);
  static void AddCategories(String& out, std::uint32_t categories);
  static void AddAllDay(String& out, bool allDay);
  static void AddXType(String& out, bool holiday);
  static void AddSummary(String& out, const std::optional<String>& text);
  static void AddDescription(String& out, const std::optional<String>& text);
  static void AddLocation(String& out, const std::optional<String>& text);
  static void AddAccount(String& out, const std::optional<String>& text);
  /// "name:yyyymmddThhmmss" of the instant in GMT, "Z" added for a
  /// non-zero flag; flag 0 writes the day before (an all-day end).
  static void AddDateTime(String& out, std::u16string_view name,
                          const std::optional<CalendarDate>& date, int flag);
  /// "name:yyyymmddThhmmss" of the value's own fields, no zone letter.
  static void AddDateTimeLocal(String& out, std::u16string_view name, const CDateTime& date);
  /// yyyymmddThhmmssZ of the instant in GMT.
  static String GenerateTimeToVcalendar(const CalendarDate& date);
  /// "AALARM" from AlarmTriggerdate, else from AlarmTriggerduration past the
  /// start (the due date less 12 hours for a to-do), else from the first
  /// alarm's run time.
  static void addAlarm(String& out, const CCalendar& cal, unsigned int kind);
  /// "AALARM;ENCODING=QUOTED-PRINTABLE:<time>;;;", the time's fields in its
  /// zone, "Z" added when `utc`.
  static void AddAudioReminder(String& out, const CalendarDate& runTime, bool utc);
  /// "TZ:+hh:mm" / "TZ:-hh:mm" of `biasMinutes`.
  static void AddTimeZone(String& out, int biasMinutes);
  /// One "ATTENDEE;ROLE=ATTENDEE;STATUS=..." line per attendee of the
  /// record's list.
  static void AddAttendees(String& out, const CCalendar& cal);
  /// The attendees of the store form (AttendeeArray: dictionaries with
  /// "common name" and "email"), "STATUS=NEEDS ACTION".
  static void addattendees(String& out, const CCalendar& cal);
  /// One "RRULE" line per rule of the record.
  static void addrecurrences(String& out, const CCalendar& cal);

  /// Whether the record's times are local ones: by kind (CCalendar::GetType)
  /// for anniversaries, holidays, to-dos and memos whose option is set,
  /// else bIsNoTime.
  static bool IsLocalTime(const CCalendar* cal);
  /// bIsNoTime with sm_fAlarmUseLocalTime; false for kinds other than to-do,
  /// anniversary and holiday; else sm_fAlarmUseLocalTime.
  static bool IsAlarmLocalTime(const CCalendar* cal);
};

}  // namespace phonepim
