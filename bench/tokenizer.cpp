// Tokenizer throughput over a generated phone address-book export, against
// a loop that only looks every byte up in a class table once.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "PhoneExportCorpus.h"
#include "phonepim/versit/vParser.h"

namespace {

using phonepim::bench::PhoneExport;
using phonepim::bench::PhoneExportCorpus;

// What a reader does without copying: look at the name and walk the
// parameters, count the value bytes.
struct Counts {
  std::uint64_t properties = 0;
  std::uint64_t parameters = 0;
  std::uint64_t valueBytes = 0;
  std::uint64_t values = 0;
};

void OnProperty(void* userData, const char* name, char** params) {
  auto* counts = static_cast<Counts*>(userData);
  counts->properties += static_cast<unsigned char>(name[0]) != 0;
  for (char** pair = params; pair[0] != nullptr; pair += 2) ++counts->parameters;
}

void OnData(void* userData, const char* data, int length) {
  auto* counts = static_cast<Counts*>(userData);
  if (data == nullptr) {
    ++counts->values;
  } else {
    counts->valueBytes += static_cast<std::uint64_t>(length);
  }
}

VP* NewParser(Counts* counts) {
  VP* parser = CARD_ParserCreate();
  CARD_SetUserData(parser, counts);
  CARD_SetPropHandler(parser, &OnProperty);
  CARD_SetDataHandler(parser, &OnData);
  return parser;
}

void Report(benchmark::State& state, const Counts& counts) {
  const PhoneExportCorpus& corpus = PhoneExport();
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * corpus.text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * corpus.cards.size()));
  state.counters["properties"] = static_cast<double>(counts.properties);
  state.counters["value_bytes"] = static_cast<double>(counts.valueBytes);
}

// One parser per card, as the vCard reader uses it.
void BM_Tokenizer(benchmark::State& state) {
  const PhoneExportCorpus& corpus = PhoneExport();
  Counts counts;
  for (auto _ : state) {
    counts = Counts();
    for (const auto& [offset, length] : corpus.cards) {
      VP* parser = NewParser(&counts);
      if (CARD_Parse(parser, corpus.text.data() + offset, static_cast<int>(length), 1) != 1) {
        state.SkipWithError("tokenizer rejected a card");
      }
      CARD_ParserFree(parser);
    }
    benchmark::DoNotOptimize(counts);
  }
  Report(state, counts);
}
BENCHMARK(BM_Tokenizer)->Unit(benchmark::kMillisecond);

void BM_Tokenizer_WholeBuffer(benchmark::State& state) {
  const PhoneExportCorpus& corpus = PhoneExport();
  Counts counts;
  for (auto _ : state) {
    counts = Counts();
    VP* parser = NewParser(&counts);
    if (CARD_Parse(parser, corpus.text.data(), static_cast<int>(corpus.text.size()), 1) != 1) {
      state.SkipWithError("tokenizer rejected the export");
    }
    CARD_ParserFree(parser);
    benchmark::DoNotOptimize(counts);
  }
  Report(state, counts);
}
BENCHMARK(BM_Tokenizer_WholeBuffer)->Unit(benchmark::kMillisecond);

// The floor: every byte read once and classified through a 256-entry table.
void BM_ClassTableBaseline(benchmark::State& state) {
  const PhoneExportCorpus& corpus = PhoneExport();
  std::array<std::uint8_t, 256> classes{};
  for (const unsigned char c : std::string(" \t\n\v\f\r")) classes[c] = 1;
  classes[':'] = 2;
  classes[';'] = 3;
  classes['='] = 4;
  classes['\\'] = 5;
  for (auto _ : state) {
    std::uint64_t sum = 0;
    for (const char ch : corpus.text) sum += classes[static_cast<unsigned char>(ch)];
    benchmark::DoNotOptimize(sum);
  }
  Counts none;
  Report(state, none);
}
BENCHMARK(BM_ClassTableBaseline)->Unit(benchmark::kMillisecond);

}  // namespace
