#include "phonepim/model/CRecurrence.h"

#include "phonepim/platform/Assert.h"
#include "phonepim/text/NSArrayCustom.h"

namespace phonepim {
namespace {

int Count(const Array& array) { return static_cast<int>(array.size()); }

std::unique_ptr<RecurrenceData> CloneOf(const std::unique_ptr<RecurrenceData>& rule) {
  return rule ? rule->Clone() : nullptr;
}

void AddAllSorted(Array& target, const Array& values) {
  for (int i = 0; i < Count(values); ++i) AddSorted(target, intValueAtIndex(values, i));
}

}  // namespace

void AddSorted(Array& array, int value) {
  if (array.empty()) {
    addIntValue(array, value);
    return;
  }
  for (int i = Count(array) - 1; i >= 0; --i) {
    const int entry = intValueAtIndex(array, i);
    if (entry == value) return;
    if (entry < value) {
      insertIntValue(array, value, i + 1);
      return;
    }
  }
  insertIntValue(array, value, 0);
}

CRecurrence::CRecurrence() = default;
CRecurrence::~CRecurrence() = default;
CRecurrence::CRecurrence(CRecurrence&&) noexcept = default;
CRecurrence& CRecurrence::operator=(CRecurrence&&) noexcept = default;

CRecurrence::CRecurrence(const CRecurrence& other)
    : m_pRecurrenceData(CloneOf(other.m_pRecurrenceData)),
      m_pNestedRecurrenceData(CloneOf(other.m_pNestedRecurrenceData)) {}

CRecurrence& CRecurrence::operator=(const CRecurrence& other) {
  if (this != &other) {
    m_pRecurrenceData = CloneOf(other.m_pRecurrenceData);
    m_pNestedRecurrenceData = CloneOf(other.m_pNestedRecurrenceData);
  }
  return *this;
}

// Every setter checks all of its arguments, lists included, before it drops
// the current rule, so a handler that throws finds the old rule in place.

void CRecurrence::SetDaily(int nDayInterval, int nDuration, const CDateTime* pUntilDate) {
  PHONEPIM_ASSERT(nDayInterval > 0 && nDayInterval <= 200,
                  "nDayInterval > 0 && nDayInterval <= 200");
  PHONEPIM_ASSERT(nDuration >= 0, "nDuration >= 0");
  PHONEPIM_ASSERT(pUntilDate == nullptr, "pUntilDate == NULL");
  Replace(std::make_unique<DailyData>(), nDayInterval, nDuration, pUntilDate);
}

void CRecurrence::SetWeekly(int nWeekInterval, int nDuration, const CDateTime* pUntilDate,
                            const Array* pWeekdays) {
  PHONEPIM_ASSERT(nWeekInterval > 0, "nWeekInterval > 0");
  PHONEPIM_ASSERT(nDuration >= 0, "nDuration >= 0");
  PHONEPIM_ASSERT(pUntilDate == nullptr, "pUntilDate == NULL");
  PHONEPIM_ASSERT(pWeekdays == nullptr || Count(*pWeekdays) > 0,
                  "pWeekdays == NULL || [pWeekdays count] > 0");
  auto rule = std::make_unique<WeeklyData>();
  if (pWeekdays) {
    for (int i = 0; i < Count(*pWeekdays); ++i) {
      const int num = intValueAtIndex(*pWeekdays, i);
      PHONEPIM_ASSERT(num >= 0 && num < 7, "[num intValue] >= 0 && [num intValue] < 7");
    }
    AddAllSorted(rule->ArrayWeekday(), *pWeekdays);
  }
  Replace(std::move(rule), nWeekInterval, nDuration, pUntilDate);
}

void CRecurrence::SetMonthlyByPos(int nMonthInterval, const Array& weekposes,
                                  const Array& weekdays, int nDuration,
                                  const CDateTime* pUntilDate) {
  PHONEPIM_ASSERT(nMonthInterval > 0, "nMonthInterval > 0");
  PHONEPIM_ASSERT(Count(weekposes) > 0, "[weekposes count] > 0");
  PHONEPIM_ASSERT(Count(weekdays) > 0, "[weekdays count] > 0");
  PHONEPIM_ASSERT(nDuration >= 0, "nDuration >= 0");
  PHONEPIM_ASSERT(pUntilDate == nullptr, "pUntilDate == NULL");
  for (int i = 0; i < Count(weekposes); ++i) {
    const int num = intValueAtIndex(weekposes, i);
    PHONEPIM_ASSERT(num >= -5 && num <= 5 && num != 0,
                    "[num intValue] >= -5 && [num intValue] <= 5 && [num intValue] != 0");
  }
  for (int i = 0; i < Count(weekdays); ++i) {
    const int num = intValueAtIndex(weekdays, i);
    // The missing space in the text is how the check has always read.
    PHONEPIM_ASSERT(num >= 0 && num < 7, "[num intValue] >= 0 &&[num intValue] < 7");
  }
  auto rule = std::make_unique<MonthlyByPosData>();
  AddAllSorted(rule->ArrayWeekPos(), weekposes);
  AddAllSorted(rule->ArrayWeekday(), weekdays);
  Replace(std::move(rule), nMonthInterval, nDuration, pUntilDate);
}

void CRecurrence::SetMonthlyByDay(int nMonthInterval, const Array& monthdays, int nDuration,
                                  const CDateTime* pUntilDate) {
  PHONEPIM_ASSERT(nMonthInterval > 0, "nMonthInterval > 0");
  PHONEPIM_ASSERT(Count(monthdays) > 0, "[monthdays count] > 0");
  PHONEPIM_ASSERT(nDuration >= 0, "nDuration >= 0");
  PHONEPIM_ASSERT(pUntilDate == nullptr, "pUntilDate == NULL");
  for (int i = 0; i < Count(monthdays); ++i) {
    const int num = intValueAtIndex(monthdays, i);
    PHONEPIM_ASSERT(num >= -31 && num <= 31 && num != 0,
                    "[num intValue]>= -31 && [num intValue]<= 31 && [num intValue]!= 0");
  }
  auto rule = std::make_unique<MonthlyByDayData>();
  AddAllSorted(rule->ArrayMonthday(), monthdays);
  Replace(std::move(rule), nMonthInterval, nDuration, pUntilDate);
}

void CRecurrence::SetYearlyByMonth(int nYearInterval, const Array& months, int nDuration,
                                   const CDateTime* pUntilDate) {
  PHONEPIM_ASSERT(nYearInterval > 0, "nYearInterval > 0");
  PHONEPIM_ASSERT(Count(months) > 0, "[months count] > 0");
  PHONEPIM_ASSERT(nDuration >= 0, "nDuration >= 0");
  PHONEPIM_ASSERT(pUntilDate == nullptr, "pUntilDate == NULL");
  for (int i = 0; i < Count(months); ++i) {
    const int num = intValueAtIndex(months, i);
    PHONEPIM_ASSERT(num >= 1 && num <= 12, "[num intValue] >= 1 && [num intValue] <= 12");
  }
  auto rule = std::make_unique<YearlyByMonthData>();
  AddAllSorted(rule->ArrayMonth(), months);
  Replace(std::move(rule), nYearInterval, nDuration, pUntilDate);
}

void CRecurrence::SetYearlyByDay(int nYearInterval, const Array& yeardays, int nDuration,
                                 const CDateTime* pUntilDate) {
  PHONEPIM_ASSERT(nYearInterval > 0, "nYearInterval > 0");
  PHONEPIM_ASSERT(nDuration >= 0, "nDuration >= 0");
  for (int i = 0; i < Count(yeardays); ++i) {
    const int num = intValueAtIndex(yeardays, i);
    PHONEPIM_ASSERT(num >= 1 && num <= 366, "[num intValue] >= 1 && [num intValue] <= 366");
  }
  auto rule = std::make_unique<YearlyByDayData>();
  AddAllSorted(rule->ArrayYearday(), yeardays);
  Replace(std::move(rule), nYearInterval, nDuration, pUntilDate);
}

void CRecurrence::Replace(std::unique_ptr<RecurrenceData> rule, int interval, int duration,
                          const CDateTime* pUntilDate) {
  ResetRecurrenceData();
  rule->setInterval(interval);
  rule->setDuration(duration);
  // Only SetYearlyByDay gets here with an end date; the others assert.
  if (pUntilDate) rule->setUntilDate(*pUntilDate);
  m_pRecurrenceData = std::move(rule);
}

void CRecurrence::ResetRecurrenceData() { m_pRecurrenceData.reset(); }

bool CRecurrence::IsEqual(const CRecurrence& other) const {
  if (!m_pRecurrenceData || !other.m_pRecurrenceData) {
    return !m_pRecurrenceData && !other.m_pRecurrenceData;
  }
  return m_pRecurrenceData->IsEqual(*other.m_pRecurrenceData);
}

}  // namespace phonepim
