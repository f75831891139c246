#include "ContactJson.h"

#include <phonepim/encoding/base64.h>

#include <string_view>

#include "TypeWords.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

Json Component(std::int64_t value) {
  return value == kUndefinedComponent ? Json(nullptr) : Json(value);
}

// Year, month and day are what BDAY and X-ANNIVERSARY carry; the kind is
// the suffix letter the phone wrote behind the date.
Json DateToJson(const std::optional<DateComponents>& date, std::uint32_t type) {
  if (!date) return nullptr;
  return Json{{"year", Component(date->year)},
              {"month", Component(date->month)},
              {"day", Component(date->day)},
              {"type", type}};
}

Json Words(ElementKind kind, std::uint32_t mask, bool tableKnowsIt) {
  // A type that is a label code is no set of bits: its words would be
  // nonsense (PREF with HOME is the first code).
  return tableKnowsIt ? Json::array() : Json(TypeWords(kind, mask));
}

// "types" and "customLabel" for an element whose writer asks the label
// table first.
void AddTableTypes(Json& element, ElementKind kind, std::uint32_t type) {
  const std::optional<std::string> label = TableLabelText(type);
  element["types"] = Words(kind, type, label.has_value());
  element["customLabel"] = label ? Json(*label) : Json(nullptr);
}

Json OwnLabel(const std::shared_ptr<const String>& label) {
  return label ? Json(LabelText(*label)) : Json(nullptr);
}

// A number, e-mail address or messenger ID: its text under `key`, its type
// and, where the element has one, its own label.
Json TextElement(const char* key, const CItem& item, ElementKind kind,
                 const std::shared_ptr<const String>* ownLabel) {
  Json element{{key, JsonText(item.Data())}};
  AddTableTypes(element, kind, item.Param());
  if (ownLabel) element["label"] = OwnLabel(*ownLabel);
  return element;
}

const char* BloodTypeWord(std::uint32_t bloodType) {
  static const char* const kWords[] = {"A", "B", "AB", "O"};
  return bloodType >= 1 && bloodType <= 4 ? kWords[bloodType - 1] : nullptr;
}

Json GroupTypeJson(std::uint32_t groupType) {
  static const char* const kWords[] = {"Normal", "Smart", "READ_ONLY"};
  if (groupType == 0) return nullptr;
  if (groupType <= 3) return kWords[groupType - 1];
  return std::to_string(groupType);
}

Json PhotoJson(const std::optional<Bytes>& photo) {
  if (!photo) return nullptr;
  std::string encoded(static_cast<std::size_t>(Base64encode_len(static_cast<int>(photo->size()))),
                      '\0');
  const int length = Base64encode(encoded.data(), reinterpret_cast<const char*>(photo->data()),
                                  static_cast<int>(photo->size()));
  // The length counts the terminating NUL.
  encoded.resize(length > 0 ? static_cast<std::size_t>(length - 1) : 0);
  return Json{{"format", ImageFormat(*photo)}, {"bytes", photo->size()}, {"base64", encoded}};
}

}  // namespace

std::string JsonText(const String& text) { return ToDisplayUTF8(text); }

Json OptionalText(const std::optional<String>& text) {
  return text ? Json(JsonText(*text)) : Json(nullptr);
}

Json ExtensionsJson(const CVObject& record) {
  return ListOf(record.GetXItemCount(), [&](int i) {
    const CXItem& item = *record.GetXItem(i);
    return Json{{"name", JsonText(item.Name())}, {"value", JsonText(item.Data())}};
  });
}

const char* ImageFormat(const Bytes& bytes) {
  const auto starts = [&](std::string_view magic) {
    return bytes.size() >= magic.size() &&
           std::equal(magic.begin(), magic.end(), bytes.begin(),
                      [](char m, std::uint8_t b) { return static_cast<std::uint8_t>(m) == b; });
  };
  if (starts("\xFF\xD8\xFF")) return "JPEG";
  if (starts("\x89PNG\r\n\x1A\n")) return "PNG";
  if (starts("GIF87a") || starts("GIF89a")) return "GIF";
  if (starts("BM")) return "BMP";
  return "unknown";
}

Json ContactToJson(const CContact& c, std::size_t objectNumber, std::size_t line) {
  Json j;
  j["object"] = objectNumber;
  j["line"] = line;
  j["kind"] = c.ContactType() == 1 ? "group" : "person";
  j["recordId"] = OptionalText(c.vCardRecordID());

  const CName& n = c.Name();
  j["name"] = Json{{"family", JsonText(n.Family())},
                   {"given", JsonText(n.Given())},
                   {"middle", JsonText(n.Middle())},
                   {"prefix", JsonText(n.Prefix())},
                   {"suffix", JsonText(n.Suffix())},
                   {"phoneticFamily", JsonText(n.Phonetic_Family())},
                   {"phoneticGiven", JsonText(n.Phonetic_Given())},
                   {"phoneticMiddle", JsonText(n.Phonetic_Middle())}};
  j["formattedName"] = OptionalText(c.FName());
  j["readingLastName"] = OptionalText(c.RLName());
  j["readingFirstName"] = OptionalText(c.RFName());
  j["nicknames"] = Json::array();
  for (const String& nick : c.NickNames()) j["nicknames"].push_back(JsonText(nick));
  j["birthday"] = DateToJson(c.BirthDate(), c.BirthDateType());
  j["anniversary"] = DateToJson(c.Anniversary_Date(), c.Anniversary_Luna());

  j["telephones"] = ListOf(c.GetTelephoneCount(), [&](int i) {
    const CTelephoneNumber& tel = *c.GetTelephone(i);
    return TextElement("number", tel, ElementKind::kTelephone, &tel.GetLabel());
  });
  j["emails"] = ListOf(c.GetEmailCount(), [&](int i) {
    const CEmail& email = *c.GetEmail(i);
    return TextElement("address", email, ElementKind::kEmail, &email.GetLabel());
  });
  j["urls"] = ListOf(c.GetURLCount(), [&](int i) {
    const CURL& url = *c.GetURL(i);
    return Json{{"url", JsonText(url.GetURL())},
                {"types", TypeWords(ElementKind::kURL, url.GetType())}};
  });
  j["addresses"] = ListOf(c.GetAddressCount(), [&](int i) {
    const CPostalAddress& a = *c.GetAddress(i);
    return Json{{"poBox", JsonText(a.POBox())},
                {"extended", JsonText(a.ExtAddr())},
                {"street", JsonText(a.Street())},
                {"locality", JsonText(a.Locality())},
                {"region", JsonText(a.Region())},
                {"postalCode", JsonText(a.PostalCode())},
                {"country", JsonText(a.Country())},
                {"neighborhood", JsonText(a.Neighbor())},
                {"types", TypeWords(ElementKind::kAddress, a.Type())},
                {"label", OwnLabel(a.Label())}};
  });
  j["organizations"] = ListOf(c.GetOrgCount(), [&](int i) {
    const COrganization& org = *c.GetOrg(i);
    Json e{{"name", JsonText(org.Name())},
           {"unit", JsonText(org.Unit())},
           {"position", JsonText(org.Position())},
           {"additional", Json::array()}};
    for (const String& line : org.Additional()) e["additional"].push_back(JsonText(line));
    AddTableTypes(e, ElementKind::kOrganization, org.Type());
    return e;
  });
  j["messengers"] = ListOf(c.GetMessengerIDCount(), [&](int i) {
    return TextElement("id", *c.GetMessengerID(i), ElementKind::kMessenger, nullptr);
  });
  j["notes"] =
      ListOf(c.GetNotesCount(), [&](int i) { return Json(JsonText(c.GetNotes(i)->GetNote())); });

  j["title"] = OptionalText(c.Title());
  j["role"] = OptionalText(c.Role());
  j["hobby"] = OptionalText(c.Hobby());
  j["account"] = OptionalText(c.Account());
  const char* blood = BloodTypeWord(c.BloodType());
  j["bloodType"] = blood ? Json(blood) : Json(nullptr);
  j["spouse"] = OptionalText(c.spouse());
  j["children"] = OptionalText(c.children());
  j["assistant"] = OptionalText(c.assistant());
  j["assistantNumber"] = OptionalText(c.assistantNumber());
  j["groups"] = c.Groups();
  j["speedDials"] = c.SpeedDial();
  j["photo"] = PhotoJson(c.GetPhotoData());

  j["groupName"] = OptionalText(c.GroupName());
  j["groupDisplayName"] = OptionalText(c.GroupDisplayName());
  j["groupType"] = GroupTypeJson(c.GroupType());
  j["accountName"] = OptionalText(c.AccountName());
  j["accountType"] = OptionalText(c.AccountType());
  j["lmt"] = OptionalText(c.LMT());
  j["extensions"] = ExtensionsJson(c);
  return j;
}

}  // namespace phonepim::tool
