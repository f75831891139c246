// The contact ID mapping table at address-book scale: loading and saving a
// table of 10,000 contacts (3 phone numbers and 2 e-mail addresses each) and
// looking contacts up by vCard ID.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "ScratchFolder.h"
#include "phonepim/mapping/ContactIDMappingTable.h"

namespace {

using namespace phonepim;

constexpr int kContacts = 10000;
constexpr int kLookups = 100000;
const String kModel = u"N95";
const String kIMEI = u"350123451234560";

String Text(const std::string& ascii) { return StringFromASCII(ascii); }

String VCardID(int n) {
  char text[64];
  std::snprintf(text, sizeof text, "%016d-Contact-350123451234560", n);
  return Text(text);
}

Dictionary SubRecord(const String& id, const String& contact, const String& type,
                     const String& value) {
  return Dictionary{
      {u"Data", Dictionary{{u"com.apple.syncservices.RecordEntityName",
                            u"com.apple.contacts.Phone Number"},
                           {u"type", type},
                           {u"value", value},
                           {u"contact", Array{Value(contact)}}}},
      {u"Link", u"Linked"},
      {u"State", u"NoChange"},
      {u"identifier", id}};
}

// One scratch folder for the whole run, holding one saved table.
class Fixture {
 public:
  Fixture() {
    table_ = std::make_unique<ContactIDMappingTable>(kModel, kIMEI, folder_.path());
    for (int n = 0; n < kContacts; ++n) {
      const String id = ContactIDMappingTable::newIdentifier();
      Array phones, mails, phoneIDs, mailIDs;
      for (int i = 0; i < 3; ++i) {
        const String sub = ContactIDMappingTable::newIdentifier();
        phones.push_back(SubRecord(sub, id, i == 0 ? u"mobile" : u"work",
                                   Text("+44 20 7946 " + std::to_string(1000 + n) + std::to_string(i))));
        phoneIDs.push_back(sub);
      }
      for (int i = 0; i < 2; ++i) {
        const String sub = ContactIDMappingTable::newIdentifier();
        mails.push_back(SubRecord(sub, id, u"home",
                                  Text("person" + std::to_string(n) + "." + std::to_string(i) +
                                       "@example.org")));
        mailIDs.push_back(sub);
      }
      Dictionary contactData{{u"first name", Text("First" + std::to_string(n))},
                             {u"last name", Text("Last" + std::to_string(n))},
                             {u"LMT", u"20240229T080000Z"},
                             {u"phone numbers", phoneIDs},
                             {u"email addresses", mailIDs}};
      table_->addMeta(Dictionary{{u"State", u"NoChange"},
                                 {u"vCardID", VCardID(n)},
                                 {u"Contact Data", std::move(contactData)},
                                 {u"phone numbers", std::move(phones)},
                                 {u"email addresses", std::move(mails)}},
                      id);
    }
    if (!table_->save()) std::abort();
    fileSize_ = static_cast<std::int64_t>(std::filesystem::file_size(table_->mFilePath()));
  }
  const std::filesystem::path& base() const { return folder_.path(); }
  ContactIDMappingTable& table() { return *table_; }
  std::int64_t fileSize() const { return fileSize_; }

 private:
  phonepim::bench::ScratchFolder folder_;  // first made, last removed
  std::unique_ptr<ContactIDMappingTable> table_;
  std::int64_t fileSize_ = 0;
};

Fixture& Shared() {
  static Fixture fixture;
  return fixture;
}

std::vector<String> LookupKeys() {
  std::mt19937 random(7);
  std::vector<String> keys;
  keys.reserve(kLookups);
  for (int i = 0; i < kLookups; ++i) {
    // One in ten asks for a contact the table does not know.
    const int n = static_cast<int>(random() % (kContacts + kContacts / 10));
    keys.push_back(VCardID(n));
  }
  return keys;
}

void BM_LoadTable(benchmark::State& state) {
  Fixture& fixture = Shared();
  for (auto _ : state) {
    ContactIDMappingTable table(kModel, kIMEI, fixture.base());
    if (table.count() != kContacts) state.SkipWithError("table did not load");
    benchmark::DoNotOptimize(table.count());
  }
  state.SetBytesProcessed(state.iterations() * fixture.fileSize());
  state.SetItemsProcessed(state.iterations() * kContacts);
}
BENCHMARK(BM_LoadTable)->Unit(benchmark::kMillisecond);

void BM_SaveTable(benchmark::State& state) {
  Fixture& fixture = Shared();
  for (auto _ : state) {
    if (!fixture.table().save()) state.SkipWithError("save failed");
  }
  state.SetBytesProcessed(state.iterations() * fixture.fileSize());
  state.SetItemsProcessed(state.iterations() * kContacts);
}
BENCHMARK(BM_SaveTable)->Unit(benchmark::kMillisecond);

// 100,000 look-ups per iteration; the first builds the index.
void BM_DbIDForVCardID(benchmark::State& state) {
  Fixture& fixture = Shared();
  const std::vector<String> keys = LookupKeys();
  for (auto _ : state) {
    int found = 0;
    for (const String& key : keys) found += fixture.table().dbIDForVCardID(key) ? 1 : 0;
    benchmark::DoNotOptimize(found);
  }
  state.SetItemsProcessed(state.iterations() * kLookups);
}
BENCHMARK(BM_DbIDForVCardID)->Unit(benchmark::kMillisecond);

// The same look-up done as a walk over the keys, without an index: what every
// look-up costs without it. Fewer look-ups, as each visits every entry.
void BM_DbIDForVCardIDWalk(benchmark::State& state) {
  Fixture& fixture = Shared();
  std::vector<String> keys = LookupKeys();
  keys.resize(1000);
  const Dictionary& table = std::as_const(fixture.table()).mTable();
  for (auto _ : state) {
    int found = 0;
    for (const String& key : keys) {
      for (const auto& [id, value] : table) {
        const Dictionary* entry = value.getIf<Dictionary>();
        const String* vCardID = entry ? FindAs<String>(*entry, u"vCardID") : nullptr;
        if (vCardID != nullptr && *vCardID == key) {
          ++found;
          break;
        }
      }
    }
    benchmark::DoNotOptimize(found);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
}
BENCHMARK(BM_DbIDForVCardIDWalk)->Unit(benchmark::kMillisecond);

// A sync pass: every phone contact is looked up, then its containers open
// its meta entry for in-place changes, which re-indexes it when closed.
void BM_SyncPass(benchmark::State& state) {
  Fixture& fixture = Shared();
  ContactIDMappingTable& table = fixture.table();
  for (auto _ : state) {
    int found = 0;
    for (int n = 0; n < kContacts; ++n) {
      const std::optional<String> id = table.dbIDForVCardID(VCardID(n));
      if (!id) continue;
      ++found;
      for (int container = 0; container < 7; ++container) {
        benchmark::DoNotOptimize(table.editMeta(*id).get());
      }
    }
    benchmark::DoNotOptimize(found);
  }
  state.SetItemsProcessed(state.iterations() * kContacts);
}
BENCHMARK(BM_SyncPass)->Unit(benchmark::kMillisecond);

}  // namespace
