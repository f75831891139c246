// Real phone exports through the codec: every vCard object of the shared
// corpus is read (exactly the objects listed fail, each for the reason
// given), known quirks give known fields in each reading mode, and writing
// what was read, reading that and writing again must settle on one text
// within a few passes.
//
// A pass is generate(parse(text)). Pass 1 starts from the phone's text and
// may change much (properties the writer does not know vanish); pass 2
// normally reproduces pass 1. Objects that need more passes are named below
// with the reason; the reasons are behaviour of the codec, kept on purpose.
#include <gtest/gtest.h>

#include <strings.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <ostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "phonepim/model/CContact.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/ObjectSplitter.h"
#include "vcard/vCardTestSupport.h"
#include "versit/CorpusDigests.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;
using testing_support::ScopedWriterDefaults;

constexpr int kMaxPasses = 64;

struct CorpusObject {
  std::string id;  // file name and the object's number in it ("file#2")
  std::string text;
};

bool IsVCard(const std::string& text) { return strncasecmp(text.c_str(), "BEGIN:VCARD", 11) == 0; }

std::vector<CorpusObject> CorpusVCards(const fs::path& folder, NestedCards nested) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.is_regular_file() && entry.path().filename() != "README.md") {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  std::vector<CorpusObject> objects;
  for (const fs::path& file : files) {
    std::ifstream in(file, std::ios::binary);
    const std::string buffer((std::istreambuf_iterator<char>(in)),
                             std::istreambuf_iterator<char>());
    int number = 0;
    for (const auto& object : SplitVersitObjects(buffer, nested)) {
      const std::string text(reinterpret_cast<const char*>(object->object()->GetData()),
                             object->object()->GetSize());
      if (!IsVCard(text)) continue;
      objects.push_back({file.filename().string() + "#" + std::to_string(++number), text});
    }
  }
  return objects;
}

std::string Pass(const std::string& text) { return testing_vcard::Generated(*testing_vcard::Read(text)); }

// Why the reader stops, in words: the code it throws or the assertion text.
std::string Rejection(const std::string& text) {
  try {
    Pass(text);
  } catch (const std::uint16_t& code) {
    return "code " + std::to_string(code);
  } catch (const AssertionFailure& failure) {
    return failure.text();
  } catch (const std::exception& other) {
    return other.what();
  }
  return "";
}

// Passes until the text stops changing: the first pass whose output the
// next pass reproduces. 0 when it did not settle within kMaxPasses.
int PassesToFixedPoint(const std::string& phoneText) {
  std::string text = Pass(phoneText);
  for (int pass = 1; pass <= kMaxPasses; ++pass) {
    std::string next = Pass(text);
    if (next == text) return pass;
    text = std::move(next);
  }
  return 0;
}

// One option setting and what the corpus does under it.
struct CorpusExpectation {
  const char* name;
  bool allOptions;  // sm_fNonstandardEscChar, sm_fUseReadingLastName, sm_fURLNotQPEncode
  bool lenient;     // sm_fLenientReading: nested cards apart, nothing rejected
  // Objects that need more than two passes: the pass count (0: never within
  // kMaxPasses) and why.
  std::map<std::string, std::pair<int, std::string>> slow;
};

void PrintTo(const CorpusExpectation& e, std::ostream* os) { *os << e.name; }

// The reader rejects the same objects whatever the writer's options.
const std::map<std::string, std::string> kRejected = {
    // A ':' inside the folded BASE64 data ends the tokenizer.
    {"android-vcard__v21_malformed_photo.vcf#1", "code 65529"},
};

const std::string kEatsStructured =
    "a backslash in a structured value keeps itself and drops the character after it on "
    "every read; without escaping on write it eats one character per pass";
const std::string kNeverSettles =
    "with escaping on write, a structured component ending in a backslash is written "
    "doubled and read back, one character of look-behind, as an escaped separator: it grows "
    "on every pass";

class corpus_round_trip : public ::testing::TestWithParam<CorpusExpectation> {
 protected:
  void SetUp() override {
    if (!fs::is_directory(PHONEPIM_CORPUS_DIR)) {
      GTEST_SKIP() << "no corpus folder at " << PHONEPIM_CORPUS_DIR;
    }
    vCard::NonstandardEscChar(GetParam().allOptions);
    vCard::UseReadingLastName(GetParam().allOptions);
    vCard::URLNotQPEncode(GetParam().allOptions);
    vCard::LenientReading(GetParam().lenient);
    objects_ = CorpusVCards(PHONEPIM_CORPUS_DIR,
                            GetParam().lenient ? NestedCards::kApart : NestedCards::kInside);
  }
  ScopedWriterDefaults defaults_;
  ScopedAssertionHandler handler_{ThrowingAssertionHandler};
  std::vector<CorpusObject> objects_;
};

TEST_P(corpus_round_trip, every_object_is_read_and_settles) {
  testing_support::CorpusDigests digests("vcard", GetParam().name);
  std::map<std::string, std::string> rejected;
  std::map<std::string, int> slow;
  int settled = 0;
  int photos = 0;
  int emptyPhotos = 0;
  for (const CorpusObject& object : objects_) {
    const std::string why = Rejection(object.text);
    if (!why.empty()) {
      rejected[object.id] = why;
      continue;
    }
    const std::unique_ptr<CContact> contact = testing_vcard::Read(object.text);
    digests.Add(object.id, testing_vcard::Describe(*contact) + "\n" + Pass(object.text));
    if (const Bytes* photo = contact->GetPhotoRef()) {
      ++photos;
      if (photo->empty()) ++emptyPhotos;
    }
    const int passes = PassesToFixedPoint(object.text);
    if (passes == 1 || passes == 2) {
      ++settled;
    } else {
      slow[object.id] = passes;
    }
  }
  // The two nested cards of android-vcard__v21_nest.vcf are cards of their own.
  EXPECT_EQ(objects_.size(), GetParam().lenient ? 209u : 207u) << "the corpus changed";
  EXPECT_EQ(rejected, GetParam().lenient ? decltype(rejected)() : kRejected);
  std::map<std::string, int> expectedSlow;
  for (const auto& [id, passesAndWhy] : GetParam().slow) expectedSlow[id] = passesAndWhy.first;
  EXPECT_EQ(slow, expectedSlow) << [&] {
    std::string reasons;
    for (const auto& [id, passesAndWhy] : GetParam().slow) {
      reasons += id + ": " + passesAndWhy.second + "\n";
    }
    return reasons;
  }();
  digests.Verify();
  EXPECT_EQ(settled, static_cast<int>(objects_.size() - rejected.size() - slow.size()));
  // The standard rules read a photo whose BASE64 starts on the property line
  // as no bytes; lenient reading reads every photo of the corpus whole.
  EXPECT_EQ(photos, GetParam().lenient ? 35 : 33);
  EXPECT_EQ(emptyPhotos, GetParam().lenient ? 0 : 4);
}

INSTANTIATE_TEST_SUITE_P(
    options, corpus_round_trip,
    ::testing::Values(
        CorpusExpectation{"defaults",
                          false,
                          false,
                          {{"android-vcard__v21_backslash.vcf#1", {8, kEatsStructured}},
                           {"android-vcard__v21_complicated.vcf#1", {22, kEatsStructured}},
                           {"syncevolution__vcard21.vcf#6", {16, kEatsStructured}}}},
        CorpusExpectation{"lenient", false, true, {}},
        CorpusExpectation{"lenient_all_options", true, true, {}},
        CorpusExpectation{"all_options",
                          true,
                          false,
                          {{"android-vcard__v21_adr_multiple_line.vcf#1", {0, kNeverSettles}},
                           {"android-vcard__v21_backslash.vcf#1", {0, kNeverSettles}},
                           {"syncevolution__vcard21.vcf#6",
                            {3,
                             "the given name ends in a backslash: written doubled, its "
                             "separator reads as escaped and the middle name joins it; the "
                             "joined part then settles"}}}}),
    [](const ::testing::TestParamInfo<CorpusExpectation>& info) { return info.param.name; });

}  // namespace
}  // namespace phonepim
