#include "CardWriter.h"

#include <phonepim/vcard/vCard.h>
#include <phonepim/versit/vObject.h>

namespace phonepim::tool {

void ApplyWriterOptions(const WriterOptions& options) {
  vCard::URLNotQPEncode(options.noQpURLs);
  vCard::NonstandardEscChar(options.escape);
  vCard::UseReadingLastName(options.readingLastName);
}

std::string GenerateCard(const CContact& contact, const WriterOptions& options) {
  vObject object;
  vCard::Generate(&contact, &object, options.phoneStyle ? 1 : 0);
  return std::string(reinterpret_cast<const char*>(object.object()->GetData()),
                     object.object()->GetSize());
}

}  // namespace phonepim::tool
