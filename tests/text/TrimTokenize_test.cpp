// TrimLeft, Trim and Tokenize: the helpers that work on the UTF-8 bytes of a
// string, plus the Unicode-aware Trim beside them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TextTestSupport.h"
#include "phonepim/text/NSStringCustom.h"

namespace phonepim {
namespace {

using namespace std::string_literals;
using testing_support::Show;
using testing_support::ShowBytes;

String Repeat(char16_t unit, std::size_t count) { return String(count, unit); }

// --- TrimLeft with the built-in set "\t \r\n" ---

struct TrimLeftCase {
  String input;
  String expected;
  friend void PrintTo(const TrimLeftCase& c, std::ostream* os) {
    *os << Show(c.input) << " -> " << Show(c.expected);
  }
};

class trim_left : public ::testing::TestWithParam<TrimLeftCase> {};

TEST_P(trim_left, skips_tab_space_cr_lf_bytes) {
  EXPECT_EQ(TrimLeft(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    table, trim_left,
    ::testing::Values(
        TrimLeftCase{u"\r\n  x", u"x"},
        TrimLeftCase{u"  \t", u""},
        TrimLeftCase{u"", u""},
        TrimLeftCase{u"x", u"x"},
        TrimLeftCase{u"x \t", u"x \t"},
        TrimLeftCase{u"\t\tabc def", u"abc def"},
        // Only those four bytes: vertical tab, form feed and the Unicode
        // spaces stay.
        TrimLeftCase{u"\v x", u"\v x"},
        TrimLeftCase{u"\f x", u"\f x"},
        TrimLeftCase{u"\u00A0x", u"\u00A0x"},
        TrimLeftCase{u"\u3000x", u"\u3000x"},
        TrimLeftCase{u"  \u65E5\u672C", u"\u65E5\u672C"},
        TrimLeftCase{u" \U0001F600 ", u"\U0001F600 "},
        // The remainder is read as a C string: it ends at the first NUL,
        // even when the NUL is the first byte kept.
        TrimLeftCase{u"  a\0b"s, u"a"},
        TrimLeftCase{u" \0abc"s, u""},
        TrimLeftCase{u"\0  a"s, u""},
        // An unpaired surrogate survives the trip through the bytes.
        TrimLeftCase{u" \xD800x", u"\xD800x"},
        TrimLeftCase{u"\t\xDC00", u"\xDC00"},
        // An 8-bit skip counter wraps from 127 to -128 and at 256 back to 0.
        TrimLeftCase{Repeat(u' ', 127) + u"x", u"x"},
        TrimLeftCase{Repeat(u' ', 128) + u"x", u"x"},
        TrimLeftCase{Repeat(u' ', 255) + u"x", u"x"},
        TrimLeftCase{Repeat(u' ', 256) + u"x", u"x"},
        TrimLeftCase{Repeat(u' ', 300) + u"x y", u"x y"},
        TrimLeftCase{Repeat(u'\n', 128), u""},
        TrimLeftCase{Repeat(u'\t', 300), u""}));

// --- TrimLeft with the caller's set ---

struct TrimLeftSetCase {
  String input;
  const char* chars;
  String expected;
  friend void PrintTo(const TrimLeftSetCase& c, std::ostream* os) {
    *os << Show(c.input) << " skipping " << ShowBytes(c.chars) << " -> "
        << Show(c.expected);
  }
};

class trim_left_set : public ::testing::TestWithParam<TrimLeftSetCase> {};

TEST_P(trim_left_set, skips_bytes_of_the_callers_set_and_keeps_the_rest) {
  EXPECT_EQ(TrimLeft(GetParam().input, GetParam().chars), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    table, trim_left_set,
    ::testing::Values(
        // The codecs' use: parameter values such as "=UTF-8" or " =x".
        TrimLeftSetCase{u"= value", "= ", u"value"},
        TrimLeftSetCase{u" ==UTF-8", "= ", u"UTF-8"},
        TrimLeftSetCase{u"== = ", "= ", u""},
        TrimLeftSetCase{u"abc", "= ", u"abc"},
        TrimLeftSetCase{u"x", "x", u""},
        TrimLeftSetCase{u"", "= ", u""},
        // The caller's set replaces the built-in one.
        TrimLeftSetCase{u"\tx", "= ", u"\tx"},
        TrimLeftSetCase{u"  x", "", u"  x"},
        TrimLeftSetCase{u"  x", nullptr, u"  x"},
        TrimLeftSetCase{u"= a\0b"s, "= ", u"a"},
        TrimLeftSetCase{Repeat(u'=', 300) + u"v", "=", u"v"},
        // Non-ASCII bytes in the set: whole characters may be skipped, but
        // stopping inside one leaves bytes that are no UTF-8 text.
        TrimLeftSetCase{u"\u00E9\u00E9x", "\xC3\xA9", u"x"},
        TrimLeftSetCase{u"\u00E9x", "\xC3", u""},
        TrimLeftSetCase{u"\u00E9x", "\xA9", u"\u00E9x"},
        TrimLeftSetCase{u"\u65E5x", "\xE6\x97", u""},
        TrimLeftSetCase{u"\u65E5x", "\xE6\x97\xA5", u"x"}));

// --- Trim ---

struct TrimCase {
  String input;
  String expected;
  friend void PrintTo(const TrimCase& c, std::ostream* os) {
    *os << Show(c.input) << " -> " << Show(c.expected);
  }
};

class trim : public ::testing::TestWithParam<TrimCase> {};

TEST_P(trim, removes_tab_and_space_separators_from_both_ends) {
  EXPECT_EQ(Trim(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    table, trim,
    ::testing::Values(
        TrimCase{u" \t x \t ", u"x"},
        TrimCase{u"a b", u"a b"},
        TrimCase{u"  a \t b  ", u"a \t b"},
        TrimCase{u"   ", u""},
        TrimCase{u"\t", u""},
        TrimCase{u"", u""},
        // Space separators (Zs) from all over the Unicode range.
        TrimCase{u"\u3000\u5168\u89D2\u3000", u"\u5168\u89D2"},
        TrimCase{u"\u00A0x\u202F", u"x"},
        TrimCase{u"\u2000\u200Ax\u205F", u"x"},
        TrimCase{u"\u1680x\u2009", u"x"},
        // Line breaks and other controls are not white space here.
        TrimCase{u"\r\nx\r\n", u"\r\nx\r\n"},
        TrimCase{u" \nx\n ", u"\nx\n"},
        TrimCase{u"\v x", u"\v x"},
        TrimCase{u"\u0085x\u0085", u"\u0085x\u0085"},
        TrimCase{u"\u2028x\u2029", u"\u2028x\u2029"},
        // Zero-width space and the BOM are format characters (Cf).
        TrimCase{u"\u200Bx\uFEFF", u"\u200Bx\uFEFF"},
        // Text is never cut inside: NULs and surrogates are kept as they are.
        TrimCase{u" a\0b "s, u"a\0b"s},
        TrimCase{u" \U0001F600 ", u"\U0001F600"},
        TrimCase{u"\xD800 ", u"\xD800"}));

TEST(is_empty, is_true_only_for_no_units) {
  EXPECT_TRUE(IsEmpty(u""));
  EXPECT_FALSE(IsEmpty(u" "));
  EXPECT_FALSE(IsEmpty(u"\0"s));
  EXPECT_FALSE(IsEmpty(u"\xDC00"));
}

// --- Tokenize ---

struct TokenizeCase {
  String input;
  const char* delimiters;
  String token;
  String next;
  friend void PrintTo(const TokenizeCase& c, std::ostream* os) {
    *os << Show(c.input) << " on " << ShowBytes(c.delimiters) << " -> token "
        << Show(c.token) << ", next " << Show(c.next);
  }
};

class tokenize : public ::testing::TestWithParam<TokenizeCase> {};

TEST_P(tokenize, splits_at_the_first_delimiter_byte) {
  const TokenizeCase& c = GetParam();
  String next = u"not written";
  EXPECT_EQ(Tokenize(c.input, c.delimiters, &next), c.token);
  EXPECT_EQ(next, c.next);
}

TEST_P(tokenize, gives_the_same_token_without_an_out_parameter) {
  const TokenizeCase& c = GetParam();
  EXPECT_EQ(Tokenize(c.input, c.delimiters, nullptr), c.token);
}

TEST_P(tokenize, may_write_the_remainder_over_its_receiver) {
  const TokenizeCase& c = GetParam();
  String text = c.input;
  EXPECT_EQ(Tokenize(text, c.delimiters, &text), c.token);
  EXPECT_EQ(text, c.next);
}

INSTANTIATE_TEST_SUITE_P(
    table, tokenize,
    ::testing::Values(
        TokenizeCase{u"A;B", ";", u"A", u"B"},
        // No delimiter: an empty token, the whole text as the remainder.
        TokenizeCase{u"B", ";", u"", u"B"},
        TokenizeCase{u"", ";", u"", u""},
        TokenizeCase{u"A;", ";", u"A", u""},
        TokenizeCase{u";A", ";", u"", u"A"},
        TokenizeCase{u";", ";", u"", u""},
        TokenizeCase{u";;", ";", u"", u";"},
        TokenizeCase{u"A;B;C", ";", u"A", u"B;C"},
        TokenizeCase{u"A,B;C", ";,", u"A", u"B;C"},
        TokenizeCase{u"A B", " \t", u"A", u"B"},
        TokenizeCase{u"A;B", "", u"", u"A;B"},
        TokenizeCase{u"A;B", nullptr, u"", u"A;B"},
        // Multi-byte characters on either side of an ASCII delimiter.
        TokenizeCase{u"\u65E5\u672C;\u8A9E", ";", u"\u65E5\u672C", u"\u8A9E"},
        TokenizeCase{u"\u00E9;\u00FC", ";", u"\u00E9", u"\u00FC"},
        TokenizeCase{u"\U0001F600;\U0001F601", ";", u"\U0001F600", u"\U0001F601"},
        TokenizeCase{u"\xD800;x", ";", u"\xD800", u"x"},
        // Token and remainder are read as C strings; the scan itself goes on
        // past a NUL, so a later delimiter is still found.
        TokenizeCase{u"a\0b;c"s, ";", u"a", u"c"},
        TokenizeCase{u"a;b\0;c"s, ";", u"a", u"b"},
        TokenizeCase{u"\0;c"s, ";", u"", u"c"},
        // Without a delimiter the remainder is a copy, NULs and all.
        TokenizeCase{u"a\0b"s, ";", u"", u"a\0b"s},
        // A non-ASCII delimiter byte can cut a character: the cut side is not
        // UTF-8 and comes back empty.
        TokenizeCase{u"\u00E9x", "\xC3", u"", u""},
        TokenizeCase{u"a\u00E9x", "\xA9", u"", u"x"},
        TokenizeCase{u"x\u65E5y", "\x97", u"", u""},
        TokenizeCase{u"x\u65E5y", "\xE6", u"x", u""},
        TokenizeCase{u"x\u65E5y", "\xA5", u"", u"y"}));

// The caller's loop: feed each remainder back in, and take the last field
// from the remainder once no delimiter is left.
std::vector<String> SplitFields(const String& text, const char* delimiters) {
  std::vector<String> fields;
  String rest = text;
  while (Find(rest, StringFromASCII(delimiters)) != kNotFound) {
    fields.push_back(Tokenize(rest, delimiters, &rest));
  }
  fields.push_back(rest);
  return fields;
}

TEST(tokenize_loop, hands_the_last_field_back_in_the_remainder_only) {
  String rest = u"a;b;c";
  std::vector<String> tokens;
  std::vector<String> remainders;
  for (int i = 0; i < 4; ++i) {
    tokens.push_back(Tokenize(rest, ";", &rest));
    remainders.push_back(rest);
  }
  EXPECT_EQ(tokens, (std::vector<String>{u"a", u"b", u"", u""}));
  EXPECT_EQ(remainders, (std::vector<String>{u"b;c", u"c", u"c", u"c"}));
}

TEST(tokenize_loop, caller_loop_that_consumes_the_remainder_gets_every_field) {
  EXPECT_EQ(SplitFields(u"a;b;c", ";"), (std::vector<String>{u"a", u"b", u"c"}));
  EXPECT_EQ(SplitFields(u"a;b;", ";"), (std::vector<String>{u"a", u"b", u""}));
  EXPECT_EQ(SplitFields(u";a", ";"), (std::vector<String>{u"", u"a"}));
  EXPECT_EQ(SplitFields(u"solo", ";"), (std::vector<String>{u"solo"}));
  EXPECT_EQ(SplitFields(u"MEETING;\u4F1A\u8B70;x", ";"),
            (std::vector<String>{u"MEETING", u"\u4F1A\u8B70", u"x"}));
}

}  // namespace
}  // namespace phonepim
