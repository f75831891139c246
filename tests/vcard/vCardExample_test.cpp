// The example of docs/vcard.md, compiled and run: keep the two in step.
#include <gtest/gtest.h>

// --- The example, as the guide shows it ---------------------------------
#include <cstdint>
#include <optional>
#include <string>

#include "phonepim/model/CContact.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

using namespace phonepim;

// Reads a card as the phone sent it, adds an office number and returns the
// card to send back; nothing when the text is no vCard.
std::optional<std::string> AddOfficeNumber(const std::string& cardFromPhone) {
  vObject in;
  in.object()->SetData(reinterpret_cast<const unsigned char*>(cardFromPhone.data()),
                       cardFromPhone.size());
  CContact contact(u"Contact");
  try {
    vCard::Parse(&contact, &in);
  } catch (std::uint16_t code) {
    if (code == kVersitParseError) return std::nullopt;
    throw;
  }
  contact.NewTelephone("+49 30 1234567", kTelephoneTypeWork | kTelephoneTypeVoice, -1);

  vObject out;
  vCard::Generate(&contact, &out);
  return std::string(reinterpret_cast<const char*>(out.object()->GetData()),
                     out.object()->GetSize());
}
// --- End of the example --------------------------------------------------

namespace {

TEST(vcard_example, adds_the_number_and_writes_the_card_back) {
  const std::optional<std::string> card = AddOfficeNumber(
      "BEGIN:VCARD\r\nVERSION:2.1\r\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller;J=C3=BCrgen;;;\r\n"
      "TEL;CELL:0170 1234567\r\nX-IRMC-LUID:000001\r\nEND:VCARD\r\n");
  ASSERT_TRUE(card);
  EXPECT_EQ(*card,
            "BEGIN:VCARD\r\nVERSION:2.1\r\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller;J=C3=BCrgen;;;;;;\r\n"
            "TEL;CELL:0170 1234567\r\nTEL;WORK;VOICE:+49 30 1234567\r\nEND:VCARD\r\n");
}

TEST(vcard_example, gives_nothing_for_text_the_tokenizer_rejects) {
  EXPECT_EQ(AddOfficeNumber("BEGIN:VCARD\r\nTEL;:1\r\nEND:VCARD\r\n"), std::nullopt);
}

}  // namespace
