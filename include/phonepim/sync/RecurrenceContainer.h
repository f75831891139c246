// RecurrenceContainer: the store's recurrence sub-records of one calendar
// entry.
#pragma once

#include "phonepim/model/RecurrenceData.h"
#include "phonepim/sync/CalendarContainer.h"

namespace phonepim {

/// Builds "com.apple.calendars.Recurrence" records from a rule
/// (RecurrenceData) and reconciles them under "recurrences", matching on
/// "frequency": a rule changed from weekly to monthly gets a new record,
/// one whose interval or days changed keeps its identifier (and its stored
/// data; the event's own record carries the change to the store).
///
/// Keys, by kind of rule:
///   daily            "frequency" "daily";
///   weekly           "frequency" "weekly", "weekstartday" 1 (Monday), and
///                    per weekday of the rule its name ("sunday" ...
///                    "saturday") = [0];
///   monthly by pos   "frequency" "monthly", per weekday its name = the
///                    week positions ([2] the second, [-1] the last);
///   monthly by day   "frequency" "monthly", "bymonthday" = the days;
///   yearly (both)    "frequency" "yearly": the store repeats on the
///                    start's month and day; its schema has no key for
///                    months or year days.
/// and for every kind "interval" (an integer), "until" (the end date, when
/// the rule has a valid one) and "owner". The schema has no key for an
/// occurrence count either: a counted rule goes to the store without its
/// end.
class RecurrenceContainer : public CalendarContainer {
 public:
  using CalendarContainer::CalendarContainer;

  Dictionary createRecurrenceDataForDB(const RecurrenceData& rule) const;
  void addRecurrence(const RecurrenceData& rule);

  /// Reconciles under "recurrences" on "frequency".
  std::vector<String> createMetaData() override;
};

}  // namespace phonepim
