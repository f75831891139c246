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

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "phonepim/platform/Assert.h"
#include "phonepim/versit/ObjectSplitter.h"
#include "vcard/vCardTestSupport.h"
#include "versit/CorpusDigests.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;
using testing_support::ScopedWriterDefaults;

constexpr int kMaxPasses = 64;

// The vCards of the folder by id: file name and the object's number in it
// ("file#2").
std::map<std::string, std::string> CorpusVCards(const fs::path& folder, NestedCards nested) {
  std::map<std::string, std::string> objects;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.is_regular_file() || entry.path().filename() == "README.md") continue;
    std::ifstream in(entry.path(), std::ios::binary);
    const std::string buffer((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    int number = 0;
    for (const auto& object : SplitVersitObjects(buffer, nested)) {
      const std::string text = testing_support::BytesOf(*object);
      if (strncasecmp(text.c_str(), "BEGIN:VCARD", 11) != 0) continue;
      objects[entry.path().filename().string() + "#" + std::to_string(++number)] = text;
    }
  }
  return objects;
}

std::string Pass(const std::string& text) { return testing_vcard::Generated(*testing_vcard::Read(text)); }

// Why the reader stops, in words: the code it throws or the exception's.
std::string Rejection(const std::string& text) {
  try {
    Pass(text);
  } catch (const std::uint16_t& code) {
    return "code " + std::to_string(code);
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
  // Objects that need more than two passes, with the pass count (0: never
  // within kMaxPasses).
  std::map<std::string, int> slow;
};

void PrintTo(const CorpusExpectation& e, std::ostream* os) { *os << e.name; }

// The reader rejects the same objects whatever the writer's options.
const std::map<std::string, std::string> kRejected = {
    // A ':' inside the folded BASE64 data ends the tokenizer.
    {"android-vcard__v21_malformed_photo.vcf#1", "code 65529"},
};

class corpus_round_trip : public ::testing::TestWithParam<CorpusExpectation> {};

TEST_P(corpus_round_trip, every_object_is_read_and_settles) {
  if (!fs::is_directory(PHONEPIM_CORPUS_DIR)) GTEST_SKIP() << "no corpus folder at " << PHONEPIM_CORPUS_DIR;
  const ScopedWriterDefaults defaults;
  const ScopedAssertionHandler handler(ThrowingAssertionHandler);
  vCard::NonstandardEscChar(GetParam().allOptions);
  vCard::UseReadingLastName(GetParam().allOptions);
  vCard::URLNotQPEncode(GetParam().allOptions);
  vCard::LenientReading(GetParam().lenient);
  const auto objects =
      CorpusVCards(PHONEPIM_CORPUS_DIR, GetParam().lenient ? NestedCards::kApart : NestedCards::kInside);
  testing_support::CorpusDigests digests("vcard", GetParam().name);
  std::map<std::string, std::string> rejected;
  std::map<std::string, int> slow;
  for (const auto& [id, text] : objects) {
    const std::string why = Rejection(text);
    if (!why.empty()) {
      rejected[id] = why;
      continue;
    }
    digests.Add(id, testing_vcard::Describe(*testing_vcard::Read(text)) + "\n" + Pass(text));
    const int passes = PassesToFixedPoint(text);
    if (passes != 1 && passes != 2) slow[id] = passes;
  }
  // The two nested cards of android-vcard__v21_nest.vcf are cards of their own.
  EXPECT_EQ(objects.size(), GetParam().lenient ? 209u : 207u) << "the corpus changed";
  EXPECT_EQ(rejected, GetParam().lenient ? decltype(rejected)() : kRejected);
  EXPECT_EQ(slow, GetParam().slow);
  digests.Verify();
}

// A backslash in a structured value keeps itself and drops the character
// after it on every read: without escaping on write it eats one character per
// pass. With escaping, a component ending in a backslash is written doubled
// and read back, one character of look-behind, as an escaped separator: it
// grows on every pass. In syncevolution#6 under all options it is the given
// name, which the middle name then joins, and the joined part settles.
INSTANTIATE_TEST_SUITE_P(
    options, corpus_round_trip,
    ::testing::Values(
        CorpusExpectation{"defaults", false, false,
                          {{"android-vcard__v21_backslash.vcf#1", 8},
                           {"android-vcard__v21_complicated.vcf#1", 22},
                           {"syncevolution__vcard21.vcf#6", 16}}},
        CorpusExpectation{"lenient", false, true, {}},
        CorpusExpectation{"lenient_all_options", true, true, {}},
        CorpusExpectation{"all_options", true, false,
                          {{"android-vcard__v21_adr_multiple_line.vcf#1", 0},
                           {"android-vcard__v21_backslash.vcf#1", 0},
                           {"syncevolution__vcard21.vcf#6", 3}}}),
    [](const ::testing::TestParamInfo<CorpusExpectation>& info) { return info.param.name; });

}  // namespace
}  // namespace phonepim
