// Tokenizer throughput over a generated phone address-book export, against
// a loop that only looks every byte up in a class table once.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "phonepim/versit/vParser.h"

namespace {

// xorshift64: the corpus must be the same on every run.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t Next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return state_;
  }
  std::size_t Below(std::size_t n) { return static_cast<std::size_t>(Next() % n); }

 private:
  std::uint64_t state_;
};

const char* const kGivenNames[] = {"Jürgen", "Zoë", "Mária", "Søren", "José", "Anaïs",
                                   "Łukasz", "Ólafur", "Jiří", "Ἀλέξανδρος", "Андрей",
                                   "美咲", "Peter", "Anna"};
const char* const kFamilyNames[] = {"Müller", "Øvergård", "Dvořák", "Nuñez", "Çelik",
                                    "Schäfer", "Kowalczyk", "Ivanović", "Söderström",
                                    "山田", "Smith", "Brown"};
const char* const kStreets[] = {"Hauptstraße", "Rue de l'Église", "Šafaříkova",
                                 "Calle Mayor", "Kungsgatan", "Ulica Długa"};
const char* const kCities[] = {"Berlin", "Köln", "Praha", "Málaga", "Göteborg", "Gdańsk"};
const char* const kNoteWords[] = {"Treffen", "nächste", "Woche", "wegen", "Übergabe",
                                  "der", "Schlüssel", "café", "réunion", "über", "Zürich",
                                  "Geburtstag", "anrufen", "vor", "Uhr"};

// Quoted-printable as phones write it: every byte outside printable ASCII
// (and '=') as =XX, lines soft-broken with "=\r\n" before 76 columns.
void AppendQuotedPrintable(std::string& out, const std::string& text, std::size_t column) {
  static const char kHex[] = "0123456789ABCDEF";
  for (const char ch : text) {
    const auto c = static_cast<unsigned char>(ch);
    const bool plain = c >= 0x20 && c < 0x7F && c != '=';
    if (column + (plain ? 1 : 3) > 75) {
      out += "=\r\n";
      column = 0;
    }
    if (plain) {
      out += ch;
      ++column;
    } else {
      out += '=';
      out += kHex[c >> 4];
      out += kHex[c & 15];
      column += 3;
    }
  }
  out += "\r\n";
}

void AppendQpProperty(std::string& out, const std::string& head, const std::string& text) {
  out += head;
  out += ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:";
  AppendQuotedPrintable(out, text, head.size() + 41);
}

void AppendPhoto(std::string& out, Random& random) {
  static const char kAlphabet[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  // A small JPEG's worth of BASE64: the first 48 characters on the
  // property line, the rest folded into 76-character lines.
  const std::size_t characters = (2048 + random.Below(4096)) / 4 * 4;
  out += "PHOTO;ENCODING=BASE64;TYPE=JPEG:";
  for (std::size_t i = 0; i < characters; ++i) {
    if (i == 48 || (i > 48 && (i - 48) % 76 == 0)) out += "\r\n ";
    out += kAlphabet[random.Below(64)];
  }
  out += "\r\n";
}

std::string Phone(Random& random) {
  std::string number = "+49 1";
  for (int i = 0; i < 10; ++i) number += static_cast<char>('0' + random.Below(10));
  return number;
}

struct Corpus {
  std::string text;
  std::vector<std::pair<std::size_t, std::size_t>> cards;  // offset, length
};

const Corpus& PhoneExport() {
  static const Corpus corpus = [] {
    Corpus c;
    Random random(0x5eed1234abcdull);
    for (std::size_t n = 0; c.text.size() < 10u * 1024 * 1024; ++n) {
      const std::size_t start = c.text.size();
      std::string& out = c.text;
      const std::string given = kGivenNames[random.Below(std::size(kGivenNames))];
      const std::string family = kFamilyNames[random.Below(std::size(kFamilyNames))];
      out += "BEGIN:VCARD\r\nVERSION:2.1\r\n";
      AppendQpProperty(out, "N", family + ";" + given + ";;;");
      AppendQpProperty(out, "FN", given + " " + family);
      out += "TEL;CELL;PREF:" + Phone(random) + "\r\n";
      out += "TEL;HOME;VOICE:" + Phone(random) + "\r\n";
      out += "TEL;WORK;VOICE:" + Phone(random) + "\r\n";
      if (random.Below(2) == 0) out += "TEL;WORK;FAX:" + Phone(random) + "\r\n";
      out += "EMAIL;INTERNET;PREF:contact" + std::to_string(n) + "@example.com\r\n";
      AppendQpProperty(out, "ADR;HOME",
                       ";;" + std::string(kStreets[random.Below(std::size(kStreets))]) + " " +
                           std::to_string(1 + random.Below(200)) + ";" +
                           kCities[random.Below(std::size(kCities))] + ";;" +
                           std::to_string(10000 + random.Below(90000)) + ";Deutschland");
      std::string note;
      const std::size_t words = 8 + random.Below(40);
      for (std::size_t i = 0; i < words; ++i) {
        if (i != 0) note += ' ';
        note += kNoteWords[random.Below(std::size(kNoteWords))];
      }
      AppendQpProperty(out, "NOTE", note);
      out += "BDAY:19" + std::to_string(50 + random.Below(50)) + "0612\r\n";
      if (n % 10 == 0) AppendPhoto(out, random);
      out += "X-IRMC-LUID:" + std::to_string(100000 + n) + "\r\nEND:VCARD\r\n";
      c.cards.emplace_back(start, c.text.size() - start);
    }
    return c;
  }();
  return corpus;
}

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
  const Corpus& corpus = PhoneExport();
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * corpus.text.size()));
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * corpus.cards.size()));
  state.counters["properties"] = static_cast<double>(counts.properties);
  state.counters["value_bytes"] = static_cast<double>(counts.valueBytes);
}

// One parser per card, as the vCard reader uses it.
void BM_Tokenizer(benchmark::State& state) {
  const Corpus& corpus = PhoneExport();
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
  const Corpus& corpus = PhoneExport();
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
  const Corpus& corpus = PhoneExport();
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
