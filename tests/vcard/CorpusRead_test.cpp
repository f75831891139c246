// Every vCard in the real phone and desktop exports, read into a contact
// with assertions that throw: nothing may crash, and exactly the objects
// listed below may fail, each for the reason given.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/model/TypeMasks.h"
#include "phonepim/versit/ObjectSplitter.h"
#include "vcard/vCardReadTestSupport.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;

bool IsCardFile(const fs::path& path) {
  const std::string name = path.filename().string();
  for (const char* ext : {".vcf", ".txt", ".vcs", ".2_1ref"}) {
    const std::string_view e(ext);
    if (name.size() > e.size() && name.compare(name.size() - e.size(), e.size(), e) == 0) {
      return true;
    }
  }
  return false;
}

bool IsCard(const vObject& object) {
  const auto* bytes = object.object()->GetData();
  const std::string head(reinterpret_cast<const char*>(bytes),
                         std::min<std::size_t>(object.object()->GetSize(), 11));
  std::string upper;
  std::transform(head.begin(), head.end(), std::back_inserter(upper),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return upper == "BEGIN:VCARD";
}

// "file#index" of every card, with its contact or the failure it raised.
struct CorpusResult {
  std::map<std::string, std::unique_ptr<CContact>> read;
  std::map<std::string, std::string> failed;
};

const CorpusResult& ReadCorpus() {
  static const CorpusResult result = [] {
    CorpusResult r;
    const fs::path dir(PHONEPIM_CORPUS_DIR);
    if (!fs::is_directory(dir)) return r;
    const ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
    for (const auto& entry : fs::directory_iterator(dir)) {
      if (!IsCardFile(entry.path())) continue;
      std::ifstream in(entry.path(), std::ios::binary);
      const std::string text{std::istreambuf_iterator<char>(in), {}};
      const vObjectPtrArray objects = SplitVersitObjects(text);
      for (std::size_t i = 0; i < objects.size(); ++i) {
        if (!IsCard(*objects[i])) continue;
        const std::string key = entry.path().filename().string() + "#" + std::to_string(i);
        auto contact = std::make_unique<CContact>(u"Contact");
        try {
          vCard::Parse(contact.get(), objects[i].get());
          r.read[key] = std::move(contact);
        } catch (std::uint16_t code) {
          r.failed[key] = "code " + std::to_string(code);
        } catch (const AssertionFailure& failure) {
          r.failed[key] = "assertion " + failure.text();
        } catch (const std::exception& e) {
          r.failed[key] = std::string("exception ") + e.what();
        }
      }
    }
    return r;
  }();
  return result;
}

class corpus_read : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!fs::is_directory(PHONEPIM_CORPUS_DIR)) {
      GTEST_SKIP() << "no corpus at " << PHONEPIM_CORPUS_DIR;
    }
  }
  static const CContact& Contact(const std::string& key) {
    const auto& read = ReadCorpus().read;
    const auto it = read.find(key);
    if (it == read.end()) throw std::runtime_error("not read: " + key);
    return *it->second;
  }
};

TEST_F(corpus_read, fails_exactly_on_the_known_objects) {
  const std::map<std::string, std::string> expected = {
      // A ':' inside the BASE64 data of the photo's first line: the
      // tokenizer rejects the group.
      {"android-vcard__v21_malformed_photo.vcf#0", "code 65529"},
  };
  EXPECT_EQ(ReadCorpus().failed, expected);
  EXPECT_EQ(ReadCorpus().read.size(), 206u);
}

TEST_F(corpus_read, reads_shift_jis_names_and_their_readings) {
  const CContact& first = Contact("android-vcard__v21_japanese_1.vcf#0");
  EXPECT_EQ(first.Name().Family(), u"安藤ロイド");
  EXPECT_EQ(first.RLName(), u"ｱﾝﾄﾞｳﾛｲﾄﾞ");
  EXPECT_EQ(first.RFName(), std::nullopt);
  ASSERT_EQ(first.GetTelephoneCount(), 1);
  EXPECT_EQ(first.GetTelephone(0)->GetType(), kTelephoneTypePref | kTelephoneTypeVoice);
  // Family reading first, as N orders the name.
  const CContact& second = Contact("android-vcard__v21_japanese_2.vcf#0");
  EXPECT_EQ(second.Name().Given(), u"ロイド1");
  EXPECT_EQ(second.RLName(), u"ｱﾝﾄﾞｳ");
  EXPECT_EQ(second.RFName(), u"ﾛｲﾄﾞ1");
  ASSERT_EQ(second.GetNotesCount(), 1);
  EXPECT_EQ(second.GetNotes(0)->GetNote(), u"メモ");
}

TEST_F(corpus_read, joins_soft_broken_and_folded_lines) {
  const CContact& gammu = Contact("gammu__line-continuation.vcf#0");
  EXPECT_EQ(gammu.Name().Given(), u"Nikdovic");
  ASSERT_EQ(gammu.GetTelephoneCount(), 1);
  EXPECT_EQ(gammu.GetTelephone(0)->GetNumber(), u"55554444");
  // Not quoted-printable: the closing '=' is text.
  ASSERT_EQ(gammu.GetNotesCount(), 1);
  EXPECT_EQ(gammu.GetNotes(0)->GetNote(), u"This ends with equal sign=");
  EXPECT_EQ(Contact("eds__vcard-12.vcf#0").FName(), u"Michael Brüning");
}

TEST_F(corpus_read, decodes_photos_that_start_on_the_next_line) {
  const Bytes* photo = Contact("android-vcard__v21_base64_no_2_crlf.vcf#0").GetPhotoRef();
  ASSERT_NE(photo, nullptr);
  EXPECT_EQ(photo->size(), 3888u);
  EXPECT_EQ(Bytes(photo->begin(), photo->begin() + 4), (Bytes{0xFF, 0xD8, 0xFF, 0xE1}));
  EXPECT_EQ(Contact("syncevolution__vcard21.vcf#3").GetPhotoRef()->size(), 790u);
  // Data on the property line arrives as bytes, and the photo's own BASE64
  // pass stops at the first of them outside the alphabet (0xFF here); a
  // two-space fold stops it at the second space.
  EXPECT_EQ(Contact("gammu__photo.vcf#0").GetPhotoRef()->size(), 0u);
  EXPECT_EQ(Contact("sabre-vobject__issue64.vcf#0").GetPhotoRef()->size(), 57u);
}

}  // namespace
}  // namespace phonepim
