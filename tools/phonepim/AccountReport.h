// What the two `check` commands print of an object: its read account (what
// reading did with each property) and what writing it and reading it again
// changed, with the totals they close with.
#pragma once

#include <phonepim/versit/ReadAccount.h>

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace phonepim::tool {

/// Property counts by fate, in the order of FateSummary.
struct FateCounts {
  std::size_t count[5] = {};
  void Add(PropertyFate fate);
  std::size_t Lost() const;
  std::size_t Total() const;
};

/// "7 properties: 4 read, 2 dropped by design, 1 extension, 0 empty, 0 lost"
std::string FateSummary(const FateCounts& counts);

/// One object's findings.
struct ObjectCheck {
  FateCounts counts;
  std::vector<std::string> lines;  ///< "  lost: ...", "  kept: ...", "  note: ..."
  std::size_t lostOnWriting = 0;

  /// Counts the account and adds its lines: every loss, and unless `quiet`
  /// the extension items and the notes on decoding.
  void AddAccount(const ReadAccount& account, bool quiet);
  /// What writing and reading again lost, and (unless `quiet`) changed by
  /// design.
  void AddRoundTrip(const std::vector<std::string>& lost,
                    const std::vector<std::string>& byDesign, bool quiet);
  bool HasLosses() const { return counts.Lost() != 0 || lostOnWriting != 0; }
};

/// What a check run adds up.
struct CheckTotals {
  FateCounts counts;
  std::size_t lossy = 0;

  /// Adds `check` and prints it under `heading` (unless it has nothing
  /// to say: no loss, and quiet or no line).
  void Report(const std::string& heading, const ObjectCheck& check, bool quiet, std::ostream& out);
  /// "N objects, <FateSummary>; L with losses, F failed"; the exit status:
  /// 4 for any loss, else `status`.
  int Close(std::size_t objects, std::size_t failed, int status, std::ostream& out) const;
};

}  // namespace phonepim::tool
