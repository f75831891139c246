// phonepim and the fastest open-source vCard 2.1 reader measured so far
// (EVCard, from Evolution's libebook-contacts) on the same corpus, in one
// run. Built only by the `peers` preset. Compare medians of interleaved
// repetitions:
//   bench_vcard_peers --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true
#include <benchmark/benchmark.h>
#include <libebook-contacts/libebook-contacts.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "PhonepimDriver.h"

namespace {

using phonepim::bench::DriverCorpus;
using phonepim::bench::SplitCards;

// EVCard takes NUL-terminated text: each card is copied out first, as a
// vObject copies its bytes for phonepim.
const std::vector<std::string>& PeerCards() {
  static const std::vector<std::string> cards = [] {
    std::vector<std::string> out;
    for (const std::string_view card : SplitCards(DriverCorpus())) out.emplace_back(card);
    return out;
  }();
  return cards;
}

// EVCard parses on first access: listing the attributes is the parse.
// Values come decoded (quoted-printable, charset); BASE64 values are decoded
// on request, as phonepim decodes the photo.
std::uint64_t TouchPeerCard(EVCard* card) {
  std::uint64_t sum = 0;
  for (GList* a = e_vcard_get_attributes(card); a != nullptr; a = a->next) {
    auto* attribute = static_cast<EVCardAttribute*>(a->data);
    if (e_vcard_attribute_get_param(attribute, EVC_ENCODING) != nullptr) {
      GList* decoded = e_vcard_attribute_get_values_decoded(attribute);
      for (GList* v = decoded; v != nullptr; v = v->next) {
        const GString* bytes = static_cast<const GString*>(v->data);
        for (gsize i = 0; i < bytes->len; ++i) sum += static_cast<unsigned char>(bytes->str[i]);
      }
      continue;  // the list belongs to the attribute
    }
    for (GList* v = e_vcard_attribute_get_values(attribute); v != nullptr; v = v->next) {
      phonepim::bench::TouchText(sum, std::string_view(static_cast<const char*>(v->data)));
    }
  }
  return sum;
}

void BM_libebook_Parse(benchmark::State& state) {
  const auto& cards = PeerCards();
  for (auto _ : state) {
    std::uint64_t sum = 0;
    for (const std::string& text : cards) {
      EVCard* card = e_vcard_new_from_string(text.c_str());
      sum += TouchPeerCard(card);
      g_object_unref(card);
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(cards.size()));
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(DriverCorpus().size()));
}

void BM_libebook_Write(benchmark::State& state) {
  static const std::vector<EVCard*> parsed = [] {
    std::vector<EVCard*> out;
    for (const std::string& text : PeerCards()) {
      out.push_back(e_vcard_new_from_string(text.c_str()));
      TouchPeerCard(out.back());
    }
    return out;
  }();
  std::int64_t written = 0;
  for (auto _ : state) {
    written = 0;
    for (EVCard* card : parsed) {
      gchar* text = e_vcard_to_string(card, EVC_FORMAT_VCARD_21);
      written += static_cast<std::int64_t>(std::char_traits<char>::length(text));
      g_free(text);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(parsed.size()));
  state.SetBytesProcessed(state.iterations() * written);
}

}  // namespace

int main(int argc, char** argv) {
  phonepim::bench::RegisterPhonepimDriver();
  benchmark::RegisterBenchmark("libebook/Parse", BM_libebook_Parse)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("libebook/Write", BM_libebook_Write)
      ->Unit(benchmark::kMillisecond);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
