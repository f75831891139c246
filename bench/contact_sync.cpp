// A synchronisation of a large address book against a table that knows it:
// each contact is made from the phone's ID (identity through the table),
// given three numbers and two e-mail addresses, and reconciled. Every
// sub-record claims its entry again, the steady state of a daily sync.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>

#include "ScratchFolder.h"
#include "phonepim/mapping/ContactIDMappingTable.h"
#include "phonepim/model/CContact.h"

namespace {

using phonepim::CContact;
using phonepim::ContactIDMappingTable;
using phonepim::String;

constexpr std::uint32_t kContacts = 10000;
const String kIMEI = u"356938035643809";

using phonepim::bench::ScratchFolder;

// Reads contact `id` from the "phone" and reconciles it.
void SyncContact(std::uint32_t id, const std::shared_ptr<ContactIDMappingTable>& table) {
  CContact contact(id, kIMEI, std::nullopt, u"Contact", table);
  const std::string n = std::to_string(id);
  contact.NewTelephone(("090-" + n).c_str(), phonepim::kTelephoneTypeCell, 0);
  contact.NewTelephone(("03-" + n).c_str(),
                       phonepim::kTelephoneTypeWork | phonepim::kTelephoneTypeVoice, 1);
  contact.NewTelephone(("06-" + n).c_str(), phonepim::kTelephoneTypeHome, 2);
  contact.NewEmail(("p" + n + "@example.jp").c_str(), phonepim::kEmailTypeHome, 0);
  contact.NewEmail(("w" + n + "@example.com").c_str(), phonepim::kEmailTypeWork, 1);
  contact.createMetaData();
  benchmark::DoNotOptimize(contact.metaDictionary());
}

void BM_ReconcileKnownAddressBook(benchmark::State& state) {
  const ScratchFolder folder;
  auto table = std::make_shared<ContactIDMappingTable>(u"N900", kIMEI, folder.path());
  // The first synchronisation: the table learns every contact.
  for (std::uint32_t id = 1; id <= kContacts; ++id) {
    const String dbID = CContact::generateNewVCardID(static_cast<std::int32_t>(id), kIMEI);
    table->addContact(dbID, phonepim::Dictionary{});
    table->editMeta(dbID)->insert_or_assign(u"vCardID", dbID);
    SyncContact(id, table);
  }

  for (auto _ : state) {
    for (std::uint32_t id = 1; id <= kContacts; ++id) SyncContact(id, table);
  }
  state.SetItemsProcessed(state.iterations() * kContacts);
  state.counters["sub-records/s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * kContacts * 5, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ReconcileKnownAddressBook)->Unit(benchmark::kMillisecond);

}  // namespace
