#include "phonepim/model/CReminder.h"

#include "model/CCalendarDates.h"

namespace phonepim {

using model_detail::SameMoment;
using model_detail::SameText;

void CReminder::SetRunTime(const std::optional<CDateTime>& date) {
  if (date.has_value()) {
    RunTime_.emplace(*date);
  } else {
    RunTime_.reset();
  }
}

bool CReminder::IsEqual(const CReminder* other) const {
  if (other == nullptr) {
    return false;
  }
  if (Type_ != other->Type_ || ValueType_ != other->ValueType_ ||
      RepeatCount_ != other->RepeatCount_) {
    return false;
  }
  if (!SameMoment(RunTime_, other->RunTime_)) {
    return false;
  }
  // Whole seconds both ways: CDateTimeSpan::IsEqual is one-sided about
  // fractions, and a snooze of a fraction of a second is no setting a
  // phone offers.
  if (SnoozeTimeSpan_.has_value() != other->SnoozeTimeSpan_.has_value() ||
      (SnoozeTimeSpan_.has_value() &&
       SnoozeTimeSpan_->GetTotalSeconds() != other->SnoozeTimeSpan_->GetTotalSeconds())) {
    return false;
  }
  return SameText(Content_, other->Content_);
}

}  // namespace phonepim
