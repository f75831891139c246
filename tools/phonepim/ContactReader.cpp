#include "ContactReader.h"

#include <phonepim/vcard/vCard.h>
#include <phonepim/versit/vObject.h>

#include <cstdint>
#include <ostream>
#include <vector>

#include "ObjectReport.h"

namespace phonepim::tool {
namespace {

std::unique_ptr<CContact> ParseAs(const vObject& object, std::uint32_t vCardID, const String& imei,
                                  const String& kind) {
  auto contact = std::make_unique<CContact>(vCardID, imei, std::nullopt, kind, nullptr);
  vCard::Parse(contact.get(), &object);
  return contact;
}

bool NamesAGroup(const CContact& contact) {
  return contact.GroupName() || contact.GroupDisplayName() || contact.GroupType() != 0;
}

}  // namespace

std::unique_ptr<CContact> ParseContact(std::string_view card, std::uint32_t vCardID,
                                       const String& imei) {
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(card.data()), card.size());
  std::unique_ptr<CContact> contact = ParseAs(object, vCardID, imei, u"Contact");
  if (NamesAGroup(*contact)) contact = ParseAs(object, vCardID, imei, u"Group");
  return contact;
}

std::unique_ptr<CContact> TryParseContact(std::string_view card, std::uint32_t vCardID,
                                          const String& imei, std::string* error) {
  std::unique_ptr<CContact> contact;
  CatchReadFailure([&] { contact = ParseContact(card, vCardID, imei); }, "2.1", error);
  return contact;
}

int ForEachContact(const std::string& text, const std::string& sourceName,
                   const ContactReadOptions& options, std::ostream& err,
                   const std::function<void(const CardInFile&, const CContact&)>& visit,
                   ContactTally* tally) {
  const std::vector<VersitObjectSpan> spans = FindVersitObjects(text);
  if (spans.empty()) {
    err << sourceName << ": no versit object (no BEGIN: line)\n";
    return 2;
  }
  std::vector<CardInFile> objects;
  std::size_t cards = 0;
  for (const VersitObjectSpan& span : spans) {
    const std::string_view object = std::string_view(text).substr(span.offset, span.length);
    const bool isCard = BeginsWith(object, "VCARD");
    cards += isCard ? 1 : 0;
    objects.push_back({objects.size(), &span, object, isCard ? nullptr : "not a vCard, skipped"});
  }
  if (cards == 0) {
    err << sourceName << ": no vCard among its " << Counted(spans.size(), "object")
        << " (no BEGIN:VCARD line)\n";
    return 2;
  }
  std::unique_ptr<CContact> contact;
  return ForEachObject(
      objects, sourceName, options, {"contacts", "card"}, err,
      [&](const CardInFile& card, std::string* error) {
        // The object's number is its vCard ID, so record IDs follow the file.
        contact = TryParseContact(card.text, static_cast<std::uint32_t>(card.index + 1),
                                  options.imei, error);
        return contact != nullptr;
      },
      [&](const CardInFile& card) {
        ++(contact->ContactType() == 1 ? tally->groups : tally->persons);
        if (contact->GetPhotoRef() && !contact->GetPhotoRef()->empty()) ++tally->withPhotos;
        visit(card, *contact);
      },
      &tally->failed);
}

}  // namespace phonepim::tool
