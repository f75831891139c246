// The recurrence model written as recurrence-rule text.
#include <string>

#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/model/RecurrenceData.h"
#include "phonepim/platform/String.h"
#include "phonepim/text/NSArrayCustom.h"
#include "phonepim/vcalendar/RecurrenceRule.h"
#include "vcalendar/RecurrenceRuleForm.h"
#include "vcalendar/vCalendarText.h"

namespace phonepim {
namespace {

using namespace recurrence_form;

void AppendNumber(std::string& out, long long n) { out += std::to_string(n); }

void AppendWeekdays(std::string& out, const Array& weekdays) {
  for (int i = 0; i < static_cast<int>(weekdays.size()); ++i) {
    const int day = intValueAtIndex(weekdays, i);
    if (day < 0 || day > 6) continue;  // the setters keep them in range
    out += ' ';
    out += kWeekdayWords[day];
  }
}

// "2+", "1-": how week positions and signed month days are written.
void AppendOrdinal(std::string& out, int value, bool plus) {
  out += ' ';
  AppendNumber(out, value < 0 ? -static_cast<long long>(value) : value);
  if (value < 0) {
    out += '-';
  } else if (plus) {
    out += '+';
  }
}

void AppendNumbers(std::string& out, const Array& numbers) {
  for (int i = 0; i < static_cast<int>(numbers.size()); ++i) {
    out += ' ';
    AppendNumber(out, intValueAtIndex(numbers, i));
  }
}

void AppendMonthDays(std::string& out, const Array& days, int form) {
  for (int i = 0; i < static_cast<int>(days.size()); ++i) {
    const int day = intValueAtIndex(days, i);
    if (day == -1 && (form & kLastDayWord) != 0) {
      out += " LD";
    } else {
      AppendOrdinal(out, day, (form & kPlusMonthDays) != 0);
    }
  }
}

// The end date: the fields as the rule was read when it was read as a
// local time (its instant was moved into GMT), else the instant in GMT.
void AppendEndDate(std::string& out, const RecurrenceData& rule) {
  const int form = rule.WeeklyDayType();
  const bool local = (form & kLocalEndDate) != 0 && rule.UntilDateComp().has_value();
  CalendarDate date;
  if (local) {
    date = *rule.UntilDateComp();
  } else {
    date.date = rule.UntilDate()->date();
    date.timeZone = u"GMT";
  }
  out += ' ';
  out += vcalendar_text::DateTimeText(date, (form & kEndDateOnly) != 0);
  if (!local) out += 'Z';
}

const char* FrequencyWord(int type) {
  switch (type) {
    case RecurrenceData::kDaily: return "D";
    case RecurrenceData::kWeekly: return "W";
    case RecurrenceData::kMonthlyByPos: return "MP";
    case RecurrenceData::kMonthlyByDay: return "MD";
    case RecurrenceData::kYearlyByMonth: return "YM";
    case RecurrenceData::kYearlyByDay: return "YD";
    default: return nullptr;
  }
}

}  // namespace

String RecurrenceRuleText(const RecurrenceData& rule, int useW0) {
  const char* word = FrequencyWord(rule.Type());
  if (word == nullptr) return {};
  std::string out = word;
  AppendNumber(out, rule.Interval());
  const int form = rule.WeeklyDayType();
  if (const auto* weekly = dynamic_cast<const WeeklyData*>(&rule)) {
    AppendWeekdays(out, weekly->ArrayWeekday());
  } else if (const auto* byPos = dynamic_cast<const MonthlyByPosData*>(&rule)) {
    for (int i = 0; i < static_cast<int>(byPos->ArrayWeekPos().size()); ++i) {
      AppendOrdinal(out, intValueAtIndex(byPos->ArrayWeekPos(), i), true);
    }
    AppendWeekdays(out, byPos->ArrayWeekday());
  } else if (const auto* byDay = dynamic_cast<const MonthlyByDayData*>(&rule)) {
    AppendMonthDays(out, byDay->ArrayMonthday(), form);
  } else if (const auto* byMonth = dynamic_cast<const YearlyByMonthData*>(&rule)) {
    AppendNumbers(out, byMonth->ArrayMonth());
  } else if (const auto* byYearDay = dynamic_cast<const YearlyByDayData*>(&rule)) {
    AppendNumbers(out, byYearDay->ArrayYearday());
  }
  const bool hasEnd = rule.UntilDate().has_value() &&
                      rule.UntilDate()->GetStatus() != CDateTime::kStatusNull;
  if (rule.duration() > 0) {
    out += " #";
    AppendNumber(out, rule.duration());
  } else if (!hasEnd && useW0 != 0) {
    out += " #0";
  }
  if (hasEnd) AppendEndDate(out, rule);
  return StringFromASCII(out);
}

}  // namespace phonepim
