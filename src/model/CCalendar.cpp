#include "phonepim/model/CCalendar.h"

#include <cctype>
#include <climits>
#include <cstdio>
#include <iterator>
#include <string>
#include <utility>

#include "model/CCalendarDates.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/sync/AlarmContainer.h"
#include "phonepim/sync/AttendeeContainer.h"
#include "phonepim/sync/RecurrenceContainer.h"

namespace phonepim {

using model_detail::IsNullDate;
using model_detail::SameMoment;
using model_detail::SameText;

namespace {

constexpr char kExpiry[] = "X-EXPIRY";
constexpr char kAlarmTone[] = "X-ALARMTONE";
constexpr char kAlarmTonePath[] = "X-ALARMTONEPATH";

constexpr std::int64_t kMinutesPerHour = 60;
constexpr std::int64_t kMinutesPerDay = 1440;
constexpr std::int64_t kMinutesPerWeek = 10080;

String Decimal(std::int64_t number) { return StringFromASCII(std::to_string(number)); }

// The integer at the start of a text: leading blanks, an optional sign,
// then digits up to the first other character; what follows is ignored, so
// a received value with trailing text still reads. Anything unreadable is 0;
// out of range saturates.
int LeadingInteger(const String& text) {
  std::size_t i = 0;
  while (i < text.size() && text[i] < 0x80 && std::isspace(static_cast<unsigned char>(text[i]))) {
    ++i;
  }
  bool negative = false;
  if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) {
    negative = text[i] == u'-';
    ++i;
  }
  long long value = 0;
  for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
    value = value * 10 + (text[i] - u'0');
    if (value > static_cast<long long>(INT_MAX) + 1) {
      value = static_cast<long long>(INT_MAX) + 1;
    }
  }
  if (negative) {
    value = -value;
  }
  if (value > INT_MAX) {
    return INT_MAX;
  }
  return static_cast<int>(value);
}

// The same number of elements, pairwise `same` in list order.
template <class T, class Same>
bool SameElements(const std::vector<std::unique_ptr<T>>& a,
                  const std::vector<std::unique_ptr<T>>& b, Same same) {
  if (a.size() != b.size()) {
    return false;
  }
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!same(*a[i], *b[i])) {
      return false;
    }
  }
  return true;
}

// Deep-copies a list and answers the copy of `current` (null for null).
template <class T>
T* CopyList(const std::vector<std::unique_ptr<T>>& from, const T* current,
            std::vector<std::unique_ptr<T>>& to) {
  T* copiedCurrent = nullptr;
  to.reserve(from.size());
  for (const auto& element : from) {
    to.push_back(std::make_unique<T>(*element));
    if (element.get() == current) {
      copiedCurrent = to.back().get();
    }
  }
  return copiedCurrent;
}

template <class T>
T* Append(std::vector<std::unique_ptr<T>>& list, std::unique_ptr<T> element, T*& current) {
  if (!element) {
    return nullptr;
  }
  list.push_back(std::move(element));
  current = list.back().get();
  return current;
}

std::optional<CDateTimeNull> NullableCopy(const std::optional<CDateTime>& date) {
  if (!date.has_value()) {
    return std::nullopt;
  }
  return CDateTimeNull(*date);
}

template <class T>
std::unique_ptr<T> CopyOf(const std::unique_ptr<T>& container) {
  return container ? std::make_unique<T>(*container) : nullptr;
}

}  // namespace

CCalendar::CCalendar() : mIDMapper(std::make_shared<CalendarIDMappingTable>()) {}

CCalendar::~CCalendar() = default;

std::unique_ptr<CCalendar> CCalendar::Clone() const {
  auto copy = std::make_unique<CCalendar>();
  copy->setStorage(storage());
  copy->setThisID(thisID());
  for (const auto& item : m_arrXItem) {
    copy->m_arrXItem.push_back(std::make_unique<CXItem>(*item));
  }

  copy->mUserID = mUserID;
  copy->mDBRecordID = mDBRecordID;
  copy->mVcalID = mVcalID;
  copy->UID = UID;
  copy->categories = categories;
  copy->classification = classification;
  copy->bIsAllDay = bIsAllDay;
  copy->TimeZoneInfo = TimeZoneInfo;
  copy->LMT = LMT;
  copy->dtModified = dtModified;
  copy->dtStart = dtStart;
  copy->dtEnd = dtEnd;
  copy->dtDue = dtDue;
  copy->Originaldate = Originaldate;
  copy->dtModifiedComp = dtModifiedComp;
  copy->dtStartComp = dtStartComp;
  copy->dtEndComp = dtEndComp;
  copy->dtDueComp = dtDueComp;
  copy->OriginaldateComp = OriginaldateComp;
  copy->isdtModifiedisUTC = isdtModifiedisUTC;
  copy->isdtStartisUTC = isdtStartisUTC;
  copy->isdtEndisUTC = isdtEndisUTC;
  copy->isdtDueisUTC = isdtDueisUTC;
  copy->strSummary = strSummary;
  copy->strDescription = strDescription;
  copy->strLocation = strLocation;
  copy->strAttendees = strAttendees;
  copy->AttendeeArray = AttendeeArray;
  copy->AttendeeCommonName = AttendeeCommonName;
  copy->AttendeeEmail = AttendeeEmail;
  copy->AttendeeStatus = AttendeeStatus;
  copy->isdtRecurrenceisUTC = isdtRecurrenceisUTC;
  copy->RecurrenceFrequency = RecurrenceFrequency;
  copy->RecurrenceInterval = RecurrenceInterval;
  copy->RecurrenceCount = RecurrenceCount;
  copy->RecurrenceBymonthday = RecurrenceBymonthday;
  copy->Recurrencebydaydays = Recurrencebydaydays;
  copy->Recurrencebydayfreq = Recurrencebydayfreq;
  copy->AlarmTriggerdate = AlarmTriggerdate;
  copy->AlarmTriggerduration = AlarmTriggerduration;
  copy->AlarmArray = AlarmArray;
  copy->priority = priority;
  copy->status = status;
  copy->mMetaDictionary = mMetaDictionary;
  copy->vCalendarType = vCalendarType;
  copy->mState = mState;
  copy->AccountName = AccountName;
  copy->AccountType = AccountType;
  copy->bIsHoliday = bIsHoliday;
  copy->bIsNoTime = bIsNoTime;
  copy->dtCreate = dtCreate;
  copy->dtCompleted = dtCompleted;
  copy->dtStartOrg = dtStartOrg;
  copy->dtEndOrg = dtEndOrg;
  copy->Account = Account;
  copy->ExceptRule = ExceptRule;
  copy->bIsLunar = bIsLunar;

  copy->mIDMapper = mIDMapper;
  copy->mVCalRecordID = mVCalRecordID;
  copy->mAttendeeMapper = CopyOf(mAttendeeMapper);
  copy->mAlarmMapper = CopyOf(mAlarmMapper);
  copy->mRecurrenceMapper = CopyOf(mRecurrenceMapper);
  copy->mEventChanged = mEventChanged;

  copy->Attendee_ = CopyList(m_arrAttendee, Attendee_, copy->m_arrAttendee);
  copy->Recurrence_ = CopyList(m_arrRecurrence, Recurrence_, copy->m_arrRecurrence);
  copy->AudioReminder_ = CopyList(m_arrAudioReminder, AudioReminder_, copy->m_arrAudioReminder);
  return copy;
}

bool CCalendar::IsEqual(const CCalendar* other) const {
  if (other == nullptr) {
    return false;
  }
  const CCalendar& o = *other;
  if (vCalendarType != o.vCalendarType || categories != o.categories ||
      classification != o.classification || priority != o.priority || status != o.status) {
    return false;
  }
  if (bIsAllDay != o.bIsAllDay || bIsHoliday != o.bIsHoliday || bIsNoTime != o.bIsNoTime ||
      bIsLunar != o.bIsLunar) {
    return false;
  }
  if (!SameText(strSummary, o.strSummary) || !SameText(strDescription, o.strDescription) ||
      !SameText(strLocation, o.strLocation)) {
    return false;
  }
  if (!SameMoment(dtStart, o.dtStart) || !SameMoment(dtEnd, o.dtEnd) ||
      !SameMoment(dtDue, o.dtDue) || !SameMoment(dtCompleted, o.dtCompleted) ||
      !SameMoment(dtStartComp, o.dtStartComp) || !SameMoment(dtEndComp, o.dtEndComp) ||
      !SameMoment(dtDueComp, o.dtDueComp)) {
    return false;
  }
  if (!SameElements(m_arrAudioReminder, o.m_arrAudioReminder,
                    [](const CReminder& a, const CReminder& b) { return a.IsEqual(&b); }) ||
      !SameElements(m_arrAttendee, o.m_arrAttendee,
                    [](const CAttendee& a, const CAttendee& b) { return a.isEqual(&b); }) ||
      !SameElements(m_arrRecurrence, o.m_arrRecurrence,
                    [](const CRecurrence& a, const CRecurrence& b) { return a.IsEqual(b); })) {
    return false;
  }
  if (ExceptRule.has_value() != o.ExceptRule.has_value() ||
      (ExceptRule.has_value() && !ExceptRule->IsEqual(*o.ExceptRule))) {
    return false;
  }
  return GetExpiry() == o.GetExpiry() && GetAlarmTone() == o.GetAlarmTone() &&
         SameText(GetAlarmTonePath(), o.GetAlarmTonePath());
}

// --- Identity. ---

void CCalendar::setUserID(const String& userID) {
  mUserID = userID;
  mDBRecordID = userID + u"_Calendar";
}

void CCalendar::setUserIDWithType(std::int32_t /*type*/, const String& userID) {
  mUserID = userID;
  mDBRecordID = userID;
}

String CCalendar::generateNewVCalIDWithNewLUID(std::int32_t luid, const String& imei,
                                               std::int32_t type) {
  const char16_t* suffix = u"_temp";
  switch (type) {
    case 1:
      suffix = u"_Appointment";
      break;
    case 2:
      suffix = u"_Anniversary";
      break;
    case 7:
      suffix = u"_Task";
      break;
    default:
      break;
  }
  char number[24];
  std::snprintf(number, sizeof number, "%016d", luid);
  return StringFromASCII(number) + u"-Calendar-" + imei + suffix;
}

String CCalendar::generateNewVCalID(std::int64_t luid) { return Decimal(luid); }

String CCalendar::generateNewVCalIDWithType(std::int64_t luid, std::int32_t /*type*/) {
  return Decimal(luid);
}

// --- Kind, priority, status. ---

std::int32_t CCalendar::GetType() const { return CalendarType(vCalendarType) & 0xFF; }

std::int32_t CCalendar::GetOrgType() const {
  switch (GetType()) {
    case 2:
      return 1;
    case 3:
      return 5;
    case 4:
      return 6;
    case 5:
      return 7;
    case 6:
      return 3;
    case 7:
      return 2;
    case 8:
      return 4;
    default:
      return 0;
  }
}

std::int32_t CCalendar::GetPriority() const {
  switch (priority) {
    case 1:
      return 1;
    case 2:
      return 5;
    default:
      return 10;
  }
}

std::int32_t CCalendar::findStatus(const String& word) {
  static const char16_t* const kWords[] = {
      u"needsaction", u"complete", u"accepted",  u"sent",     u"tentative",
      u"Confirmed",   u"Declined", u"Delegated", u"Canceled",
  };
  for (std::int32_t i = 0; i < static_cast<std::int32_t>(std::size(kWords)); ++i) {
    if (word == kWords[i]) {
      return i;
    }
  }
  return 0;
}

void CCalendar::setclassification(const String& word) { classification = findStatus(word); }

// --- Alarm. ---

bool CCalendar::SetAlarm(int kind, int value, const CDateTime* date) {
  if (IsNullDate(dtStart)) {
    return true;
  }
  if (kind == kAlarmNone) {
    if (AudioReminder_ != nullptr && AudioReminder_->RunTime().has_value()) {
      AudioReminder_->RunTime()->Null();
    }
    return true;
  }
  if (AudioReminder_ == nullptr) {
    addAlarm(std::make_unique<CReminder>());
  }
  if (kind == kAlarmAtDate) {
    AudioReminder_->SetRunTime(date != nullptr ? std::optional<CDateTime>(*date) : std::nullopt);
    return true;
  }
  // In doubles: 7 * value days overflows an int long before a date does.
  double seconds = 0.0;
  switch (kind) {
    case kAlarmMinutes:
      seconds = value * 60.0;
      break;
    case kAlarmHours:
      seconds = value * 3600.0;
      break;
    case kAlarmDays:
      seconds = value * 86400.0;
      break;
    case kAlarmWeeks:
      seconds = value * 7.0 * 86400.0;
      break;
    default:
      break;
  }
  const CDateTimeSpan span(seconds);
  AudioReminder_->SetRunTime(
      dtStart->dateAfterTimeInterval(static_cast<double>(span.GetTotalSeconds())));
  return true;
}

CDateTimeNull CCalendar::GetAlarm(int& kind, int& value) const {
  value = 0;
  if (IsNullDate(dtStart) || AudioReminder_ == nullptr || IsNullDate(AudioReminder_->RunTime())) {
    kind = kAlarmNone;
    return CDateTimeNull();
  }
  const CDateTimeNull& runTime = *AudioReminder_->RunTime();
  const std::int64_t minutes = dtStart->spanFromDate(runTime).GetTotalMinutes();
  if (minutes < 1) {
    kind = kAlarmAtDate;
  } else if (minutes % kMinutesPerWeek == 0) {
    kind = kAlarmWeeks;
    value = static_cast<int>(minutes / kMinutesPerWeek);
  } else if (minutes % kMinutesPerDay == 0) {
    kind = kAlarmDays;
    value = static_cast<int>(minutes / kMinutesPerDay);
  } else if (minutes % kMinutesPerHour == 0 && minutes < kMinutesPerDay) {
    kind = kAlarmHours;
    value = static_cast<int>(minutes / kMinutesPerHour);
  } else if (minutes > 59) {
    // No whole unit fits (90 minutes, 25 hours): the alarm is kept as a
    // date.
    kind = kAlarmAtDate;
  } else {
    kind = kAlarmMinutes;
    value = static_cast<int>(minutes);
  }
  return runTime;
}

CDateTimeNull CCalendar::GetAlarmDate(int& kind, int& value) const {
  value = 0;
  if (IsNullDate(dtStart) || AudioReminder_ == nullptr || IsNullDate(AudioReminder_->RunTime())) {
    kind = kAlarmNone;
    return CDateTimeNull();
  }
  kind = kAlarmAtDate;
  return *AudioReminder_->RunTime();
}

// --- Extension values. ---

void CCalendar::SetExpiry(int days) { NewXItem(StringFromASCII(kExpiry), Decimal(days), 0, -1); }

int CCalendar::GetExpiry() const {
  const CXItem* item = FindXItem(kExpiry);
  return item != nullptr ? LeadingInteger(item->Data()) : 0;
}

void CCalendar::SetAlarmTone(int tone) {
  NewXItem(StringFromASCII(kAlarmTone), Decimal(tone), 0, -1);
}

int CCalendar::GetAlarmTone() const {
  const CXItem* item = FindXItem(kAlarmTone);
  return item != nullptr ? LeadingInteger(item->Data()) : -1;
}

void CCalendar::SetAlarmTonePath(const String& path) {
  NewXItem(StringFromASCII(kAlarmTonePath), path, 0, -1);
}

std::optional<String> CCalendar::GetAlarmTonePath() const {
  const CXItem* item = FindXItem(kAlarmTonePath);
  if (item == nullptr) {
    return std::nullopt;
  }
  return item->Data();
}

// --- Lists. ---

CAttendee* CCalendar::NewAttendee(const String& name, std::uint32_t type, std::uint32_t status,
                                  std::int32_t theID) {
  return addAttendee(std::make_unique<CAttendee>(name, type, status, theID));
}

CAttendee* CCalendar::addAttendee(std::unique_ptr<CAttendee> attendee) {
  return Append(m_arrAttendee, std::move(attendee), Attendee_);
}

CReminder* CCalendar::addAlarm(std::unique_ptr<CReminder> reminder) {
  return Append(m_arrAudioReminder, std::move(reminder), AudioReminder_);
}

CRecurrence* CCalendar::addRecurrence(std::unique_ptr<CRecurrence> rule) {
  return Append(m_arrRecurrence, std::move(rule), Recurrence_);
}

// The index is compared as unsigned, so that a negative one fails the same
// assertion instead of reaching past the front of the list.

CAttendee* CCalendar::GetAttendee(int nIndex) {
  PHONEPIM_ASSERT(static_cast<unsigned>(nIndex) < m_arrAttendee.size(),
                  "nIndex < [self GetAttendeecount]");
  return m_arrAttendee[static_cast<std::size_t>(nIndex)].get();
}

const CAttendee* CCalendar::GetAttendee(int nIndex) const {
  return const_cast<CCalendar*>(this)->GetAttendee(nIndex);
}

CReminder* CCalendar::GetAlarm(int nIndex) {
  PHONEPIM_ASSERT(static_cast<unsigned>(nIndex) < m_arrAudioReminder.size(),
                  "nIndex < [self GetAlarmcount]");
  return m_arrAudioReminder[static_cast<std::size_t>(nIndex)].get();
}

const CReminder* CCalendar::GetAlarm(int nIndex) const {
  return const_cast<CCalendar*>(this)->GetAlarm(nIndex);
}

CRecurrence* CCalendar::GetRecurrence(int nIndex) {
  PHONEPIM_ASSERT(static_cast<unsigned>(nIndex) < m_arrRecurrence.size(),
                  "nIndex < [self GetRecurrencecount]");
  return m_arrRecurrence[static_cast<std::size_t>(nIndex)].get();
}

const CRecurrence* CCalendar::GetRecurrence(int nIndex) const {
  return const_cast<CCalendar*>(this)->GetRecurrence(nIndex);
}

// --- Plain setters. ---

void CCalendar::setStartDate(const std::optional<CDateTime>& date) { dtStart = NullableCopy(date); }

void CCalendar::setEndDate(const std::optional<CDateTime>& date) { dtEnd = NullableCopy(date); }

void CCalendar::setDueDate(const std::optional<CDateTime>& date) { dtDue = NullableCopy(date); }

}  // namespace phonepim
