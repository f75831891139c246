// What the reader says became of each property: the account that
// `calendar check` prints, in both reading modes.
#include <gtest/gtest.h>

#include <string>

#include "phonepim/versit/ReadAccount.h"
#include "vcalendar/vCalendarTestSupport.h"

namespace phonepim {
namespace {

using testing_vcalendar::Event;
using testing_vcalendar::MakeObject;

struct AccountRow {
  const char* what;
  bool lenient;
  const char* lines;     // inside one VEVENT
  const char* expected;  // "NAME fate (where) [note]" of those lines, one per line
};

// The account of the rows' own lines: the envelope (BEGIN, VERSION, END)
// is the first row's subject.
std::string Render(const ReadAccount& account, bool envelope) {
  std::string text;
  const std::size_t skip = envelope ? 0 : 3;
  for (std::size_t i = skip; i + (envelope ? 0 : 2) < account.properties.size(); ++i) {
    const PropertyAccount& p = account.properties[i];
    text += p.name + " " + FateWord(p.fate) + " (" + p.where + ")";
    if (!p.note.empty()) text += " [" + p.note + "]";
    text += "\n";
  }
  return text;
}

class ReadAccountTest : public ::testing::TestWithParam<AccountRow> {};

TEST_P(ReadAccountTest, SaysWhereEachPropertyWent) {
  const AccountRow& row = GetParam();
  testing_vcalendar::ScopedCalendarDefaults defaults;
  vCard::LenientReading(row.lenient);
  const vObject object = MakeObject(Event(row.lines));
  CCalendar calendar;
  ReadAccount account;
  vCalendar::Parse(&calendar, &object, &account);
  EXPECT_EQ(Render(account, row.lines[0] == '\0'), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    read_account, ReadAccountTest,
    ::testing::Values(
        AccountRow{"envelope", false, "",
                   "BEGIN dropped by design (recognised, nothing to keep)\n"
                   "VERSION dropped by design (the version, checked)\n"
                   "BEGIN read (kind)\n"
                   "END dropped by design (recognised, nothing to keep)\n"
                   "END dropped by design (recognised, nothing to keep)\n"},
        AccountRow{"fields_and_empty", false,
                   "SUMMARY:Lunch\r\nDTSTART:20261201T120000Z\r\nAALARM:\r\nRRULE:W1 MO #0\r\n",
                   "SUMMARY read (summary)\nDTSTART read (start)\nAALARM empty (no value)\n"
                   "RRULE read (recurrence)\n"},
        AccountRow{"strict_losses", false,
                   "SUMMARY:One\r\nSUMMARY:Two\r\nX-SONY-REMINDER:5\r\nRRULE:W1 ZZ\r\n"
                   "DTEND:tomorrow\r\nCATEGORIES:MEETING;GOLF\r\n"
                   "LOCATION;CHARSET=UTF-8:\xFF\r\n",
                   "SUMMARY lost (replaced by a later SUMMARY)\nSUMMARY read (summary)\n"
                   "X-SONY-REMINDER lost (unknown property)\n"
                   "RRULE lost (a rule the recurrence model cannot hold)\n"
                   "DTEND lost (not a date)\nCATEGORIES lost (a word with no category)\n"
                   "LOCATION lost (not valid in its charset)\n"},
        AccountRow{"lenient_keeps_them", true,
                   "SUMMARY:One\r\nSUMMARY:Two\r\nX-SONY-REMINDER:5\r\nRRULE:W1 ZZ\r\n"
                   "DTEND:tomorrow\r\nCATEGORIES:MEETING;GOLF\r\nCATEGORIES:GOLF\r\n"
                   "LOCATION;CHARSET=UTF-8:\xFF\r\nUID:42\r\n",
                   "SUMMARY read (summary)\nSUMMARY extension (extension item SUMMARY)\n"
                   "X-SONY-REMINDER extension (extension item X-SONY-REMINDER)\n"
                   "RRULE extension (extension item RRULE)\n"
                   "DTEND extension (extension item DTEND)\n"
                   "CATEGORIES read (categories, the other words as an extension item)\n"
                   "CATEGORIES extension (extension item CATEGORIES)\n"
                   "LOCATION read (location) [bytes not valid in its charset kept as Latin-1 "
                   "or U+FFFD]\n"
                   "UID read (uid)\n"}),
    [](const auto& info) { return std::string(info.param.what); });

}  // namespace
}  // namespace phonepim
