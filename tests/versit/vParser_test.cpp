// Input -> callback transcript tables for the tokenizer. Every row is run
// whole, cut at every offset, cut into random pieces, fed byte by byte and
// through the per-byte reference driver; all must give the same transcript.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "versit/Transcript.h"

namespace phonepim::testing_versit {
namespace {

using namespace std::string_literals;

struct Case {
  std::string input;
  Transcript expected;
  Handlers handlers = Handlers::kBoth;
};

class tokenizer : public ::testing::TestWithParam<Case> {};

TEST_P(tokenizer, gives_the_same_transcript_however_the_input_is_cut) {
  const Case& c = GetParam();
  EXPECT_EQ(Tokenize(c.input, {}, c.handlers), c.expected);
  for (std::size_t cut = 0; cut <= c.input.size(); ++cut) {
    EXPECT_EQ(Tokenize(c.input, {cut}, c.handlers), c.expected) << "cut at " << cut;
  }
  std::mt19937 random(20240601u);
  std::uniform_int_distribution<std::size_t> offset(0, c.input.size());
  for (int round = 0; round < 25; ++round) {
    std::vector<std::size_t> cuts = {offset(random), offset(random), offset(random), offset(random)};
    std::sort(cuts.begin(), cuts.end());  // repeated cuts give empty pieces
    EXPECT_EQ(Tokenize(c.input, cuts, c.handlers), c.expected) << ::testing::PrintToString(cuts);
  }
  EXPECT_EQ(TokenizeByteByByte(c.input, c.handlers), c.expected) << "byte by byte";
  EXPECT_EQ(TokenizeReference(c.input, c.handlers), c.expected) << "per-byte reference";
}

INSTANTIATE_TEST_SUITE_P(rows, tokenizer, ::testing::Values(
    // Empty values and names; white space in names is ignored, case kept;
    // a line without a colon is dropped.
    // (The leading space of the first line folds nothing.)
    Case{" X-NO:\r\n:abc\r\nT e\tL :1\r\nBEGIN\r\nURL:http://a/x:y\r\nGARBAGE",
         {"P:X-NO", "E", "P:", "D:abc", "E", "P:TeL", "D:1", "E", "P:URL", "D:http://a/x:y", "E", "R:1"}},
    // The escape waits for the next ';' or '\', whatever comes between,
    // white space and line ends included; at the colon it is dropped.
    // An escape is used up by the byte it escapes.
    Case{"D;P=a\\:v\r\nA;P=a\\b;c:v\r\nB;P=a\\\\;b:v\r\nC;P=a\\\r\n;b;c:v\r\n",
         {"P:D;P=a", "D:v", "E", "P:A;P=ab\\x3Bc", "D:v", "E", "P:B;P=a\\x5C;b", "D:v", "E", "P:C;P=a\\x3Bb;c",
          "D:v", "E", "R:1"}},
    // White space, LF included, is skipped inside the parameter list, so
    // the next line carries on with it.
    Case{"TEL;CELL\r\nX:1\r\nTEL;TYPE=\r\nCELL:1\r\nA;S=NEEDS\r\nACTION:x\r\nTEL;\r\nX:1\r\n",
         {"P:TEL;CELLX", "D:1", "E", "P:TEL;TYPE=CELL", "D:1", "E", "P:A;S=NEEDSACTION", "D:x", "E", "P:X", "D:1",
          "E", "R:1"}},
    // An escape cut by a line end or a fold loses the digit already read;
    // a NUL digit leaves the first slot empty, so it is overwritten.
    Case{"N;QUOTED-PRINTABLE:x=4\r\n1=4\r\n 1==\r\nD0=\0AB= b=4\r1\r\n"s,
         {"P:N;QUOTED-PRINTABLE", "D:x11D0=AB= b=41", "E", "R:1"}},
    // Names and values are case-sensitive; the last encoding parameter wins,
    // other parameters leave it; the next property starts unencoded.
    Case{"A;quoted-printable:a=\r\nB;Encoding=QUOTED-PRINTABLE:a=\r\nC;TYPE=QUOTED-PRINTABLE:a=\r\n"
         "D;ENCODING:a=\r\nE;QUOTED-PRINTABLE;ENCODING=8BIT:\xC3\xA9=\r\nX:1\r\n",
         {"P:A;quoted-printable", "D:a=", "E", "P:B;Encoding=QUOTED-PRINTABLE", "D:a=", "E",
          "P:C;TYPE=QUOTED-PRINTABLE", "D:a=", "E", "P:D;ENCODING", "D:a=", "E",
          "P:E;QUOTED-PRINTABLE;ENCODING=8BIT", "D:\\xC3\\xA9=", "E", "P:X", "D:1", "E", "R:1"}},
    // White space inside a group, groups after padding, the fourth not
    // checked after a third pad.
    Case{"P;BASE64:/+8A  QU\tJ DQUI=QUJD\r\nQ;BASE64:QQ=*\r\n",
         {"P:P;BASE64", "D:\\xFF\\xEF\\x00ABCABABC", "E", "P:Q;BASE64", "D:A", "E", "R:1"}},
    Case{"P;BASE64:QUJ_\r\n", {"P:P;BASE64", "R:0"}},
    // Without a property callback nobody looks at the parameters, so the
    // value stays unencoded.
    Case{"N;ENCODING=QUOTED-PRINTABLE:a=3D=\r\nb\r\nP;BASE64:Q", {"D:a=3D=", "E", "D:Q", "E", "R:1"},
         Handlers::kDataOnly},
    // Without a data callback the '=' is never looked at: no soft break, no
    // bad Base64.
    Case{"N;QUOTED-PRINTABLE:a=\r\nB:1\r\nP;BASE64:****\r\nQ;BASE64:Q",
         {"P:N;QUOTED-PRINTABLE", "P:B", "P:P;BASE64", "P:Q;BASE64", "R:1"}, Handlers::kPropOnly}));

}  // namespace
}  // namespace phonepim::testing_versit
