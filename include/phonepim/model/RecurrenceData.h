// The recurrence rules of a calendar entry: one class per kind of rule.
#pragma once

#include <memory>
#include <optional>

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/datetime/CDateTimeNull.h"
#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/platform/Value.h"

namespace phonepim {

/// A rule: its kind (`Type`), how often (`Interval`), how many times
/// (`duration`, 0 for no count) and until when (`UntilDate`, none when
/// open), plus fields the recurrence-rule codec keeps for itself. The kinds
/// add lists of integers kept in ascending order without duplicates (see
/// AddSorted in CRecurrence.h).
///
/// Rules are owned through std::unique_ptr; `Clone` copies one with its
/// lists.
class RecurrenceData {
 public:
  /// The values of `Type`, one per kind.
  static constexpr int kDaily = 1;
  static constexpr int kWeekly = 2;
  static constexpr int kMonthlyByPos = 3;
  static constexpr int kMonthlyByDay = 4;
  static constexpr int kYearlyByMonth = 5;
  static constexpr int kYearlyByDay = 6;

  /// A rule of `type`, every 1 (interval), without a count.
  explicit RecurrenceData(int type);
  virtual ~RecurrenceData();

  virtual std::unique_ptr<RecurrenceData> Clone() const;

  int Type() const { return Type_; }
  void setType(int type) { Type_ = type; }
  int Interval() const { return Interval_; }
  void setInterval(int interval) { Interval_ = interval; }
  int duration() const { return duration_; }
  void setDuration(int duration) { duration_ = duration; }

  /// The end date, none for an open rule.
  const std::optional<CDateTimeNull>& UntilDate() const { return UntilDate_; }
  /// Replaces the end date with a valid (not null) date at `date`'s instant
  /// and of its time-zone type, made as CDateTime(instant, type) makes it:
  /// the zone and bias of `date` are not kept.
  void setUntilDate(const CDateTime& date);

  // Kept for the recurrence-rule codec, which alone gives them meaning.
  int WeeklyDayType() const { return WeeklyDayType_; }
  void setWeeklyDayType(int value) { WeeklyDayType_ = value; }
  const std::optional<CalendarDate>& UntilDateComp() const { return UntilDateComp_; }
  void setUntilDateComp(const std::optional<CalendarDate>& date) { UntilDateComp_ = date; }
  int dayAtMonthly() const { return dayAtMonthly_; }
  void setDayAtMonthly(int value) { dayAtMonthly_ = value; }
  const Array& bydaydays() const { return bydaydays_; }
  void Setbydaydays(const Array& days) { bydaydays_ = days; }
  const Array& bydayfreq() const { return bydayfreq_; }
  void Setbydayfreq(const Array& freq) { bydayfreq_ = freq; }

  /// Change detection: equal `Type`, `Interval` and `duration`, and both
  /// without an end date or both with equal ones (CDateTime::IsEqual). The
  /// kinds add their lists, compared one-sidedly (IsEqualNumberArrayData
  /// with this rule's list first). A rule of another class is never equal
  /// to a kind with lists.
  virtual bool IsEqual(const RecurrenceData& other) const;

 protected:
  RecurrenceData(const RecurrenceData&) = default;
  RecurrenceData& operator=(const RecurrenceData&) = default;

 private:
  int Type_;
  int Interval_ = 1;
  int duration_ = 0;
  int WeeklyDayType_ = 0;
  std::optional<CDateTimeNull> UntilDate_;
  std::optional<CalendarDate> UntilDateComp_;
  int dayAtMonthly_ = 0;
  Array bydaydays_;
  Array bydayfreq_;
};

/// True when every number of `a` occurs somewhere in `b`. One-sided on
/// purpose: the number of entries is not compared and `b` may hold more, so
/// a rule on Monday equals a rule on Monday and Wednesday, but not the
/// other way round.
bool IsEqualNumberArrayData(const Array& a, const Array& b);

/// Every n days.
class DailyData : public RecurrenceData {
 public:
  DailyData() : RecurrenceData(kDaily) {}
  std::unique_ptr<RecurrenceData> Clone() const override;
};

/// Every n weeks on weekdays 0 (Sunday) to 6.
class WeeklyData : public RecurrenceData {
 public:
  WeeklyData() : RecurrenceData(kWeekly) {}
  std::unique_ptr<RecurrenceData> Clone() const override;
  bool IsEqual(const RecurrenceData& other) const override;

  Array& ArrayWeekday() { return ArrayWeekday_; }
  const Array& ArrayWeekday() const { return ArrayWeekday_; }

 private:
  Array ArrayWeekday_;
};

/// Every n months on the k-th weekday: week positions -5 to 5 without 0
/// (negative ones count from the end of the month) and weekdays 0 to 6.
class MonthlyByPosData : public RecurrenceData {
 public:
  MonthlyByPosData() : RecurrenceData(kMonthlyByPos) {}
  std::unique_ptr<RecurrenceData> Clone() const override;
  /// Positions first, then weekdays.
  bool IsEqual(const RecurrenceData& other) const override;

  Array& ArrayWeekPos() { return ArrayWeekPos_; }
  const Array& ArrayWeekPos() const { return ArrayWeekPos_; }
  Array& ArrayWeekday() { return ArrayWeekday_; }
  const Array& ArrayWeekday() const { return ArrayWeekday_; }

 private:
  Array ArrayWeekPos_;
  Array ArrayWeekday_;
};

/// Every n months on days of the month, -31 to 31 without 0.
class MonthlyByDayData : public RecurrenceData {
 public:
  MonthlyByDayData() : RecurrenceData(kMonthlyByDay) {}
  std::unique_ptr<RecurrenceData> Clone() const override;
  bool IsEqual(const RecurrenceData& other) const override;

  Array& ArrayMonthday() { return ArrayMonthday_; }
  const Array& ArrayMonthday() const { return ArrayMonthday_; }

 private:
  Array ArrayMonthday_;
};

/// Every n years in months 1 to 12.
class YearlyByMonthData : public RecurrenceData {
 public:
  YearlyByMonthData() : RecurrenceData(kYearlyByMonth) {}
  std::unique_ptr<RecurrenceData> Clone() const override;
  bool IsEqual(const RecurrenceData& other) const override;

  Array& ArrayMonth() { return ArrayMonth_; }
  const Array& ArrayMonth() const { return ArrayMonth_; }

 private:
  Array ArrayMonth_;
};

/// Every n years on days of the year, 1 to 366.
class YearlyByDayData : public RecurrenceData {
 public:
  YearlyByDayData() : RecurrenceData(kYearlyByDay) {}
  std::unique_ptr<RecurrenceData> Clone() const override;
  bool IsEqual(const RecurrenceData& other) const override;

  Array& ArrayYearday() { return ArrayYearday_; }
  const Array& ArrayYearday() const { return ArrayYearday_; }

 private:
  Array ArrayYearday_;
};

}  // namespace phonepim
