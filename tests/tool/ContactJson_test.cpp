// How `contacts show --json` words the type masks and labels that the
// small book's golden file does not reach.
#include <gtest/gtest.h>

#include <phonepim/model/CCustomType.h>

#include "ContactJson.h"
#include "TypeWords.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

TEST(contacts_json, a_type_the_label_table_knows_is_shown_as_its_label) {
  const std::uint32_t code = CCustomType::Inst().ConvertCustomTypeFromString(u"X-CUSTOM(Boat)");
  CContact contact(u"Contact");
  contact.NewTelephone("+1 555 0100", code, -1);
  contact.NewOrg("Harbour Club", "", "", nullptr, code);
  const auto j = ContactToJson(contact, 1, 1);
  EXPECT_EQ(j["telephones"][0]["types"], Json::array());
  EXPECT_EQ(j["telephones"][0]["customLabel"], "Boat");
  EXPECT_EQ(j["organizations"][0]["customLabel"], "Boat");
}

// Bits no word stands for show in hexadecimal, after the words.
TEST(contacts_json, type_masks_become_words_in_the_writer_order) {
  const struct {
    ElementKind kind;
    std::uint32_t mask;
    std::vector<std::string> words;
  } rows[] = {
      {ElementKind::kTelephone, kTelephoneTypeCell | kTelephoneTypeHome, {"HOME", "CELL"}},
      {ElementKind::kTelephone, 0x20000, {"0x20000"}},
      // CELL and X-ETC sit on crossed bits in e-mail and address masks.
      {ElementKind::kEmail, 0x4 | 0x8, {"CELL", "X-ETC"}},
      {ElementKind::kOrganization, kOrganizationTypeEtc | 0x4, {"X-ETC", "0x4"}},
  };
  for (const auto& row : rows) EXPECT_EQ(TypeWords(row.kind, row.mask), row.words) << row.mask;
}

}  // namespace
}  // namespace phonepim::tool
