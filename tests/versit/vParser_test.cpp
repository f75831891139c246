// Input -> callback transcript tables for the tokenizer. Every row is run
// whole, cut at every offset, cut into random pieces, fed byte by byte and
// through the per-byte reference driver; all must give the same transcript.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "versit/Transcript.h"

namespace phonepim::testing_versit {
namespace {

using namespace std::string_literals;

struct Case {
  std::string input;
  Transcript expected;
  Handlers handlers = Handlers::kBoth;
  bool lenient = false;  // CARD_SetLenient; the per-byte reference is strict only
};

class tokenizer : public ::testing::TestWithParam<Case> {};

TEST_P(tokenizer, gives_the_same_transcript_however_the_input_is_cut) {
  const Case& c = GetParam();
  EXPECT_EQ(Tokenize(c.input, {}, c.handlers, nullptr, c.lenient), c.expected);
  for (std::size_t cut = 0; cut <= c.input.size(); ++cut) {
    EXPECT_EQ(Tokenize(c.input, {cut}, c.handlers, nullptr, c.lenient), c.expected) << "cut at " << cut;
  }
  std::mt19937 random(20240601u);
  std::uniform_int_distribution<std::size_t> offset(0, c.input.size());
  for (int round = 0; round < 25; ++round) {
    std::vector<std::size_t> cuts = {offset(random), offset(random), offset(random), offset(random)};
    std::sort(cuts.begin(), cuts.end());  // repeated cuts give empty pieces
    EXPECT_EQ(Tokenize(c.input, cuts, c.handlers, nullptr, c.lenient), c.expected)
        << ::testing::PrintToString(cuts);
  }
  EXPECT_EQ(TokenizeByteByByte(c.input, c.handlers, c.lenient), c.expected) << "byte by byte";
  if (!c.lenient) {
    EXPECT_EQ(TokenizeReference(c.input, c.handlers), c.expected) << "per-byte reference";
  }
}

INSTANTIATE_TEST_SUITE_P(lines, tokenizer, ::testing::Values(
    Case{"BEGIN:VCARD\r\nTEL;TYPE=CELL:123\nN:Doe;John\r\nEND:VCARD",
         {"P:BEGIN", "D:VCARD", "E", "P:TEL;TYPE=CELL", "D:123", "E", "P:N", "D:Doe;John", "E",
          "P:END", "D:VCARD", "E", "R:1"}},
    // Empty values and names; white space in names is ignored, case kept;
    // a line without a colon is dropped.
    // (The leading space of the first line folds nothing.)
    Case{" X-NO:\r\n:abc\r\nT e\tL :1\r\nBEGIN\r\nURL:http://a/x:y\r\nGARBAGE",
         {"P:X-NO", "E", "P:", "D:abc", "E", "P:TeL", "D:1", "E", "P:URL", "D:http://a/x:y", "E", "R:1"}},
    Case{"", {"R:1"}},
    Case{"\r\n\r\n\n", {"R:1"}},
    // A lone CR inside a value is ignored; NUL and high bytes are data;
    // leading white space of a value is dropped, trailing kept.
    Case{"N:a\rb\0\xC3\xFF\r\nN:\t \vSmith  x \r\nN:   \r\n"s,
         {"P:N", "D:ab\\x00\\xC3\\xFF", "E", "P:N", "D:Smith  x ", "E", "P:N", "E", "R:1"}},
    // Folding with space or tab; two leading spaces keep one.
    Case{"NO\r\n TE:abc\r\n\tdef\n  g\r\nN:\r\n  Smith\r\n",
         {"P:NOTE", "D:abcdef g", "E", "P:N", "D:Smith", "E", "R:1"}},
    // A CR at the start of a line is the folding white space, so an empty
    // CRLF line joins the next line to the current property; empty LF lines
    // are ignored.
    Case{"NOTE:abc\r\n\r\nX:1\r\n", {"P:NOTE", "D:abcX:1", "E", "R:1"}},
    Case{"NOTE:abc\r\n\r\n x\n\n\nX:1\n\n def\n", {"P:NOTE", "D:abc x", "E", "P:X", "D:1def", "E", "R:1"}}));

INSTANTIATE_TEST_SUITE_P(parameters, tokenizer, ::testing::Values(
    Case{"ADR;HOME;CHARSET=UTF-8;X:;;St\r\nTEL; TYPE = CELL ;PREF :1\r\n",
         {"P:ADR;HOME;CHARSET=UTF-8;X", "D:;;St", "E", "P:TEL;TYPE=CELL;PREF", "D:1", "E", "R:1"}},
    // '=' in a value, ';' or '=' starting a name, '\' in a name.
    Case{"X;A=b=c:v\r\nT;;X:1\r\nT;=X:1\r\nX;P\\Q=1:v\r\n",
         {"P:X;A=b\\x3Dc", "D:v", "E", "P:T;\\x3BX", "D:1", "E", "P:T;\\x3DX", "D:1", "E", "P:X;P\\x5CQ=1", "D:v",
          "E", "R:1"}},
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
    Case{"A:1\r\nTEL;:1\r\nB:2\r\n", {"P:A", "D:1", "E", "R:0"}},
    Case{"TEL; :1\r\n", {"R:0"}},
    Case{"TEL;TYPE=:1\r\n", {"R:0"}},
    Case{"TEL;TYPE=;X:1\r\n", {"R:0"}},
    Case{"TEL;TYPE= :1\r\n", {"R:0"}},
    Case{"X;A;B;C;D;E;F;G;H;I=1;J=2;QUOTED-PRINTABLE:a=\r\nb\r\nN\xC3\xA4ME;P\xFF=v\xFE:x\r\n",
         {"P:X;A;B;C;D;E;F;G;H;I=1;J=2;QUOTED-PRINTABLE", "D:ab", "E", "P:N\\xC3\\xA4ME;P\\xFF=v\\xFE", "D:x", "E",
          "R:1"}}));

INSTANTIATE_TEST_SUITE_P(quoted_printable, tokenizer, ::testing::Values(
    Case{"N;ENCODING=QUOTED-PRINTABLE:a=3D=\r\nb=\n c=\r\nTEL:1=\r\n=\r\nx\r\n",
         {"P:N;ENCODING=QUOTED-PRINTABLE", "D:a=3DbcTEL:1x", "E", "R:1"}},
    // An escape cut by a line end or a fold loses the digit already read;
    // a NUL digit leaves the first slot empty, so it is overwritten.
    Case{"N;QUOTED-PRINTABLE:x=4\r\n1=4\r\n 1==\r\nD0=\0AB= b=4\r1\r\n"s,
         {"P:N;QUOTED-PRINTABLE", "D:x11D0=AB= b=41", "E", "R:1"}},
    // The value is still open: the final line end is a soft break.
    Case{"NOTE;QUOTED-PRINTABLE:abc=", {"P:NOTE;QUOTED-PRINTABLE", "R:1"}},
    // Names and values are case-sensitive; the last encoding parameter wins,
    // other parameters leave it; the next property starts unencoded.
    Case{"A;quoted-printable:a=\r\nB;Encoding=QUOTED-PRINTABLE:a=\r\nC;TYPE=QUOTED-PRINTABLE:a=\r\n"
         "D;ENCODING:a=\r\nE;QUOTED-PRINTABLE;ENCODING=8BIT:\xC3\xA9=\r\nX:1\r\n",
         {"P:A;quoted-printable", "D:a=", "E", "P:B;Encoding=QUOTED-PRINTABLE", "D:a=", "E",
          "P:C;TYPE=QUOTED-PRINTABLE", "D:a=", "E", "P:D;ENCODING", "D:a=", "E",
          "P:E;QUOTED-PRINTABLE;ENCODING=8BIT", "D:\\xC3\\xA9=", "E", "P:X", "D:1", "E", "R:1"}},
    Case{"A;8BIT;QUOTED-PRINTABLE;CHARSET=UTF-8;ENCODING=b:a=\r\nb\r\nM:b=\r\nc\r\n",
         {"P:A;8BIT;QUOTED-PRINTABLE;CHARSET=UTF-8;ENCODING=b", "D:ab", "E", "P:M", "D:b=", "E", "R:1"}}));

INSTANTIATE_TEST_SUITE_P(base64, tokenizer, ::testing::Values(
    Case{"PHOTO;ENCODING=BASE64:QUJD\r\nA;BASE64:QUI=\r\nB;BASE64:QQ==\r\n",
         {"P:PHOTO;ENCODING=BASE64", "D:ABC", "E", "P:A;BASE64", "D:AB", "E", "P:B;BASE64", "D:A", "E", "R:1"}},
    // White space inside a group, groups after padding, the fourth not
    // checked after a third pad.
    Case{"P;BASE64:/+8A  QU\tJ DQUI=QUJD\r\nQ;BASE64:QQ=*\r\n",
         {"P:P;BASE64", "D:\\xFF\\xEF\\x00ABCABABC", "E", "P:Q;BASE64", "D:A", "E", "R:1"}},
    // Only the first physical line is decoded; the folded rest is text and
    // a partial group before the fold is lost.
    Case{"PHOTO;ENCODING=BASE64:QUJDQU\r\n QUJD\r\n QUI=\r\nX;BASE64:\r\n QUJD\r\n",
         {"P:PHOTO;ENCODING=BASE64", "D:ABCQUJDQUI=", "E", "P:X;BASE64", "D:QUJD", "E", "R:1"}},
    // A line end is seen at the next line, after the encoding has been
    // reset, so a partial group there is dropped without padding; the final
    // line end pads it.
    Case{"P;BASE64:QUJDQUI\r\nQ;BASE64:QUJDQ\r\nX:1\r\n",
         {"P:P;BASE64", "D:ABC", "E", "P:Q;BASE64", "D:ABC", "E", "P:X", "D:1", "E", "R:1"}},
    Case{"P;BASE64:QUI", {"P:P;BASE64", "D:AB", "E", "R:1"}},
    Case{"P;BASE64:QUJDQQ\r\n", {"P:P;BASE64", "D:ABCA", "E", "R:1"}},
    Case{"P;BASE64:QUJDQ", {"P:P;BASE64", "R:0"}},
    Case{"P;BASE64:Q\r\n", {"P:P;BASE64", "R:0"}},
    Case{"P;BASE64:*UJD\r\nX:1\r\n", {"P:P;BASE64", "R:0"}},
    Case{"P;BASE64:Q=JD\r\n", {"P:P;BASE64", "R:0"}},
    Case{"P;BASE64:QU*D\r\n", {"P:P;BASE64", "R:0"}},
    Case{"P;BASE64:QUJ_\r\n", {"P:P;BASE64", "R:0"}}));

INSTANTIATE_TEST_SUITE_P(handlers, tokenizer, ::testing::Values(
    // Without a property callback nobody looks at the parameters, so the
    // value stays unencoded.
    Case{"N;ENCODING=QUOTED-PRINTABLE:a=3D=\r\nb\r\nP;BASE64:Q", {"D:a=3D=", "E", "D:Q", "E", "R:1"},
         Handlers::kDataOnly},
    // Without a data callback the '=' is never looked at: no soft break, no
    // bad Base64.
    Case{"N;QUOTED-PRINTABLE:a=\r\nB:1\r\nP;BASE64:****\r\nQ;BASE64:Q",
         {"P:N;QUOTED-PRINTABLE", "P:B", "P:P;BASE64", "P:Q;BASE64", "R:1"}, Handlers::kPropOnly},
    Case{"A:1\r\nB;X=y:2\r\nTEL;:1\r\n", {"R:0"}, Handlers::kNone},
    Case{"A:1\r\nB;X=y:2\r\n", {"R:1"}, Handlers::kNone}));

// The buffer grows and is given back.
INSTANTIATE_TEST_SUITE_P(long_values, tokenizer, ::testing::Values(
    Case{"X-" + std::string(300, 'N') + ";P=" + std::string(300, 'v') + ":" + std::string(2000, 'x') + "\r\nA:1\r\n",
         {"P:X-" + std::string(300, 'N') + ";P=" + std::string(300, 'v'), "D:" + std::string(2000, 'x'), "E", "P:A",
          "D:1", "E", "R:1"}},
    Case{"N;QUOTED-PRINTABLE:" + std::string(700, 'a') + "=\r\n" + std::string(700, 'b') + "=41",
         {"P:N;QUOTED-PRINTABLE", "D:" + std::string(700, 'a') + std::string(700, 'b') + "=41", "E", "R:1"}}));


// Lenient reading: a blank CRLF line ends the value, also after a soft
// break; BASE64 from the property line arrives whole; names are upper-cased,
// labels and values kept as written; encoding words in any case and spelling.
INSTANTIATE_TEST_SUITE_P(lenient, tokenizer, ::testing::Values(
    Case{"NOTE:hello\r\n\r\nTEL;CELL:1\r\n", {"P:NOTE", "D:hello", "E", "P:TEL;CELL", "D:1", "E", "R:1"},
         Handlers::kBoth, true},
    Case{"NOTE;ENCODING=QUOTED-PRINTABLE:a=\r\n\r\nTEL:1\r\nN;QUOTED-PRINTABLE:a=\r\nb=3D\r\n",
         {"P:NOTE;ENCODING=QUOTED-PRINTABLE", "D:a", "E", "P:TEL", "D:1", "E", "P:N;QUOTED-PRINTABLE", "D:ab=3D",
          "E", "R:1"}, Handlers::kBoth, true},
    Case{"PHOTO;ENCODING=BASE64:/9j/\r\n 4A AQ\r\n\r\nTEL:1\r\n",
         {"P:PHOTO;ENCODING=BASE64", "D:/9j/4A AQ", "E", "P:TEL", "D:1", "E", "R:1"}, Handlers::kBoth, true},
    Case{"tel;x-custom(Night);type=cell:1\r\n", {"P:TEL;X-CUSTOM(Night);TYPE=cell", "D:1", "E", "R:1"},
         Handlers::kBoth, true},
    Case{"note;encoding=quotedprintable:a=\r\nb\r\nKEY;ENCODING=b:QU\r\n JD\r\n",
         {"P:NOTE;ENCODING=quotedprintable", "D:ab", "E", "P:KEY;ENCODING=b", "D:QUJD", "E", "R:1"},
         Handlers::kBoth, true}));

}  // namespace
}  // namespace phonepim::testing_versit
