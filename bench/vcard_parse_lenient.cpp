// The same address book read by the standard rules, leniently, and
// leniently with the per-property account that `contacts check` asks for:
// what the tool's default reading costs over the library's.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "PhoneExportCorpus.h"
#include "phonepim/model/CContact.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/ReadAccount.h"
#include "phonepim/versit/vObject.h"

namespace {

using phonepim::CContact;
using phonepim::ReadAccount;
using phonepim::vCard;
using phonepim::vObject;
using phonepim::bench::PhoneExport;

// Arg 0: standard rules; 1: lenient; 2: lenient with an account.
void BM_ReadingModes(benchmark::State& state) {
  const auto& corpus = PhoneExport();
  std::vector<vObject> cards(corpus.cards.size());
  for (std::size_t i = 0; i < cards.size(); ++i) {
    const auto& [offset, length] = corpus.cards[i];
    cards[i].object()->SetData(
        reinterpret_cast<const unsigned char*>(corpus.text.data() + offset), length);
  }
  vCard::LenientReading(state.range(0) != 0);
  std::size_t properties = 0;
  for (auto _ : state) {
    properties = 0;
    for (const vObject& card : cards) {
      CContact contact(u"Contact");
      ReadAccount account;
      vCard::Parse(&contact, &card, state.range(0) == 2 ? &account : nullptr);
      properties += account.properties.size();
    }
    benchmark::DoNotOptimize(properties);
  }
  vCard::LenientReading(false);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * corpus.text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * cards.size()));
}
BENCHMARK(BM_ReadingModes)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
