// How the tool words what it shows: type masks and labels in `contacts show
// --json` beyond the small book's golden file, rules in `calendar show`, and
// what `calendar check` calls a loss.
#include <gtest/gtest.h>

#include <phonepim/model/CCustomType.h>
#include <phonepim/vcalendar/vCalendar.h>

#include "CalendarCheck.h"
#include "CalendarShow.h"
#include "ContactJson.h"
#include "TypeWords.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

TEST(contacts_json, a_type_the_label_table_knows_is_shown_as_its_label) {
  const std::uint32_t code = CCustomType::Inst().ConvertCustomTypeFromString(u"X-CUSTOM(Boat)");
  CContact contact(u"Contact");
  contact.NewTelephone("+1 555 0100", code, -1);
  contact.NewOrg("Harbour Club", "", "", nullptr, code);
  const auto j = ContactToJson(contact, 1, 1);
  EXPECT_EQ(j["telephones"][0]["types"], Json::array());
  EXPECT_EQ(j["telephones"][0]["customLabel"], "Boat");
  EXPECT_EQ(j["organizations"][0]["customLabel"], "Boat");
}

// Bits no word stands for show in hexadecimal, after the words; CELL and X-ETC
// sit on crossed bits in e-mail and address masks.
TEST(contacts_json, type_masks_become_words_in_the_writer_order) {
  EXPECT_EQ(TypeWords(ElementKind::kOrganization, kOrganizationTypeEtc | 0x4),
            (std::vector<std::string>{"X-ETC", "0x4"}));
  EXPECT_EQ(TypeWords(ElementKind::kEmail, 0x4 | 0x8), (std::vector<std::string>{"CELL", "X-ETC"}));
}

// Teens take "th"; negatives count from the end.
TEST(calendar_show, rules_read_as_words) {
  EXPECT_EQ(RuleSummary(Json::parse(R"({"frequency":"monthlyByDay","interval":3,"count":1,"until":null,
                                        "monthDays":[-2,-1,1,2,3,11,12,13,21,22,111]})")),
            "every 3 months on the 2nd last, last, 1st, 2nd, 3rd, 11th, 12th, 13th, 21st, 22nd, 111th day, 1 time");
}

TEST(calendar_check, losses_and_changes_by_design) {
  CalendarOptions plain, words, biased;
  words.categoryWords = true;
  CalendarOptions reduced = words;
  reduced.reduced = true;
  biased.timezoneBias = 540;
  const Json tz = {{"name", "TZ"}, {"value", "+09:00"}}, cats = Json::array({"BUSINESS"});
  const unsigned int kEvent = 1, kToDo = vCalendar::kKindToDo, kHoliday = vCalendar::kKindHoliday;
  const struct {
    const char* path;
    Json before, after;
    unsigned int kind;
    const CalendarOptions& options;
    const char* reason;
  } rows[] = {
      {"summary", "a", "aZ", kEvent, plain, nullptr},
      {"alarms[0].runTime", "09:50", "09:50Z", kEvent, plain, "the writer's choice of UTC or local time"},
      {"uid", "x", nullptr, kEvent, plain, "not written"},
      {"start", "10:00", "11:00Z", kEvent, plain, nullptr},
      {"end", "2026-12-08T00:00:00Z", "2026-12-07T00:00:00Z", kEvent, plain, nullptr},
      {"due", "2026-12-08T00:00:00Z", nullptr, kEvent, plain, "DUE only for a to-do"},
      {"due", "2026-12-08T00:00:00Z", nullptr, kToDo, plain, nullptr},
      {"categories", cats, Json::array(), kEvent, words, nullptr},
      {"categories", cats, Json::array(), kEvent, reduced, "categories written only as APPOINTMENT, for none"},
      {"priority", 1, 0, kEvent, reduced, "not in the reduced form"},
      {"priority", 1, 0, kEvent, plain, nullptr},
      {"holiday", true, false, kHoliday, plain, "X-TYPE written only with --holiday"},
      {"alarms[1]", Json::object(), nullptr, kEvent, plain, "one alarm written"},
      {"alarms[0]", Json::object(), nullptr, kEvent, plain, nullptr},
      {"alarms[0].type", "PCM", nullptr, kEvent, plain, "only the alarm's time written"},
      {"alarms[0].runTime", "09:50Z", nullptr, kEvent, plain, nullptr},
      {"extensions", nullptr, tz, kEvent, biased, "TZ written from --timezone-bias as well"},
      {"extensions", nullptr, tz, kEvent, plain, nullptr},
      {"extensions", tz, nullptr, kEvent, biased, nullptr},
  };
  for (const auto& row : rows) {
    EXPECT_STREQ(ByDesignReason(row.path, row.before, row.after, row.kind, false, row.options), row.reason)
        << row.path << ": " << row.before << " -> " << row.after;
  }
}

}  // namespace
}  // namespace phonepim::tool
