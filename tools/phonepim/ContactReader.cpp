#include "ContactReader.h"

#include <phonepim/session/ReadContact.h>

#include <chrono>
#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "ObjectReport.h"
#include "Progress.h"

namespace phonepim::tool {
namespace {

bool IsVCard(std::string_view object) { return IsVCardObject(object); }

}  // namespace

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
  using Clock = std::chrono::steady_clock;
  const std::vector<VersitObjectSpan> spans =
      FindVersitObjects(text, options.strict ? NestedCards::kInside : NestedCards::kApart);
  if (spans.empty()) {
    err << sourceName << ": no versit object (no BEGIN: line)\n";
    return 2;
  }
  std::size_t cards = 0;
  for (const VersitObjectSpan& span : spans) {
    if (IsVCard(std::string_view(text).substr(span.offset, span.length))) ++cards;
  }
  if (cards == 0) {
    err << sourceName << ": no vCard among its " << Counted(spans.size(), "object")
        << " (no BEGIN:VCARD line)\n";
    return 2;
  }

  Progress progress(err, "contacts", spans.size(), options.quiet);
  Clock::duration total{};
  Clock::duration slowest{};
  std::size_t slowestIndex = 0;
  for (std::size_t index = 0; index < spans.size(); ++index) {
    progress.Update(index);
    const VersitObjectSpan& span = spans[index];
    ReadAccount account;
    const CardInFile card{index, &span, std::string_view(text).substr(span.offset, span.length),
                          &account};
    if (!IsVCard(card.text)) {
      ++tally->failed;
      progress.Clear();
      err << ObjectHeading(sourceName, index, span, card.text) << ": not a vCard, skipped\n";
      continue;
    }
    if (!span.terminated && options.strict) {
      progress.Clear();
      err << ShortObjectHeading(sourceName, index, span)
          << ": no END line before the end of the file\n";
    }
    std::string error;
    const Clock::time_point start = Clock::now();
    // The object's number is its vCard ID, so record IDs follow the file.
    const std::unique_ptr<CContact> contact =
        TryParseContact(card.text, static_cast<std::uint32_t>(index + 1), options.imei, &error,
                        &account);
    const Clock::duration took = Clock::now() - start;
    total += took;
    if (took > slowest) {
      slowest = took;
      slowestIndex = index;
    }
    if (!contact) {
      ++tally->failed;
      progress.Clear();
      err << ObjectHeading(sourceName, index, span, card.text) << ": " << error << '\n';
      continue;
    }
    if (contact->ContactType() == 1) {
      ++tally->groups;
    } else {
      ++tally->persons;
    }
    if (contact->GetPhotoRef() && !contact->GetPhotoRef()->empty()) ++tally->withPhotos;
    if (options.verbose) {
      progress.Clear();
      err << ShortObjectHeading(sourceName, index, span) << ": read in "
          << std::chrono::duration<double, std::micro>(took).count() << " us\n";
    }
    visit(card, *contact);
  }
  progress.Clear();
  if (options.verbose) {
    err << sourceName << ": " << Counted(cards, "card") << " read in "
        << std::chrono::duration<double, std::milli>(total).count() << " ms, the slowest "
        << ShortObjectHeading(sourceName, slowestIndex, spans[slowestIndex])
               .substr(sourceName.size() + 2)
        << " in " << std::chrono::duration<double, std::micro>(slowest).count() << " us\n";
  }
  return tally->failed ? 1 : 0;
}

}  // namespace phonepim::tool
