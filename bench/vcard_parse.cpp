// Reading a phone's address book into contacts, against the tokenizer alone
// over the same cards (empty callbacks), so that the share of the reader's
// own work shows; and one card with a large photo at two sizes, whose time
// must grow with the size and no faster.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "PhoneExportCorpus.h"
#include "phonepim/model/CContact.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"
#include "phonepim/versit/vParser.h"

namespace {

using phonepim::CContact;
using phonepim::vCard;
using phonepim::vObject;
using phonepim::bench::PhoneExport;

// One vObject per card, as the host hands them over.
const std::vector<vObject>& Cards() {
  static const std::vector<vObject> cards = [] {
    const auto& corpus = PhoneExport();
    std::vector<vObject> objects(corpus.cards.size());
    for (std::size_t i = 0; i < objects.size(); ++i) {
      const auto& [offset, length] = corpus.cards[i];
      objects[i].object()->SetData(
          reinterpret_cast<const unsigned char*>(corpus.text.data() + offset), length);
    }
    return objects;
  }();
  return cards;
}

void Report(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() *
                                                    PhoneExport().text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * Cards().size()));
}

// Each card into a new contact.
void BM_ParseCards(benchmark::State& state) {
  const std::vector<vObject>& cards = Cards();
  std::size_t telephones = 0;
  for (auto _ : state) {
    telephones = 0;
    for (const vObject& card : cards) {
      CContact contact(u"Contact");
      vCard::Parse(&contact, &card);
      telephones += static_cast<std::size_t>(contact.GetTelephoneCount());
    }
    benchmark::DoNotOptimize(telephones);
  }
  Report(state);
  state.counters["telephones"] = static_cast<double>(telephones);
}
BENCHMARK(BM_ParseCards)->Unit(benchmark::kMillisecond);

void IgnoreProperty(void*, const char*, char**) {}
void IgnoreData(void*, const char*, int) {}

// The same cards through the tokenizer with callbacks that do nothing: one
// parser per card, fed in one call, as vCard::Parse does.
void BM_TokenizerOnly(benchmark::State& state) {
  const std::vector<vObject>& cards = Cards();
  for (auto _ : state) {
    for (const vObject& card : cards) {
      VP* parser = CARD_ParserCreate();
      CARD_SetPropHandler(parser, &IgnoreProperty);
      CARD_SetDataHandler(parser, &IgnoreData);
      const auto* bytes = card.object();
      if (CARD_Parse(parser, reinterpret_cast<const char*>(bytes->GetData()),
                     static_cast<int>(bytes->GetSize()), 1) != 1) {
        state.SkipWithError("tokenizer rejected a card");
      }
      CARD_ParserFree(parser);
    }
  }
  Report(state);
}
BENCHMARK(BM_TokenizerOnly)->Unit(benchmark::kMillisecond);

// A card whose photo holds state.range(0) bytes.
void BM_ParseLargePhoto(benchmark::State& state) {
  const std::string text =
      phonepim::bench::MakeCardWithPhoto(static_cast<std::size_t>(state.range(0)));
  vObject card;
  card.object()->SetData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  std::size_t photoBytes = 0;
  for (auto _ : state) {
    CContact contact(u"Contact");
    vCard::Parse(&contact, &card);
    photoBytes = contact.GetPhotoRef()->size();
    benchmark::DoNotOptimize(photoBytes);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
  state.counters["photo_bytes"] = static_cast<double>(photoBytes);
}
BENCHMARK(BM_ParseLargePhoto)->Arg(1 << 20)->Arg(5 << 20)->Unit(benchmark::kMillisecond);

}  // namespace
