// The vCard comparison driver: split, parse (every value touched) and write
// the comparison corpus, as the peer programs do. Reads the file named by
// PHONEPIM_BENCH_CORPUS, or generates the corpus.
//
//   bench_vcard_driver --write-corpus=FILE [--photo-on-property-line]
// writes the generated corpus to FILE instead, for the peer program and for
// measuring `phonepim contacts convert`.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string_view>

#include "PhonepimDriver.h"

namespace {

int WriteCorpus(const char* path, bool propertyLine) {
  using namespace phonepim::bench;
  const PhoneExportCorpus corpus = MakePhoneExport(
      20000, 0x5eed1234abcdull,
      PeerComparisonShape(propertyLine ? PhotoStart::PropertyLine : PhotoStart::NextLine));
  std::ofstream out(path, std::ios::binary);
  out.write(corpus.text.data(), static_cast<std::streamsize>(corpus.text.size()));
  if (!out.flush()) {
    std::fprintf(stderr, "cannot write %s\n", path);
    return 1;
  }
  std::printf("%s: %zu cards, %zu bytes, %zu with photos\n", path, corpus.cards.size(),
              corpus.text.size(), corpus.photoCards);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr std::string_view kWrite = "--write-corpus=";
  if (argc >= 2 && std::string_view(argv[1]).starts_with(kWrite)) {
    const bool propertyLine =
        argc >= 3 && std::strcmp(argv[2], "--photo-on-property-line") == 0;
    return WriteCorpus(argv[1] + kWrite.size(), propertyLine);
  }
  phonepim::bench::RegisterPhonepimDriver();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
