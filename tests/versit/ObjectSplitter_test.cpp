#include "phonepim/versit/ObjectSplitter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace phonepim {
namespace {

struct ExpectedObject {
  std::size_t offset;
  std::string text;
  std::size_t firstLine;
  bool terminated = true;
};

struct SplitCase {
  const char* name;
  std::string input;
  std::vector<ExpectedObject> expected;
};

void PrintTo(const SplitCase& c, std::ostream* os) { *os << c.name; }

class SplitterTable : public ::testing::TestWithParam<SplitCase> {};

TEST_P(SplitterTable, finds_the_objects) {
  const SplitCase& c = GetParam();
  const std::vector<VersitObjectSpan> spans = FindVersitObjects(c.input);
  ASSERT_EQ(spans.size(), c.expected.size());
  for (std::size_t i = 0; i < spans.size(); ++i) {
    SCOPED_TRACE("object " + std::to_string(i));
    EXPECT_EQ(spans[i].offset, c.expected[i].offset);
    EXPECT_EQ(c.input.substr(spans[i].offset, spans[i].length), c.expected[i].text);
    EXPECT_EQ(spans[i].firstLine, c.expected[i].firstLine);
    EXPECT_EQ(spans[i].terminated, c.expected[i].terminated);
  }
}

TEST_P(SplitterTable, split_copies_each_object) {
  const SplitCase& c = GetParam();
  const vObjectPtrArray objects = SplitVersitObjects(c.input);
  ASSERT_EQ(objects.size(), c.expected.size());
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const vobj::_byte_array* bytes = objects[i]->object();
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes->GetData()), bytes->GetSize()),
              c.expected[i].text);
    EXPECT_EQ(objects[i]->objectID(), 0xFFFFFFFFu);
  }
}

const std::string kCard = "BEGIN:VCARD\r\nN:A\r\nEND:VCARD\r\n";
const std::string kCardLf = "BEGIN:VCARD\nN:A\nEND:VCARD\n";

const SplitCase kSplitCases[] = {
    {"empty", "", {}},
    {"no_objects", "hello\r\nworld\r\n", {}},
    {"one_card_crlf", kCard, {{0, kCard, 1}}},
    {"one_card_lf", kCardLf, {{0, kCardLf, 1}}},
    {"two_cards_back_to_back", kCard + kCardLf, {{0, kCard, 1}, {kCard.size(), kCardLf, 4}}},
    {"text_between_and_around", "export\r\n" + kCard + "\r\n-- next --\r\n" + kCard + "trailer",
     {{8, kCard, 2}, {8 + kCard.size() + 14, kCard, 7}}},
    {"end_line_without_line_end", "BEGIN:VCARD\nN:A\nEND:VCARD",
     {{0, "BEGIN:VCARD\nN:A\nEND:VCARD", 1}}},
    {"lower_and_mixed_case", "begin:vcard\nN:A\nend:vcard\nBeGiN:vCard\nEnD:vCaRd\n",
     {{0, "begin:vcard\nN:A\nend:vcard\n", 1}, {26, "BeGiN:vCard\nEnD:vCaRd\n", 4}}},
    {"nested_event_stays_inside_calendar",
     "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nSUMMARY:x\r\nEND:VEVENT\r\n"
     "BEGIN:VTODO\r\nEND:VTODO\r\nEND:VCALENDAR\r\nBEGIN:VCARD\r\nEND:VCARD\r\n",
     {{0,
       "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VEVENT\r\nSUMMARY:x\r\nEND:VEVENT\r\n"
       "BEGIN:VTODO\r\nEND:VTODO\r\nEND:VCALENDAR\r\n",
       1},
      {106, "BEGIN:VCARD\r\nEND:VCARD\r\n", 9}}},
    {"nested_card", "BEGIN:VCARD\nBEGIN:VCARD\nEND:VCARD\nTEL:1\nEND:VCARD\nX\n",
     {{0, "BEGIN:VCARD\nBEGIN:VCARD\nEND:VCARD\nTEL:1\nEND:VCARD\n", 1}}},
    {"unterminated_last_object", kCard + "BEGIN:VCARD\r\nN:B\r\n",
     {{0, kCard, 1}, {kCard.size(), "BEGIN:VCARD\r\nN:B\r\n", 4, false}}},
    {"unterminated_nested", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nEND:VEVENT\n",
     {{0, "BEGIN:VCALENDAR\nBEGIN:VEVENT\nEND:VEVENT\n", 1, false}}},
    {"begin_not_at_line_start", " BEGIN:VCARD\nNOTE:BEGIN:VCARD\nx BEGIN:VCARD\n" + kCardLf,
     {{44, kCardLf, 4}}},
    {"end_not_at_line_start_stays_inside", "BEGIN:VCARD\n END:VCARD\nNOTE:END:VCARD\nEND:VCARD\n",
     {{0, "BEGIN:VCARD\n END:VCARD\nNOTE:END:VCARD\nEND:VCARD\n", 1}}},
    {"begin_needs_its_colon", "BEGIN VCARD\nBEGINNER:x\nEND:X\n" + kCardLf, {{29, kCardLf, 4}}},
    {"stray_end_outside_objects", "END:VCARD\r\n" + kCard, {{11, kCard, 2}}},
    {"empty_lines_counted", "\n\r\n\n" + kCard, {{4, kCard, 4}}},
    {"byte_order_mark_skipped", "\xEF\xBB\xBF" + kCard, {{3, kCard, 1}}},
    {"begin_only", "BEGIN:", {{0, "BEGIN:", 1, false}}},
};
INSTANTIATE_TEST_SUITE_P(splitter, SplitterTable, ::testing::ValuesIn(kSplitCases),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim
