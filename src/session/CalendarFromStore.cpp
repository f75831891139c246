#include "phonepim/session/CalendarFromStore.h"

#include <algorithm>

#include "phonepim/model/CReminder.h"
#include "phonepim/session/StoreRecordName.h"
#include "phonepim/store/SyncStore.h"
#include "phonepim/sync/AttendeeContainer.h"
#include "phonepim/sync/CalendarRecord.h"
#include "phonepim/sync/SyncRecordSchema.h"

namespace phonepim {
namespace {

using namespace calendar_record;

std::optional<CDateTime> DateOf(const Dictionary& record, const String& key) {
  const Date* date = FindAs<Date>(record, key);
  return date ? std::optional<CDateTime>(CDateTime(date->secondsSince1970, 0)) : std::nullopt;
}

std::int64_t NumberOf(const Dictionary& record, const String& key, std::int64_t otherwise) {
  const std::int64_t* number = FindAs<std::int64_t>(record, key);
  return number ? *number : otherwise;
}

void AddRule(CCalendar& entry, const Dictionary& record) {
  CRecurrence* rule = entry.addRecurrence(std::make_unique<CRecurrence>());
  const int interval = static_cast<int>(NumberOf(record, kInterval, 1));
  Array weekdays;
  Array positions;
  for (std::int64_t day = 0; day < 7; ++day) {
    if (const Array* at = FindAs<Array>(record, kDayNames[day])) {
      weekdays.emplace_back(day);
      if (!at->empty()) positions.push_back(at->front());
    }
  }
  const String& frequency = TextOf(record, kFrequency);
  if (frequency == u"daily") {
    rule->SetDaily(interval, 0, nullptr);
  } else if (frequency == u"weekly") {
    rule->SetWeekly(interval, 0, nullptr, weekdays.empty() ? nullptr : &weekdays);
  } else if (frequency == u"monthly" && !weekdays.empty()) {
    rule->SetMonthlyByPos(interval, positions, weekdays, 0, nullptr);
  } else if (frequency == u"monthly") {
    const Array* days = FindAs<Array>(record, kByMonthDay);
    rule->SetMonthlyByDay(interval, days ? *days : Array{Value(std::int64_t{1})}, 0, nullptr);
  } else {
    const std::optional<CDateTime> start = entry.dtStart ? std::optional<CDateTime>(CDateTime(entry.dtStart->date(), 0)) : std::nullopt;
    const std::int64_t month = start ? start->dateComponents().month : 1;
    rule->SetYearlyByMonth(interval, Array{Value(month)}, 0, nullptr);
  }
  // The setters take no end date: a rule gets it afterwards.
  if (const std::optional<CDateTime> until = DateOf(record, kUntil)) {
    rule->GetRecurrenceData()->setUntilDate(*until);
  }
}

void AddSubRecord(CCalendar& entry, const Dictionary& record) {
  const String& entity = TextOf(record, ISyncRecordEntityNameKey);
  if (entity == kAttendeeEntityName) {
    std::uint32_t status = 0;
    while (status < 8 && AttendeeContainer::statusWord(status) != TextOf(record, kAttendeeStatus)) {
      ++status;
    }
    entry.NewAttendee(TextOf(record, kCommonName), 0, status < 8 ? status : 0, -1);
  } else if (entity == kAudioAlarmEntityName) {
    if (const std::optional<CDateTime> rings = DateOf(record, kTriggerDate)) {
      entry.addAlarm(std::make_unique<CReminder>())->SetRunTime(rings);
      // The writer writes the first alarm's instant.
      if (!entry.AlarmTriggerdate) {
        entry.setAlarmTriggerdate(CalendarDate{FindAs<Date>(record, kTriggerDate)->secondsSince1970, u"GMT"});
      }
    }
  } else if (entity == kRecurrenceEntityName) {
    AddRule(entry, record);
  }
}

void FillEvent(CCalendar& entry, const String& vCalID, const Dictionary& event) {
  // The kind is in the phone record ID; its mask bit as CalendarType reads it.
  if (vCalID.ends_with(u"_Task")) entry.vCalendarType = 0x40;
  if (vCalID.ends_with(u"_Anniversary")) entry.vCalendarType = 0x2;
  for (const auto& [key, text] : {std::pair{&kSummary, &CCalendar::setSummary},
                                  std::pair{&kDescription, &CCalendar::setDescription},
                                  std::pair{&kLocation, &CCalendar::setLocation}}) {
    if (const String* value = FindAs<String>(event, *key)) (entry.*text)(*value);
  }
  // The writer writes the calendar dates, read in GMT as the reader keeps
  // them, and the model's dates beside them.
  const std::pair<const String*, std::pair<std::optional<CDateTimeNull>*, std::optional<CalendarDate>*>>
      dates[] = {{&kStartDate, {&entry.dtStart, &entry.dtStartComp}},
                 {&kEndDate, {&entry.dtEnd, &entry.dtEndComp}},
                 {&kDueDate, {&entry.dtDue, &entry.dtDueComp}}};
  for (const auto& [key, fields] : dates) {
    if (const Date* date = FindAs<Date>(event, *key)) {
      *fields.first = CDateTimeNull(CDateTime(date->secondsSince1970, 1));
      *fields.second = CalendarDate{date->secondsSince1970, u"GMT"};
    }
  }
  entry.setAllDay(FindAs<bool>(event, kAllDay) != nullptr && *FindAs<bool>(event, kAllDay));
  const String& classification = TextOf(event, kClassification);
  entry.classification = classification == u"private" ? 1 : classification == u"confidential" ? 2 : 0;
  if (Find(event, kStatus) != nullptr) entry.status = CCalendar::findStatus(TextOf(event, kStatus));
  // GetPriority reads a stored 1 as 1 (high) and 2 as 5 (normal).
  const std::int64_t priority = NumberOf(event, kPriority, 0);
  entry.priority = priority == 1 ? 1 : priority == 5 ? 2 : 0;
  entry.setCategories(static_cast<std::uint32_t>(NumberOf(event, kCategories, 0)));
  if (const String* uid = FindAs<String>(event, kExternalID)) entry.UID = *uid;
}

}  // namespace

std::vector<std::unique_ptr<CCalendar>> CalendarFromStore(const SyncStore& store,
                                                          const String& imei) {
  std::vector<std::pair<String, std::unique_ptr<CCalendar>>> entries;
  const String suffix = u"_" + imei;
  for (const String& name : store.tableNames()) {
    if (!name.starts_with(u"Calendar_") || !name.ends_with(suffix)) continue;
    const std::optional<Dictionary> table = store.table(name);
    for (const auto& [vCalID, value] : *table) {
      const Dictionary* meta = value.getIf<Dictionary>();
      const String& storeID = meta ? TextOf(*meta, u"dbRecordID") : String();
      const std::optional<Dictionary> event = storeID.empty() ? std::nullopt : store.fetch(storeID);
      if (!event) continue;
      auto entry = std::make_unique<CCalendar>();
      FillEvent(*entry, vCalID, *event);
      for (const String* list : {&kAttendees, &kAudioAlarms, &kRecurrences}) {
        const Array* ids = FindAs<Array>(*event, *list);
        for (const Value& id : ids ? *ids : Array()) {
          const String* text = id.getIf<String>();
          if (text == nullptr) continue;
          if (std::optional<Dictionary> sub = store.fetch(*text)) AddSubRecord(*entry, *sub);
        }
      }
      entries.emplace_back(vCalID, std::move(entry));
    }
  }
  // The keys begin with the zero-padded number: their order is the phone's.
  std::sort(entries.begin(), entries.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::unique_ptr<CCalendar>> result;
  for (auto& [key, entry] : entries) result.push_back(std::move(entry));
  return result;
}

}  // namespace phonepim
