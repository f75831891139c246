// Feeds the tokenizer the input whole, in pieces, and byte by byte through
// the state machine alone; all three must report the same callbacks, and no
// callback may break its contract. Bits of the first bytes choose the
// callbacks installed and the cut points, so the fuzzer explores both. The
// transcript recorder is the tokenizer tests' own.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "versit/Transcript.h"
#include "versit/vParserInternal.h"

namespace {

using phonepim::testing_versit::Handlers;
using phonepim::testing_versit::Transcript;

// Line-buffer invariants that every call must keep.
void CheckRecord(const VP* vp) {
  if (vp->lineCapacity % VP_LINE_GROWTH != 0 || vp->lineLength > vp->lineCapacity ||
      vp->lineLength < 0 || (vp->line == nullptr) != (vp->lineCapacity == 0) ||
      vp->quadCount < 0 || vp->quadCount > 4 || vp->paramCount > vp->paramCapacity) {
    std::abort();
  }
}

void CheckContracts(const Transcript& transcript) {
  for (const auto& entry : transcript) {
    if (!entry.empty() && entry[0] == '!') std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > (1u << 20)) return 0;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::uint64_t seed = 0x9e3779b97f4a7c15ull;
  for (std::size_t i = 0; i < size && i < 8; ++i) seed = seed * 131 + data[i];
  // Both callbacks most of the time; each one alone, or none, now and then.
  static constexpr Handlers kByBits[] = {Handlers::kNone, Handlers::kPropOnly, Handlers::kDataOnly,
                                         Handlers::kBoth};
  const Handlers handlers = (seed % 8) < 5 ? Handlers::kBoth : kByBits[seed % 4];
  // Mostly tiny pieces, now and then a long one or an empty one.
  std::vector<std::size_t> cuts;
  for (std::size_t at = 0; at < size;) {
    seed ^= seed << 13;
    seed ^= seed >> 7;
    seed ^= seed << 17;
    at += (seed & 7u) == 0 ? (seed >> 8) % 512 : (seed >> 8) % 4;
    if (at < size) cuts.push_back(at);
  }
  const Transcript whole = phonepim::testing_versit::Tokenize(input, {}, handlers, &CheckRecord);
  CheckContracts(whole);
  if (phonepim::testing_versit::Tokenize(input, cuts, handlers, &CheckRecord) != whole) std::abort();
  if (phonepim::testing_versit::TokenizeReference(input, handlers) != whole) std::abort();
  return 0;
}
