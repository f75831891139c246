// The steps of the vCard comparison driver, shared by bench_vcard_driver and
// the peer program under peers/, so that both read the same bytes, split
// them the same way and touch every decoded value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "PhoneExportCorpus.h"

namespace phonepim::bench {

/// The file that PHONEPIM_BENCH_CORPUS names, when it is set (the peer
/// program and `phonepim contacts convert` then see the same bytes); else
/// the comparison corpus, generated with each photo's BASE64 starting on
/// the line after PHOTO.
inline const std::string& DriverCorpus() {
  static const std::string text = [] {
    const char* path = std::getenv("PHONEPIM_BENCH_CORPUS");
    if (path == nullptr || *path == '\0') {
      return MakePhoneExport(20000, 0x5eed1234abcdull,
                             PeerComparisonShape(PhotoStart::NextLine))
          .text;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error(std::string("cannot read ") + path);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
  }();
  return text;
}

/// The cards of `text`, each from its first byte up to and including the
/// line end of its "END:VCARD" line: one memchr pass over the line ends.
inline std::vector<std::string_view> SplitCards(std::string_view text) {
  std::vector<std::string_view> cards;
  static constexpr std::string_view kEnd = "END:VCARD";
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  const char* card = begin;
  const char* line = begin;
  while (line < end) {
    const void* found = std::memchr(line, '\n', static_cast<std::size_t>(end - line));
    const char* next = found ? static_cast<const char*>(found) + 1 : end;
    if (static_cast<std::size_t>(next - line) >= kEnd.size() &&
        std::memcmp(line, kEnd.data(), kEnd.size()) == 0) {
      cards.emplace_back(card, static_cast<std::size_t>(next - card));
      card = next;
    }
    line = next;
  }
  return cards;
}

/// Folds one decoded value into `sum`: its length and its first and last
/// units, enough that no value can go unread.
template <class Text>
inline void TouchText(std::uint64_t& sum, const Text& text) {
  sum += text.size();
  if (!text.empty()) sum += static_cast<std::uint64_t>(text.front()) + text.back();
}

}  // namespace phonepim::bench
