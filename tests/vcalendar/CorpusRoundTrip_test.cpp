// Calendar files split into entries, and real exports through the codec.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
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
  std::vector<std::string> got;
  for (const auto& e : entries) got.push_back(std::to_string(e.firstLine) + (e.todo ? " todo " : " ") + e.text);
  const std::string head = "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nTZ:+01\r\n", tail = "END:VCALENDAR\r\n";
  EXPECT_EQ(got, (std::vector<std::string>{
                     "4 " + head + "BEGIN:VEVENT\r\nSUMMARY:a\r\nBEGIN:VALARM\r\nEND:VALARM\r\nEND:VEVENT\r\n" + tail,
                     "9 todo " + head + "begin:vtodo\r\nSUMMARY:b\r\n folded\r\nEND:VTODO\r\n" + tail,
                     "14 " + head + "BEGIN:VEVENT\r\nSUMMARY:open\r\nEND:VEVENT\r\n" + tail}));
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
std::string PassesToFixedPoint(const CalendarEntry& entry) {
  const unsigned kind = entry.todo ? vCalendar::kKindToDo : 1;
  std::string text = Write(*Read(entry.text), kind);
  for (int pass = 1; pass <= 16; ++pass) {
    std::string next = Write(*Read(text), kind);
    if (next == text) return std::to_string(pass) + " passes";
    text = std::move(next);
  }
  return "0 passes";
}

// The record read and the text written from it.
std::string Described(const CalendarEntry& entry) {
  const auto calendar = Read(entry.text);
  return Describe(*calendar) + "\n" + Write(*calendar, entry.todo ? vCalendar::kKindToDo : 1);
}

// What `run` gives, or why the reader stopped.
std::string OrWhy(std::string (*run)(const CalendarEntry&), const CalendarEntry& entry) {
  try {
    return run(entry);
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
        strict.Add(id, OrWhy(&Described, entry));
        vCard::LenientReading(true);
        lenient.Add(id, OrWhy(&Described, entry));
        const std::string passes = OrWhy(&PassesToFixedPoint, entry);
        if (passes != "1 passes" && passes != "2 passes") failed[id] = passes;
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
