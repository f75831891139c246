// Real calendar exports through the codec, read leniently: every VEVENT and
// VTODO of the shared corpus is read, and writing what was read, reading
// that and writing again must settle on one text within two passes.
//
// A pass is generate(parse(text)). Pass 1 starts from the phone's text and
// may change much (a local DTSTART is written in GMT, categories the writer
// has no word for vanish); pass 2 reproduces pass 1. Objects that need more
// passes are named below with the reason.
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

namespace phonepim {
namespace {

namespace fs = std::filesystem;
using namespace testing_vcalendar;

constexpr int kMaxPasses = 16;

struct Entry {
  std::string id;  // file, object and entry line ("file#1:5")
  CalendarEntry entry;
};

std::vector<Entry> CorpusEntries(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& item : fs::directory_iterator(folder)) {
    const std::string ext = item.path().extension().string();
    if (ext == ".vcs" || ext == ".ics") files.push_back(item.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<Entry> entries;
  for (const fs::path& file : files) {
    std::ifstream in(file, std::ios::binary);
    const std::string buffer((std::istreambuf_iterator<char>(in)),
                             std::istreambuf_iterator<char>());
    int number = 0;
    for (const auto& object : SplitVersitObjects(buffer)) {
      ++number;
      const std::string text(reinterpret_cast<const char*>(object->object()->GetData()),
                             object->object()->GetSize());
      for (CalendarEntry& entry : SplitCalendarEntries(text)) {
        entries.push_back({file.filename().string() + "#" + std::to_string(number) + ":" +
                               std::to_string(entry.firstLine),
                           std::move(entry)});
      }
    }
  }
  return entries;
}

std::string Pass(const std::string& text, bool todo) {
  return Write(*Read(text), todo ? vCalendar::kKindToDo : 1);
}

int PassesToFixedPoint(const CalendarEntry& entry) {
  std::string text = Pass(entry.text, entry.todo);
  for (int pass = 1; pass <= kMaxPasses; ++pass) {
    std::string next = Pass(text, entry.todo);
    if (next == text) return pass;
    text = std::move(next);
  }
  return 0;
}

TEST(corpus_round_trip, every_entry_is_read_and_settles_within_two_passes) {
  if (!fs::is_directory(PHONEPIM_CORPUS_DIR)) {
    GTEST_SKIP() << "no corpus folder at " << PHONEPIM_CORPUS_DIR;
  }
  ScopedCalendarDefaults defaults;
  const ScopedAssertionHandler handler(ThrowingAssertionHandler);
  vCard::LenientReading(true);
  std::map<std::string, std::string> failed;
  std::map<std::string, int> slow;
  const std::vector<Entry> entries = CorpusEntries(PHONEPIM_CORPUS_DIR);
  for (const Entry& e : entries) {
    try {
      const int passes = PassesToFixedPoint(e.entry);
      if (passes != 1 && passes != 2) slow[e.id] = passes;
    } catch (const std::uint16_t& code) {
      failed[e.id] = "code " + std::to_string(code);
    } catch (const std::exception& other) {
      failed[e.id] = other.what();
    }
  }
  EXPECT_EQ(entries.size(), 116u) << "the corpus changed";
  EXPECT_EQ(failed, (std::map<std::string, std::string>{}));
  EXPECT_EQ(slow, (std::map<std::string, int>{}));
}

}  // namespace
}  // namespace phonepim
