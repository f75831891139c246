// What the reader does with text it cannot take: the tokenizer's rejection
// (65529), its assertions, failures inside the callbacks, and the debug log.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "model/AssertionPattern.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/platform/Log.h"
#include "vcard/vCardTestSupport.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;
using testing_vcard::Card;
using testing_vcard::Describe;
using testing_vcard::MakeObject;
using testing_vcard::Read;

// Parses `text` into `contact` and returns the code thrown, or 0.
std::uint32_t ParseCode(CContact* contact, const std::string& text) {
  const vObject object = MakeObject(text);
  try {
    vCard::Parse(contact, &object);
  } catch (std::uint16_t code) {
    return code;
  }
  return 0;
}

TEST(read_rejected_text, throws_65529_and_keeps_what_came_before) {
  for (const char* lines : {"TEL;:1\r\nTITLE:B\r\n", "TEL;TYPE=:1\r\nTITLE:B\r\n",
                            "PHOTO;ENCODING=BASE64:QU*D\r\nTITLE:B\r\n",
                            // A lone BASE64 character at the end can never be padded.
                            "PHOTO;ENCODING=BASE64:QUJDR"}) {
    CContact contact(u"Contact");
    EXPECT_EQ(ParseCode(&contact, "BEGIN:VCARD\r\nVERSION:2.1\r\nFN:A\r\n" + std::string(lines)),
              kVersitParseError) << lines;
    EXPECT_EQ(Describe(contact), "FN=A") << lines;
  }
}

TEST(read_version, accepts_2_1_and_its_prefixes_and_asserts_others) {
  for (const char* version : {"VERSION:2.1\r\n", "VERSION:2\r\n", "VERSION:2.\r\n",
                              "version:3.0\r\n", "VERSION:\r\n"}) {
    CContact contact(u"Contact");
    EXPECT_EQ(ParseCode(&contact, std::string(version) + "FN:x\r\n"), 0u) << version;
    EXPECT_EQ(Describe(contact), "FN=x");
  }
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  for (const char* version : {"VERSION:3.0\r\n", "VERSION:2.10\r\n", "VERSION:2.1a\r\n"}) {
    EXPECT_DEATH(Read(std::string(version)), AssertionPattern("_strnicmp(data, \"2.1\", len) == 0"))
        << version;
  }
}

TEST(read_speed_dial, of_256_bytes_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const std::string value = "7," + std::string(252, ' ') + "x";
  EXPECT_EQ(Describe(*Read(Card("X-SPEEDDIAL:" + value + "\r\n"))),
            "SPEED=7,0,-1,-1,-1,-1,-1,-1,-1,-1");
  EXPECT_DEATH(Read(Card("X-SPEEDDIAL:" + value + "1\r\n")), AssertionPattern("len < 256"));
  // Lenient reading keeps that value whole as an extension item.
  const testing_support::ScopedWriterDefaults defaults;
  const ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  vCard::LenientReading(true);
  EXPECT_EQ(Describe(*Read(Card("X-SPEEDDIAL:" + value + "\r\n"))),
            "SPEED=7,0,-1,-1,-1,-1,-1,-1,-1,-1");
  EXPECT_EQ(Describe(*Read(Card("X-SPEEDDIAL:" + value + "1\r\n"))),
            "X:X-SPEEDDIAL=" + value + "1");
}

TEST(read_without_contact, fails_the_assertion_at_the_first_value) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const vObject object = MakeObject(Card(""));
  EXPECT_DEATH(vCard::Parse(nullptr, &object), AssertionPattern("pData->pContact"));
  // No value at all: nothing to store, nothing to check.
  const vObject empty = MakeObject("");
  vCard::Parse(nullptr, &empty);
}

TEST(read_with_throwing_assertions, passes_the_failure_on_after_the_tokenizer) {
  const ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  CContact contact(u"Contact");
  const vObject object = MakeObject("BEGIN:VCARD\r\nFN:A\r\nVERSION:3.0\r\nTITLE:B\r\nTEL;:1\r\n");
  try {
    vCard::Parse(&contact, &object);
    ADD_FAILURE() << "no exception";
  } catch (const AssertionFailure& failure) {
    // Thrown in preference to the tokenizer's later rejection of "TEL;:".
    EXPECT_EQ(failure.text(), "_strnicmp(data, \"2.1\", len) == 0");
    EXPECT_EQ(failure.function(), "vCardDataHandler");
  }
  EXPECT_EQ(Describe(contact), "FN=A");
}

TEST(read_object, null_reads_as_empty_and_unmentioned_fields_stay) {
  CContact contact(u"Contact");
  contact.SetTitle(u"Kept");
  vCard::Parse(&contact, nullptr);
  const vObject object = MakeObject(Card("FN:New\r\n"));
  vCard::Parse(&contact, &object);
  EXPECT_EQ(Describe(contact), "FN=New; TITLE=Kept");
}

std::vector<std::string>* gLogged = nullptr;
void CaptureLog(std::string_view message) { gLogged->emplace_back(message); }

TEST(read_debug_log, warns_of_each_unknown_property_with_a_value) {
  std::vector<std::string> logged;
  gLogged = &logged;
  const LogSink previous = SetLogSink(&CaptureLog);
  const char* lines = "X-ONE:1\r\nX-EMPTY:\r\nX-GENDER:M\r\nfn:x\r\n";
  Read(Card(lines));
  EXPECT_TRUE(logged.empty());
  gVCARD_DEBUGMODE = true;
  Read(Card(lines));
  gVCARD_DEBUGMODE = false;
  SetLogSink(previous);
  gLogged = nullptr;
  const std::string warning = "[vCardDataHandler] Warning: Unknown vCard property.";
  EXPECT_EQ(logged, (std::vector<std::string>{warning, warning}));
}

}  // namespace
}  // namespace phonepim
