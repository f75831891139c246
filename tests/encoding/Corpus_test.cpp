// Quoted-printable values cut straight out of real phone exports, soft
// breaks and all, through Decode as the vCard reader calls it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "phonepim/encoding/Encoding.h"

namespace phonepim {
namespace {

namespace fs = std::filesystem;

const fs::path kCorpus = PHONEPIM_CORPUS_DIR;

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

struct RawProperty {
  std::string head;   // name and parameters
  std::string value;  // raw bytes after ':' with every soft-broken line
};

// Splits out the properties whose head mentions QUOTED-PRINTABLE: the
// value runs on while a line ends in '=', and keeps the file's own line
// ends, as the tokenizer hands a value over.
std::vector<RawProperty> QuotedPrintableProperties(const std::string& text) {
  std::vector<RawProperty> out;
  std::size_t pos = 0;
  while (pos < text.size()) {
    std::size_t end = text.find('\n', pos);
    if (end == std::string::npos) end = text.size();
    const std::string line = text.substr(pos, end - pos);
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos ||
        line.substr(0, colon).find("QUOTED-PRINTABLE") == std::string::npos) {
      pos = end + 1;
      continue;
    }
    const std::size_t valueStart = pos + colon + 1;
    std::size_t lineEnd = end;
    for (;;) {
      std::size_t contentEnd = lineEnd;
      if (contentEnd > pos && text[contentEnd - 1] == '\r') --contentEnd;
      if (contentEnd == pos || text[contentEnd - 1] != '=' || lineEnd >= text.size()) {
        out.push_back(
            {line.substr(0, colon), text.substr(valueStart, contentEnd - valueStart)});
        break;
      }
      pos = lineEnd + 1;
      lineEnd = text.find('\n', pos);
      if (lineEnd == std::string::npos) lineEnd = text.size();
    }
    pos = lineEnd + 1;
  }
  return out;
}

int CharsetOf(const std::string& head) {
  return head.find("CHARSET=SHIFT_JIS") != std::string::npos ? kCharsetShiftJIS
                                                            : kCharsetUTF8;
}

std::optional<String> DecodeProperty(const RawProperty& p) {
  return Decode(p.value.data(), static_cast<int>(p.value.size()), CharsetOf(p.head),
                kEncodingQuotedPrintable);
}

class corpus_values : public testing::Test {
 protected:
  void SetUp() override {
    if (!fs::is_directory(kCorpus)) GTEST_SKIP() << "no corpus at " << kCorpus;
  }

  std::vector<RawProperty> Load(const char* file) {
    return QuotedPrintableProperties(ReadFile(kCorpus / file));
  }
};

// Shift_JIS quoted-printable with CRLF soft breaks in the middle of a
// two-byte character sequence.
TEST_F(corpus_values, shift_jis_address_with_soft_breaks) {
  const std::vector<RawProperty> props = Load("android-vcard__v21_japanese_2.vcf");
  ASSERT_EQ(props.size(), 2u);
  EXPECT_EQ(DecodeProperty(props[0]),
            u";\u6771\u4EAC\u90FD\u6E0B\u8C37\u533A\u685C\u4E18\u753A26-1"
            u"\u30BB\u30EB\u30EA\u30A2\u30F3\u30BF\u30EF\u30FC6\u968E;;;;150-8512;");
  EXPECT_EQ(DecodeProperty(props[1]), u"\u30E1\u30E2");
  // The same bytes read as UTF-8 are not text.
  EXPECT_EQ(Decode(props[1].value.data(), static_cast<int>(props[1].value.size()),
                   kCharsetUTF8, kEncodingQuotedPrintable),
            std::nullopt);
}

// A phone that soft-breaks after every component with bare LF line ends;
// the address ends in "=" followed by an empty line.
TEST_F(corpus_values, utf8_components_with_lf_soft_breaks) {
  const std::vector<RawProperty> props = Load("eds__vcard-12.vcf");
  ASSERT_EQ(props.size(), 4u);
  EXPECT_EQ(DecodeProperty(props[0]), u"Br\u00FCning;Michael");
  EXPECT_EQ(DecodeProperty(props[1]), u"Michael Br\u00FCning");
  EXPECT_EQ(DecodeProperty(props[2]),
            u";;M\u00FCnsterplatz 21;Ulm;Baden-W\u00FCrttemberg;89073;");
  EXPECT_EQ(DecodeProperty(props[3]),
            u"M\u00FCnsterplatz 21\r\n89073 Ulm, Baden-W\u00FCrttemberg");
}

// Every quoted-printable value in the corpus. The Latin-1 ones are not
// UTF-8 and give nothing; so do two broken UTF-8 values: an Android test
// card ending in a lone continuation byte "=80", and a phone that cut the
// escape "=D0" with a soft break ("==\nD0"), which leaves "=\nD0" as text
// and 0xA1 on its own. Every other value decodes, and what the writer makes
// of the decoded text reads back the same.
TEST_F(corpus_values, every_value_decodes_and_survives_rewriting) {
  const std::set<std::string> kBroken = {
      "ez-vcard__John_Doe_ANDROID.vcf =80",
      "gammu__quoted-printable-new-line.vcf =A1",
  };
  std::set<std::string> failed;
  int decoded = 0;
  int latin1 = 0;
  for (const auto& entry : fs::directory_iterator(kCorpus)) {
    if (entry.path().extension() == ".md") continue;
    const std::string file = entry.path().filename().string();
    for (const RawProperty& p : QuotedPrintableProperties(ReadFile(entry.path()))) {
      const std::optional<String> text = DecodeProperty(p);
      if (p.head.find("ISO-8859-1") != std::string::npos) {
        EXPECT_FALSE(text.has_value()) << file << " " << p.head;
        ++latin1;
        continue;
      }
      if (!text) {
        // Named by the file and the value's last escape.
        const std::size_t tail = std::min<std::size_t>(3, p.value.size());
        failed.insert(file + " " + p.value.substr(p.value.size() - tail));
        continue;
      }
      ++decoded;
      const std::optional<String> qp = QPEncode(*text);
      ASSERT_TRUE(qp.has_value());
      const std::optional<std::string> ascii = BytesFromString(*qp, StringEncoding::ASCII);
      ASSERT_TRUE(ascii.has_value());
      String expected = *text;
      for (char16_t& unit : expected) {
        if (unit == u'_') unit = u' ';
      }
      // The writer always speaks UTF-8, whatever the phone sent.
      EXPECT_EQ(Decode(ascii->data(), static_cast<int>(ascii->size()), kCharsetUTF8,
                       kEncodingQuotedPrintable),
                expected)
          << file << " " << p.head;
    }
  }
  EXPECT_EQ(failed, kBroken);
  EXPECT_GT(decoded, 150);
  EXPECT_EQ(latin1, 10);
}

}  // namespace
}  // namespace phonepim
