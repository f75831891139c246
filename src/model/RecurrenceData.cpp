#include "phonepim/model/RecurrenceData.h"

#include <cstddef>

#include "phonepim/text/NSArrayCustom.h"

namespace phonepim {
namespace {

bool SameUntilDate(const std::optional<CDateTimeNull>& a, const std::optional<CDateTimeNull>& b) {
  if (!a || !b) return !a && !b;
  return a->IsEqual(*b);
}

// The other rule as the same kind, or nullptr when it is another kind.
template <class Kind>
const Kind* SameKind(const RecurrenceData& other) {
  return dynamic_cast<const Kind*>(&other);
}

}  // namespace

RecurrenceData::RecurrenceData(int type) : Type_(type) {}

RecurrenceData::~RecurrenceData() = default;

std::unique_ptr<RecurrenceData> RecurrenceData::Clone() const {
  return std::unique_ptr<RecurrenceData>(new RecurrenceData(*this));
}

void RecurrenceData::setUntilDate(const CDateTime& date) {
  UntilDate_.emplace(date.date(), date.timeZoneType());
}

bool RecurrenceData::IsEqual(const RecurrenceData& other) const {
  return Type_ == other.Type_ && Interval_ == other.Interval_ &&
         duration_ == other.duration_ && SameUntilDate(UntilDate_, other.UntilDate_);
}

bool IsEqualNumberArrayData(const Array& a, const Array& b) {
  const int countA = static_cast<int>(a.size());
  const int countB = static_cast<int>(b.size());
  for (int i = 0; i < countA; ++i) {
    const int number = intValueAtIndex(a, i);
    bool found = false;
    for (int j = 0; j < countB && !found; ++j) found = intValueAtIndex(b, j) == number;
    if (!found) return false;
  }
  return true;
}

std::unique_ptr<RecurrenceData> DailyData::Clone() const {
  return std::make_unique<DailyData>(*this);
}

std::unique_ptr<RecurrenceData> WeeklyData::Clone() const {
  return std::make_unique<WeeklyData>(*this);
}

bool WeeklyData::IsEqual(const RecurrenceData& other) const {
  const auto* same = SameKind<WeeklyData>(other);
  return same && RecurrenceData::IsEqual(other) &&
         IsEqualNumberArrayData(ArrayWeekday_, same->ArrayWeekday_);
}

std::unique_ptr<RecurrenceData> MonthlyByPosData::Clone() const {
  return std::make_unique<MonthlyByPosData>(*this);
}

bool MonthlyByPosData::IsEqual(const RecurrenceData& other) const {
  const auto* same = SameKind<MonthlyByPosData>(other);
  return same && RecurrenceData::IsEqual(other) &&
         IsEqualNumberArrayData(ArrayWeekPos_, same->ArrayWeekPos_) &&
         IsEqualNumberArrayData(ArrayWeekday_, same->ArrayWeekday_);
}

std::unique_ptr<RecurrenceData> MonthlyByDayData::Clone() const {
  return std::make_unique<MonthlyByDayData>(*this);
}

bool MonthlyByDayData::IsEqual(const RecurrenceData& other) const {
  const auto* same = SameKind<MonthlyByDayData>(other);
  return same && RecurrenceData::IsEqual(other) &&
         IsEqualNumberArrayData(ArrayMonthday_, same->ArrayMonthday_);
}

std::unique_ptr<RecurrenceData> YearlyByMonthData::Clone() const {
  return std::make_unique<YearlyByMonthData>(*this);
}

bool YearlyByMonthData::IsEqual(const RecurrenceData& other) const {
  const auto* same = SameKind<YearlyByMonthData>(other);
  return same && RecurrenceData::IsEqual(other) &&
         IsEqualNumberArrayData(ArrayMonth_, same->ArrayMonth_);
}

std::unique_ptr<RecurrenceData> YearlyByDayData::Clone() const {
  return std::make_unique<YearlyByDayData>(*this);
}

bool YearlyByDayData::IsEqual(const RecurrenceData& other) const {
  const auto* same = SameKind<YearlyByDayData>(other);
  return same && RecurrenceData::IsEqual(other) &&
         IsEqualNumberArrayData(ArrayYearday_, same->ArrayYearday_);
}

}  // namespace phonepim
