// The recurrence-rule text read into the recurrence model.
#include <climits>
#include <optional>
#include <string_view>
#include <vector>

#include "phonepim/datetime/CalendarDate.h"
#include "phonepim/model/CRecurrence.h"
#include "phonepim/model/RecurrenceData.h"
#include "phonepim/vcalendar/RecurrenceRule.h"
#include "phonepim/vcalendar/vCalendar.h"
#include "vcalendar/RecurrenceRuleForm.h"
#include "vcalendar/vCalendarText.h"

namespace phonepim {
namespace {

using namespace recurrence_form;

using vcalendar_text::IsBlank;
using vcalendar_text::EqualsIgnoringCase;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Digits only, at most nine of them, so that the number fits an int.
std::optional<int> Number(std::string_view digits) {
  if (digits.empty() || digits.size() > 9) return std::nullopt;
  int n = 0;
  for (char c : digits) {
    if (!IsDigit(c)) return std::nullopt;
    n = n * 10 + (c - '0');
  }
  return n;
}

int WeekdayOf(std::string_view token) {
  for (int day = 0; day < 7; ++day) {
    if (EqualsIgnoringCase(token, kWeekdayWords[day])) return day;
  }
  return -1;
}

// "1+", "2-", "13+", "13": a number with an optional sign after it.
struct Ordinal {
  int value;  // negative for '-'
  bool plus;  // written with '+'
};

std::optional<Ordinal> OrdinalOf(std::string_view token) {
  if (token.empty()) return std::nullopt;
  const char last = token.back();
  if (last == '+' || last == '-') {
    const std::optional<int> n = Number(token.substr(0, token.size() - 1));
    if (!n) return std::nullopt;
    return Ordinal{last == '-' ? -*n : *n, last == '+'};
  }
  const std::optional<int> n = Number(token);
  if (!n) return std::nullopt;
  return Ordinal{*n, false};
}

// yyyymmdd or yyyymmddThhmmss, with or without a final "Z".
bool IsEndDate(std::string_view token) {
  if (!token.empty() && (token.back() == 'Z' || token.back() == 'z')) token.remove_suffix(1);
  if (token.size() == 8) return Number(token).has_value();
  return token.size() == 15 && (token[8] == 'T' || token[8] == 't') &&
         Number(token.substr(0, 8)) && Number(token.substr(9));
}

enum class Frequency { kDaily, kWeekly, kMonthlyByPos, kMonthlyByDay, kYearlyByMonth,
                       kYearlyByDay };

struct FrequencyWord {
  std::string_view word;
  Frequency frequency;
};

// Two-letter words first: "MD" must not be read as a daily "D".
constexpr FrequencyWord kFrequencyWords[] = {
    {"MP", Frequency::kMonthlyByPos}, {"MD", Frequency::kMonthlyByDay},
    {"YM", Frequency::kYearlyByMonth}, {"YD", Frequency::kYearlyByDay},
    {"D", Frequency::kDaily},          {"W", Frequency::kWeekly},
};

// The frequency word and interval of `token` ("W2"), if it is one.
std::optional<std::pair<Frequency, int>> FrequencyOf(std::string_view token) {
  for (const FrequencyWord& f : kFrequencyWords) {
    if (token.size() <= f.word.size() ||
        !EqualsIgnoringCase(token.substr(0, f.word.size()), f.word)) {
      continue;
    }
    const std::optional<int> interval = Number(token.substr(f.word.size()));
    if (!interval) return std::nullopt;
    return std::pair{f.frequency, *interval};
  }
  return std::nullopt;
}

std::vector<std::string_view> Tokens(std::string_view text) {
  std::vector<std::string_view> tokens;
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && IsBlank(text[i])) ++i;
    const std::size_t start = i;
    while (i < text.size() && !IsBlank(text[i])) ++i;
    if (i > start) tokens.push_back(text.substr(start, i - start));
  }
  return tokens;
}

// The rule as read, before it is handed to the model.
struct RuleText {
  Frequency frequency = Frequency::kDaily;
  int interval = 0;
  Array weekdays;   // W, and MP per group
  Array positions;  // MP
  Array numbers;    // MD, YM, YD
  int duration = 0;
  bool hasDuration = false;
  std::string_view endDate;
  int form = 0;
};

bool InRange(int value, int low, int high) { return value >= low && value <= high; }

// The list between the frequency and the duration. False for what the
// model cannot hold.
bool ReadList(RuleText& rule, const std::vector<std::string_view>& tokens, std::size_t& i) {
  // MP: groups "positions weekdays", and every group must name the same
  // weekdays, since the model crosses one position list with one weekday
  // list ("1+ SU 3+ SU" is the same rule as "1+ 3+ SU"; "1+ SU 2- MO" is
  // not any such pair).
  std::optional<Array> groupWeekdays;
  Array weekdays;
  bool inWeekdays = false;
  auto closeGroup = [&]() {
    if (weekdays.empty()) return true;
    if (groupWeekdays && *groupWeekdays != weekdays) return false;
    groupWeekdays = weekdays;
    weekdays.clear();
    return true;
  };
  for (; i < tokens.size(); ++i) {
    const std::string_view token = tokens[i];
    if (token.front() == '#' || IsEndDate(token)) break;
    const int day = WeekdayOf(token);
    switch (rule.frequency) {
      case Frequency::kDaily:
        return false;  // times of day ("D1 1200 1800") have no place in the model
      case Frequency::kWeekly:
        if (day < 0) return false;
        AddSorted(rule.weekdays, day);
        break;
      case Frequency::kMonthlyByPos: {
        if (day >= 0) {
          AddSorted(weekdays, day);
          inWeekdays = true;
          break;
        }
        const std::optional<Ordinal> pos = OrdinalOf(token);
        if (!pos || pos->value == 0 || !InRange(pos->value, -5, 5)) return false;
        if (inWeekdays && !closeGroup()) return false;
        inWeekdays = false;
        AddSorted(rule.positions, pos->value);
        break;
      }
      case Frequency::kMonthlyByDay: {
        if (EqualsIgnoringCase(token, "LD")) {
          AddSorted(rule.numbers, -1);
          rule.form |= kLastDayWord;
          break;
        }
        const std::optional<Ordinal> md = OrdinalOf(token);
        if (!md || md->value == 0 || !InRange(md->value, -31, 31)) return false;
        if (md->plus) rule.form |= kPlusMonthDays;
        AddSorted(rule.numbers, md->value);
        break;
      }
      case Frequency::kYearlyByMonth:
      case Frequency::kYearlyByDay: {
        const std::optional<int> n = Number(token);
        const int high = rule.frequency == Frequency::kYearlyByMonth ? 12 : 366;
        if (!n || !InRange(*n, 1, high)) return false;
        AddSorted(rule.numbers, *n);
        break;
      }
    }
  }
  if (rule.frequency == Frequency::kMonthlyByPos) {
    if (!inWeekdays || !closeGroup() || rule.positions.empty()) return false;
    rule.weekdays = *groupWeekdays;
  }
  return true;
}

// "#n" and an end date, in either order, each at most once; then nothing.
bool ReadEnd(RuleText& rule, const std::vector<std::string_view>& tokens, std::size_t i) {
  for (; i < tokens.size(); ++i) {
    const std::string_view token = tokens[i];
    if (token.front() == '#' && !rule.hasDuration) {
      const std::optional<int> n = Number(token.substr(1));
      if (!n) return false;
      rule.duration = *n;
      rule.hasDuration = true;
    } else if (IsEndDate(token) && rule.endDate.empty()) {
      rule.endDate = token;
    } else {
      return false;  // a second rule, or words after the end
    }
  }
  return true;
}

bool Build(const RuleText& r, CRecurrence* out) {
  const int interval = r.interval;
  switch (r.frequency) {
    case Frequency::kDaily:
      if (!InRange(interval, 1, 200)) return false;
      out->SetDaily(interval, r.duration, nullptr);
      break;
    case Frequency::kWeekly:
      if (interval < 1) return false;
      out->SetWeekly(interval, r.duration, nullptr, r.weekdays.empty() ? nullptr : &r.weekdays);
      break;
    case Frequency::kMonthlyByPos:
      if (interval < 1) return false;
      out->SetMonthlyByPos(interval, r.positions, r.weekdays, r.duration, nullptr);
      break;
    case Frequency::kMonthlyByDay:
      if (interval < 1 || r.numbers.empty()) return false;
      out->SetMonthlyByDay(interval, r.numbers, r.duration, nullptr);
      break;
    case Frequency::kYearlyByMonth:
      if (interval < 1 || r.numbers.empty()) return false;
      out->SetYearlyByMonth(interval, r.numbers, r.duration, nullptr);
      break;
    case Frequency::kYearlyByDay:
      if (interval < 1) return false;
      out->SetYearlyByDay(interval, r.numbers, r.duration, nullptr);
      break;
  }
  return true;
}

}  // namespace

bool ParseRecurrenceRule(std::string_view text, CRecurrence* rule) {
  rule->ResetRecurrenceData();
  const std::vector<std::string_view> tokens = Tokens(text);
  if (tokens.empty()) return true;

  RuleText r;
  const auto frequency = FrequencyOf(tokens[0]);
  if (!frequency) return false;
  r.frequency = frequency->first;
  r.interval = frequency->second;
  std::size_t i = 1;
  if (!ReadList(r, tokens, i) || !ReadEnd(r, tokens, i)) return false;

  std::optional<CDateTime> until;
  std::optional<CalendarDate> untilComp;
  if (!r.endDate.empty()) {
    bool utc = false;
    until = vCalendar::ParseDateTime(r.endDate);
    untilComp = vCalendar::ParseDateTimeComponent(r.endDate, &utc);
    if (!until || !untilComp) return false;
    if (!utc) r.form |= kLocalEndDate;
    if (r.endDate.size() <= 9) r.form |= kEndDateOnly;
  }
  if (!Build(r, rule)) return false;
  RecurrenceData* data = rule->GetRecurrenceData();
  if (until) {
    data->setUntilDate(*until);
    data->setUntilDateComp(untilComp);
  }
  data->setWeeklyDayType(r.form);
  return true;
}

}  // namespace phonepim
