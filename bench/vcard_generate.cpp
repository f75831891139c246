// vCard writing over a generated phone export of 20,000 cards, read into
// contacts once, with reading the same export alongside for comparison, and
// the writer on a single card with a large photo to show that its time grows
// linearly with the photo.
//
// Items/s counts cards. Bytes/s counts vCard text: the text written for
// Generate, the text read for Parse.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "PhoneExportCorpus.h"
#include "phonepim/model/CContact.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace {

using phonepim::Bytes;
using phonepim::CContact;
using phonepim::vCard;
using phonepim::vObject;
using phonepim::bench::PhoneExport;
using phonepim::bench::PhoneExportCorpus;

// The export's cards, one vObject each, as a host hands them in.
const std::vector<vObject>& CardObjects() {
  static const std::vector<vObject> objects = [] {
    const PhoneExportCorpus& corpus = PhoneExport();
    std::vector<vObject> cards(corpus.cards.size());
    for (std::size_t i = 0; i < cards.size(); ++i) {
      const auto [offset, length] = corpus.cards[i];
      cards[i].object()->SetData(
          reinterpret_cast<const unsigned char*>(corpus.text.data() + offset), length);
    }
    return cards;
  }();
  return objects;
}

// The export read once into contacts: what Generate is given.
const std::vector<std::unique_ptr<CContact>>& Contacts() {
  static const std::vector<std::unique_ptr<CContact>> contacts = [] {
    std::vector<std::unique_ptr<CContact>> read;
    read.reserve(CardObjects().size());
    for (const vObject& card : CardObjects()) {
      read.push_back(std::make_unique<CContact>(u"Contact"));
      vCard::Parse(read.back().get(), &card);
    }
    return read;
  }();
  return contacts;
}

// Every contact written, with the given telephone writer.
void GenerateAll(benchmark::State& state, int phoneStyle) {
  const auto& contacts = Contacts();
  std::int64_t written = 0;
  for (auto _ : state) {
    written = 0;
    for (const auto& contact : contacts) {
      vObject object;
      vCard::Generate(contact.get(), &object, phoneStyle);
      written += object.object()->GetSize();
      benchmark::DoNotOptimize(object.object()->GetData());
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(contacts.size()));
  state.SetBytesProcessed(state.iterations() * written);
  state.counters["bytes_per_card"] =
      static_cast<double>(written) / static_cast<double>(contacts.size());
}

void BM_Generate(benchmark::State& state) { GenerateAll(state, 0); }
BENCHMARK(BM_Generate)->Unit(benchmark::kMillisecond);

// The same cards for the phones that take mobile numbers as HOME;CELL.
void BM_Generate_PhoneStyle(benchmark::State& state) { GenerateAll(state, 1); }
BENCHMARK(BM_Generate_PhoneStyle)->Unit(benchmark::kMillisecond);

// Reading the export, a new contact per card as a host does.
void BM_Parse(benchmark::State& state) {
  const auto& cards = CardObjects();
  for (auto _ : state) {
    for (const vObject& card : cards) {
      CContact contact(u"Contact");
      vCard::Parse(&contact, &card);
      benchmark::DoNotOptimize(contact.GetTelephoneCount());
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(cards.size()));
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(PhoneExport().text.size()));
}
BENCHMARK(BM_Parse)->Unit(benchmark::kMillisecond);

// One card whose photo is state.range(0) bytes: the Base64 text is the whole
// cost, and it must grow linearly (Complexity reports the fit).
void BM_GenerateLargePhoto(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  CContact contact(u"Contact");
  contact.Name().SetName(u"Photo", 0);
  contact.NewTelephone("+49 1701234567", phonepim::kTelephoneTypeCell, 0);
  Bytes photo(size);
  phonepim::bench::Random random(0xfacade5eedull);
  for (auto& byte : photo) byte = static_cast<std::uint8_t>(random.Next());
  contact.SetPhotoData(std::move(photo));
  for (auto _ : state) {
    vObject object;
    vCard::Generate(&contact, &object);
    benchmark::DoNotOptimize(object.object()->GetData());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_GenerateLargePhoto)
    ->Arg(1 << 20)
    ->Arg(5 << 20)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
