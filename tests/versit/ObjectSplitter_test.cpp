#include "phonepim/versit/ObjectSplitter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace phonepim {
namespace {

TEST(object_splitter, finds_top_level_objects_by_their_lines) {
  const std::string card = "BEGIN:VCARD\r\nN:A\r\nEND:VCARD\r\n";
  const std::string cardLf = "BEGIN:VCARD\nN:A\nEND:VCARD\n";
  const std::string calendar = "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nEND:VEVENT\r\nBEGIN:VTODO\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
  struct Object {
    std::size_t offset;
    std::string text;
    std::size_t firstLine;
    bool terminated = true;
    bool operator==(const Object&) const = default;
  };
  const struct {
    std::string input;
    std::vector<Object> expected;
  } rows[] = {
      {"hello\r\nworld\r\n", {}},
      {"export\r\n" + card + "\r\n-- next --\r\n" + cardLf + "trailer", {{8, card, 2}, {8 + card.size() + 14, cardLf, 7}}},
      {"BEGIN:VCARD\nN:A\nEND:VCARD", {{0, "BEGIN:VCARD\nN:A\nEND:VCARD", 1}}},
      {"begin:vcard\nend:vcard\nBeGiN:vCard\nEnD:vCaRd\n", {{0, "begin:vcard\nend:vcard\n", 1}, {22, "BeGiN:vCard\nEnD:vCaRd\n", 3}}},
      // Nested objects stay inside; BEGIN and END count only at a line start
      // and with their colon.
      {calendar + card, {{0, calendar, 1}, {calendar.size(), card, 7}}},
      {"BEGIN:VCARD\nBEGIN:VCARD\nEND:VCARD\n END:VCARD\nNOTE:END:VCARD\nEND:VCARD\nX\n",
       {{0, "BEGIN:VCARD\nBEGIN:VCARD\nEND:VCARD\n END:VCARD\nNOTE:END:VCARD\nEND:VCARD\n", 1}}},
      {" BEGIN:VCARD\nNOTE:BEGIN:VCARD\nBEGIN VCARD\nBEGINNER:x\nEND:VCARD\n" + cardLf, {{63, cardLf, 6}}},
      {card + "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nEND:VEVENT\r\n",
       {{0, card, 1}, {card.size(), "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nEND:VEVENT\r\n", 4, false}}},
      // Empty lines are counted; a byte-order mark is skipped.
      {"\xEF\xBB\xBF\n\r\n\n" + card, {{7, card, 4}}},
      {"BEGIN:", {{0, "BEGIN:", 1, false}}},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(&r - rows);
    const vObjectPtrArray objects = SplitVersitObjects(r.input);
    std::vector<Object> got;
    for (const VersitObjectSpan& span : FindVersitObjects(r.input)) {
      got.push_back({span.offset, r.input.substr(span.offset, span.length), span.firstLine, span.terminated});
      const vobj::_byte_array* bytes = objects.at(got.size() - 1)->object();
      EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes->GetData()), bytes->GetSize()), got.back().text);
      EXPECT_EQ(objects[got.size() - 1]->objectID(), 0xFFFFFFFFu);
    }
    EXPECT_EQ(got, r.expected);
    EXPECT_EQ(objects.size(), got.size());
  }
}

}  // namespace
}  // namespace phonepim
