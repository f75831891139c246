// phonepim's side of the vCard comparison driver: split the corpus, read
// each card into a new contact and touch every decoded value, photo bytes
// included; write every contact back. Registered by bench_vcard_driver and
// by the peer program, so that one run compares both.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include "VCardDriver.h"
#include "phonepim/model/CContact.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace phonepim::bench {

inline std::uint64_t TouchContact(const CContact& c) {
  std::uint64_t sum = 0;
  const CName& name = c.Name();
  for (const String* part : {&name.Family(), &name.Given(), &name.Middle(), &name.Prefix(),
                             &name.Suffix(), &name.Phonetic_Family(), &name.Phonetic_Given(),
                             &name.Phonetic_Middle()}) {
    TouchText(sum, *part);
  }
  for (const auto* text : {&c.FName(), &c.RFName(), &c.RLName(), &c.Title(), &c.Role()}) {
    if (*text) TouchText(sum, **text);
  }
  for (int i = 0; i < c.GetTelephoneCount(); ++i) {
    TouchText(sum, c.GetTelephone(i)->GetNumber());
    sum += c.GetTelephone(i)->GetType();
  }
  for (int i = 0; i < c.GetEmailCount(); ++i) TouchText(sum, c.GetEmail(i)->GetEmail());
  for (int i = 0; i < c.GetURLCount(); ++i) TouchText(sum, c.GetURL(i)->GetURL());
  for (int i = 0; i < c.GetNotesCount(); ++i) TouchText(sum, c.GetNotes(i)->GetNote());
  for (int i = 0; i < c.GetAddressCount(); ++i) {
    const CPostalAddress* a = c.GetAddress(i);
    for (const String* part : {&a->POBox(), &a->ExtAddr(), &a->Street(), &a->Locality(),
                               &a->Region(), &a->PostalCode(), &a->Country(), &a->Neighbor()}) {
      TouchText(sum, *part);
    }
  }
  for (int i = 0; i < c.GetOrgCount(); ++i) TouchText(sum, c.GetOrg(i)->Name());
  if (c.BirthDate()) sum += static_cast<std::uint64_t>(c.BirthDate()->year);
  if (const Bytes* photo = c.GetPhotoRef()) {
    for (const std::uint8_t byte : *photo) sum += byte;
  }
  return sum;
}

/// The corpus's cards, each in the vObject a host would hand in.
inline const std::vector<vObject>& DriverCards() {
  static const std::vector<vObject> objects = [] {
    const std::vector<std::string_view> cards = SplitCards(DriverCorpus());
    std::vector<vObject> out(cards.size());
    for (std::size_t i = 0; i < cards.size(); ++i) {
      out[i].object()->SetData(reinterpret_cast<const unsigned char*>(cards[i].data()),
                               cards[i].size());
    }
    return out;
  }();
  return objects;
}

inline std::unique_ptr<CContact> ReadCard(const vObject& card) {
  auto contact = std::make_unique<CContact>(u"Contact");
  vCard::Parse(contact.get(), &card);
  return contact;
}

/// Lenient reading, which the tool uses and which keeps a photo whose
/// BASE64 starts on the PHOTO line; PHONEPIM_BENCH_STRICT=1 reads by the
/// standard rules instead.
inline void SetReading() {
  const char* strict = std::getenv("PHONEPIM_BENCH_STRICT");
  vCard::LenientReading(strict == nullptr || std::string_view(strict) != "1");
}

inline void BM_Split(benchmark::State& state) {
  const std::string& text = DriverCorpus();
  for (auto _ : state) {
    benchmark::DoNotOptimize(SplitCards(text).size());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

inline void BM_phonepim_Parse(benchmark::State& state) {
  SetReading();
  const auto& cards = DriverCards();
  for (auto _ : state) {
    std::uint64_t sum = 0;
    for (const vObject& card : cards) sum += TouchContact(*ReadCard(card));
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(cards.size()));
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(DriverCorpus().size()));
}

inline void BM_phonepim_Write(benchmark::State& state) {
  SetReading();
  static const std::vector<std::unique_ptr<CContact>> contacts = [] {
    std::vector<std::unique_ptr<CContact>> read;
    for (const vObject& card : DriverCards()) read.push_back(ReadCard(card));
    return read;
  }();
  std::int64_t written = 0;
  for (auto _ : state) {
    written = 0;
    for (const auto& contact : contacts) {
      vObject object;
      vCard::Generate(contact.get(), &object);
      written += object.object()->GetSize();
      benchmark::DoNotOptimize(object.object()->GetData());
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(contacts.size()));
  state.SetBytesProcessed(state.iterations() * written);
}

inline void RegisterPhonepimDriver() {
  benchmark::RegisterBenchmark("Split", BM_Split)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("phonepim/Parse", BM_phonepim_Parse)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("phonepim/Write", BM_phonepim_Write)
      ->Unit(benchmark::kMillisecond);
}

}  // namespace phonepim::bench
