// Throughput of the value codecs on text shaped like phone address books:
// quoted-printable UTF-8 notes and names (Japanese, accented Latin and plain
// ASCII mixed, soft breaks every line) and Base64 photo data.
//
// Each codec runs two ways: over about 1 MB cut into values of a few hundred
// bytes, as a vCard reader meets them (items/s = values/s), and over the
// same megabyte as one value. Bytes/s counts the codec's input.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "phonepim/encoding/NGQuotedPrintableCoding.h"
#include "phonepim/encoding/base64.h"

namespace phonepim {
namespace {

constexpr std::size_t kCorpusBytes = 1 << 20;

std::string EncodeQP(const std::string& text) {
  unsigned long capacity =
      static_cast<unsigned long>(QPEncodeGetRequiredLength(static_cast<int>(text.size())));
  std::string out(capacity, '\0');
  STL_QPEncode(text.data(), text.size(), out.data(), &capacity, 0);
  out.resize(capacity);
  return out;
}

struct Corpus {
  std::vector<std::string> textValues;  // UTF-8 values
  std::vector<std::string> qpValues;    // their quoted-printable form
  std::string text;                     // all values, one after another
  std::string qp;                       // its quoted-printable form, ~1 MB
  std::string base64;                   // ~1 MB, no line breaks
  std::size_t qpValueBytes = 0;
  std::size_t textValueBytes = 0;
};

const Corpus& TheCorpus() {
  static const Corpus corpus = [] {
    static const char* const kPhrases[] = {
        "\xE6\x9D\xB1\xE4\xBA\xAC\xE9\x83\xBD\xE6\xB8\x8B\xE8\xB0\xB7\xE5\x8C\xBA ",
        "\xE5\xB1\xB1\xE7\x94\xB0\xE5\xA4\xAA\xE9\x83\x8E ",
        "\xE3\x81\x8A\xE7\x96\xB2\xE3\x82\x8C\xE6\xA7\x98"
        "\xE3\x81\xA7\xE3\x81\x99\xE3\x80\x82",
        "Stra\xC3\x9F" "e 12, M\xC3\xBCnchen; ",
        "Caf\xC3\xA9 de la Gare, 75010 Paris. ",
        "Call back after 6pm = office closed. ",
        "Meeting notes:\r\n",
        "\t- bring the contract\r\n",
        "email: jane_doe@example.com ",
        "+81-3-1234-5678 ",
        "\xF0\x9F\x8E\x82 birthday ",
    };
    std::mt19937 engine(12345);
    std::uniform_int_distribution<std::size_t> phrase(0, std::size(kPhrases) - 1);
    std::uniform_int_distribution<int> valueLength(80, 400);
    Corpus c;
    while (c.qpValueBytes < kCorpusBytes) {
      std::string value;
      const int target = valueLength(engine);
      while (static_cast<int>(value.size()) < target) value += kPhrases[phrase(engine)];
      c.qpValues.push_back(EncodeQP(value));
      c.qpValueBytes += c.qpValues.back().size();
      c.textValueBytes += value.size();
      c.text += value;
      c.textValues.push_back(std::move(value));
    }
    c.qp = EncodeQP(c.text);

    // Photo-like bytes: random, so no run-length help either way.
    std::string binary(kCorpusBytes * 3 / 4, '\0');
    for (char& b : binary) b = static_cast<char>(engine());
    const int binaryLen = static_cast<int>(binary.size());
    c.base64.assign(static_cast<std::size_t>(Base64encode_len(binaryLen)), '\0');
    c.base64.resize(
        static_cast<std::size_t>(Base64encode(c.base64.data(), binary.data(), binaryLen) - 1));
    return c;
  }();
  return corpus;
}

void BM_NGDecodeQuotedPrintableX_values(benchmark::State& state) {
  const Corpus& c = TheCorpus();
  std::vector<char> dst(4096);
  for (auto _ : state) {
    for (const std::string& value : c.qpValues) {
      const auto length = static_cast<unsigned int>(value.size());
      benchmark::DoNotOptimize(
          NGDecodeQuotedPrintableX(value.c_str(), length, dst.data(), length, 1));
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * c.qpValueBytes));
  state.SetItemsProcessed(
      static_cast<std::int64_t>(state.iterations() * c.qpValues.size()));
}
BENCHMARK(BM_NGDecodeQuotedPrintableX_values);

void BM_NGDecodeQuotedPrintableX_one_megabyte(benchmark::State& state) {
  const Corpus& c = TheCorpus();
  std::vector<char> dst(c.qp.size());
  const auto length = static_cast<unsigned int>(c.qp.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        NGDecodeQuotedPrintableX(c.qp.c_str(), length, dst.data(), length, 1));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * c.qp.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_NGDecodeQuotedPrintableX_one_megabyte);

void BM_STL_QPEncode_values(benchmark::State& state) {
  const Corpus& c = TheCorpus();
  std::vector<char> dst(8192);
  for (auto _ : state) {
    for (const std::string& value : c.textValues) {
      unsigned long capacity = dst.size();
      benchmark::DoNotOptimize(
          STL_QPEncode(value.data(), value.size(), dst.data(), &capacity, 0));
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * c.textValueBytes));
  state.SetItemsProcessed(
      static_cast<std::int64_t>(state.iterations() * c.textValues.size()));
}
BENCHMARK(BM_STL_QPEncode_values);

void BM_STL_QPEncode_one_megabyte(benchmark::State& state) {
  const Corpus& c = TheCorpus();
  std::vector<char> dst(static_cast<std::size_t>(
      QPEncodeGetRequiredLength(static_cast<int>(c.text.size()))));
  for (auto _ : state) {
    unsigned long capacity = dst.size();
    benchmark::DoNotOptimize(
        STL_QPEncode(c.text.data(), c.text.size(), dst.data(), &capacity, 0));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * c.text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_STL_QPEncode_one_megabyte);

void BM_Base64decode_one_megabyte(benchmark::State& state) {
  const Corpus& c = TheCorpus();
  std::vector<char> dst(static_cast<std::size_t>(Base64decode_len(c.base64.c_str())));
  for (auto _ : state) {
    benchmark::DoNotOptimize(Base64decode(dst.data(), c.base64.c_str()));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * c.base64.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_Base64decode_one_megabyte);

}  // namespace
}  // namespace phonepim
