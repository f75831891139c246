// CReminder: an alarm of a calendar entry (the vCalendar AALARM property).
#pragma once

#include <cstdint>
#include <optional>

#include "phonepim/datetime/CDateTime.h"
#include "phonepim/datetime/CDateTimeNull.h"
#include "phonepim/datetime/CDateTimeSpan.h"
#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/platform/String.h"

namespace phonepim {

/// When the alarm rings (`RunTime`, also kept as the calendar date the
/// reader took it from, `AlarmTime`), what it plays (`Type`, `ValueType`,
/// `Content`) and how it repeats (`SnoozeTimeSpan`, `RepeatCount`).
///
/// A value: copies are independent. Every optional field starts absent and
/// the numbers start at 0.
class CReminder {
 public:
  /// The sound formats of an AALARM's TYPE parameter, as the reader stores
  /// them in `Type` (the high nibble of its parameter bits).
  static constexpr std::uint32_t kTypePCM = 0x10;
  static constexpr std::uint32_t kTypeWAVE = 0x20;
  static constexpr std::uint32_t kTypeAIFF = 0x40;
  /// VALUE=CONTENT-ID, as the reader stores it in `ValueType`.
  static constexpr std::uint32_t kValueTypeContentID = 0x1;

  CReminder() = default;

  std::uint32_t Type() const { return Type_; }
  void SetType(std::uint32_t type) { Type_ = type; }
  std::uint32_t ValueType() const { return ValueType_; }
  void SetValueType(std::uint32_t valueType) { ValueType_ = valueType; }

  /// The moment the alarm rings. Absent, or present with the null status,
  /// both mean that the alarm does not ring.
  const std::optional<CDateTimeNull>& RunTime() const { return RunTime_; }
  std::optional<CDateTimeNull>& RunTime() { return RunTime_; }
  /// Stores a copy of `date`, status included; nullopt removes the run time.
  void SetRunTime(const std::optional<CDateTime>& date);

  const std::optional<CDateTimeSpan>& SnoozeTimeSpan() const { return SnoozeTimeSpan_; }
  void SetSnoozeTimeSpan(const std::optional<CDateTimeSpan>& span) { SnoozeTimeSpan_ = span; }

  /// The run time as a calendar date, as the reader read it.
  const std::optional<CalendarDate>& AlarmTime() const { return AlarmTime_; }
  void SetAlarmTime(const std::optional<CalendarDate>& date) { AlarmTime_ = date; }
  /// The reader's name for SetAlarmTime.
  void SetRunTimeComp(const std::optional<CalendarDate>& date) { AlarmTime_ = date; }

  std::int32_t RepeatCount() const { return RepeatCount_; }
  void SetRepeatCount(std::int32_t count) { RepeatCount_ = count; }

  const std::optional<String>& Content() const { return Content_; }
  void SetContent(const std::optional<String>& content) { Content_ = content; }

  /// Change detection: equal `Type`, `ValueType` and `RepeatCount`; run
  /// times that both do not ring or that ring at the same instant (the zone
  /// and type the time was read in do not count); snooze spans both absent
  /// or of the same whole seconds; the same content, an absent one reading
  /// as empty. `AlarmTime` does not decide: it is the run time again in the
  /// reader's form. Null is unequal.
  bool IsEqual(const CReminder* other) const;

 private:
  std::uint32_t Type_ = 0;
  std::uint32_t ValueType_ = 0;
  std::optional<CDateTimeNull> RunTime_;
  std::optional<CDateTimeSpan> SnoozeTimeSpan_;
  std::optional<CalendarDate> AlarmTime_;
  std::int32_t RepeatCount_ = 0;
  std::optional<String> Content_;
};

}  // namespace phonepim
