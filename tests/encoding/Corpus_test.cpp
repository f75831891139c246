// Quoted-printable values cut straight out of real phone exports, soft
// breaks and all, through Decode as the vCard reader calls it.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "phonepim/encoding/Encoding.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;
const fs::path kCorpus = PHONEPIM_CORPUS_DIR;

struct RawProperty {
  std::string head;   // name and parameters
  std::string value;  // raw bytes after ':' with every soft-broken line
};

// The properties whose head mentions QUOTED-PRINTABLE: the value runs on
// while a line ends in '=', and keeps the file's own line ends, as the
// tokenizer hands a value over.
std::vector<RawProperty> QuotedPrintableProperties(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::vector<RawProperty> out;
  for (std::size_t pos = 0; pos < text.size();) {
    std::size_t end = std::min(text.find('\n', pos), text.size());
    const std::size_t colon = text.substr(pos, end - pos).find(':');
    if (colon == std::string::npos || text.substr(pos, colon).find("QUOTED-PRINTABLE") == std::string::npos) {
      pos = end + 1;
      continue;
    }
    const std::size_t lineStart = pos, valueStart = pos + colon + 1;
    for (;;) {
      std::size_t contentEnd = end;
      if (contentEnd > pos && text[contentEnd - 1] == '\r') --contentEnd;
      if (contentEnd == pos || text[contentEnd - 1] != '=' || end >= text.size()) {
        out.push_back({text.substr(lineStart, colon), text.substr(valueStart, contentEnd - valueStart)});
        break;
      }
      pos = end + 1;
      end = std::min(text.find('\n', pos), text.size());
    }
    pos = end + 1;
  }
  return out;
}

std::optional<String> DecodeProperty(const RawProperty& p, int charset = -1) {
  if (charset < 0) charset = p.head.find("CHARSET=SHIFT_JIS") != std::string::npos ? kCharsetShiftJIS : kCharsetUTF8;
  return Decode(p.value.data(), static_cast<int>(p.value.size()), charset, kEncodingQuotedPrintable);
}

class corpus_values : public testing::Test {
 protected:
  void SetUp() override {
    if (!fs::is_directory(kCorpus)) GTEST_SKIP() << "no corpus at " << kCorpus;
  }
};

TEST_F(corpus_values, soft_breaks_inside_shift_jis_and_after_utf8_components) {
  // CRLF soft breaks in the middle of a two-byte character sequence.
  const auto japanese = QuotedPrintableProperties(kCorpus / "android-vcard__v21_japanese_2.vcf");
  ASSERT_EQ(japanese.size(), 2u);
  EXPECT_EQ(DecodeProperty(japanese[0]), u";\u6771\u4EAC\u90FD\u6E0B\u8C37\u533A\u685C\u4E18\u753A26-1"
                                         u"\u30BB\u30EB\u30EA\u30A2\u30F3\u30BF\u30EF\u30FC6\u968E;;;;150-8512;");
  EXPECT_EQ(DecodeProperty(japanese[1]), u"\u30E1\u30E2");
  EXPECT_EQ(DecodeProperty(japanese[1], kCharsetUTF8), std::nullopt);
  // Bare LF soft breaks after every component; the address ends in "="
  // followed by an empty line.
  const auto german = QuotedPrintableProperties(kCorpus / "eds__vcard-12.vcf");
  ASSERT_EQ(german.size(), 4u);
  EXPECT_EQ(DecodeProperty(german[0]), u"Br\u00FCning;Michael");
  EXPECT_EQ(DecodeProperty(german[2]), u";;M\u00FCnsterplatz 21;Ulm;Baden-W\u00FCrttemberg;89073;");
  EXPECT_EQ(DecodeProperty(german[3]), u"M\u00FCnsterplatz 21\r\n89073 Ulm, Baden-W\u00FCrttemberg");
}

// Every quoted-printable value in the corpus. The Latin-1 ones are not UTF-8
// and give nothing; so do two broken UTF-8 values: an Android test card
// ending in a lone continuation byte "=80", and a phone that cut the escape
// "=D0" with a soft break ("==\nD0"), which leaves "=\nD0" as text and 0xA1
// on its own. Every other value decodes, and what the writer makes of the
// decoded text reads back the same (the writer always speaks UTF-8).
TEST_F(corpus_values, every_value_decodes_and_survives_rewriting) {
  std::set<std::string> failed;
  int decoded = 0, latin1 = 0;
  for (const auto& entry : fs::directory_iterator(kCorpus)) {
    if (entry.path().extension() == ".md") continue;
    const std::string file = entry.path().filename().string();
    for (const RawProperty& p : QuotedPrintableProperties(entry.path())) {
      const std::optional<String> text = DecodeProperty(p);
      if (p.head.find("ISO-8859-1") != std::string::npos) {
        EXPECT_FALSE(text.has_value()) << file << " " << p.head;
        ++latin1;
      } else if (!text) {
        failed.insert(file + " " + p.value.substr(p.value.size() - std::min<std::size_t>(3, p.value.size())));
      } else {
        ++decoded;
        const std::string ascii = BytesFromString(QPEncode(*text).value(), StringEncoding::ASCII).value();
        String expected = *text;
        std::replace(expected.begin(), expected.end(), u'_', u' ');
        EXPECT_EQ(Decode(ascii.data(), static_cast<int>(ascii.size()), kCharsetUTF8, kEncodingQuotedPrintable),
                  expected)
            << file << " " << p.head;
      }
    }
  }
  EXPECT_EQ(failed, (std::set<std::string>{"ez-vcard__John_Doe_ANDROID.vcf =80",
                                           "gammu__quoted-printable-new-line.vcf =A1"}));
  EXPECT_GT(decoded, 150);
  EXPECT_EQ(latin1, 10);
}

}  // namespace
}  // namespace phonepim
