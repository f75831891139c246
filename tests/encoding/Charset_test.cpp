// Lenient value decoding: charsets through ICU, quoted-printable with '_'
// kept, and structured values split and unescaped.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "phonepim/encoding/Charset.h"
#include "phonepim/encoding/Encoding.h"

namespace phonepim {
namespace {

struct CharsetRow {
  std::string bytes;
  const char* charset;
  int encoding;
  std::u16string text;
  bool replaced;
  bool unknown;
};

TEST(decode_charset, reads_by_the_charset_word_and_keeps_what_it_cannot) {
  const CharsetRow rows[] = {
      {"M=FCller", "ISO-8859-1", kEncodingQuotedPrintable, u"Müller", false, false},
      {"M\xC3\xBCller", "UTF8", kEncodingNone, u"Müller", false, false},
      {"M\xC3\xBCller", "", kEncodingNone, u"Müller", false, false},
      {"M\xFCller", "utf-8", kEncodingNone, u"Müller", true, false},
      {"\x80", "WINDOWS-1252", kEncodingNone, u"€", false, false},
      {"\x93\xFA\x96\x7B", "Shift_JIS", kEncodingNone, u"日本", false, false},
      {"a\x81", "SHIFT_JIS", kEncodingNone, u"a\uFFFD", true, false},
      {"abc", "X-NO-SUCH", kEncodingNone, u"abc", false, true},
      {"(nessa_flame)", "", kEncodingQuotedPrintable, u"(nessa_flame)", false, false},
      {"a=\r\nb=3d=ZZ=", "", kEncodingQuotedPrintableCR, u"ab==ZZ=", false, false},
      {"w6k=", "ISO-8859-1", kEncodingBase64, u"Ã©", false, false},
  };
  for (const CharsetRow& row : rows) {
    SCOPED_TRACE(row.bytes + " as " + row.charset);
    const CharsetText decoded = DecodeCharset(row.bytes, row.charset, row.encoding);
    EXPECT_EQ(decoded.text, row.text);
    EXPECT_EQ(decoded.replaced, row.replaced);
    EXPECT_EQ(decoded.unknownCharset, row.unknown);
  }
}

TEST(split_structured_value, splits_at_unescaped_separators_and_unescapes) {
  struct Row {
    std::u16string value;
    std::vector<std::u16string> unescaped;
    std::vector<std::u16string> asWritten;
  };
  const Row rows[] = {
      {u"", {u""}, {u""}},
      {u"Sales Dept.\\Manager;x", {u"Sales Dept.\\Manager", u"x"}, {u"Sales Dept.\\Manager", u"x"}},
      {u"a\\;b;c\\\\;d\\,e\\nf\\Ng\\:h", {u"a;b", u"c\\", u"d,e\nf\ng:h"},
       {u"a\\;b", u"c\\\\", u"d\\,e\\nf\\Ng\\:h"}},
      {u"end\\", {u"end\\"}, {u"end\\"}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(SplitStructuredValue(row.value, true), row.unescaped);
    EXPECT_EQ(SplitStructuredValue(row.value, false), row.asWritten);
  }
}

}  // namespace
}  // namespace phonepim
