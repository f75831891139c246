// The text of a recurrence rule: the vCalendar 1.0 RRULE (and XRULE) value
// read into the recurrence model and written back from it.
#pragma once

#include <string_view>

#include "phonepim/platform/String.h"

namespace phonepim {

class CRecurrence;
class RecurrenceData;

/// Reads one rule value ("W1 MO TU #0", "MD1 13+ 20091231T000000Z", ...)
/// into `rule`, replacing what it held. Frequency words, weekdays and "LD"
/// are read in any case; blanks around and between the parts are free. An
/// empty value, or one of blanks, leaves `rule` without a rule and answers
/// true: phones send "RRULE:" for an entry that does not repeat.
///
/// Answers false, leaving `rule` without a rule, for a value the model
/// cannot hold or that is not a rule: more than one rule, times in a daily
/// rule, a "$" or occurrence list that differs per weekday, values outside
/// the model's ranges, anything unreadable. The caller keeps such a value
/// as it stands.
bool ParseRecurrenceRule(std::string_view text, CRecurrence* rule);

/// The rule's text, as ParseRecurrenceRule reads it: frequency and
/// interval, the list, then "#n" for a count, the end date
/// (yyyymmddThhmmssZ, GMT) when there is one, and for an open rule "#0"
/// when `useW0` is non-zero, nothing when it is 0.
String RecurrenceRuleText(const RecurrenceData& rule, int useW0);

}  // namespace phonepim
