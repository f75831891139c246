// Real phone and desktop exports through the splitter and the tokenizer.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "phonepim/versit/ObjectSplitter.h"
#include "versit/Transcript.h"

namespace phonepim::testing_versit {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> CorpusFiles() {
  std::vector<fs::path> files;
  const fs::path dir(PHONEPIM_CORPUS_DIR);
  if (!fs::is_directory(dir)) return files;
  for (const auto& entry : fs::directory_iterator(dir)) {
    const std::string ext = entry.path().extension().string();
    if (ext == ".vcf" || ext == ".vcs" || ext == ".ics" || ext == ".txt" || ext == ".2_1ref") {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

// Top-level objects per file. Where a file's description counts inner
// objects, the events sit inside one VCALENDAR.
const std::map<std::string, std::size_t> kObjectCounts = {
    {"android-vcard__v21_adr_multiple_line.vcf", 1},
    {"android-vcard__v21_backslash.vcf", 1},
    {"android-vcard__v21_base64_no_2_crlf.vcf", 1},
    {"android-vcard__v21_complicated.vcf", 1},
    {"android-vcard__v21_invalid_comment_line.vcf", 1},
    {"android-vcard__v21_japanese_1.vcf", 1},
    {"android-vcard__v21_japanese_2.vcf", 1},
    {"android-vcard__v21_malformed_photo.vcf", 1},
    {"android-vcard__v21_nest.vcf", 1},
    {"android-vcard__v21_org_before_title.vcf", 1},
    {"android-vcard__v21_pref_handling.vcf", 1},
    {"android-vcard__v21_sip.vcf", 1},
    {"android-vcard__v21_winmo_65.vcf", 1},
    {"android-vcard__v21_x_param.vcf", 1},
    {"biweekly__vcal-example1.vcs", 1},
    {"biweekly__vcal-example3.vcs", 1},
    {"eds__vcard-12.vcf", 1},
    {"eds__vcard-3.vcf", 1},
    {"eds__vcard-5.vcf", 1},
    {"ez-vcard__John_Doe_ANDROID.vcf", 6},
    {"ez-vcard__John_Doe_MS_OUTLOOK.vcf", 1},
    {"ez-vcard__outlook-2003.vcf", 1},
    {"funambol-client-sdk__vcalendar-events.vcs", 85},
    {"funambol-client-sdk__vcards.txt", 138},
    {"funambol-cpp-client-api__vcal10.ics", 11},
    {"funambol-cpp-client-api__vcard0.txt", 1},
    {"funambol-cpp-client-api__vcard4Wcontact21-3.vcf", 1},
    {"gammu__02.vcs", 1},
    {"gammu__char-escaping.vcf", 1},
    {"gammu__line-continuation.vcf", 1},
    {"gammu__many-lines.vcf", 1},
    {"gammu__p990.vcs", 1},
    {"gammu__photo.vcf", 1},
    {"gammu__private.vcf", 1},
    {"gammu__quoted-printable-ascii.vcf", 1},
    {"gammu__quoted-printable-new-line.vcf", 1},
    {"gammu__quoted-printable-normal.vcf", 1},
    {"gammu__rrule-1.0.vcs", 1},
    {"gammu__types.vcf", 1},
    {"gammu__unicode-name.vcf", 1},
    {"gammu__yahoo.vcf", 1},
    {"gnokii__test.vcs", 1},
    {"horde-icalendar__charset1.ics", 1},
    {"horde-icalendar__charset3.ics", 1},
    {"horde-icalendar__contact.vcf", 1},
    {"horde-icalendar__line-folding-4.ics", 1},
    {"horde-icalendar__multiple-categoryv1.ics", 1},
    {"horde-icalendar__vcard2.1.vcs", 1},
    {"kcalendarcore__KOrganizer_vCalTestCase01.vcs", 1},
    {"kcalendarcore__KOrganizer_vCalTestCase02.vcs", 1},
    {"kcalendarcore__KOrganizer_vCalTestCase03.vcs", 1},
    {"kcalendarcore__KOrganizer_vCalTestCase04.vcs", 1},
    {"kcalendarcore__KOrganizer_vCalTestCase05.vcs", 1},
    {"kcalendarcore__KOrganizer_vCalTestCase06.vcs", 1},
    {"kcalendarcore__KOrganizer_vCalTestCase07.vcs", 1},
    {"kcalendarcore__KOrganizer_vCalTestCase08.vcs", 1},
    {"kcalendarcore__KOrganizer_vCalTestCase09.vcs", 1},
    {"kcontacts__vcard1.vcf.2_1ref", 1},
    {"kcontacts__vcard10.vcf", 5},
    {"kcontacts__vcard3.vcf", 1},
    {"kcontacts__vcard3.vcf.2_1ref", 1},
    {"kcontacts__vcard7.vcf.2_1ref", 1},
    {"opensync__kdepim-full1-2.1.vcf", 1},
    {"opensync__todo-full1.vcs", 1},
    {"opensync__vcard.vcf", 1},
    {"sabre-vobject__issue64.vcf", 1},
    {"syncevolution__vcard21.vcf", 16},
    {"vobject__photo-test.vcf", 1},
};

// Objects the tokenizer rejects ("file#index"), each for a reason:
// - the photo's first line holds a ':' inside its BASE64 data.
const std::vector<std::string> kRejected = {
    "android-vcard__v21_malformed_photo.vcf#0",
};

TEST(versit_corpus, splits_and_tokenizes_the_same_whole_and_in_pieces) {
  const std::vector<fs::path> files = CorpusFiles();
  if (files.empty()) GTEST_SKIP() << "no corpus at " << PHONEPIM_CORPUS_DIR;

  std::map<std::string, std::size_t> counts;
  std::vector<std::string> rejected;
  std::mt19937 random(7u);
  for (const fs::path& path : files) {
    const std::string name = path.filename().string();
    SCOPED_TRACE(name);
    const std::string text = ReadFile(path);
    const std::vector<VersitObjectSpan> spans = FindVersitObjects(text);
    counts[name] = spans.size();
    for (std::size_t i = 0; i < spans.size(); ++i) {
      SCOPED_TRACE("object " + std::to_string(i));
      EXPECT_TRUE(spans[i].terminated);
      const std::string_view object(text.data() + spans[i].offset, spans[i].length);
      const Transcript whole = Tokenize(object);
      EXPECT_EQ(TokenizeByteByByte(object), whole);
      EXPECT_EQ(TokenizeReference(object), whole);
      std::uniform_int_distribution<std::size_t> offset(0, object.size());
      for (int round = 0; round < 5; ++round) {
        std::vector<std::size_t> cuts = {offset(random), offset(random), offset(random)};
        std::sort(cuts.begin(), cuts.end());
        EXPECT_EQ(Tokenize(object, cuts), whole);
      }
      if (whole.back() == "R:0") rejected.push_back(name + "#" + std::to_string(i));
    }
    // The whole file as one text, with each set of callbacks.
    for (const Handlers handlers :
         {Handlers::kBoth, Handlers::kPropOnly, Handlers::kDataOnly, Handlers::kNone}) {
      EXPECT_EQ(TokenizeByteByByte(text, handlers), Tokenize(text, {}, handlers));
      EXPECT_EQ(TokenizeReference(text, handlers), Tokenize(text, {}, handlers));
    }
  }
  EXPECT_EQ(counts, kObjectCounts);
  EXPECT_EQ(rejected, kRejected);
}

}  // namespace
}  // namespace phonepim::testing_versit
