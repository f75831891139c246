// Calendar files split into entries, and real exports through the codec.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "phonepim/platform/Assert.h"
#include "phonepim/vcalendar/CalendarEntries.h"
#include "phonepim/versit/ObjectSplitter.h"
#include "vcalendar/vCalendarTestSupport.h"
#include "versit/CorpusDigests.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;
using namespace testing_vcalendar;

TEST(calendar_entries, one_calendar_per_entry_with_the_calendars_own_lines) {
  const auto entries = SplitCalendarEntries(
      "BEGIN:VCALENDAR\r\nVERSION:1.0\r\n\r\nBEGIN:VEVENT\r\nSUMMARY:a\r\n"
      "BEGIN:VALARM\r\nEND:VALARM\r\nEND:VEVENT\r\nbegin:vtodo\r\nSUMMARY:b\r\n"
      " folded\r\nEND:VTODO\r\nTZ:+01\r\nBEGIN:VEVENT\r\nSUMMARY:open");
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(entries[0].text,
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:+01\r\nBEGIN:VEVENT\r\nSUMMARY:a\r\n"
            "BEGIN:VALARM\r\nEND:VALARM\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
  EXPECT_EQ(entries[1].text,
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:+01\r\nbegin:vtodo\r\nSUMMARY:b\r\n"
            " folded\r\nEND:VTODO\r\nEND:VCALENDAR\r\n");
  EXPECT_EQ(entries[2].text,
            "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:+01\r\nBEGIN:VEVENT\r\nSUMMARY:open\r\n"
            "END:VEVENT\r\nEND:VCALENDAR\r\n");
  EXPECT_EQ((std::vector<bool>{entries[0].todo, entries[1].todo, entries[2].todo}),
            (std::vector<bool>{false, true, false}));
  EXPECT_EQ(entries[1].firstLine, 9u);
  EXPECT_TRUE(SplitCalendarEntries("BEGIN:VCALENDAR\nVERSION:1.0\nEND:VCALENDAR\n").empty());
  ScopedCalendarDefaults defaults;
  for (bool lenient : {false, true}) {  // gnokii's stray colon
    vCard::LenientReading(lenient);
    EXPECT_EQ(SplitCalendarEntries("BEGIN:VEVENT: \nEND:VEVENT\n").size(), lenient ? 1u : 0u);
  }
}

// A pass is generate(parse(text)). Pass 1 may change much (docs/vcalendar.md
// lists what); pass 2 reproduces pass 1 for every entry today, so there is no
// entry to name with a reason. The passes after the first one until the text
// stays the same (0: never).
int PassesToFixedPoint(const CalendarEntry& entry) {
  const unsigned kind = entry.todo ? vCalendar::kKindToDo : 1;
  std::string text = Write(*Read(entry.text), kind);
  for (int pass = 1; pass <= 16; ++pass) {
    std::string next = Write(*Read(text), kind);
    if (next == text) return pass;
    text = std::move(next);
  }
  return 0;
}

// The record read and the text written from it, or why the reader stopped.
std::string Described(const CalendarEntry& entry) {
  try {
    const auto calendar = Read(entry.text);
    return Describe(*calendar) + "\n" + Write(*calendar, entry.todo ? vCalendar::kKindToDo : 1);
  } catch (const std::uint16_t& code) {
    return "code " + std::to_string(code);
  } catch (const std::exception& other) {
    return other.what();
  }
}

TEST(corpus_round_trip, every_entry_is_read_and_settles_within_two_passes) {
  if (!fs::is_directory(PHONEPIM_CORPUS_DIR)) GTEST_SKIP() << "no corpus at " PHONEPIM_CORPUS_DIR;
  ScopedCalendarDefaults defaults;
  const ScopedAssertionHandler handler(ThrowingAssertionHandler);
  vCard::LenientReading(true);
  testing_support::CorpusDigests strict("vcalendar", "strict");
  testing_support::CorpusDigests lenient("vcalendar", "lenient");
  std::map<std::string, std::string> failed;  // "file#object:line" -> why
  std::size_t entries = 0;
  for (const auto& file : fs::directory_iterator(PHONEPIM_CORPUS_DIR)) {
    const std::string ext = file.path().extension().string();
    if (ext != ".vcs" && ext != ".ics") continue;
    std::ifstream in(file.path(), std::ios::binary);
    const std::string buffer{std::istreambuf_iterator<char>(in), {}};
    int number = 0;
    for (const auto& object : SplitVersitObjects(buffer)) {
      const std::string text(reinterpret_cast<const char*>(object->object()->GetData()),
                             object->object()->GetSize());
      ++number;
      for (const CalendarEntry& entry : SplitCalendarEntries(text)) {
        const std::string id = file.path().filename().string() + "#" + std::to_string(number) +
                               ":" + std::to_string(entry.firstLine);
        ++entries;
        vCard::LenientReading(false);
        strict.Add(id, Described(entry));
        vCard::LenientReading(true);
        lenient.Add(id, Described(entry));
        try {
          const int passes = PassesToFixedPoint(entry);
          if (passes != 1 && passes != 2) failed[id] = std::to_string(passes) + " passes";
        } catch (const std::uint16_t& code) {
          failed[id] = "code " + std::to_string(code);
        } catch (const std::exception& other) {
          failed[id] = other.what();
        }
      }
    }
  }
  strict.Verify();
  lenient.Verify();
  EXPECT_EQ(entries, 120u) << "the corpus changed";
  EXPECT_EQ(failed, (std::map<std::string, std::string>{}));
}

}  // namespace
}  // namespace phonepim
