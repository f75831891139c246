// Real calendar exports through the calendar table: every entry of the
// shared corpus, read leniently, synchronised, saved, reloaded and read
// again, must come back unchanged with every identifier it was given.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "mapping/MappingTestSupport.h"
#include "phonepim/mapping/CalendarIDMappingTable.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/vcalendar/CalendarEntries.h"
#include "phonepim/versit/ObjectSplitter.h"
#include "vcalendar/vCalendarTestSupport.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> CorpusEntryTexts() {
  std::vector<fs::path> files;
  for (const auto& item : fs::directory_iterator(PHONEPIM_CORPUS_DIR)) {
    const std::string ext = item.path().extension().string();
    if (ext == ".vcs" || ext == ".ics") files.push_back(item.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<std::string> texts;
  for (const fs::path& file : files) {
    std::ifstream in(file, std::ios::binary);
    const std::string buffer((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    for (const auto& object : SplitVersitObjects(buffer)) {
      const std::string text(reinterpret_cast<const char*>(object->object()->GetData()),
                             object->object()->GetSize());
      for (CalendarEntry& entry : SplitCalendarEntries(text)) texts.push_back(entry.text);
    }
  }
  return texts;
}

// Reads and reconciles every entry; answers, per entry, its sub-records'
// identifiers and the states their meta entries were left in.
std::vector<std::pair<std::vector<String>, std::multiset<String>>> Synchronise(
    const std::vector<std::string>& texts, const fs::path& base, bool first) {
  auto table = std::make_shared<CalendarIDMappingTable>(u"N9", u"35", base);
  std::vector<std::pair<std::vector<String>, std::multiset<String>>> result;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const auto entry = testing_vcalendar::Read(texts[i]);
    entry->resolveIdentity(static_cast<std::uint16_t>(i + 1), u"35", std::nullopt, table);
    entry->createMetaData(table->calendarRecordID());
    EXPECT_EQ(entry->eventChanged(), first) << "entry " << i;
    if (first) {
      table->addCalendar(*entry->vCalRecordID(), StringFromASCII("S-" + std::to_string(i)),
                         entry->eventRecord());
    }
    auto& [identifiers, states] = result.emplace_back();
    for (const char16_t* list : {u"attendees", u"audio alarms", u"recurrences"}) {
      if (const Array* ids = FindAs<Array>(entry->eventRecord(), list)) {
        for (const Value& id : *ids) identifiers.push_back(id.get<String>());
      }
      const Array* metas = FindAs<Array>(*std::as_const(*table).meta(*entry->vCalRecordID()), list);
      for (const Value& meta : metas ? *metas : Array{}) {
        states.insert(meta.get<Dictionary>().at(u"State").get<String>());
      }
    }
  }
  EXPECT_TRUE(table->save());
  return result;
}

TEST(calendar_corpus_sync, every_entry_comes_back_unchanged_with_its_identifiers) {
  if (!fs::is_directory(PHONEPIM_CORPUS_DIR)) {
    GTEST_SKIP() << "no corpus folder at " << PHONEPIM_CORPUS_DIR;
  }
  testing_vcalendar::ScopedCalendarDefaults defaults;
  const ScopedAssertionHandler handler(ThrowingAssertionHandler);
  vCard::LenientReading(true);
  const std::vector<std::string> texts = CorpusEntryTexts();
  ASSERT_EQ(texts.size(), 116u) << "the corpus changed";
  testing_support::ScratchFolder base;
  const auto first = Synchronise(texts, base.path(), true);
  const auto second = Synchronise(texts, base.path(), false);
  const auto all = [](std::size_t count, const String& state) {
    std::multiset<String> states;
    for (std::size_t i = 0; i < count; ++i) states.insert(state);
    return states;
  };
  std::size_t subRecords = 0;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(second[i].first, first[i].first) << "entry " << i;
    EXPECT_EQ(first[i].second, all(first[i].first.size(), u"New"));
    EXPECT_EQ(second[i].second, all(first[i].first.size(), u"NoChange"));
    subRecords += first[i].first.size();
  }
  EXPECT_GT(subRecords, 20u);
}

}  // namespace
}  // namespace phonepim
