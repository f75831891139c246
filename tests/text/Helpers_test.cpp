// The string and integer-array helpers. TrimLeft and Tokenize work on the
// UTF-8 bytes, so their rows cover one-, two-, three- and four-byte
// characters, unpaired surrogates and delimiter bytes that cut a character.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "phonepim/text/NSArrayCustom.h"
#include "phonepim/text/NSStringCustom.h"

namespace phonepim {
namespace {

using namespace std::string_literals;

TEST(trim_left, skips_the_callers_bytes_or_tab_space_cr_lf) {
  // chars "builtin": the one-argument form.
  const struct { String input; const char* chars; String expected; } rows[] = {
      {u"\r\n \t\u00E9 x", "builtin", u"\u00E9 x"},
      {u"  \t", "builtin", u""},
      // Only those four bytes: vertical tab and Unicode spaces stay.
      {u"\v x", "builtin", u"\v x"},
      // The remainder is read as a C string, up to the first NUL.
      {u"  a\0b"s, "builtin", u"a"},
      {u" \xD800\u65E5\U0001F600", "builtin", u"\xD800\u65E5\U0001F600"},
      // A narrow skip counter would wrap after 127 bytes.
      {String(300, u' ') + u"x y", "builtin", u"x y"},
      {u" ==UTF-8", "= ", u"UTF-8"},
      {u"\tx", "= ", u"\tx"},
      {u"  x", nullptr, u"  x"},
      {u"\u00E9\u00E9x", "\xC3\xA9", u"x"},
      // Stopping inside a character leaves bytes that are no UTF-8 text.
      {u"\u00E9x", "\xC3", u""},
  };
  for (const auto& r : rows) {
    const bool builtin = r.chars != nullptr && std::string(r.chars) == "builtin";
    EXPECT_EQ(builtin ? TrimLeft(r.input) : TrimLeft(r.input, r.chars), r.expected) << &r - rows;
  }
}

TEST(trim, removes_tab_and_space_separators_from_both_ends) {
  const struct { String input, expected; } rows[] = {
      {u" \t a \t b \t ", u"a \t b"},
      {u"   ", u""},
      {u"\u3000\u5168\u3000", u"\u5168"},
      {u"\u00A0x\u202F", u"x"},
      // Line breaks, controls and format characters are not white space.
      {u" \nx\r\n", u"\nx\r\n"},
      {u"\u200Bx\uFEFF", u"\u200Bx\uFEFF"},
      {u" a\0b "s, u"a\0b"s},
  };
  for (const auto& r : rows) EXPECT_EQ(Trim(r.input), r.expected) << &r - rows;
  EXPECT_TRUE(IsEmpty(u""));
  EXPECT_FALSE(IsEmpty(u"\0"s));
}

TEST(tokenize, splits_at_the_first_delimiter_byte) {
  const struct { String input; const char* delimiters; String token, next; } rows[] = {
      {u"A;B;C", ";", u"A", u"B;C"},
      // No delimiter: an empty token, the whole text as the remainder.
      {u"a\0b"s, ";", u"", u"a\0b"s},
      {u"A,B;C", ";,", u"A", u"B;C"},
      {u"A;B", nullptr, u"", u"A;B"},
      {u"\u65E5\U0001F600;\u00E9\xD800", ";", u"\u65E5\U0001F600", u"\u00E9\xD800"},
      // Token and remainder are C strings; the scan goes on past a NUL.
      {u"a\0b;c"s, ";", u"a", u"c"},
      {u"a;b\0;c"s, ";", u"a", u"b"},
      // A non-ASCII delimiter byte can cut a character: the cut side is not
      // UTF-8 and comes back empty.
      {u"\u00E9x", "\xC3", u"", u""},
      {u"x\u65E5y", "\xE6", u"x", u""},
      {u"x\u65E5y", "\xA5", u"", u"y"},
  };
  for (const auto& r : rows) {
    String next = u"not written";
    EXPECT_EQ((std::pair{Tokenize(r.input, r.delimiters, &next), next}), std::pair(r.token, r.next)) << &r - rows;
    EXPECT_EQ(Tokenize(r.input, r.delimiters, nullptr), r.token) << &r - rows;
    // The remainder may be written over the receiver.
    String text = r.input;
    Tokenize(text, r.delimiters, &text);
    EXPECT_EQ(text, r.next) << &r - rows;
  }
}

TEST(compare, is_case_blind_and_compare_no_case_is_literal) {
  const struct { String left, right; int compare, literal; } rows[] = {
      {u"abc", u"ABC", 0, 1},
      // -1/0/1, never the distance between the units.
      {u"a", u"z", -1, -1},
      // Folding changes the order: "Z" sorts before "a" only literally.
      {u"Z", u"a", 1, -1},
      {u"AB", u"a", 1, -1},
      // Canonical equivalence and full folding.
      {u"Caf\u00E9", u"CAFE\u0301", 0, 1},
      {u"stra\u00DFe", u"STRASSE", 0, 1},
      {u"\uFF21", u"a", 1, 1},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(Compare(r.left, r.right), r.compare) << &r - rows;
    EXPECT_EQ(Compare(r.right, r.left), -r.compare) << &r - rows;
    EXPECT_EQ(CompareNoCase(r.left, r.right), r.literal) << &r - rows;
  }
}

TEST(make_upper, uses_the_full_locale_independent_mapping) {
  const struct { String input, expected; } rows[] = {
      {u"", u""},
      {u"abc \u00E9 i 123", u"ABC \u00C9 I 123"},
      // Growing text: the buffer is sized again.
      {String(100, u'\u00DF'), String(200, u'S')},
      {u"\u0390", u"\u0399\u0308\u0301"},
      {u"\U00010428a\0b"s, u"\U00010400A\0B"s},
  };
  for (const auto& r : rows) EXPECT_EQ(MakeUpper(r.input), r.expected) << &r - rows;
}

TEST(find, finds_the_first_and_last_code_point_of_a_set_from_an_index) {
  const struct { String text, chars; int first, last; } rows[] = {
      // A set, not a substring.
      {u"hello world", u"lo w", 2, 9},
      {u"abc", u"", kNotFound, kNotFound},
      {u"A", u"a", kNotFound, kNotFound},
      // A surrogate pair counts as two units and matches only itself.
      {u"a\U0001F600b\U0001F600", u"\U0001F600", 1, 4},
      {u"a\U0001F601\xD83D", u"\U0001F600", kNotFound, kNotFound},
      {u"a\xD83D" u"b", u"\xD83D", 1, 1},
      {u"x\U0001F600", u"\xDE00", kNotFound, kNotFound},
      {u"a\0b"s, u"\0"s, 1, 1},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(std::pair(Find(r.text, r.chars), ReverseFind(r.text, r.chars)), std::pair(r.first, r.last)) << &r - rows;
  }
  EXPECT_EQ(GetLength(u"a\U0001F600"), 3);
  // From an index, which may equal the length; a search that starts on the
  // second unit of a pair sees that unit alone.
  EXPECT_EQ((std::vector{Find(u"a;b;c", u";", 2), Find(u"a;b;c", u";", 5), Find(u"\U0001F600;", u"\U0001F600;", 1),
                         Find(u"\U0001F600", u"\xDE00", 1)}),
            (std::vector{3, kNotFound, 2, 1}));
  EXPECT_THROW(Find(u"a;b;c", u";", 6), std::out_of_range);
  EXPECT_THROW(Find(u"a;b;c", u";", -1), std::out_of_range);
}

// Mid, deleteAtIndex and set share the range check: the range may end at the
// end of the string, never past it, and a bad range changes nothing.
TEST(range, mid_delete_and_set_accept_ranges_inside_the_string_only) {
  // mid and deleted nothing: out of range.
  const struct { String text; int start, length; std::optional<String> mid, deleted; } rows[] = {
      {u"abcdef", 2, 3, u"cde", u"abf"},
      {u"abcdef", 6, 0, u"", u"abcdef"},
      {u"a\U0001F600b", 1, 1, u"\xD83D", u"a\xDE00" u"b"},
      {u"abcdef", 5, 2, std::nullopt, std::nullopt},
      {u"abcdef", -1, 1, std::nullopt, std::nullopt},
      {u"abcdef", 0, -1, std::nullopt, std::nullopt},
      // start + length overflows an int.
      {u"abcdef", 1, INT_MAX, std::nullopt, std::nullopt},
  };
  for (const auto& r : rows) {
    String text = r.text;
    if (r.mid) {
      EXPECT_EQ(Mid(r.text, r.start, r.length), *r.mid) << &r - rows;
      deleteAtIndex(text, r.start, r.length);
      EXPECT_EQ(text, *r.deleted) << &r - rows;
    } else {
      EXPECT_THROW(Mid(r.text, r.start, r.length), std::out_of_range) << &r - rows;
      EXPECT_THROW(deleteAtIndex(text, r.start, r.length), std::out_of_range) << &r - rows;
      EXPECT_EQ(text, r.text) << &r - rows;
    }
  }
  EXPECT_EQ(Mid(u"\U0001F600x", 1), u"\xDE00x");
  EXPECT_EQ(Mid(u"abc", 3), u"");
  EXPECT_THROW(Mid(u"abc", 4), std::out_of_range);
  String text = u"abc";
  deleteAtIndex(text, 2);
  EXPECT_EQ(text, u"ab");
  EXPECT_THROW(deleteAtIndex(text, 2), std::out_of_range);

  // set puts a one-byte string in place of one unit; a byte above 0x7F is no
  // UTF-8 text on its own, so the unit just goes away.
  text = u"abc";
  set(text, 'X', 1);
  EXPECT_EQ(text, u"aXc");
  set(text, '\xC3', 1);
  EXPECT_EQ(text, u"ac");
  EXPECT_THROW(set(text, 'X', 2), std::out_of_range);
  EXPECT_EQ(text, u"ac");
}

TEST(string_with_bytes, decodes_exactly_the_given_bytes_as_strict_utf8) {
  const struct { const char* bytes; std::size_t length; std::optional<String> expected; } rows[] = {
      {"a\0\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80", 11, u"a\0\u00E9\u65E5\U0001F600"s},
      {"\xC3", 1, std::nullopt},
      {"\xC0\x80", 2, std::nullopt},
      {"\xED\xA0\x80", 3, std::nullopt},
      // No byte past the length is read: cut inside the two-byte character.
      {"abc\xC3\xA9", 4, std::nullopt},
      {nullptr, 0, u""},
      {nullptr, 3, std::nullopt},
  };
  for (const auto& r : rows) EXPECT_EQ(stringWithBytes(r.bytes, r.length), r.expected) << &r - rows;
}

TEST(replace, replaces_every_occurrence_left_to_right) {
  const struct { String text, target, replacement, expected; } rows[] = {
      {u"a,b,c", u",", u";", u"a;b;c"},
      // Matches do not overlap and are not rescanned.
      {u"aaaaa", u"aa", u"a", u"aaa"},
      {u"abcabc", u"abc", u"abcabc", u"abcabcabcabc"},
      {u"abc", u"", u"x", u"abc"},
      {u"ABC abc", u"abc", u"x", u"ABC x"},
      {u"a\0b\0c"s, u"\0"s, u"-", u"a-b-c"},
  };
  for (const auto& r : rows) {
    String text = r.text;
    Replace(text, r.target, r.replacement);
    EXPECT_EQ(text, r.expected) << &r - rows;
  }
  // Its own string as target or replacement.
  String text = u"aXa";
  Replace(text, u"a", text);
  EXPECT_EQ(text, u"aXaXaXa");
  Empty(text);
  EXPECT_EQ(text, u"");
}

TEST(int_array, inserts_up_to_the_end_and_sets_existing_elements_only) {
  Array days;
  addIntValue(days, 1);
  addIntValue(days, INT_MIN);
  insertIntValue(days, 9, 2);
  insertIntValue(days, -1, 0);
  EXPECT_EQ(days, (Array{Value(-1), Value(1), Value(INT_MIN), Value(9)}));
  setIntValue(days, 31, 3);
  EXPECT_EQ(intValueAtIndex(days, 3), 31);
  const Array before = days;
  EXPECT_THROW(insertIntValue(days, 9, 5), std::out_of_range);
  EXPECT_THROW(insertIntValue(days, 9, -1), std::out_of_range);
  EXPECT_THROW(setIntValue(days, 7, 4), std::out_of_range);
  EXPECT_THROW(intValueAtIndex(days, 4), std::out_of_range);
  EXPECT_THROW(intValueAtIndex(days, -1), std::out_of_range);
  EXPECT_EQ(days, before);
}

TEST(int_array, reads_the_int_value_of_any_element) {
  const struct { Value element; int expected; } rows[] = {
      {Value(-42), -42},
      // A wider integer keeps its low 32 bits, as a number's int value does.
      {Value(std::int64_t{0x100000005}), 5},
      // Reals truncate toward zero and saturate.
      {Value(-3.9), -3},
      {Value(1e20), INT_MAX},
      {Value(-1e20), INT_MIN},
      {Value(std::nan("")), 0},
      {Value(true), 1},
      {Value(false), 0},
      // A string's leading decimal number.
      {Value(u"\u3000\t42abc"), 42},
      {Value(u"-17"), -17},
      {Value(u"+8"), 8},
      {Value(u"- 5"), 0},
      {Value(u""), 0},
      {Value(u"-2147483648"), INT_MIN},
      {Value(u"2147483648"), INT_MAX},
      {Value(u"-99999999999999999999999999"), INT_MIN},
      {Value(u"\uFF11\uFF12"), 0},
      {Value(Bytes{'1', '2'}), 0},
  };
  for (const auto& r : rows) {
    // Not alone in the array, so that the index is really used.
    EXPECT_EQ(intValueAtIndex(Array{Value(u"7"), r.element}, 1), r.expected) << &r - rows;
  }
}

}  // namespace
}  // namespace phonepim
