// A generated phone address-book export for the benchmarks: vCard 2.1 cards
// as feature phones and early smartphones write them. Deterministic, so runs
// compare.
//
// Every card has a quoted-printable UTF-8 name (N and FN), three or four TEL
// lines, an e-mail address, a quoted-printable address and a
// quoted-printable note long enough to be soft-broken, and a birthday. One
// card in ten carries a folded BASE64 photo of 1.5 to 4.5 KB; half of those
// start the data on the property line (older phones), half on the next line
// (most exports). Non-ASCII text is spread over many scripts so the decoders
// see two-, three- and four-byte UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace phonepim::bench {

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

/// Where a photo's BASE64 text starts.
enum class PhotoStart { Alternating, PropertyLine, NextLine };

/// What varies between the generated exports.
struct ExportShape {
  std::size_t photoMinChars = 2048;  // BASE64 characters of the smallest photo
  std::size_t photoMaxChars = 6144;  // and of the largest, exclusive
  PhotoStart photoStart = PhotoStart::Alternating;
  // Three cards in five label one element with X-CUSTOM(...), as phones
  // that let the user name a number, address or mailbox write it.
  bool customLabels = false;
};

/// The comparison corpus: 20,000 cards, 31.9 MB, one in ten with a photo
/// of 2 to 12.5 KB of BASE64, three in five with a custom label. Most
/// phones start the photo on the PHOTO line; `photoStart` picks.
inline ExportShape PeerComparisonShape(PhotoStart photoStart) {
  return ExportShape{2048, 12800, photoStart, true};
}

struct PhoneExportCorpus {
  std::string text;                                         // all cards, CRLF
  std::vector<std::pair<std::size_t, std::size_t>> cards;  // offset, length
  std::size_t photoCards = 0;
};

namespace corpus_detail {

inline const char* const kGivenNames[] = {"Jürgen", "Zoë", "Mária", "Søren", "José", "Anaïs",
                                          "Łukasz", "Ólafur", "Jiří", "Ἀλέξανδρος", "Андрей",
                                          "美咲", "Peter", "Anna", "𠮷野"};
inline const char* const kFamilyNames[] = {"Müller", "Øvergård", "Dvořák", "Nuñez", "Çelik",
                                           "Schäfer", "Kowalczyk", "Ivanović", "Söderström",
                                           "山田", "Smith", "Brown"};
inline const char* const kStreets[] = {"Hauptstraße", "Rue de l'Église", "Šafaříkova",
                                       "Calle Mayor", "Kungsgatan", "Ulica Długa"};
inline const char* const kCities[] = {"Berlin", "Köln", "Praha", "Málaga", "Göteborg",
                                      "Gdańsk"};
inline const char* const kNoteWords[] = {"Treffen", "nächste", "Woche", "wegen", "Übergabe",
                                         "der", "Schlüssel", "café", "réunion", "über",
                                         "Zürich", "Geburtstag", "anrufen", "vor", "Uhr"};

inline constexpr char kBase64Alphabet[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Quoted-printable as phones write it: every byte outside printable ASCII
// (and '=') as =XX, lines soft-broken with "=\r\n" before 76 columns.
inline void AppendQuotedPrintable(std::string& out, const std::string& text,
                                  std::size_t column) {
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

inline void AppendQpProperty(std::string& out, const std::string& head,
                             const std::string& text) {
  out += head;
  out += ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:";
  AppendQuotedPrintable(out, text, head.size() + 41);
}

// `characters` BASE64 characters (a multiple of four) folded into
// 76-character lines that begin with one space. With `sameLine` the first
// 48 characters stand on the property line.
inline void AppendFoldedBase64(std::string& out, Random& random, std::size_t characters,
                               bool sameLine) {
  std::size_t i = 0;
  if (sameLine) {
    for (; i < characters && i < 48; ++i) out += kBase64Alphabet[random.Below(64)];
  }
  for (std::size_t column = 76; i < characters; ++i, ++column) {
    if (column == 76) {
      out += "\r\n ";
      column = 0;
    }
    out += kBase64Alphabet[random.Below(64)];
  }
  out += "\r\n";
}

inline std::string Phone(Random& random) {
  std::string number = "+49 1";
  for (int i = 0; i < 10; ++i) number += static_cast<char>('0' + random.Below(10));
  return number;
}

template <std::size_t N>
const char* Pick(Random& random, const char* const (&words)[N]) {
  return words[random.Below(N)];
}

}  // namespace corpus_detail

/// `count` cards; card n carries a photo when n % 10 == 0.
inline PhoneExportCorpus MakePhoneExport(std::size_t count,
                                         std::uint64_t seed = 0x5eed1234abcdull,
                                         const ExportShape& shape = {}) {
  using namespace corpus_detail;
  PhoneExportCorpus c;
  Random random(seed);
  c.text.reserve(count * 1200);
  c.cards.reserve(count);
  for (std::size_t n = 0; n < count; ++n) {
    const std::size_t start = c.text.size();
    std::string& out = c.text;
    const std::string given = Pick(random, kGivenNames);
    const std::string family = Pick(random, kFamilyNames);
    out += "BEGIN:VCARD\r\nVERSION:2.1\r\n";
    AppendQpProperty(out, "N", family + ";" + given + ";;;");
    AppendQpProperty(out, "FN", given + " " + family);
    if (shape.customLabels && n % 5 == 0) {
      out += "TEL;X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,B=C3=BCro):" +
             Phone(random) + "\r\n";
    }
    out += "TEL;CELL;PREF:" + Phone(random) + "\r\n";
    out += "TEL;HOME;VOICE:" + Phone(random) + "\r\n";
    out += "TEL;WORK;VOICE:" + Phone(random) + "\r\n";
    if (random.Below(2) == 0) out += "TEL;WORK;FAX:" + Phone(random) + "\r\n";
    out += "EMAIL;INTERNET;PREF:contact" + std::to_string(n) + "@example.com\r\n";
    if (shape.customLabels && n % 5 == 1) {
      out += "EMAIL;X-CUSTOM(Book club):reads" + std::to_string(n) + "@example.org\r\n";
    }
    const bool labelledAddress = shape.customLabels && n % 5 == 2;
    AppendQpProperty(out, labelledAddress ? "ADR;X-CUSTOM(Summer house)" : "ADR;HOME",
                     ";;" + std::string(Pick(random, kStreets)) + " " +
                         std::to_string(1 + random.Below(200)) + ";" + Pick(random, kCities) +
                         ";;" + std::to_string(10000 + random.Below(90000)) + ";Deutschland");
    std::string note;
    const std::size_t words = 8 + random.Below(40);
    for (std::size_t i = 0; i < words; ++i) {
      if (i != 0) note += ' ';
      note += Pick(random, kNoteWords);
    }
    AppendQpProperty(out, "NOTE", note);
    out += "BDAY:19" + std::to_string(50 + random.Below(50)) + "0612\r\n";
    if (n % 10 == 0) {
      out += "PHOTO;ENCODING=BASE64;TYPE=JPEG:";
      const std::size_t characters =
          (shape.photoMinChars + random.Below(shape.photoMaxChars - shape.photoMinChars)) / 4 * 4;
      const bool sameLine = shape.photoStart == PhotoStart::Alternating
                                ? n % 20 == 0
                                : shape.photoStart == PhotoStart::PropertyLine;
      AppendFoldedBase64(out, random, characters, sameLine);
      ++c.photoCards;
    }
    out += "X-IRMC-LUID:" + std::to_string(100000 + n) + "\r\nEND:VCARD\r\n";
    c.cards.emplace_back(start, c.text.size() - start);
  }
  return c;
}

/// The shared export of 20,000 cards, made on first use.
inline const PhoneExportCorpus& PhoneExport() {
  static const PhoneExportCorpus corpus = MakePhoneExport(20000);
  return corpus;
}

/// One small card with a photo of `photoBytes` bytes (rounded down to a
/// multiple of three), its BASE64 starting on the line after PHOTO and
/// folded at 76 characters.
inline std::string MakeCardWithPhoto(std::size_t photoBytes) {
  Random random(0xfacade5eedull);
  std::string out = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Photo;Large;;;\r\nTEL;CELL:+49 1701234567\r\n";
  out += "PHOTO;ENCODING=BASE64;TYPE=JPEG:";
  corpus_detail::AppendFoldedBase64(out, random, photoBytes / 3 * 4, false);
  out += "END:VCARD\r\n";
  return out;
}

}  // namespace phonepim::bench
