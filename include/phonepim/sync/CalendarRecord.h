// The store's calendar records as this library builds them: the phone's
// calendar, its events (appointments, anniversaries and tasks alike) and the
// event's attendee, alarm and recurrence sub-records. The keys are listed
// here once; CCalendar::createMetaData and the calendar containers use them.
#pragma once

#include "phonepim/platform/String.h"
#include "phonepim/platform/Value.h"

namespace phonepim::calendar_record {

// --- Entity names ---

inline const String kCalendarEntityName = u"com.apple.calendars.Calendar";
inline const String kEventEntityName = u"com.apple.calendars.Event";
inline const String kAttendeeEntityName = u"com.apple.calendars.Attendee";
inline const String kAudioAlarmEntityName = u"com.apple.calendars.AudioAlarm";
inline const String kRecurrenceEntityName = u"com.apple.calendars.Recurrence";

// --- The calendar record: one per phone ---

/// The phone's model name.
inline const String kTitle = u"title";

// --- The event record (CCalendar::createMetaData) ---
//
// Keys without a value are left out: an empty text, a null date, a zero
// category mask.

inline const String kSummary = u"summary";
inline const String kDescription = u"description";
inline const String kLocation = u"location";
/// Dates are instants (Date).
inline const String kStartDate = u"start date";
/// Appointments and anniversaries.
inline const String kEndDate = u"end date";
/// Tasks only, with kPriority.
inline const String kDueDate = u"due date";
/// A bool, always set.
inline const String kAllDay = u"all day";
/// "public", "private" or "confidential" (classification 0, 1, 2; any other
/// number reads as public).
inline const String kClassification = u"classification";
/// The status word of CCalendar::findStatus ("needsaction" ... "Canceled");
/// left out for any other number (10, "NONE", included).
inline const String kStatus = u"status";
/// CCalendar::GetPriority: 1 high, 5 normal, 10 low (an integer).
inline const String kPriority = u"priority";
/// The category bit mask (an integer).
inline const String kCategories = u"categories";
/// UID.
inline const String kExternalID = u"external id";
/// dtModified.
inline const String kDateModified = u"date modified";
/// [the calendar record's store ID].
inline const String kCalendar = u"calendar";

// --- Sub-records: each names its event under "owner", [the event's store
// ID]. The relationship keys below are also the keys of the entry's meta
// lists and of the identifier lists in its store data. ---

inline const String kOwner = u"owner";
inline const String kAttendees = u"attendees";
inline const String kAudioAlarms = u"audio alarms";
inline const String kRecurrences = u"recurrences";

/// Attendee: the name or address, the matched value.
inline const String kCommonName = u"common name";
/// Attendee: the status word (AttendeeContainer::statusWord).
inline const String kAttendeeStatus = u"status";
/// Audio alarm: the instant it rings, the matched value.
inline const String kTriggerDate = u"triggerdate";
/// Recurrence: "daily", "weekly", "monthly" or "yearly", the matched value.
inline const String kFrequency = u"frequency";
/// Recurrence: every n periods (an integer).
inline const String kInterval = u"interval";
/// Recurrence: the end date, when the rule has one.
inline const String kUntil = u"until";
/// Recurrence: the days of the month (integers, negative from the end).
inline const String kByMonthDay = u"bymonthday";
/// Recurrence: the first day of the week of a weekly rule, 1 (Monday).
inline const String kWeekStartDay = u"weekstartday";
/// Recurrence: one key per weekday of the rule, Sunday first, holding the
/// week positions ([0] for every such day of a weekly rule; [2] for the
/// second, [-1] for the last of the month).
inline const String kDayNames[7] = {u"sunday",   u"monday", u"tuesday", u"wednesday",
                                    u"thursday", u"friday", u"saturday"};

/// The phone's calendar record: {entity, "title": `title`}.
Dictionary NewCalendarRecord(const String& title);

}  // namespace phonepim::calendar_record
