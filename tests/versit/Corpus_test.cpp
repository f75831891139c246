// Real phone and desktop exports through the splitter and the tokenizer.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <iterator>
#include <string>
#include <vector>

#include "phonepim/versit/ObjectSplitter.h"
#include "versit/Transcript.h"

namespace phonepim::testing_versit {
namespace {

namespace fs = std::filesystem;

TEST(versit_corpus, splits_and_tokenizes_the_same_whole_and_in_pieces) {
  const fs::path dir(PHONEPIM_CORPUS_DIR);
  if (!fs::is_directory(dir)) GTEST_SKIP() << "no corpus at " << dir;
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(dir)) {
    const std::string ext = entry.path().extension().string();
    if (ext == ".vcf" || ext == ".vcs" || ext == ".ics" || ext == ".txt" || ext == ".2_1ref") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  // Every file holds one top-level object but these; where a file's own
  // description counts inner objects, the events sit inside one VCALENDAR.
  std::map<std::string, std::size_t> counts;
  std::vector<std::string> rejected;
  std::mt19937 random(7u);
  for (const fs::path& path : files) {
    const std::string name = path.filename().string();
    SCOPED_TRACE(name);
    std::ifstream in(path, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const std::vector<VersitObjectSpan> spans = FindVersitObjects(text);
    if (spans.size() != 1) counts[name] = spans.size();
    for (std::size_t i = 0; i < spans.size(); ++i) {
      EXPECT_TRUE(spans[i].terminated) << i;
      const std::string_view object(text.data() + spans[i].offset, spans[i].length);
      const Transcript whole = Tokenize(object);
      EXPECT_EQ(TokenizeByteByByte(object), whole) << i;
      EXPECT_EQ(TokenizeReference(object), whole) << i;
      std::uniform_int_distribution<std::size_t> offset(0, object.size());
      for (int round = 0; round < 5; ++round) {
        std::vector<std::size_t> cuts = {offset(random), offset(random), offset(random)};
        std::sort(cuts.begin(), cuts.end());
        EXPECT_EQ(Tokenize(object, cuts), whole) << i;
      }
      if (whole.back() == "R:0") rejected.push_back(name + "#" + std::to_string(i));
    }
    // The whole file as one text, with each set of callbacks.
    for (const Handlers handlers : {Handlers::kBoth, Handlers::kPropOnly, Handlers::kDataOnly, Handlers::kNone}) {
      EXPECT_EQ(TokenizeByteByByte(text, handlers), Tokenize(text, {}, handlers));
      EXPECT_EQ(TokenizeReference(text, handlers), Tokenize(text, {}, handlers));
    }
  }
  EXPECT_EQ(files.size(), 68u);
  EXPECT_EQ(counts, (std::map<std::string, std::size_t>{{"ez-vcard__John_Doe_ANDROID.vcf", 6},
                                                        {"funambol-client-sdk__vcalendar-events.vcs", 85},
                                                        {"funambol-client-sdk__vcards.txt", 138},
                                                        {"funambol-cpp-client-api__vcal10.ics", 11},
                                                        {"kcontacts__vcard10.vcf", 5},
                                                        {"syncevolution__vcard21.vcf", 16}}));
  // The photo's first line holds a ':' inside its BASE64 data.
  EXPECT_EQ(rejected, std::vector<std::string>{"android-vcard__v21_malformed_photo.vcf#0"});
}

}  // namespace
}  // namespace phonepim::testing_versit
