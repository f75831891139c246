// The transfer-encoding decoders STL_QPDecode and QPDecode2: they must give
// the same bytes, including the byte past the end they read and write.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/encoding/NGQuotedPrintableCoding.h"

namespace phonepim {
namespace {

using namespace std::string_literals;

struct TransferOutcome {
  int rc;
  std::string bytes;  // the reported length's worth of output
  char terminator;    // dst[reported length]: the byte past the source
  bool operator==(const TransferOutcome&) const = default;
};

void PrintTo(const TransferOutcome& o, std::ostream* os) {
  *os << "rc " << o.rc << " " << testing::PrintToString(o.bytes) << " then "
      << static_cast<int>(static_cast<unsigned char>(o.terminator));
}

// Runs both decoders on a source buffer of nSrcLen + 1 bytes ending in
// `past` with a destination of exactly nSrcLen + 1 bytes; they must agree.
TransferOutcome DecodeTransfer(const std::string& src, int nEncoding, unsigned int flags,
                               char past = '\0') {
  std::vector<char> source(src.begin(), src.end());
  source.push_back(past);
  std::vector<char> dst(src.size() + 1, '#');
  unsigned long length = 12345;
  const int rc = STL_QPDecode(source.data(), src.size(), dst.data(), &length, nEncoding,
                              flags);
  TransferOutcome stl{rc, "", '#'};
  if (rc == 1) {
    EXPECT_LT(length, dst.size());
    stl.bytes.assign(dst.data(), length);
    stl.terminator = dst[length];
  } else {
    EXPECT_EQ(length, 12345u) << "length changed on failure";
  }

  std::vector<char> dst2(src.size() + 1, '#');
  int length2 = 12345;
  const int rc2 = QPDecode2(reinterpret_cast<const unsigned char*>(source.data()),
                            static_cast<int>(src.size()), dst2.data(), &length2, nEncoding,
                            flags);
  TransferOutcome two{rc2, "", '#'};
  if (rc2 == 1) {
    two.bytes.assign(dst2.data(), static_cast<std::size_t>(length2));
    two.terminator = dst2[static_cast<std::size_t>(length2)];
  }
  EXPECT_EQ(stl, two) << "STL_QPDecode and QPDecode2 disagree";
  return stl;
}

struct TransferCase {
  const char* name;
  std::string src;
  int nEncoding;
  unsigned int flags;
  TransferOutcome expected;
  char past = '\0';
};

void PrintTo(const TransferCase& c, std::ostream* os) { *os << c.name; }

class transfer_decode : public testing::TestWithParam<TransferCase> {};

TEST_P(transfer_decode, gives_exact_bytes) {
  const TransferCase& c = GetParam();
  EXPECT_EQ(DecodeTransfer(c.src, c.nEncoding, c.flags, c.past), c.expected);
}

constexpr int kQP = kEncodingQuotedPrintable;
constexpr int kQPCR = kEncodingQuotedPrintableCR;

INSTANTIATE_TEST_SUITE_P(
    cases, transfer_decode,
    testing::ValuesIn(std::vector<TransferCase>{
        {"empty", "", kQP, 0, {1, "", '\0'}},
        {"plain_text", "Hello World", kQP, 0, {1, "Hello World", '\0'}},
        // The byte after the source is copied as the terminator, whatever
        // it is.
        {"past_byte_written", "abc", kQP, 0, {1, "abc", 'Z'}, 'Z'},
        // An '=' there cannot start an escape and goes out as a NUL.
        {"past_equals_becomes_nul", "a", kQP, 0, {1, "a", '\0'}, '='},
        {"escapes", "=41=42", kQP, 0, {1, "AB", '\0'}},
        {"lower_hex", "=4a=ff", kQP, 0, {1, "J\xFF", '\0'}},
        {"underscore_left_alone", "a_b", kQP, 0, {1, "a_b", '\0'}},
        {"soft_break", "line=\r\nnext", kQP, 0, {1, "linenext", '\0'}},
        {"soft_break_alone", "=\r\n", kQP, 0, {1, "", '\0'}},
        {"soft_break_at_end", "a=\r\n", kQP, 0, {1, "a", '\0'}},
        {"hard_line_ends_dropped", "A\r\nB\nC\rD", kQP, 0, {1, "ABCD", '\0'}},
        {"equals_lf_fails", "=\n", kQP, 0, {0, "", '#'}},
        {"equals_cr_fails", "=\r", kQP, 0, {0, "", '#'}},
        {"equals_cr_then_text_fails", "a=\rb", kQP, 0, {0, "", '#'}},
        {"trailing_equals_fails", "abc=", kQP, 0, {0, "", '#'}},
        {"equals_space_fails", "a= b", kQP, 0, {0, "", '#'}},
        {"double_equals_fails", "==41", kQP, 0, {0, "", '#'}},
        // Read by strtol in base 16: it stops at the first non-hex
        // character.
        {"strtol_letter_first", "=G1", kQP, 0, {1, "\0"s, '\0'}},
        {"strtol_letter_second", "=1G", kQP, 0, {1, "\x01", '\0'}},
        {"strtol_hex_prefix", "=0x", kQP, 0, {1, "\0"s, '\0'}},
        {"strtol_letters", "=zz", kQP, 0, {1, "\0"s, '\0'}},
        {"cr_escape_plain", "=0D", kQP, 0, {1, "\r", '\0'}},
        {"cr_escape_as_lf", "=0D", kQPCR, 0, {1, "\n", '\0'}},
        {"crlf_escapes_as_lf", "a=0D=0Ab", kQPCR, 0, {1, "a\n\nb", '\0'}},
        {"crlf_escapes_plain", "a=0D=0Ab", kQP, 0, {1, "a\r\nb", '\0'}},
        {"lower_cr_escape_not_turned", "=0d", kQPCR, 0, {1, "\r", '\0'}},
        {"cr_rule_needs_encoding_3", "=0D", kEncodingBase64, 0, {1, "\r", '\0'}},
        // "=X" closing the source takes the terminator as its second digit
        // and the escape's byte then falls outside the reported length.
        {"escape_at_end_swallows_terminator", "ab=4", kQP, 0, {1, "ab", '\x04'}},
        {"escape_at_end_with_past_digit", "=4", kQP, 0, {1, "", 'A'}, '1'},
        {"dots_kept_without_flag", "..a", kQP, 0, {1, "..a", '\0'}},
        {"stuffed_dot_dropped", "..a", kQP, kQPDotStuffing, {1, ".a", '\0'}},
        {"single_leading_dot_dropped", ".a", kQP, kQPDotStuffing, {1, "a", '\0'}},
        {"inner_dot_kept", "a.", kQP, kQPDotStuffing, {1, "a.", '\0'}},
        {"dot_after_hard_line_end", "a\r\n..b", kQP, kQPDotStuffing, {1, "a.b", '\0'}},
        {"dot_after_soft_break", "x=\r\n..y", kQP, kQPDotStuffing, {1, "x.y", '\0'}},
        {"escaped_dot_at_line_start_kept", "=2E", kQP, kQPDotStuffing, {1, ".", '\0'}},
        {"dot_after_escape_kept", "=41.", kQP, kQPDotStuffing, {1, "A.", '\0'}},
    }),
    [](const testing::TestParamInfo<TransferCase>& info) { return info.param.name; });

TEST(transfer_decode_limits, null_pointers_return_zero) {
  char dst[4];
  unsigned long length = 7;
  EXPECT_EQ(STL_QPDecode(nullptr, 1, dst, &length, kQP, 0), 0);
  EXPECT_EQ(STL_QPDecode("a", 1, nullptr, &length, kQP, 0), 0);
  EXPECT_EQ(STL_QPDecode("a", 1, dst, nullptr, kQP, 0), 0);
  EXPECT_EQ(length, 7u);
  int length2 = 7;
  const unsigned char src[] = "a";
  EXPECT_EQ(QPDecode2(nullptr, 1, dst, &length2, kQP, 0), 0);
  EXPECT_EQ(QPDecode2(src, 1, nullptr, &length2, kQP, 0), 0);
  EXPECT_EQ(QPDecode2(src, 1, dst, nullptr, kQP, 0), 0);
  EXPECT_EQ(length2, 7);
}

TEST(transfer_decode_limits, negative_length_reads_nothing) {
  const unsigned char src[] = "abc";
  char dst[1] = {'#'};
  int length = 99;
  EXPECT_EQ(QPDecode2(src, -5, dst, &length, kQP, 0), 1);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(dst[0], '#');
}

}  // namespace
}  // namespace phonepim
