#include "phonepim/model/CCalendar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "model/AssertionPattern.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;

// Lists kinds in ds_arrCalendar for the lifetime of the object.
struct ScopedSupportedKinds {
  explicit ScopedSupportedKinds(const std::vector<std::int32_t>& kinds) {
    ds_arrCalendar.fill(0);
    std::copy_n(kinds.begin(), std::min<std::size_t>(kinds.size(), 32), ds_arrCalendar.begin());
  }
  ~ScopedSupportedKinds() { ds_arrCalendar = previous; }
  const std::array<std::int32_t, 32> previous = ds_arrCalendar;
};

TEST(CCalendar, new_record_defaults_status_and_identity) {
  CCalendar entry;
  EXPECT_EQ(entry.mUserID, u"1234567890ID");
  EXPECT_EQ(entry.mDBRecordID, u"123456789ID_Calendar");
  EXPECT_TRUE(entry.GetStatus());  // status 10
  EXPECT_EQ(entry.GetPriority(), 10);
  EXPECT_EQ(entry.GetAlarmTone(), -1);
  entry.SetStatus(false);
  EXPECT_EQ(entry.status, 0);
  entry.SetStatus(true);
  EXPECT_EQ(entry.status, 1);
  entry.setUserID(u"acct-7");
  EXPECT_EQ(entry.mDBRecordID, u"acct-7_Calendar");
  entry.setUserIDWithType(2, u"rec-9");
  EXPECT_EQ(entry.mUserID, u"rec-9");
  EXPECT_EQ(entry.mDBRecordID, u"rec-9");
}

TEST(CCalendar, vcal_ids_pad_the_number_and_name_the_kind) {
  const String imei = u"356938035643809";
  EXPECT_EQ(CCalendar::generateNewVCalIDWithNewLUID(42, imei, 1),
            u"0000000000000042-Calendar-356938035643809_Appointment");
  EXPECT_EQ(CCalendar::generateNewVCalIDWithNewLUID(0, imei, 2),
            u"0000000000000000-Calendar-356938035643809_Anniversary");
  EXPECT_EQ(CCalendar::generateNewVCalIDWithNewLUID(INT_MAX, imei, 7),
            u"0000002147483647-Calendar-356938035643809_Task");
  EXPECT_EQ(CCalendar::generateNewVCalIDWithNewLUID(-42, imei, 3),
            u"-000000000000042-Calendar-356938035643809_temp");
  EXPECT_EQ(CCalendar::generateNewVCalIDWithNewLUID(5, imei, 0),
            u"0000000000000005-Calendar-356938035643809_temp");
  EXPECT_EQ(CCalendar::generateNewVCalID(1234), u"1234");
  EXPECT_EQ(CCalendar::generateNewVCalIDWithType(-5, 2), u"-5");
}

struct KindCase {
  std::int32_t mask;
  std::vector<std::int32_t> supported;
  std::int32_t kind;
  std::int32_t orgType;
};

void PrintTo(const KindCase& c, std::ostream* os) {
  *os << "mask 0x" << std::hex << c.mask << std::dec << ", " << c.supported.size() << " listed";
}

class Kind : public ::testing::TestWithParam<KindCase> {};

TEST_P(Kind, maps_the_type_mask_and_the_phone_numbering) {
  const ScopedSupportedKinds supported(GetParam().supported);
  CCalendar entry;
  entry.vCalendarType = GetParam().mask;
  EXPECT_EQ(CalendarType(GetParam().mask), GetParam().kind);
  EXPECT_EQ(entry.GetType(), GetParam().kind);
  EXPECT_EQ(entry.GetOrgType(), GetParam().orgType);
}

std::vector<std::int32_t> ThirtyTwoEntriesEndingWithNine() {
  std::vector<std::int32_t> kinds(32, 5);
  kinds.back() = 9;
  return kinds;
}

INSTANTIATE_TEST_SUITE_P(
    table, Kind,
    ::testing::Values(KindCase{0x0, {}, 1, 0}, KindCase{0x1, {}, 1, 0}, KindCase{0x2, {}, 2, 1},
                      KindCase{0x4, {}, 3, 5}, KindCase{0x8, {}, 4, 6}, KindCase{0x10, {}, 5, 7},
                      KindCase{0x20, {}, 6, 3}, KindCase{0x40, {}, 7, 2}, KindCase{0x80, {}, 8, 4},
                      KindCase{0x20000, {}, 9, 0}, KindCase{0x100, {}, 1, 0},
                      // The lowest tested bit wins.
                      KindCase{0x6, {}, 2, 1}, KindCase{0x20040, {}, 7, 2}, KindCase{-1, {}, 2, 1},
                      // Kinds missing from a list become appointments; the list ends at
                      // its first 0 or after 32 entries.
                      KindCase{0x40, {1, 2, 7}, 7, 2}, KindCase{0x4, {1, 2, 7}, 1, 0},
                      KindCase{0x20000, {1, 2, 7}, 1, 0}, KindCase{0x20000, {9}, 9, 0},
                      KindCase{0x4, {2, 0, 3}, 1, 0},
                      KindCase{0x20000, ThirtyTwoEntriesEndingWithNine(), 9, 0}));

TEST(CCalendar, priority_reads_three_levels) {
  const std::vector<std::pair<std::int32_t, std::int32_t>> table = {
      {0, 10}, {1, 1}, {2, 5}, {3, 10}, {-1, 10}, {INT_MIN, 10}};
  CCalendar entry;
  for (const auto& [stored, level] : table) {
    entry.SetPriority(stored);
    EXPECT_EQ(entry.GetPriority(), level) << "stored " << stored;
  }
}

TEST(CCalendar, status_words_number_the_status_and_the_classification) {
  // Exact and case-sensitive; classification words are not in the table.
  const std::vector<std::pair<std::u16string, std::int32_t>> table = {
      {u"needsaction", 0}, {u"complete", 1},  {u"accepted", 2},  {u"sent", 3},
      {u"tentative", 4},   {u"Confirmed", 5}, {u"Declined", 6},  {u"Delegated", 7},
      {u"Canceled", 8},    {u"Accepted", 0},  {u"confirmed", 0}, {u"sent ", 0},
      {u"Cancelled", 0},   {u"public", 0},    {u"PRIVATE", 0},   {u"", 0}};
  CCalendar entry;
  for (const auto& [word, number] : table) {
    entry.classification = -7;
    entry.setclassification(word);
    EXPECT_EQ(CCalendar::findStatus(word), number) << std::string(word.begin(), word.end());
    EXPECT_EQ(entry.classification, number) << std::string(word.begin(), word.end());
  }
}

TEST(CCalendar, extension_values_are_items_read_from_the_first_of_their_name) {
  CCalendar entry;
  entry.SetExpiry(30);
  entry.SetAlarmTone(0);
  entry.SetAlarmTonePath(u"/sounds/\u00e9t\u00e9.wav");
  entry.SetExpiry(-5);  // added behind the first: it does not show
  ASSERT_EQ(entry.GetXItemCount(), 4);
  const CXItem* expiry = entry.GetXItem(0);
  EXPECT_EQ(expiry->Name(), u"X-EXPIRY");
  EXPECT_EQ(expiry->Data(), u"30");
  EXPECT_EQ(expiry->Param(), 0u);
  EXPECT_EQ(expiry->thisID(), -1);
  EXPECT_EQ(entry.GetXItem(1)->Name(), u"X-ALARMTONE");
  EXPECT_EQ(entry.GetXItem(2)->Name(), u"X-ALARMTONEPATH");
  EXPECT_EQ(entry.GetXItem(3)->Data(), u"-5");
  EXPECT_EQ(entry.GetExpiry(), 30);
  EXPECT_EQ(entry.GetAlarmTone(), 0);
  EXPECT_EQ(entry.GetAlarmTonePath(), u"/sounds/\u00e9t\u00e9.wav");
}

TEST(CCalendar, extension_numbers_read_the_leading_integer_of_received_text) {
  const std::vector<std::pair<const char*, int>> table = {{"  +12days", 12},
                                                          {"\t-3", -3},
                                                          {"abc", 0},
                                                          {"- 4", 0},
                                                          {"1 2", 1},
                                                          {"99999999999999999999", INT_MAX},
                                                          {"-99999999999999999999", INT_MIN}};
  for (const auto& [text, value] : table) {
    CCalendar entry;
    entry.NewXItem("X-EXPIRY", text, 0, -1);
    entry.NewXItem("X-ALARMTONE", text, 0, -1);
    EXPECT_EQ(entry.GetExpiry(), value) << text;
    EXPECT_EQ(entry.GetAlarmTone(), value) << text;
  }
}

TEST(CCalendar, the_last_added_element_is_current_and_null_adds_nothing) {
  CCalendar entry;
  CAttendee* first = entry.NewAttendee(u"a@example.com", 1, 2, 4);
  CAttendee* second = entry.addAttendee(std::make_unique<CAttendee>());
  CReminder* alarm = entry.addAlarm(std::make_unique<CReminder>());
  CRecurrence* rule = entry.addRecurrence(std::make_unique<CRecurrence>());
  EXPECT_EQ(entry.addAttendee(nullptr), nullptr);
  EXPECT_EQ(entry.addAlarm(nullptr), nullptr);
  EXPECT_EQ(entry.addRecurrence(nullptr), nullptr);
  ASSERT_EQ(entry.GetAttendeecount(), 2);
  EXPECT_EQ(entry.GetAttendee(0), first);
  EXPECT_EQ(entry.Attendee(), second);
  EXPECT_EQ(entry.GetAlarmcount(), 1);
  EXPECT_EQ(entry.AudioReminder(), alarm);
  EXPECT_EQ(entry.GetRecurrencecount(), 1);
  EXPECT_EQ(entry.Recurrence(), rule);
}

class CCalendarDeathTest : public ::testing::TestWithParam<int> {};

// Two elements in each list; an empty record is the same case as index 2.
TEST_P(CCalendarDeathTest, list_getters_fail_outside_the_list) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CCalendar entry;
  for (int i = 0; i < 2; ++i) {
    entry.NewAttendee(u"x", 0, 0, i);
    entry.addAlarm(std::make_unique<CReminder>());
    entry.addRecurrence(std::make_unique<CRecurrence>());
  }
  const int index = GetParam();
  const CCalendar& view = entry;
  EXPECT_DEATH(entry.GetAttendee(index), AssertionPattern("nIndex < [self GetAttendeecount]"));
  EXPECT_DEATH(view.GetAttendee(index), AssertionPattern("nIndex < [self GetAttendeecount]"));
  EXPECT_DEATH(entry.GetAlarm(index), AssertionPattern("nIndex < [self GetAlarmcount]"));
  EXPECT_DEATH(view.GetAlarm(index), AssertionPattern("nIndex < [self GetAlarmcount]"));
  EXPECT_DEATH(entry.GetRecurrence(index), AssertionPattern("nIndex < [self GetRecurrencecount]"));
  EXPECT_DEATH(view.GetRecurrence(index), AssertionPattern("nIndex < [self GetRecurrencecount]"));
}

INSTANTIATE_TEST_SUITE_P(indexes, CCalendarDeathTest, ::testing::Values(2, INT_MAX, -1, INT_MIN));

}  // namespace
}  // namespace phonepim
