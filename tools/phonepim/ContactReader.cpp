#include "ContactReader.h"

#include <phonepim/session/ReadContact.h>

#include <cstdint>
#include <ostream>
#include <vector>

#include "ObjectReport.h"

namespace phonepim::tool {

std::unique_ptr<CContact> ParseContact(std::string_view card, std::uint32_t vCardID,
                                       const String& imei, ReadAccount* account) {
  return ReadContact(card, vCardID, imei, nullptr, account);
}

std::unique_ptr<CContact> TryParseContact(std::string_view card, std::uint32_t vCardID,
                                          const String& imei, std::string* error,
                                          ReadAccount* account) {
  return TryReadContact(card, vCardID, imei, nullptr, error, account);
}

int ForEachContact(const std::string& text, const std::string& sourceName,
                   const ContactReadOptions& options, std::ostream& err,
                   const std::function<void(const CardInFile&, const CContact&)>& visit,
                   ContactTally* tally) {
  const std::vector<VersitObjectSpan> spans =
      FindVersitObjects(text, options.strict ? NestedCards::kInside : NestedCards::kApart);
  if (spans.empty()) {
    err << sourceName << ": no versit object (no BEGIN: line)\n";
    return 2;
  }
  std::vector<ObjectInFile> objects;
  std::size_t cards = 0;
  for (const VersitObjectSpan& span : spans) {
    const std::string_view object = std::string_view(text).substr(span.offset, span.length);
    const bool card = IsVCardObject(object);
    cards += card ? 1 : 0;
    objects.push_back({objects.size(), &span, object, card ? nullptr : "not a vCard, skipped"});
  }
  if (cards == 0) {
    err << sourceName << ": no vCard among its " << Counted(spans.size(), "object")
        << " (no BEGIN:VCARD line)\n";
    return 2;
  }
  ReadOptions loop = options;
  loop.readerReportsTruncation = !options.strict;
  std::unique_ptr<CContact> contact;
  ReadAccount account;
  return ForEachObject(
      objects, sourceName, loop, {"contacts", "card", "cards"}, err,
      [&](const ObjectInFile& object, std::string* error) {
        // The object's number is its vCard ID, so record IDs follow the file.
        account = ReadAccount();
        contact = TryParseContact(object.text, static_cast<std::uint32_t>(object.index + 1),
                                  options.imei, error, &account);
        return contact != nullptr;
      },
      [&](const ObjectInFile& object) {
        ++(contact->ContactType() == 1 ? tally->groups : tally->persons);
        if (contact->GetPhotoRef() && !contact->GetPhotoRef()->empty()) ++tally->withPhotos;
        visit({object.index, object.span, object.text, &account}, *contact);
      },
      &tally->failed);
}

}  // namespace phonepim::tool
