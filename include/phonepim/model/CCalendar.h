// CCalendar: one calendar entry of the phone (an appointment, anniversary,
// to-do or other schedule entry), as the vCalendar codec reads and writes it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/datetime/CDateTimeNull.h"
#include "phonepim/datetime/CTimeZoneInfo.h"
#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/model/CAttendee.h"
#include "phonepim/model/CRecurrence.h"
#include "phonepim/model/CReminder.h"
#include "phonepim/model/CVObject.h"
#include "phonepim/model/CalendarType.h"
#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

class AlarmContainer;
class AttendeeContainer;
class CalendarIDMappingTable;
class RecurrenceContainer;

/// A calendar entry: its texts, dates, flags and codes as plain public
/// fields named as the codecs know them, three owned lists (attendees,
/// alarms, recurrence rules) and the extension items of CVObject.
///
/// The plain fields are public because the vCalendar reader and writer fill
/// and read them one by one; the named setters below exist for hosts and
/// do nothing more than assign. Optional fields start absent, numbers and
/// flags at 0, except where a field says otherwise. A date counts as null
/// when it is absent or when its status is null (CDateTime::kStatusNull).
///
/// The record owns its list elements. The creators (NewAttendee,
/// addAttendee, addAlarm, addRecurrence) and the getters return borrowed
/// pointers, valid while the record lives: nothing removes elements. The
/// element added last to a list is that list's current one (Attendee,
/// AudioReminder, Recurrence), which the reader goes on filling after
/// adding it and which the alarm operations work on.
///
/// For the synchronisation, the entry resolves its identity through its
/// phone's calendar ID mapping table (resolveIdentity) and then builds its
/// store records (createMetaData): the event record, and its attendees,
/// alarms and recurrence rules through one sub-record container each.
/// Copy with Clone.
class CCalendar : public CVObject {
 public:
  /// The kinds of SetAlarm and GetAlarm: how the alarm's offset from the
  /// start is expressed.
  static constexpr int kAlarmAtDate = -1;  ///< at a given date; no offset
  static constexpr int kAlarmNone = 0;     ///< no alarm
  static constexpr int kAlarmMinutes = 2;
  static constexpr int kAlarmHours = 3;
  static constexpr int kAlarmDays = 4;
  static constexpr int kAlarmWeeks = 5;

  CCalendar();
  ~CCalendar() override;

  /// A deep copy: every field, every list element and every extension item
  /// is copied, and the copy's current elements are its own copies of this
  /// record's current ones.
  std::unique_ptr<CCalendar> Clone() const;

  /// Change detection: whether `other` holds the same entry as far as the
  /// phone's user can see and change it. Deciding, in this order:
  /// - vCalendarType, categories, classification, priority, status;
  /// - bIsAllDay, bIsHoliday, bIsNoTime, bIsLunar;
  /// - strSummary, strDescription, strLocation (an absent text equals an
  ///   empty one: the writer writes neither);
  /// - dtStart, dtEnd, dtDue, dtCompleted and dtStartComp, dtEndComp,
  ///   dtDueComp: both null, or both at the same instant (the zone and
  ///   type a date was read in do not count);
  /// - the alarms, attendees and recurrence rules: the same number, and
  ///   pairwise equal in list order (CReminder::IsEqual,
  ///   CAttendee::isEqual, CRecurrence::IsEqual); ExceptRule: both absent
  ///   or equal. The recurrence comparison is one-sided on its day lists,
  ///   so this one can be too: a weekly rule on Monday equals one on
  ///   Monday and Wednesday only when the receiver holds the first;
  /// - GetExpiry, GetAlarmTone and GetAlarmTonePath (absent reads as
  ///   empty), so an alarm tone of -1 equals none.
  /// Not deciding: the identity (mUserID, mDBRecordID, mVcalID, UID,
  /// thisID, storage, mState, the table and the phone record ID), the
  /// containers, the modification and creation stamps (LMT,
  /// dtModified, dtModifiedComp, dtCreate), the dates as first received and
  /// Originaldate, the UTC flags of the text forms, TimeZoneInfo (the
  /// instants already carry it), the account fields, strAttendees, the
  /// store forms of attendees, recurrence and alarm, mMetaDictionary and the
  /// other extension items. Null is unequal.
  bool IsEqual(const CCalendar* other) const;

  // --- Identity. ---

  /// Keeps `userID` and makes the store record ID "<userID>_Calendar".
  void setUserID(const String& userID);
  /// Keeps `userID` and makes it the store record ID as it stands. The
  /// type changes nothing.
  void setUserIDWithType(std::int32_t type, const String& userID);

  /// The phone record ID of a new entry: the number zero-padded to 16
  /// digits ("%016d": a negative one is "-" and 15 digits), "-Calendar-",
  /// the IMEI and a suffix by kind: "_Appointment" for 1, "_Anniversary"
  /// for 2, "_Task" for 7 and "_temp" for every other kind.
  static String generateNewVCalIDWithNewLUID(std::int32_t luid, const String& imei,
                                             std::int32_t type);
  /// The number in decimal.
  static String generateNewVCalID(std::int64_t luid);
  /// The number in decimal; the type changes nothing.
  static String generateNewVCalIDWithType(std::int64_t luid, std::int32_t type);

  // --- Identity in the calendar table and the store records. ---

  /// Bits of mState: the store ID, respectively the phone record ID, is
  /// known.
  static constexpr std::int32_t kStateDBRecordIDKnown = 0x1;
  static constexpr std::int32_t kStateVCalIDKnown = 0x2;

  /// Resolves the entry's identity on both sides through `idMapper` (which
  /// the entry keeps; null keeps a new empty table), as a contact does
  /// through its own table. Call it once the kind (vCalendarType) is read.
  /// 1. With a store record ID: mState = kStateDBRecordIDKnown and
  ///    mDBRecordID = the ID; when the table knows it, vCalRecordID() =
  ///    the table's phone record ID, mVcalID = its leading number and
  ///    kStateVCalIDKnown is added; otherwise mVcalID = the table's
  ///    nextTemporaryID() (its low 16 bits).
  /// 2. Otherwise, with a phone number `vCalID`: mState =
  ///    kStateVCalIDKnown, mVcalID = the number, vCalRecordID() =
  ///    generateNewVCalIDWithNewLUID(number, IMEI, GetType()); when the
  ///    table has a store ID for it, that is mDBRecordID and
  ///    kStateDBRecordIDKnown is added; otherwise the phone record ID
  ///    stands in as mDBRecordID until the store has the event.
  /// 3. With neither, mState is 0 and nothing else changes.
  /// With a phone record ID the three containers are made (anew), with it
  /// as their parent and mDBRecordID as the records' owner; without one
  /// there are none and createMetaData builds the event record only.
  void resolveIdentity(std::optional<std::uint16_t> vCalID, const String& IMEI,
                       const std::optional<String>& dbRecordID,
                       std::shared_ptr<CalendarIDMappingTable> idMapper);

  const std::shared_ptr<CalendarIDMappingTable>& idMapper() const { return mIDMapper; }
  /// The phone record ID: the key of the entry in the calendar table.
  const std::optional<String>& vCalRecordID() const { return mVCalRecordID; }
  const AttendeeContainer* attendeeMapper() const { return mAttendeeMapper.get(); }
  const AlarmContainer* alarmMapper() const { return mAlarmMapper.get(); }
  const RecurrenceContainer* recurrenceMapper() const { return mRecurrenceMapper.get(); }

  /// Builds the store records: mMetaDictionary becomes [the event record]
  /// (keys: sync/CalendarRecord.h), naming `calendarID`, the phone's
  /// calendar record (CalendarIDMappingTable::calendarRecordID()).
  /// With containers, the table gets an entry for vCalRecordID() when it
  /// has none (CalendarIDMappingTable::ensureEntry), the containers are
  /// filled (each attendee by name and status; each alarm with a valid run
  /// time by that instant; each rule) and reconciled, and the event record
  /// gets each non-empty list of identifiers under "attendees", "audio
  /// alarms" and "recurrences".
  void createMetaData(const String& calendarID);
  /// The event record of the last createMetaData; empty before.
  const Dictionary& eventRecord() const;
  /// Whether the last createMetaData built an event record other than the
  /// store data the table kept for the entry (nothing kept, or no
  /// containers, counts as a difference); a changed sub-record changes the
  /// event's identifier lists. Tells the host to hand the event to the store
  /// (addCalendar or modifyCalendar).
  bool eventChanged() const { return mEventChanged; }

  // --- Kind, priority, status. ---

  /// CalendarType(vCalendarType), low 8 bits.
  std::int32_t GetType() const;
  /// The kind in the phone's own numbering: 2 -> 1, 3 -> 5, 4 -> 6, 5 -> 7,
  /// 6 -> 3, 7 -> 2, 8 -> 4, any other kind -> 0.
  std::int32_t GetOrgType() const;

  void SetPriority(std::int32_t value) { priority = value; }
  /// Three levels: 1 for a stored 1 (high), 5 for a stored 2 (normal), 10
  /// for anything else (low), 0 included.
  std::int32_t GetPriority() const;

  /// Stores 1 (true) or 0 in `status`.
  void SetStatus(bool flag) { status = flag ? 1 : 0; }
  /// Whether `status` is non-zero; a new record (status 10) answers true.
  bool GetStatus() const { return status != 0; }

  /// The number of a status word, compared exactly (case-sensitive):
  /// "needsaction" 0, "complete" 1, "accepted" 2, "sent" 3, "tentative" 4,
  /// "Confirmed" 5, "Declined" 6, "Delegated" 7, "Canceled" 8; any other
  /// word 0.
  static std::int32_t findStatus(const String& word);
  /// Stores findStatus(word) as the classification. The classification is
  /// looked up in the status-word table on purpose: this is how hosts have
  /// always stored it, so "accepted" gives 2 and "public" gives 0.
  void setclassification(const String& word);

  // --- Alarm. ---

  /// Sets the run time of the current alarm (AudioReminder) from the
  /// start, dtStart. Nothing happens when the start is null. kAlarmNone
  /// marks the run time null. kAlarmAtDate takes a copy of `date` (status
  /// included; a null pointer removes the run time). kAlarmMinutes,
  /// kAlarmHours, kAlarmDays and kAlarmWeeks make a span of `value`
  /// minutes, hours, days or 7*`value` days, and the run time becomes the
  /// start moved forward by the span's whole seconds
  /// (CDateTime::dateAfterTimeInterval: a local value); any other kind
  /// moves it by nothing. `date` is read for kAlarmAtDate only. When the
  /// record has no alarm yet, one is added to the alarm list first (not for
  /// kAlarmNone, which has nothing to mark). Always answers true.
  bool SetAlarm(int kind, int value, const CDateTime* date);

  /// Reads the current alarm back as SetAlarm's kind and value. When the
  /// start or the run time is null: kind kAlarmNone, value 0 and a new null
  /// date. Otherwise the whole minutes m between start and run time
  /// (before or after: the distance counts) give, tested in this order:
  /// m < 1 kAlarmAtDate, value 0; a multiple of 10080 kAlarmWeeks,
  /// m/10080; a multiple of 1440 kAlarmDays, m/1440; a multiple of 60 below
  /// 1440 kAlarmHours, m/60; any other m above 59 kAlarmAtDate, value 0
  /// (90 minutes have no whole unit); else kAlarmMinutes, m. Answers a copy
  /// of the run time.
  CDateTimeNull GetAlarm(int& kind, int& value) const;
  /// The run time as such: kind kAlarmNone and a new null date under the
  /// same condition as GetAlarm, else kind kAlarmAtDate and a copy of the
  /// run time. The value is 0 in both cases.
  CDateTimeNull GetAlarmDate(int& kind, int& value) const;

  // --- Extension values, kept as extension items (CVObject). ---
  //
  // Each Set adds one item (no type mask, ID -1), and each Get reads the
  // first item of its name: an entry is given each value once, as the
  // reader gives it, and a second Set is shadowed by the first.

  /// Adds "X-EXPIRY" with the decimal text of `days`.
  void SetExpiry(int days);
  /// The integer value of the first "X-EXPIRY" (leading blanks and a sign
  /// are read, the digits up to the first other character; out of range
  /// saturates); 0 without one.
  int GetExpiry() const;
  /// Adds "X-ALARMTONE" with the decimal text of `tone`.
  void SetAlarmTone(int tone);
  /// The integer value of the first "X-ALARMTONE", read as GetExpiry reads;
  /// -1 without one.
  int GetAlarmTone() const;
  /// Adds "X-ALARMTONEPATH" with a copy of `path`.
  void SetAlarmTonePath(const String& path);
  /// The text of the first "X-ALARMTONEPATH"; absent without one.
  std::optional<String> GetAlarmTonePath() const;

  // --- Lists. ---

  /// Appends a new attendee (name, role, status, ID) and makes it current.
  CAttendee* NewAttendee(const String& name, std::uint32_t type, std::uint32_t status,
                         std::int32_t theID);
  /// Appends `attendee` and makes it current. Null adds nothing and answers
  /// null.
  CAttendee* addAttendee(std::unique_ptr<CAttendee> attendee);
  /// Appends `reminder` to the alarms and makes it current. Null adds
  /// nothing and answers null.
  CReminder* addAlarm(std::unique_ptr<CReminder> reminder);
  /// Appends `rule` to the recurrence rules and makes it current. Null adds
  /// nothing and answers null.
  CRecurrence* addRecurrence(std::unique_ptr<CRecurrence> rule);

  int GetAttendeecount() const { return static_cast<int>(m_arrAttendee.size()); }
  int GetAlarmcount() const { return static_cast<int>(m_arrAudioReminder.size()); }
  int GetRecurrencecount() const { return static_cast<int>(m_arrRecurrence.size()); }

  // The element at `nIndex`. An index that is not below the count is a
  // programming error and fails the assertion named; a negative index
  // fails it too, as a huge unsigned one.

  /// "nIndex < [self GetAttendeecount]"
  CAttendee* GetAttendee(int nIndex);
  const CAttendee* GetAttendee(int nIndex) const;
  /// "nIndex < [self GetAlarmcount]"
  CReminder* GetAlarm(int nIndex);
  const CReminder* GetAlarm(int nIndex) const;
  /// "nIndex < [self GetRecurrencecount]"
  CRecurrence* GetRecurrence(int nIndex);
  const CRecurrence* GetRecurrence(int nIndex) const;

  /// The current elements; null when the list is empty.
  CAttendee* Attendee() { return Attendee_; }
  const CAttendee* Attendee() const { return Attendee_; }
  CReminder* AudioReminder() { return AudioReminder_; }
  const CReminder* AudioReminder() const { return AudioReminder_; }
  CRecurrence* Recurrence() { return Recurrence_; }
  const CRecurrence* Recurrence() const { return Recurrence_; }

  // --- Plain setters. ---

  void setAllDay(bool flag) { bIsAllDay = flag; }
  /// A copy of the date, status included; nullopt removes it.
  void setStartDate(const std::optional<CDateTime>& date);
  void setEndDate(const std::optional<CDateTime>& date);
  void setDueDate(const std::optional<CDateTime>& date);
  void setSummary(const std::optional<String>& text) { strSummary = text; }
  void setDescription(const std::optional<String>& text) { strDescription = text; }
  void setLocation(const std::optional<String>& text) { strLocation = text; }
  void setCategories(std::uint32_t mask) { categories = mask; }

  void setAlarmTriggerdate(const std::optional<CalendarDate>& date) { AlarmTriggerdate = date; }
  void setAlarmTriggerduration(const std::optional<std::int64_t>& seconds) {
    AlarmTriggerduration = seconds;
  }
  void setAlarmArray(const std::optional<Array>& array) { AlarmArray = array; }
  void setRecurrenceFrequency(const std::optional<String>& text) { RecurrenceFrequency = text; }
  void setRecurrenceInterval(const std::optional<std::int64_t>& n) { RecurrenceInterval = n; }
  void setRecurrenceCount(const std::optional<std::int64_t>& n) { RecurrenceCount = n; }
  void setRecurrenceBymonthday(const std::optional<Array>& a) { RecurrenceBymonthday = a; }
  void setRecurrencebydaydays(const std::optional<Array>& a) { Recurrencebydaydays = a; }
  void setRecurrencebydayfreq(const std::optional<Array>& a) { Recurrencebydayfreq = a; }
  void setAttendeeArray(const std::optional<Array>& array) { AttendeeArray = array; }
  void setAttendeeCommonName(const std::optional<String>& text) { AttendeeCommonName = text; }
  void setAttendeeEmail(const std::optional<String>& text) { AttendeeEmail = text; }
  void setAttendeeStatus(const std::optional<String>& text) { AttendeeStatus = text; }

  // --- Fields, in the record's order. ---

  /// The owner account's ID.
  String mUserID = u"1234567890ID";
  /// The store record ID; a placeholder until setUserID (its digits differ
  /// from mUserID's and stay so).
  String mDBRecordID = u"123456789ID_Calendar";
  /// The phone's record number.
  std::uint16_t mVcalID = 0;
  std::optional<String> UID;
  /// Category bits (the vCalendar reader's CATEGORIES table); 0x40 marks a
  /// to-do.
  std::uint32_t categories = 0;
  /// 0 public, 1 private, 2 confidential.
  std::int32_t classification = 0;
  bool bIsAllDay = false;
  std::optional<CTimeZoneInfo> TimeZoneInfo;
  /// LAST-MODIFIED as received.
  std::optional<String> LMT;
  std::optional<CDateTimeNull> dtModified;
  std::optional<CDateTimeNull> dtStart;
  std::optional<CDateTimeNull> dtEnd;
  std::optional<CDateTimeNull> dtDue;
  std::optional<CDateTimeNull> Originaldate;
  // The same dates as the reader read them (and the writer writes them).
  std::optional<CalendarDate> dtModifiedComp;
  std::optional<CalendarDate> dtStartComp;
  std::optional<CalendarDate> dtEndComp;
  std::optional<CalendarDate> dtDueComp;
  std::optional<CalendarDate> OriginaldateComp;
  // Whether the text form of each date was UTC ("Z").
  bool isdtModifiedisUTC = false;
  bool isdtStartisUTC = false;
  bool isdtEndisUTC = false;
  bool isdtDueisUTC = false;
  std::optional<String> strSummary;
  std::optional<String> strDescription;
  std::optional<String> strLocation;
  std::optional<String> strAttendees;
  // The attendees in store form.
  std::optional<Array> AttendeeArray;
  std::optional<String> AttendeeCommonName;
  std::optional<String> AttendeeEmail;
  std::optional<String> AttendeeStatus;
  /// Whether the text form of the alarm's run time was UTC: the reader
  /// has always kept that flag here, whatever the name says.
  bool isdtRecurrenceisUTC = false;
  // The recurrence in store form.
  std::optional<String> RecurrenceFrequency;
  std::optional<std::int64_t> RecurrenceInterval;
  std::optional<std::int64_t> RecurrenceCount;
  std::optional<Array> RecurrenceBymonthday;
  std::optional<Array> Recurrencebydaydays;
  std::optional<Array> Recurrencebydayfreq;
  // The alarm in store form, as the writer writes it: a trigger date, or a
  // duration in seconds from the start (a to-do's due date).
  std::optional<CalendarDate> AlarmTriggerdate;
  std::optional<std::int64_t> AlarmTriggerduration;
  std::optional<Array> AlarmArray;
  /// As received; GetPriority reads it as three levels.
  std::int32_t priority = 0;
  /// A status word's number (the vCalendar reader's STATUS table); 10 is
  /// "NONE".
  std::int32_t status = 10;
  /// The store records being built from this entry: [the event record]
  /// after createMetaData.
  Array mMetaDictionary;
  /// Kind bits; see CalendarType.
  std::int32_t vCalendarType = 0;
  /// The identity state kept by the synchronisation side.
  std::int32_t mState = 0;
  std::optional<String> AccountName;
  std::optional<String> AccountType;
  bool bIsHoliday = false;
  bool bIsNoTime = false;
  std::optional<CDateTimeNull> dtCreate;
  std::optional<CDateTimeNull> dtCompleted;
  // Start and end as first received.
  std::optional<CDateTimeNull> dtStartOrg;
  std::optional<CDateTimeNull> dtEndOrg;
  /// X-ACCOUNT.
  std::optional<String> Account;
  /// XRULE: dates excepted from the recurrence; not in the rule list.
  std::optional<CRecurrence> ExceptRule;
  bool bIsLunar = false;

 private:
  void FillContainers();

  std::shared_ptr<CalendarIDMappingTable> mIDMapper;
  std::optional<String> mVCalRecordID;
  std::unique_ptr<AttendeeContainer> mAttendeeMapper;
  std::unique_ptr<AlarmContainer> mAlarmMapper;
  std::unique_ptr<RecurrenceContainer> mRecurrenceMapper;
  bool mEventChanged = true;

  CAttendee* Attendee_ = nullptr;
  std::vector<std::unique_ptr<CAttendee>> m_arrAttendee;
  CRecurrence* Recurrence_ = nullptr;
  std::vector<std::unique_ptr<CRecurrence>> m_arrRecurrence;
  CReminder* AudioReminder_ = nullptr;
  std::vector<std::unique_ptr<CReminder>> m_arrAudioReminder;
};

}  // namespace phonepim
