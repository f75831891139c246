// What the reader does with text it cannot take: the tokenizer's rejection
// (65529), its assertions, and the debug log.
#include <gtest/gtest.h>

#include <vector>

#include "model/AssertionPattern.h"
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

// A version of 2.1 or a prefix of it passes, others stop the reader, and so
// does a speed-dial value of 256 bytes (255 pass).
TEST(read_assertion, on_version_and_speed_dial_length) {
  for (const char* version : {"VERSION:2.1\r\n", "VERSION:2\r\n", "VERSION:2.\r\n", "version:3.0\r\n",
                              "VERSION:\r\n"}) {
    EXPECT_EQ(Describe(*Read(std::string(version) + "FN:x\r\n")), "FN=x") << version;
  }
  const std::string dial = "X-SPEEDDIAL:7," + std::string(252, ' ') + "x";
  EXPECT_EQ(Describe(*Read(Card(dial + "\r\n"))), "SPEED=7,0,-1,-1,-1,-1,-1,-1,-1,-1");
  const char* const version = "_strnicmp(data, \"2.1\", len) == 0";
  const std::pair<std::string, const char*> rows[] = {
      {"VERSION:3.0\r\n", version}, {"VERSION:2.10\r\n", version}, {"VERSION:2.1a\r\n", version},
      {Card(dial + "1\r\n"), "len < 256"}};
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  for (const auto& [text, assertion] : rows) EXPECT_DEATH(Read(text), AssertionPattern(assertion)) << text;
}

std::vector<std::string> gLogged;
void CaptureLog(std::string_view message) { gLogged.emplace_back(message); }

// Under a throwing handler the version assertion is passed on in preference
// to the tokenizer's later rejection of "TEL;:".
TEST(read_with_throwing_assertions, passes_the_failure_on_after_the_tokenizer) {
  const ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  CContact contact(u"Contact");
  try {
    ParseCode(&contact, "BEGIN:VCARD\r\nFN:A\r\nVERSION:3.0\r\nTITLE:B\r\nTEL;:1\r\n");
    ADD_FAILURE() << "no exception";
  } catch (const AssertionFailure& failure) {
    EXPECT_EQ(std::pair(failure.text(), failure.function()),
              std::pair(std::string("_strnicmp(data, \"2.1\", len) == 0"), std::string("vCardDataHandler")));
  }
  EXPECT_EQ(Describe(contact), "FN=A");
}

// A null object reads as an empty one, and fields the card does not mention
// stay; without a contact there is nowhere to store the first value.
TEST(read_null, object_reads_as_empty_and_contact_fails_the_assertion_at_the_first_value) {
  CContact contact(u"Contact");
  contact.SetTitle(u"Kept");
  vCard::Parse(&contact, nullptr);
  const vObject empty = MakeObject("");
  vCard::Parse(nullptr, &empty);
  const vObject object = MakeObject(Card("FN:New\r\n"));
  vCard::Parse(&contact, &object);
  EXPECT_EQ(Describe(contact), "FN=New; TITLE=Kept");
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(vCard::Parse(nullptr, &object), AssertionPattern("pData->pContact"));
}

TEST(read_debug_log, warns_of_each_unknown_property_with_a_value) {
  const LogSink previous = SetLogSink(&CaptureLog);
  const char* lines = "X-ONE:1\r\nX-EMPTY:\r\nX-GENDER:M\r\nfn:x\r\n";
  Read(Card(lines));
  EXPECT_TRUE(gLogged.empty());
  gVCARD_DEBUGMODE = true;
  Read(Card(lines));
  gVCARD_DEBUGMODE = false;
  SetLogSink(previous);
  const std::string warning = "[vCardDataHandler] Warning: Unknown vCard property.";
  EXPECT_EQ(gLogged, (std::vector<std::string>{warning, warning}));
}

}  // namespace
}  // namespace phonepim
