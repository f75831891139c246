#include "phonepim/sync/RecurrenceContainer.h"

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/sync/CalendarRecord.h"

namespace phonepim {

using namespace calendar_record;

namespace {

// Sets the name of each weekday in `weekdays` (0 Sunday to 6) to `positions`.
void SetDays(Dictionary& record, const Array& weekdays, const Array& positions) {
  for (const Value& day : weekdays) {
    const std::int64_t* number = day.getIf<std::int64_t>();
    if (number != nullptr && *number >= 0 && *number < 7) {
      record.insert_or_assign(kDayNames[static_cast<std::size_t>(*number)], positions);
    }
  }
}

const String& Frequency(int type) {
  static const String kWords[] = {u"daily", u"weekly", u"monthly", u"yearly"};
  switch (type) {
    case RecurrenceData::kDaily: return kWords[0];
    case RecurrenceData::kWeekly: return kWords[1];
    case RecurrenceData::kMonthlyByPos:
    case RecurrenceData::kMonthlyByDay: return kWords[2];
    default: return kWords[3];
  }
}

}  // namespace

Dictionary RecurrenceContainer::createRecurrenceDataForDB(const RecurrenceData& rule) const {
  Dictionary record = newSubRecord(kRecurrenceEntityName);
  record.insert_or_assign(kFrequency, Frequency(rule.Type()));
  record.insert_or_assign(kInterval, std::int64_t{rule.Interval()});
  const std::optional<CDateTimeNull>& until = rule.UntilDate();
  if (until && until->GetStatus() != CDateTime::kStatusNull) {
    record.insert_or_assign(kUntil, Date{until->date()});
  }
  if (const auto* weekly = dynamic_cast<const WeeklyData*>(&rule)) {
    record.insert_or_assign(kWeekStartDay, std::int64_t{1});
    SetDays(record, weekly->ArrayWeekday(), Array{Value(std::int64_t{0})});
  } else if (const auto* byPos = dynamic_cast<const MonthlyByPosData*>(&rule)) {
    SetDays(record, byPos->ArrayWeekday(), byPos->ArrayWeekPos());
  } else if (const auto* byDay = dynamic_cast<const MonthlyByDayData*>(&rule)) {
    record.insert_or_assign(kByMonthDay, byDay->ArrayMonthday());
  }
  return record;
}

void RecurrenceContainer::addRecurrence(const RecurrenceData& rule) {
  addRecord(createRecurrenceDataForDB(rule));
}

std::vector<String> RecurrenceContainer::createMetaData() {
  return createMetaDataInCalendarWithKey(kRecurrences, kFrequency);
}

}  // namespace phonepim
