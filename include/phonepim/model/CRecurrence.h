// The recurrence of a calendar entry, with the checked setters the
// recurrence-rule reader builds rules through.
#pragma once

#include <memory>

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/model/RecurrenceData.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

/// Adds `value` to an ascending list of integers unless it is there. The
/// list is walked from its end: an equal entry stops the walk, the first
/// smaller one gets the value inserted after it, and a value smaller than
/// all goes first. On a list that is not sorted the result follows that
/// walk, not the value's sorted place.
void AddSorted(Array& array, int value);

/// Holds one rule (or none). Every setter first drops the current rule,
/// then builds a new one with the given interval and count and fills its
/// lists with AddSorted in argument order. The preconditions are
/// assertions; a call that fails one leaves the current rule as it was (for
/// handlers that throw).
///
/// The end date must be null for every setter but SetYearlyByDay: rules
/// built through them are bounded by count only, and the reader sets the
/// end date afterwards on the rule itself (RecurrenceData::setUntilDate).
///
/// Copies are deep.
class CRecurrence {
 public:
  CRecurrence();
  ~CRecurrence();
  CRecurrence(const CRecurrence& other);
  CRecurrence& operator=(const CRecurrence& other);
  CRecurrence(CRecurrence&&) noexcept;
  CRecurrence& operator=(CRecurrence&&) noexcept;

  /// Every nDayInterval days, 1 to 200.
  void SetDaily(int nDayInterval, int nDuration, const CDateTime* pUntilDate);
  /// Every nWeekInterval weeks on weekdays 0 to 6; `pWeekdays` may be null
  /// (no list) but not empty.
  void SetWeekly(int nWeekInterval, int nDuration, const CDateTime* pUntilDate,
                 const Array* pWeekdays);
  /// Every nMonthInterval months on week positions -5 to 5 (not 0) and
  /// weekdays 0 to 6; both lists must have entries.
  void SetMonthlyByPos(int nMonthInterval, const Array& weekposes, const Array& weekdays,
                       int nDuration, const CDateTime* pUntilDate);
  /// Every nMonthInterval months on days -31 to 31 (not 0); at least one.
  void SetMonthlyByDay(int nMonthInterval, const Array& monthdays, int nDuration,
                       const CDateTime* pUntilDate);
  /// Every nYearInterval years in months 1 to 12; at least one.
  void SetYearlyByMonth(int nYearInterval, const Array& months, int nDuration,
                        const CDateTime* pUntilDate);
  /// Every nYearInterval years on days 1 to 366. The list may be empty and
  /// an end date is taken.
  void SetYearlyByDay(int nYearInterval, const Array& yeardays, int nDuration,
                      const CDateTime* pUntilDate);

  /// Drops the rule.
  void ResetRecurrenceData();

  /// The rule, nullptr when there is none.
  RecurrenceData* GetRecurrenceData() { return m_pRecurrenceData.get(); }
  const RecurrenceData* GetRecurrenceData() const { return m_pRecurrenceData.get(); }
  /// A second rule slot that nothing fills yet; kept for the record layout.
  const RecurrenceData* GetNestedRecurrenceData() const {
    return m_pNestedRecurrenceData.get();
  }

  /// Equal when neither has a rule, unequal when only one has, else the
  /// rules' IsEqual (one-sided for the lists). The nested slot is ignored.
  bool IsEqual(const CRecurrence& other) const;

 private:
  void Replace(std::unique_ptr<RecurrenceData> rule, int interval, int duration,
               const CDateTime* pUntilDate);

  std::unique_ptr<RecurrenceData> m_pRecurrenceData;
  std::unique_ptr<RecurrenceData> m_pNestedRecurrenceData;
};

}  // namespace phonepim
