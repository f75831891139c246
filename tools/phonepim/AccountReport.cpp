#include "AccountReport.h"

#include <algorithm>
#include <iterator>
#include <ostream>

#include "ObjectReport.h"

namespace phonepim::tool {
namespace {

constexpr PropertyFate kFates[] = {PropertyFate::kRead, PropertyFate::kByDesign,
                                   PropertyFate::kExtension, PropertyFate::kEmpty,
                                   PropertyFate::kLost};
static_assert(std::size(kFates) == std::size(FateCounts{}.count));

}  // namespace

void FateCounts::Add(PropertyFate fate) {
  ++count[static_cast<std::size_t>(std::find(std::begin(kFates), std::end(kFates), fate) -
                                   std::begin(kFates))];
}

std::size_t FateCounts::Lost() const { return count[std::size(kFates) - 1]; }

std::size_t FateCounts::Total() const {
  std::size_t total = 0;
  for (const std::size_t n : count) total += n;
  return total;
}

std::string FateSummary(const FateCounts& counts) {
  std::string text =
      std::to_string(counts.Total()) + (counts.Total() == 1 ? " property" : " properties");
  for (std::size_t i = 0; i < std::size(kFates); ++i) {
    text += (i == 0 ? ": " : ", ") + std::to_string(counts.count[i]) + " " + FateWord(kFates[i]);
  }
  return text;
}

void ObjectCheck::AddAccount(const ReadAccount& account, bool quiet) {
  for (const PropertyAccount& property : account.properties) {
    counts.Add(property.fate);
    if (property.fate == PropertyFate::kLost) {
      lines.push_back("  lost: " + property.name + ": " + property.where);
    } else if (property.fate == PropertyFate::kExtension && !quiet) {
      lines.push_back("  kept: " + property.name + " as " + property.where);
    }
    if (!property.note.empty() && !quiet) {
      lines.push_back("  note: " + property.name + ": " + property.note);
    }
  }
}

void ObjectCheck::AddRoundTrip(const std::vector<std::string>& lost,
                               const std::vector<std::string>& byDesign, bool quiet) {
  lostOnWriting += lost.size();
  for (const std::string& line : lost) lines.push_back("  lost on writing: " + line);
  if (quiet) return;
  for (const std::string& line : byDesign) lines.push_back("  by design on writing: " + line);
}

void CheckTotals::Report(const std::string& heading, const ObjectCheck& check, bool quiet,
                         std::ostream& out) {
  for (std::size_t i = 0; i < std::size(kFates); ++i) counts.count[i] += check.counts.count[i];
  const bool losses = check.HasLosses();
  lossy += losses ? 1 : 0;
  // An object read whole and written back whole needs no line of its own.
  if (!losses && (quiet || check.lines.empty())) return;
  out << heading << ": " << FateSummary(check.counts)
      << (check.lostOnWriting == 0
              ? ""
              : ", " + std::to_string(check.lostOnWriting) + " lost on writing")
      << '\n';
  for (const std::string& line : check.lines) out << line << '\n';
}

int CheckTotals::Close(std::size_t objects, std::size_t failed, int status,
                       std::ostream& out) const {
  out << Counted(objects, "object") << ", " << FateSummary(counts) << "; " << lossy
      << " with losses, " << failed << " failed\n";
  return lossy != 0 ? 4 : status;
}

}  // namespace phonepim::tool
