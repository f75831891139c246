#include "ContactsCheck.h"

#include <phonepim/model/TypeMasks.h>

#include <algorithm>
#include <iterator>
#include <ostream>

#include "AccountReport.h"
#include "ContactJson.h"
#include "ObjectReport.h"
#include "TypeWords.h"

namespace phonepim::tool {
namespace {

using Json = nlohmann::ordered_json;

// Photos are long: a changed one is named, not printed.
std::string Shown(const Json& value) {
  std::string text = value.dump();
  if (text.size() <= 120) return text;
  std::size_t cut = 100;
  while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;  // UTF-8
  return text.substr(0, cut) + "... (" + std::to_string(text.size()) + " characters)";
}

bool HoldsObjects(const Json& array) {
  return std::any_of(array.begin(), array.end(), [](const Json& e) { return e.is_object(); });
}

// The fields a group's writer puts out; everything else of a group is the
// person's and goes nowhere.
constexpr const char* kGroupFields[] = {
    "object", "line", "kind", "recordId", "groupName", "groupDisplayName", "groupType", "photo"};
constexpr const char* kGroupOnlyFields[] = {"groupName", "groupDisplayName", "groupType"};
// No property of the writer carries these.
constexpr const char* kUnwrittenFields[] = {"accountName", "accountType", "lmt", "extensions"};

// The telephone type the chosen dialect writes for `type` and the reader
// gives back: the bits it has no word for go, and the words the reader
// treats specially come back as it reads them.
std::uint32_t WrittenTelephoneType(std::uint32_t type, bool hasLabel, bool phoneStyle) {
  constexpr std::uint32_t kCommon =
      kTelephoneTypePref | kTelephoneTypeWork | kTelephoneTypeHome | kTelephoneTypeFax |
      kTelephoneTypeMsg | kTelephoneTypeCell | kTelephoneTypePager | kTelephoneTypeBBS |
      kTelephoneTypeModem | kTelephoneTypeCar | kTelephoneTypeISDN | kTelephoneTypeEtc |
      kTelephoneTypeInternet | kTelephoneTypeVideo | kTelephoneTypeDTMF | kTelephoneTypePTT;
  std::uint32_t written = 0;
  if (!phoneStyle) {
    written = type & (kCommon | kTelephoneTypeVoice);
  } else if (type == kTelephoneTypeMain) {
    written = kTelephoneTypeCustom;  // "X-CUSTOM(Main)", a plain label: the text is not kept
  } else {
    written = type & (kCommon | kTelephoneTypeCallback | kTelephoneTypeCustom);
    if ((written & kTelephoneTypeCell) != 0) written |= kTelephoneTypeHome;
    if ((written & kTelephoneTypeCustom) != 0 && !hasLabel) {
      written = (written & ~kTelephoneTypeCustom) | kTelephoneTypeEtc;
    }
  }
  // DTMF and PTT replace the words read before them, and the writer puts
  // them last but for X-CALLBACK.
  if ((written & kTelephoneTypeDTMF) != 0) {
    written &= kTelephoneTypeDTMF | kTelephoneTypePTT | kTelephoneTypeCallback;
  } else if ((written & kTelephoneTypePTT) != 0) {
    written &= kTelephoneTypePTT | kTelephoneTypeCallback;
  }
  return written;
}

// `before` as the writer can give it back at best: the fields it does not
// write are set to what an empty contact holds, telephone types to what the
// dialect writes. Returns the differences that makes, the "by design" ones.
std::vector<std::string> DropUnwritten(const CContact& contact, Json& before,
                                       const WriterOptions& writer) {
  Json original = before;
  const CContact empty(contact.ContactType() == 1 ? u"Group" : u"Contact");
  const Json blank = ContactToJson(empty, 0, 0);
  const auto reset = [&](const char* field) { before[field] = blank[field]; };
  if (contact.ContactType() == 1) {
    for (const auto& item : blank.items()) {
      const std::string& field = item.key();
      if (std::none_of(std::begin(kGroupFields), std::end(kGroupFields),
                       [&](const char* f) { return field == f; })) {
        before[field] = item.value();
      }
    }
  } else {
    for (const char* field : kGroupOnlyFields) reset(field);
    if (!writer.readingLastName) reset("readingFirstName");
    for (int i = 0; i < contact.GetTelephoneCount(); ++i) {
      const CTelephoneNumber& tel = *contact.GetTelephone(i);
      Json& entry = before["telephones"][static_cast<std::size_t>(i)];
      if (!entry["customLabel"].is_null()) continue;  // written as that label alone
      const bool hasLabel = tel.GetLabel() && !tel.GetLabel()->empty();
      const std::uint32_t written =
          WrittenTelephoneType(tel.GetType(), hasLabel, writer.phoneStyle);
      entry["types"] = TypeWords(ElementKind::kTelephone, written);
      if (!writer.phoneStyle || (written & kTelephoneTypeCustom) == 0) entry["label"] = nullptr;
    }
  }
  for (const char* field : kUnwrittenFields) reset(field);
  // An address or organisation with no text ("ADR;HOME:;;;;;;") is read,
  // and the writer has nothing to write for it.
  for (const char* list : {"addresses", "organizations"}) {
    Json& elements = before[list];
    Json kept = Json::array();
    for (const Json& element : elements) {
      const auto items = element.items();
      const bool empty = std::all_of(items.begin(), items.end(), [](const auto& item) {
        return item.key() == "types" || item.key() == "customLabel" || item.key() == "label" ||
               item.value() == "" || item.value() == Json::array();
      });
      if (!empty) kept.push_back(element);
    }
    elements = std::move(kept);
  }
  // Nor for an empty note or nickname.
  for (const char* list : {"notes", "nicknames"}) {
    Json& texts = before[list];
    texts.erase(std::remove(texts.begin(), texts.end(), Json("")), texts.end());
  }
  return JsonDifferences(original, before);
}

}  // namespace

std::vector<std::string> JsonDifferences(const Json& before, const Json& after,
                                         const std::string& path) {
  std::vector<std::string> lines;
  if (before == after) return lines;
  const auto append = [&](std::vector<std::string> more) {
    lines.insert(lines.end(), std::make_move_iterator(more.begin()),
                 std::make_move_iterator(more.end()));
  };
  if (before.is_object() && after.is_object()) {
    const auto member = [&](const std::string& key) {
      return path.empty() ? key : path + "." + key;
    };
    for (const auto& [key, value] : before.items()) {
      append(JsonDifferences(value, after.contains(key) ? after[key] : Json(), member(key)));
    }
    for (const auto& [key, value] : after.items()) {
      if (!before.contains(key)) append(JsonDifferences(Json(), value, member(key)));
    }
  } else if (before.is_array() && after.is_array() &&
             (HoldsObjects(before) || HoldsObjects(after))) {
    for (std::size_t i = 0; i < std::max(before.size(), after.size()); ++i) {
      const std::string at = path + "[" + std::to_string(i) + "]";
      if (i >= after.size()) {
        lines.push_back(at + ": lost " + Shown(before[i]));
      } else if (i >= before.size()) {
        lines.push_back(at + ": added " + Shown(after[i]));
      } else {
        append(JsonDifferences(before[i], after[i], at));
      }
    }
  } else {
    lines.push_back(path + ": " + Shown(before) + " -> " + Shown(after));
  }
  return lines;
}

int CheckContacts(const std::string& text, const std::string& sourceName,
                  const ContactReadOptions& readOptions, const WriterOptions& writer,
                  std::ostream& out, std::ostream& err) {
  ContactTally tally;
  CheckTotals totals;
  const bool quiet = readOptions.quiet;
  const int status = ForEachContact(
      text, sourceName, readOptions, err,
      [&](const CardInFile& card, const CContact& contact) {
        ObjectCheck check;
        check.AddAccount(*card.account, quiet);
        // What writing the contact and reading it again would change.
        Json before = ContactToJson(contact, card.index + 1, card.span->firstLine);
        const std::vector<std::string> byDesign = DropUnwritten(contact, before, writer);
        std::string error;
        const std::unique_ptr<CContact> again =
            TryParseContact(GenerateCard(contact, writer),
                            static_cast<std::uint32_t>(card.index + 1), readOptions.imei, &error);
        const std::vector<std::string> lost =
            again ? JsonDifferences(before,
                                    ContactToJson(*again, card.index + 1, card.span->firstLine))
                  : std::vector<std::string>{"the written card cannot be read back: " + error};
        check.AddRoundTrip(lost, byDesign, quiet);
        totals.Report(ObjectHeading(sourceName, card.index, *card.span, card.text), check, quiet,
                      out);
      },
      &tally);
  if (status == 2) return status;
  return totals.Close(tally.persons + tally.groups + tally.failed, tally.failed, status, out);
}

}  // namespace phonepim::tool
