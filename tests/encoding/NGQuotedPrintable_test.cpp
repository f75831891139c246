// The phone-side quoted-printable pair: NGDecodeQuotedPrintableX (what the
// readers use) and the header-word encoder NGEncodeQuotedPrintable.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "phonepim/encoding/NGQuotedPrintableCoding.h"

namespace phonepim {
namespace {

using namespace std::string_literals;

struct DecodeOutcome {
  int result;
  std::string bytes;  // the first `result` bytes of the destination
  bool operator==(const DecodeOutcome&) const = default;
};

void PrintTo(const DecodeOutcome& o, std::ostream* os) {
  *os << o.result << " \"" << testing::PrintToString(o.bytes) << "\"";
}

// The source sits in a heap buffer of srcLen + 1 bytes whose last byte is
// `past`, the only byte beyond the source the decoder may read; the
// destination is exactly dstLen bytes.
DecodeOutcome DecodeNG(const std::string& src, char past, unsigned int dstLen,
                       signed char underscoreIsSpace) {
  std::vector<char> source(src.begin(), src.end());
  source.push_back(past);
  std::vector<char> dst(dstLen == 0 ? 1 : dstLen);
  const int result = NGDecodeQuotedPrintableX(source.data(),
                                              static_cast<unsigned int>(src.size()),
                                              dst.data(), dstLen, underscoreIsSpace);
  if (result < 0) return {result, ""};
  return {result, std::string(dst.data(), static_cast<std::size_t>(result))};
}

struct NGDecodeCase {
  const char* name;
  std::string src;
  signed char underscoreIsSpace;
  int expectedResult;
  std::string expected;
  char past = '\0';
  int dstLen = -1;  // -1: the source length
};

void PrintTo(const NGDecodeCase& c, std::ostream* os) { *os << c.name; }

class ng_decode : public testing::TestWithParam<NGDecodeCase> {};

TEST_P(ng_decode, gives_exact_bytes) {
  const NGDecodeCase& c = GetParam();
  const unsigned int dstLen = c.dstLen < 0 ? static_cast<unsigned int>(c.src.size())
                                           : static_cast<unsigned int>(c.dstLen);
  EXPECT_EQ(DecodeNG(c.src, c.past, dstLen, c.underscoreIsSpace),
            (DecodeOutcome{c.expectedResult, c.expected}));
}

INSTANTIATE_TEST_SUITE_P(
    cases, ng_decode,
    testing::ValuesIn(std::vector<NGDecodeCase>{
        {"empty", "", 1, 0, ""},
        {"plain_text", "Hello World", 1, 11, "Hello World"},
        {"lower_hex_and_underscore", "A=3d_b", 1, 4, "A= b"},
        {"underscore_kept_without_flag", "A=3d_b", 0, 4, "A=_b"},
        {"only_underscores", "__", 1, 2, "  "},
        {"escaped_underscore_stays", "=5F", 1, 1, "_"},
        {"utf8_escapes", "=C3=A9", 1, 2, "\xC3\xA9"},
        {"utf8_escapes_lower", "=c3=a9", 1, 2, "\xC3\xA9"},
        {"escaped_equals", "=3D", 1, 1, "="},
        {"hard_line_end_kept", "a\r\nb", 1, 4, "a\r\nb"},
        {"invalid_escape_kept_as_text", "=ZZ", 1, 2, "ZZ"},
        {"half_invalid_escape", "=3G", 1, 2, "3G"},
        {"letter_then_digit_invalid", "=G1", 1, 2, "G1"},
        // The second character of "==" is looked at as the first digit.
        {"equals_before_escape", "==41", 1, 3, "=41"},
        {"trailing_equals_fails", "abc=", 1, -1, ""},
        {"lone_equals_fails", "=", 1, -1, ""},
        {"soft_break_crlf", "line=\r\nnext", 1, 8, "linenext"},
        {"soft_break_lf", "line=\nnext", 1, 8, "linenext"},
        {"soft_break_cr", "line=\rnext", 1, 8, "linenext"},
        {"soft_break_eats_two_lfs", "a=\n\nb", 1, 2, "ab"},
        {"soft_break_eats_two_crs", "a=\r\rb", 1, 2, "ab"},
        {"soft_break_eats_lf_cr", "a=\n\rb", 1, 2, "ab"},
        {"soft_break_then_hard_line_end", "a=\r\n\r\nb", 1, 4, "a\r\nb"},
        {"soft_break_alone_crlf", "=\r\n", 1, 0, ""},
        {"soft_break_alone_lf", "=\n", 1, 0, ""},
        {"soft_break_alone_cr", "=\r", 1, 0, ""},
        {"soft_break_at_end", "ab=\r\n", 1, 2, "ab"},
        {"escape_split_by_soft_break", "a=C3=\r\n=A9", 1, 3, "a\xC3\xA9"},
        // "=X" at the very end takes its second digit from the byte after
        // the source.
        {"second_digit_read_past_end", "=4", 1, 1, "A", '1'},
        {"second_digit_past_end_is_nul", "=4", 1, 2, "4\0"s},
        {"invalid_escape_emits_terminator", "x=Z", 1, 3, "xZ\0"s},
        {"soft_break_cr_then_past_lf", "a=\r", 1, 1, "a", '\n'},
        {"source_shorter_than_destination", "abc", 1, -1, "", '\0', 4},
        {"destination_too_short", "abcd", 1, -1, "", '\0', 2},
        {"short_destination_that_fits", "=41=42", 1, 2, "AB", '\0', 2},
        {"no_room_for_invalid_escape", "ab=ZZ", 1, -1, "", '\0', 3},
        {"room_for_invalid_escape", "ab=ZZ", 1, 4, "abZZ", '\0', 4},
        {"zero_destination", "abc", 1, -1, "", '\0', 0},
    }),
    [](const testing::TestParamInfo<NGDecodeCase>& info) { return info.param.name; });

TEST(ng_decode_quoted_printable, reads_underscore_as_space) {
  char src[] = "a_=41";
  char dst[5];
  EXPECT_EQ(NGDecodeQuotedPrintable(src, 5, dst, 5), 3);
  EXPECT_EQ(std::string(dst, 3), "a A");
}

TEST(ng_decode_quoted_printable, takes_any_non_zero_flag_as_underscore_rule) {
  EXPECT_EQ(DecodeNG("_", '\0', 1, -1).bytes, " ");
  EXPECT_EQ(DecodeNG("_", '\0', 1, 2).bytes, " ");
}

struct NGEncodeCase {
  const char* name;
  std::string src;
  int expectedResult;
  std::string expected;
  int dstLen = -1;  // -1: three times the source
};

void PrintTo(const NGEncodeCase& c, std::ostream* os) { *os << c.name; }

class ng_encode : public testing::TestWithParam<NGEncodeCase> {};

TEST_P(ng_encode, gives_exact_bytes) {
  const NGEncodeCase& c = GetParam();
  const unsigned int dstLen = c.dstLen < 0 ? static_cast<unsigned int>(3 * c.src.size())
                                           : static_cast<unsigned int>(c.dstLen);
  std::vector<char> dst(dstLen == 0 ? 1 : dstLen);
  const int result = NGEncodeQuotedPrintable(
      c.src.data(), static_cast<unsigned int>(c.src.size()), dst.data(), dstLen);
  ASSERT_EQ(result, c.expectedResult);
  if (result >= 0) {
    EXPECT_EQ(std::string(dst.data(), static_cast<std::size_t>(result)), c.expected);
  }
}

INSTANTIATE_TEST_SUITE_P(
    cases, ng_encode,
    testing::ValuesIn(std::vector<NGEncodeCase>{
        {"empty", "", 0, ""},
        {"spaces_literal", "Hello World", 11, "Hello World"},
        {"underscore_escaped", "a_b", 5, "a=5Fb"},
        {"equals_escaped", "a=b", 5, "a=3Db"},
        {"line_ends_and_tab_literal", "\t\r\n", 3, "\t\r\n"},
        {"printable_edges", " <>~", 4, " <>~"},
        {"controls_and_high_bytes", "\x7F\x80\xFF\x1F"s + '\0', 15, "=7F=80=FF=1F=00"},
        {"no_line_limit", std::string(200, 'a'), 200, std::string(200, 'a')},
        {"destination_shorter_than_source", "abc", -1, "", 2},
        {"exact_room_for_literals", "abc", 3, "abc", 3},
        {"no_room_for_escape", "\xC3\xA9", -1, "", 2},
        {"room_for_one_escape", "\xC3\xA9", -1, "", 5},
        {"room_for_both_escapes", "\xC3\xA9", 6, "=C3=A9", 6},
    }),
    [](const testing::TestParamInfo<NGEncodeCase>& info) { return info.param.name; });

}  // namespace
}  // namespace phonepim
