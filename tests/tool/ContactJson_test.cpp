// The JSON of `contacts show --json`, parsed back and held against what
// vCard::Parse itself makes of each card.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <phonepim/encoding/base64.h>
#include <phonepim/model/CCustomType.h>
#include <phonepim/platform/Assert.h>
#include <phonepim/vcard/vCard.h>
#include <phonepim/versit/ObjectSplitter.h>
#include <phonepim/versit/vObject.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "ContactJson.h"
#include "ToolTestSupport.h"
#include "ContactsShow.h"
#include "TypeWords.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

std::string Utf8(const String& text) { return ToDisplayUTF8(text); }

Bytes FromBase64(const std::string& text) {
  std::vector<char> bytes(static_cast<std::size_t>(Base64decode_len(text.c_str())));
  const int n = Base64decode(bytes.data(), text.c_str());
  return Bytes(bytes.begin(), bytes.begin() + n);
}

Json DateOf(const std::optional<DateComponents>& date, std::uint32_t type) {
  if (!date) return nullptr;
  return Json{{"year", date->year}, {"month", date->month}, {"day", date->day}, {"type", type}};
}

// Every field the JSON shows, against the model's own accessors.
void ExpectSameContact(const Json& j, const CContact& c) {
  EXPECT_EQ(j["kind"], c.ContactType() == 1 ? "group" : "person");
  EXPECT_EQ(j["name"]["family"], Utf8(c.Name().Family()));
  EXPECT_EQ(j["name"]["given"], Utf8(c.Name().Given()));
  EXPECT_EQ(j["name"]["prefix"], Utf8(c.Name().Prefix()));
  EXPECT_EQ(j["formattedName"], c.FName() ? Json(Utf8(*c.FName())) : Json());
  EXPECT_EQ(j["nicknames"].size(), c.NickNames().size());
  EXPECT_EQ(j["birthday"], DateOf(c.BirthDate(), c.BirthDateType()));
  EXPECT_EQ(j["anniversary"], DateOf(c.Anniversary_Date(), c.Anniversary_Luna()));
  ASSERT_EQ(j["telephones"].size(), static_cast<std::size_t>(c.GetTelephoneCount()));
  for (int i = 0; i < c.GetTelephoneCount(); ++i) {
    const Json& tel = j["telephones"][static_cast<std::size_t>(i)];
    EXPECT_EQ(tel["number"], Utf8(c.GetTelephone(i)->GetNumber()));
    EXPECT_EQ(tel["types"], Json(TypeWords(ElementKind::kTelephone, c.GetTelephone(i)->GetType())));
    const auto& label = c.GetTelephone(i)->GetLabel();
    EXPECT_EQ(tel["label"], label ? Json(Utf8(*label)) : Json());
  }
  ASSERT_EQ(j["emails"].size(), static_cast<std::size_t>(c.GetEmailCount()));
  for (int i = 0; i < c.GetEmailCount(); ++i) {
    EXPECT_EQ(j["emails"][static_cast<std::size_t>(i)]["address"], Utf8(c.GetEmail(i)->GetEmail()));
  }
  ASSERT_EQ(j["addresses"].size(), static_cast<std::size_t>(c.GetAddressCount()));
  for (int i = 0; i < c.GetAddressCount(); ++i) {
    const Json& a = j["addresses"][static_cast<std::size_t>(i)];
    const CPostalAddress& model = *c.GetAddress(i);
    EXPECT_EQ(a["extended"], Utf8(model.ExtAddr()));
    EXPECT_EQ(a["street"], Utf8(model.Street()));
    EXPECT_EQ(a["locality"], Utf8(model.Locality()));
    EXPECT_EQ(a["region"], Utf8(model.Region()));
    EXPECT_EQ(a["postalCode"], Utf8(model.PostalCode()));
    EXPECT_EQ(a["country"], Utf8(model.Country()));
  }
  ASSERT_EQ(j["organizations"].size(), static_cast<std::size_t>(c.GetOrgCount()));
  for (int i = 0; i < c.GetOrgCount(); ++i) {
    EXPECT_EQ(j["organizations"][static_cast<std::size_t>(i)]["name"], Utf8(c.GetOrg(i)->Name()));
    EXPECT_EQ(j["organizations"][static_cast<std::size_t>(i)]["unit"], Utf8(c.GetOrg(i)->Unit()));
  }
  ASSERT_EQ(j["messengers"].size(), static_cast<std::size_t>(c.GetMessengerIDCount()));
  ASSERT_EQ(j["urls"].size(), static_cast<std::size_t>(c.GetURLCount()));
  ASSERT_EQ(j["notes"].size(), static_cast<std::size_t>(c.GetNotesCount()));
  for (int i = 0; i < c.GetNotesCount(); ++i) {
    EXPECT_EQ(j["notes"][static_cast<std::size_t>(i)], Utf8(c.GetNotes(i)->GetNote()));
  }
  EXPECT_EQ(j["title"], c.Title() ? Json(Utf8(*c.Title())) : Json());
  EXPECT_EQ(j["groups"], Json(c.Groups()));
  EXPECT_EQ(j["speedDials"], Json(c.SpeedDial()));
  EXPECT_EQ(j["groupName"], c.GroupName() ? Json(Utf8(*c.GroupName())) : Json());
  EXPECT_EQ(j["groupDisplayName"],
            c.GroupDisplayName() ? Json(Utf8(*c.GroupDisplayName())) : Json());
  if (c.GetPhotoRef()) {
    EXPECT_EQ(j["photo"]["bytes"], c.GetPhotoRef()->size());
    EXPECT_EQ(FromBase64(j["photo"]["base64"]), *c.GetPhotoRef());
  } else {
    EXPECT_TRUE(j["photo"].is_null());
  }
}

TEST(contacts_json, every_card_reads_back_as_the_library_read_it) {
  ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  const std::string text = ReadFile(PHONEPIM_TOOL_DATA "/contacts.vcf");
  std::ostringstream out, err;
  ASSERT_EQ(ShowContacts(text, "contacts.vcf", {}, true, out, err), 0) << err.str();
  const Json book = Json::parse(out.str());
  EXPECT_EQ(book["source"], "contacts.vcf");
  EXPECT_EQ(book["failed"], 0);

  // The second card is the group; the tool finds that out by itself.
  const char* const kinds[] = {"Contact", "Group", "Contact", "Contact", "Contact"};
  const std::vector<VersitObjectSpan> spans = FindVersitObjects(text);
  ASSERT_EQ(spans.size(), std::size(kinds));
  ASSERT_EQ(book["contacts"].size(), spans.size());
  for (std::size_t i = 0; i < spans.size(); ++i) {
    SCOPED_TRACE("card " + std::to_string(i + 1));
    vObject object;
    object.object()->SetData(reinterpret_cast<const unsigned char*>(text.data() + spans[i].offset),
                             spans[i].length);
    CContact contact(StringFromASCII(kinds[i]));
    vCard::Parse(&contact, &object);
    const Json& j = book["contacts"][i];
    EXPECT_EQ(j["object"], i + 1);
    EXPECT_EQ(j["line"], spans[i].firstLine);
    ExpectSameContact(j, contact);
  }
  // What the words and labels of the small book must say, spelled out.
  const Json& c = book["contacts"];
  EXPECT_EQ(c[0]["telephones"][0]["types"], Json({"PREF", "CELL"}));
  EXPECT_EQ(c[0]["addresses"][0]["types"], Json({"WORK"}));
  EXPECT_EQ(c[0]["recordId"], "0000000000000001-Contact-");
  EXPECT_EQ(c[1]["recordId"], "0000000000000002-Croup-");
  EXPECT_EQ(c[1]["groupType"], "Normal");
  EXPECT_EQ(c[2]["telephones"][0]["types"], Json({"X-CUSTOM"}));
  EXPECT_EQ(c[2]["telephones"][0]["label"], "Night line");
  EXPECT_EQ(c[2]["messengers"][0]["types"], Json({"SKYPE"}));
  EXPECT_EQ(c[2]["anniversary"]["type"], 2);
  EXPECT_EQ(c[3]["name"]["family"], "\xE4\xBD\x90\xE8\x97\xA4");  // Shift_JIS read as UTF-8
  EXPECT_EQ(c[3]["photo"]["format"], "PNG");
  EXPECT_EQ(c[4]["photo"]["format"], "JPEG");
}

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

struct WordsRow {
  ElementKind kind;
  std::uint32_t mask;
  std::vector<std::string> words;
};

TEST(contacts_json, type_masks_become_words_in_the_writer_order) {
  const WordsRow rows[] = {
      {ElementKind::kTelephone, 0, {}},
      {ElementKind::kTelephone, kTelephoneTypeCell | kTelephoneTypeHome, {"HOME", "CELL"}},
      {ElementKind::kTelephone,
       kTelephoneTypeMain | kTelephoneTypeCallback,
       {"X-CALLBACK", "MAIN"}},
      {ElementKind::kTelephone, 0x20000, {"0x20000"}},
      // CELL and X-ETC sit on crossed bits in e-mail and address masks.
      {ElementKind::kEmail, 0x4 | 0x8, {"CELL", "X-ETC"}},
      {ElementKind::kAddress, 0x4 | 0x8, {"CELL", "X-ETC"}},
      {ElementKind::kAddress, kTypePref | kAddressTypeCustom, {"PREF", "X-CUSTOM"}},
      {ElementKind::kURL, 0x4, {"0x4"}},
      {ElementKind::kMessenger, kMessengerTypeSkype | kMessengerTypeAIM, {"AIM", "SKYPE"}},
      {ElementKind::kOrganization, kOrganizationTypeEtc | 0x4, {"X-ETC", "0x4"}},
  };
  for (const WordsRow& row : rows) {
    EXPECT_EQ(TypeWords(row.kind, row.mask), row.words) << "mask " << row.mask;
  }
}

TEST(contacts_json, labels_print_without_their_brackets) {
  EXPECT_EQ(LabelText(u"X-CUSTOM(Main)"), "Main");
  EXPECT_EQ(LabelText(u"PREF=x-custom(Main)"), "Main");
  EXPECT_EQ(LabelText(u"Clinic desk"), "Clinic desk");
}

}  // namespace
}  // namespace phonepim::tool
