// CCalendar's side of the synchronisation: its identity in the calendar
// table and its store records. sync/CalendarRecord.h lists the keys.

#include <array>
#include <utility>

#include "model/CCalendarDates.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/model/CCalendar.h"
#include "phonepim/sync/AlarmContainer.h"
#include "phonepim/sync/AttendeeContainer.h"
#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/RecurrenceContainer.h"
#include "phonepim/sync/SyncRecordSchema.h"

namespace phonepim {

using namespace calendar_record;
using model_detail::IsNullDate;

namespace {

// The phone's record number at the start of its record ID.
std::uint16_t LeadingNumber(const String& recordID) {
  std::uint32_t number = 0;
  for (char16_t c : recordID) {
    if (c < u'0' || c > u'9') break;
    number = number * 10 + static_cast<std::uint32_t>(c - u'0');
  }
  return static_cast<std::uint16_t>(number);
}

void SetText(Dictionary& record, const String& key, const std::optional<String>& text) {
  if (text && !text->empty()) record.insert_or_assign(key, *text);
}

// The vCalendar reader fills the calendar-date form of a date (dtStartComp
// and its kin); a host may set the other. Either gives the record its date.
void SetDate(Dictionary& record, const String& key, const std::optional<CDateTimeNull>& date,
             const std::optional<CalendarDate>& readDate) {
  if (!IsNullDate(date)) {
    record.insert_or_assign(key, Date{date->date()});
  } else if (readDate) {
    record.insert_or_assign(key, Date{readDate->date});
  }
}

constexpr std::int32_t kTaskKind = 7;

}  // namespace

void CCalendar::resolveIdentity(std::optional<std::uint16_t> vCalID, const String& IMEI,
                                const std::optional<String>& dbRecordID,
                                std::shared_ptr<CalendarIDMappingTable> idMapper) {
  if (idMapper) mIDMapper = std::move(idMapper);
  mVCalRecordID.reset();
  mState = 0;
  if (dbRecordID) {
    mState = kStateDBRecordIDKnown;
    mDBRecordID = *dbRecordID;
    if (std::optional<String> known = mIDMapper->vCalIDForDBID(*dbRecordID)) {
      mVcalID = LeadingNumber(*known);
      mVCalRecordID = std::move(known);
      mState |= kStateVCalIDKnown;
    } else {
      mVcalID = static_cast<std::uint16_t>(mIDMapper->nextTemporaryID());
    }
  } else if (vCalID) {
    mState = kStateVCalIDKnown;
    mVcalID = *vCalID;
    mVCalRecordID = generateNewVCalIDWithNewLUID(*vCalID, IMEI, GetType());
    if (std::optional<String> known = mIDMapper->dbIDForVCalID(*mVCalRecordID)) {
      mDBRecordID = std::move(*known);
      mState |= kStateDBRecordIDKnown;
    } else {
      mDBRecordID = *mVCalRecordID;
    }
  }
  if (mVCalRecordID) {
    mAttendeeMapper = std::make_unique<AttendeeContainer>(*mVCalRecordID, mIDMapper, mDBRecordID);
    mAlarmMapper = std::make_unique<AlarmContainer>(*mVCalRecordID, mIDMapper, mDBRecordID);
    mRecurrenceMapper =
        std::make_unique<RecurrenceContainer>(*mVCalRecordID, mIDMapper, mDBRecordID);
  } else {
    mAttendeeMapper.reset();
    mAlarmMapper.reset();
    mRecurrenceMapper.reset();
  }
}

void CCalendar::createMetaData(const String& calendarID) {
  static const std::array<String, 3> kClassifications = {u"public", u"private", u"confidential"};
  static const std::array<String, 9> kStatusWords = {
      u"needsaction", u"complete", u"accepted", u"sent",    u"tentative",
      u"Confirmed",   u"Declined", u"Delegated", u"Canceled"};

  Dictionary event{{ISyncRecordEntityNameKey, kEventEntityName}};
  SetText(event, kSummary, strSummary);
  SetText(event, kDescription, strDescription);
  SetText(event, kLocation, strLocation);
  SetDate(event, kStartDate, dtStart, dtStartComp);
  const bool task = GetType() == kTaskKind;
  if (task) {
    SetDate(event, kDueDate, dtDue, dtDueComp);
    event.insert_or_assign(kPriority, std::int64_t{GetPriority()});
  } else {
    SetDate(event, kEndDate, dtEnd, dtEndComp);
  }
  event.insert_or_assign(kAllDay, bIsAllDay);
  event.insert_or_assign(kClassification,
                         classification >= 0 && classification <= 2
                             ? kClassifications[static_cast<std::size_t>(classification)]
                             : kClassifications[0]);
  if (status >= 0 && status < static_cast<std::int32_t>(kStatusWords.size())) {
    event.insert_or_assign(kStatus, kStatusWords[static_cast<std::size_t>(status)]);
  }
  if (categories != 0) event.insert_or_assign(kCategories, std::int64_t{categories});
  SetText(event, kExternalID, UID);
  SetDate(event, kDateModified, dtModified, dtModifiedComp);
  event.insert_or_assign(kCalendar, Array{Value(calendarID)});

  mEventChanged = true;
  if (mAttendeeMapper) {
    // The containers write the new identifiers into the kept data: compare
    // with it as it was.
    std::optional<Dictionary> kept;
    if (const Dictionary* entry = std::as_const(*mIDMapper).meta(*mVCalRecordID)) {
      if (const auto* data =
              FindAs<Dictionary>(*entry, CalendarIDMappingTable::dataKey(*mVCalRecordID))) {
        kept = *data;
      }
    }
    mIDMapper->ensureEntry(*mVCalRecordID);
    FillContainers();
    const std::pair<const String*, BaseContainer*> containers[] = {
        {&kAttendees, mAttendeeMapper.get()},
        {&kAudioAlarms, mAlarmMapper.get()},
        {&kRecurrences, mRecurrenceMapper.get()},
    };
    for (const auto& [key, container] : containers) {
      const std::vector<String> identifiers = container->createMetaData();
      if (!identifiers.empty()) {
        event.insert_or_assign(*key, Array(identifiers.begin(), identifiers.end()));
      }
    }
    mEventChanged = !kept || *kept != event;
  }
  mMetaDictionary = Array{Value(std::move(event))};
}

void CCalendar::FillContainers() {
  mAttendeeMapper->removeAllRecords();
  mAlarmMapper->removeAllRecords();
  mRecurrenceMapper->removeAllRecords();
  for (const auto& attendee : m_arrAttendee) {
    mAttendeeMapper->addAttendee(attendee->Data(), attendee->mStatus_t());
  }
  // An alarm without a run time has nothing to ring at: the reader's
  // AALARM without a date.
  for (const auto& alarm : m_arrAudioReminder) {
    if (!IsNullDate(alarm->RunTime())) mAlarmMapper->addAlarm(Date{alarm->RunTime()->date()});
  }
  for (const auto& rule : m_arrRecurrence) {
    if (const RecurrenceData* data = rule->GetRecurrenceData()) {
      mRecurrenceMapper->addRecurrence(*data);
    }
  }
}

const Dictionary& CCalendar::eventRecord() const {
  static const Dictionary kNone;
  return mMetaDictionary.empty() ? kNone : mMetaDictionary.front().get<Dictionary>();
}

}  // namespace phonepim
