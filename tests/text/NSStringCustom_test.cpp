// Comparing, upper-casing, searching, slicing and the in-place changes.
#include <gtest/gtest.h>

#include <climits>
#include <optional>
#include <stdexcept>
#include <string>

#include "TextTestSupport.h"
#include "phonepim/text/NSStringCustom.h"

namespace phonepim {
namespace {

using namespace std::string_literals;
using testing_support::Show;

// --- Compare (case-blind) and CompareNoCase (literal) ---

struct CompareCase {
  String left;
  String right;
  int compare;          // Compare: folded case, canonical equivalence
  int compareNoCase;    // CompareNoCase: UTF-16 units as they are
  friend void PrintTo(const CompareCase& c, std::ostream* os) {
    *os << Show(c.left) << " vs " << Show(c.right);
  }
};

class compare : public ::testing::TestWithParam<CompareCase> {};

TEST_P(compare, is_case_blind_and_compare_no_case_is_literal) {
  const CompareCase& c = GetParam();
  EXPECT_EQ(Compare(c.left, c.right), c.compare);
  EXPECT_EQ(CompareNoCase(c.left, c.right), c.compareNoCase);
}

TEST_P(compare, is_antisymmetric) {
  const CompareCase& c = GetParam();
  EXPECT_EQ(Compare(c.right, c.left), -c.compare);
  EXPECT_EQ(CompareNoCase(c.right, c.left), -c.compareNoCase);
}

INSTANTIATE_TEST_SUITE_P(
    table, compare,
    ::testing::Values(
        CompareCase{u"abc", u"ABC", 0, 1},
        CompareCase{u"abc", u"abc", 0, 0},
        CompareCase{u"abc", u"abd", -1, -1},
        CompareCase{u"abd", u"ABC", 1, 1},
        // Results are -1/0/1, never the distance between the units.
        CompareCase{u"a", u"z", -1, -1},
        // Folding changes the order: "Z" sorts before "a" only literally.
        CompareCase{u"Z", u"a", 1, -1},
        CompareCase{u"", u"", 0, 0},
        CompareCase{u"", u"a", -1, -1},
        CompareCase{u"a", u"ab", -1, -1},
        CompareCase{u"AB", u"a", 1, -1},
        // Precomposed and decomposed accents are the same text.
        CompareCase{u"\u00E9", u"e\u0301", 0, 1},
        CompareCase{u"\u00C9", u"e\u0301", 0, 1},
        CompareCase{u"Caf\u00E9", u"CAFE\u0301", 0, 1},
        // The Angstrom sign decomposes canonically to A with ring.
        CompareCase{u"\u212B", u"\u00E5", 0, 1},
        // Full case folding: sharp s is "ss".
        CompareCase{u"\u00DF", u"SS", 0, 1},
        CompareCase{u"\u00DF", u"ss", 0, 1},
        CompareCase{u"stra\u00DFe", u"STRASSE", 0, 1},
        CompareCase{u"\u01C5", u"\u01C6", 0, -1},
        CompareCase{u"\u03A3", u"\u03C2", 0, -1},
        // Compatibility forms stay different: full-width A is not A.
        CompareCase{u"\uFF21", u"a", 1, 1},
        // UTF-16 unit order: a surrogate pair sorts below U+FFFF.
        CompareCase{u"\U0001F600", u"\uFFFF", -1, -1},
        CompareCase{u"a\0b"s, u"a\0B"s, 0, 1},
        CompareCase{u"\xD800" u"a", u"\xD800" u"A", 0, 1},
        CompareCase{u"\xDC00", u"\xD800", 1, 1},
        CompareCase{u"a\0b"s, u"a", 1, 1}));

// --- MakeUpper ---

struct UpperCase {
  String input;
  String expected;
  friend void PrintTo(const UpperCase& c, std::ostream* os) {
    *os << Show(c.input) << " -> " << Show(c.expected);
  }
};

class make_upper : public ::testing::TestWithParam<UpperCase> {};

TEST_P(make_upper, uses_the_full_root_mapping) {
  EXPECT_EQ(MakeUpper(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    table, make_upper,
    ::testing::Values(
        UpperCase{u"", u""},
        UpperCase{u"abc XYZ 123", u"ABC XYZ 123"},
        UpperCase{u"\u00E9\u00FC\u00E7", u"\u00C9\u00DC\u00C7"},
        UpperCase{u"stra\u00DFe", u"STRASSE"},
        // No Turkish dotted capital: the mapping is locale-independent.
        UpperCase{u"i", u"I"},
        UpperCase{u"\u01C6", u"\u01C4"},
        UpperCase{u"\uFB01", u"FI"},
        UpperCase{u"\u0149", u"\u02BCN"},
        // One unit becomes three.
        UpperCase{u"\u0390", u"\u0399\u0308\u0301"},
        UpperCase{u"\U00010428", u"\U00010400"},
        UpperCase{u"\u65E5\u672C", u"\u65E5\u672C"},
        UpperCase{u"a\0b"s, u"A\0B"s},
        UpperCase{u"\xD800" u"a", u"\xD800" u"A"},
        UpperCase{String(100, u'\u00DF'), String(200, u'S')}));

// --- Find and ReverseFind ---

struct FindCase {
  String text;
  String chars;
  int first;
  int last;
  friend void PrintTo(const FindCase& c, std::ostream* os) {
    *os << "any of " << Show(c.chars) << " in " << Show(c.text);
  }
};

class find_any : public ::testing::TestWithParam<FindCase> {};

TEST_P(find_any, finds_the_first_character_in_the_set) {
  EXPECT_EQ(Find(GetParam().text, GetParam().chars), GetParam().first);
}

TEST_P(find_any, from_index_zero_is_the_same_search) {
  EXPECT_EQ(Find(GetParam().text, GetParam().chars, 0), GetParam().first);
}

TEST_P(find_any, reverse_finds_the_last_character_in_the_set) {
  EXPECT_EQ(ReverseFind(GetParam().text, GetParam().chars), GetParam().last);
}

INSTANTIATE_TEST_SUITE_P(
    table, find_any,
    ::testing::Values(
        FindCase{u"a;b=c", u"=;", 1, 3},
        FindCase{u"a;b=c", u";=", 1, 3},
        FindCase{u"abcabc", u"cb", 1, 5},
        // A set, not a substring: "lo w" is never looked for as a whole.
        FindCase{u"hello world", u"lo w", 2, 9},
        FindCase{u"abc", u"x", kNotFound, kNotFound},
        FindCase{u"abc", u"", kNotFound, kNotFound},
        FindCase{u"", u"a", kNotFound, kNotFound},
        FindCase{u"aaa", u"a", 0, 2},
        FindCase{u"A", u"a", kNotFound, kNotFound},
        FindCase{u"\uFF83\uFF7D\uFF84;", u";", 3, 3},
        // A surrogate pair counts as two units before what follows it.
        FindCase{u"\U0001F600a=", u"=", 3, 3},
        FindCase{u"a\U0001F600b\U0001F600", u"\U0001F600", 1, 4},
        FindCase{u"\U0001F600\U0001F600", u"\U0001F600", 0, 2},
        // A pair matches only the same pair, not one sharing its lead unit.
        FindCase{u"a\U0001F601", u"\U0001F600", kNotFound, kNotFound},
        FindCase{u"a\xD83D", u"\U0001F600", kNotFound, kNotFound},
        // An unpaired surrogate matches the same unpaired surrogate only.
        FindCase{u"a\xD83D" u"b", u"\xD83D", 1, 1},
        FindCase{u"x\U0001F600", u"\xD83D", kNotFound, kNotFound},
        FindCase{u"x\U0001F600", u"\xDE00", kNotFound, kNotFound},
        FindCase{u"a\0b"s, u"\0"s, 1, 1},
        FindCase{u"a\0b"s, u"b", 2, 2}));

struct FindFromCase {
  String text;
  String chars;
  int index;
  int expected;
  friend void PrintTo(const FindFromCase& c, std::ostream* os) {
    *os << "any of " << Show(c.chars) << " in " << Show(c.text) << " from " << c.index;
  }
};

class find_from : public ::testing::TestWithParam<FindFromCase> {};

TEST_P(find_from, searches_from_the_index_to_the_end) {
  const FindFromCase& c = GetParam();
  EXPECT_EQ(Find(c.text, c.chars, c.index), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    table, find_from,
    ::testing::Values(
        FindFromCase{u"a;b;c", u";", 0, 1},
        FindFromCase{u"a;b;c", u";", 1, 1},
        FindFromCase{u"a;b;c", u";", 2, 3},
        FindFromCase{u"a;b;c", u";", 4, kNotFound},
        // The index may equal the length: nothing is left to search.
        FindFromCase{u"a;b;c", u";", 5, kNotFound},
        FindFromCase{u"", u";", 0, kNotFound},
        // Starting on the second unit of a pair: that unit stands alone.
        FindFromCase{u"\U0001F600;", u"\U0001F600;", 1, 2},
        FindFromCase{u"\U0001F600\U0001F600", u"\U0001F600", 1, 2},
        FindFromCase{u"\U0001F600", u"\xDE00", 1, 1}));

struct BadIndexCase {
  String text;
  int index;
};

class find_from_bad_index : public ::testing::TestWithParam<BadIndexCase> {};

TEST_P(find_from_bad_index, throws_out_of_range) {
  EXPECT_THROW(Find(GetParam().text, u";", GetParam().index), std::out_of_range);
}

INSTANTIATE_TEST_SUITE_P(table, find_from_bad_index,
                         ::testing::Values(BadIndexCase{u"a;b;c", 6},
                                           BadIndexCase{u"a;b;c", -1},
                                           BadIndexCase{u"a;b;c", INT_MAX},
                                           BadIndexCase{u"a;b;c", INT_MIN},
                                           BadIndexCase{u"", 1}));

TEST(get_length, counts_utf16_units) {
  EXPECT_EQ(GetLength(u""), 0);
  EXPECT_EQ(GetLength(u"abc"), 3);
  EXPECT_EQ(GetLength(u"a\U0001F600"), 3);
  EXPECT_EQ(GetLength(u"e\u0301"), 2);
  EXPECT_EQ(GetLength(u"a\0b"s), 3);
}

// --- Mid ---

struct MidCase {
  String text;
  int start;
  int length;
  std::optional<String> expected;  // nothing: out of range
  friend void PrintTo(const MidCase& c, std::ostream* os) {
    *os << "Mid(" << Show(c.text) << ", " << c.start << ", " << c.length << ")";
  }
};

class mid : public ::testing::TestWithParam<MidCase> {};

TEST_P(mid, copies_a_range_or_throws_out_of_range) {
  const MidCase& c = GetParam();
  if (c.expected) {
    EXPECT_EQ(Mid(c.text, c.start, c.length), *c.expected);
  } else {
    EXPECT_THROW(Mid(c.text, c.start, c.length), std::out_of_range);
  }
}

INSTANTIATE_TEST_SUITE_P(
    table, mid,
    ::testing::Values(
        MidCase{u"abcdef", 0, 6, u"abcdef"},
        MidCase{u"abcdef", 2, 3, u"cde"},
        MidCase{u"abcdef", 5, 1, u"f"},
        MidCase{u"abcdef", 6, 0, u""},
        MidCase{u"abcdef", 0, 0, u""},
        MidCase{u"", 0, 0, u""},
        MidCase{u"a\U0001F600b", 1, 2, u"\U0001F600"},
        MidCase{u"a\U0001F600b", 1, 1, u"\xD83D"},
        MidCase{u"a\0b"s, 1, 2, u"\0b"s},
        MidCase{u"abcdef", 5, 2, std::nullopt},
        MidCase{u"abcdef", 7, 0, std::nullopt},
        MidCase{u"abcdef", -1, 1, std::nullopt},
        MidCase{u"abcdef", 0, -1, std::nullopt},
        MidCase{u"abcdef", 0, 7, std::nullopt},
        // start + length overflows an int.
        MidCase{u"abcdef", 1, INT_MAX, std::nullopt},
        MidCase{u"abcdef", INT_MAX, 1, std::nullopt},
        MidCase{u"", 0, 1, std::nullopt}));

struct MidToEndCase {
  String text;
  int start;
  std::optional<String> expected;
  friend void PrintTo(const MidToEndCase& c, std::ostream* os) {
    *os << "Mid(" << Show(c.text) << ", " << c.start << ")";
  }
};

class mid_to_end : public ::testing::TestWithParam<MidToEndCase> {};

TEST_P(mid_to_end, copies_to_the_end_or_throws_out_of_range) {
  const MidToEndCase& c = GetParam();
  if (c.expected) {
    EXPECT_EQ(Mid(c.text, c.start), *c.expected);
  } else {
    EXPECT_THROW(Mid(c.text, c.start), std::out_of_range);
  }
}

INSTANTIATE_TEST_SUITE_P(
    table, mid_to_end,
    ::testing::Values(MidToEndCase{u"abcdef", 0, u"abcdef"},
                      MidToEndCase{u"abcdef", 3, u"def"},
                      MidToEndCase{u"abcdef", 6, u""},
                      MidToEndCase{u"", 0, u""},
                      MidToEndCase{u"\U0001F600x", 1, u"\xDE00x"},
                      MidToEndCase{u"abcdef", 7, std::nullopt},
                      MidToEndCase{u"abcdef", -1, std::nullopt},
                      MidToEndCase{u"", 1, std::nullopt}));

// --- stringWithBytes ---

struct BytesCase {
  std::string bytes;
  std::optional<String> expected;
  friend void PrintTo(const BytesCase& c, std::ostream* os) {
    *os << testing_support::ShowBytes(c.bytes.c_str()) << " (" << c.bytes.size() << " bytes)";
  }
};

class string_with_bytes : public ::testing::TestWithParam<BytesCase> {};

TEST_P(string_with_bytes, decodes_exactly_the_given_bytes_as_strict_utf8) {
  const BytesCase& c = GetParam();
  EXPECT_EQ(stringWithBytes(c.bytes.data(), c.bytes.size()), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    table, string_with_bytes,
    ::testing::Values(
        BytesCase{"abc", u"abc"},
        BytesCase{"", u""},
        BytesCase{"\xC3\xA9", u"\u00E9"},
        BytesCase{"\xE6\x97\xA5\xE6\x9C\xAC", u"\u65E5\u672C"},
        BytesCase{"\xF0\x9F\x98\x80", u"\U0001F600"},
        BytesCase{"a\0b"s, u"a\0b"s},
        BytesCase{"\xC3", std::nullopt},
        BytesCase{"\xE6\x97", std::nullopt},
        BytesCase{"\xC0\x80", std::nullopt},
        BytesCase{"\xE0\x80\xAF", std::nullopt},
        BytesCase{"\xED\xA0\x80", std::nullopt},
        BytesCase{"\xF4\x90\x80\x80", std::nullopt},
        BytesCase{"\xFF", std::nullopt},
        BytesCase{"\xA9", std::nullopt}));

TEST(string_with_bytes_bounds, reads_no_byte_past_the_length) {
  const char text[] = "abc\xC3\xA9";
  EXPECT_EQ(stringWithBytes(text, 2), u"ab");
  // Cut inside the two-byte character.
  EXPECT_EQ(stringWithBytes(text, 4), std::nullopt);
  EXPECT_EQ(stringWithBytes(text, 5), u"abc\u00E9");
}

TEST(string_with_bytes_bounds, accepts_a_null_pointer_only_for_zero_bytes) {
  EXPECT_EQ(stringWithBytes(nullptr, 0), u"");
  EXPECT_EQ(stringWithBytes(nullptr, 3), std::nullopt);
}

// --- Empty and Replace ---

TEST(empty, clears_the_string) {
  String text = u"abc\0def"s;
  Empty(text);
  EXPECT_EQ(text, u"");
  Empty(text);
  EXPECT_EQ(text, u"");
}

struct ReplaceCase {
  String text;
  String target;
  String replacement;
  String expected;
  friend void PrintTo(const ReplaceCase& c, std::ostream* os) {
    *os << Show(c.text) << ": " << Show(c.target) << " -> " << Show(c.replacement);
  }
};

class replace : public ::testing::TestWithParam<ReplaceCase> {};

TEST_P(replace, replaces_every_occurrence_left_to_right) {
  const ReplaceCase& c = GetParam();
  String text = c.text;
  Replace(text, c.target, c.replacement);
  EXPECT_EQ(text, c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    table, replace,
    ::testing::Values(
        ReplaceCase{u"a,b,c", u",", u";", u"a;b;c"},
        // Overlapping targets: matches do not overlap and are not rescanned.
        ReplaceCase{u"aaa", u"aa", u"b", u"ba"},
        ReplaceCase{u"aaaa", u"aa", u"b", u"bb"},
        ReplaceCase{u"aaaaa", u"aa", u"a", u"aaa"},
        ReplaceCase{u"abcabc", u"abc", u"abcabc", u"abcabcabcabc"},
        ReplaceCase{u"abc", u"b", u"", u"ac"},
        ReplaceCase{u"abc", u"abc", u"", u""},
        ReplaceCase{u"abc", u"", u"x", u"abc"},
        ReplaceCase{u"abc", u"x", u"y", u"abc"},
        ReplaceCase{u"", u"a", u"b", u""},
        ReplaceCase{u"abc", u"abcd", u"x", u"abc"},
        ReplaceCase{u"a;b", u";", u"\\;", u"a\\;b"},
        ReplaceCase{u"line=0D=0Anext", u"=0D=0A", u"\r\n", u"line\r\nnext"},
        // Case-sensitive and unit for unit.
        ReplaceCase{u"ABC abc", u"abc", u"x", u"ABC x"},
        ReplaceCase{u"caf\u00E9", u"e\u0301", u"E", u"caf\u00E9"},
        ReplaceCase{u"\u65E5\u672C\u65E5\u672C", u"\u65E5\u672C", u"x", u"xx"},
        ReplaceCase{u"a\0b\0c"s, u"\0"s, u"-", u"a-b-c"}));

TEST(replace_aliasing, may_take_its_own_string_as_target_or_replacement) {
  String text = u"aXa";
  Replace(text, text, u"x");
  EXPECT_EQ(text, u"x");
  text = u"aXa";
  Replace(text, u"a", text);
  EXPECT_EQ(text, u"aXaXaXa");
}

// --- set and deleteAtIndex ---

struct SetCase {
  String text;
  char byte;
  int index;
  std::optional<String> expected;  // nothing: out of range
  friend void PrintTo(const SetCase& c, std::ostream* os) {
    *os << "set(" << Show(c.text) << ", 0x" << std::hex
        << static_cast<unsigned>(static_cast<unsigned char>(c.byte)) << std::dec << ", "
        << c.index << ")";
  }
};

class set_at_index : public ::testing::TestWithParam<SetCase> {};

TEST_P(set_at_index, replaces_one_unit_with_a_one_byte_string) {
  const SetCase& c = GetParam();
  String text = c.text;
  if (c.expected) {
    set(text, c.byte, c.index);
    EXPECT_EQ(text, *c.expected);
  } else {
    EXPECT_THROW(set(text, c.byte, c.index), std::out_of_range);
    EXPECT_EQ(text, c.text);
  }
}

INSTANTIATE_TEST_SUITE_P(
    table, set_at_index,
    ::testing::Values(
        SetCase{u"abc", 'X', 1, u"aXc"},
        SetCase{u"abc", 'z', 2, u"abz"},
        SetCase{u"abc", '\0', 0, u"\0bc"s},
        // A byte above 0x7F is no UTF-8 text on its own: the unit goes away.
        SetCase{u"abc", '\xC3', 1, u"ac"},
        SetCase{u"abc", '\xFF', 0, u"bc"},
        SetCase{u"\U0001F600", 'x', 0, u"x\xDE00"},
        SetCase{u"abc", 'X', 3, std::nullopt},
        SetCase{u"abc", 'X', -1, std::nullopt},
        SetCase{u"", 'X', 0, std::nullopt}));

struct DeleteCase {
  String text;
  int index;
  int length;
  std::optional<String> expected;  // nothing: out of range
  friend void PrintTo(const DeleteCase& c, std::ostream* os) {
    *os << "deleteAtIndex(" << Show(c.text) << ", " << c.index << ", " << c.length << ")";
  }
};

class delete_range : public ::testing::TestWithParam<DeleteCase> {};

TEST_P(delete_range, deletes_the_units_or_throws_and_keeps_the_string) {
  const DeleteCase& c = GetParam();
  String text = c.text;
  if (c.expected) {
    deleteAtIndex(text, c.index, c.length);
    EXPECT_EQ(text, *c.expected);
  } else {
    EXPECT_THROW(deleteAtIndex(text, c.index, c.length), std::out_of_range);
    EXPECT_EQ(text, c.text);
  }
}

INSTANTIATE_TEST_SUITE_P(
    table, delete_range,
    ::testing::Values(DeleteCase{u"abcdef", 1, 2, u"adef"},
                      DeleteCase{u"abcdef", 0, 6, u""},
                      DeleteCase{u"abcdef", 6, 0, u"abcdef"},
                      DeleteCase{u"abcdef", 5, 1, u"abcde"},
                      DeleteCase{u"a\U0001F600b", 1, 2, u"ab"},
                      DeleteCase{u"abcdef", 4, 3, std::nullopt},
                      DeleteCase{u"abcdef", 7, 0, std::nullopt},
                      DeleteCase{u"abcdef", -1, 1, std::nullopt},
                      DeleteCase{u"abcdef", 0, -1, std::nullopt},
                      DeleteCase{u"abcdef", 1, INT_MAX, std::nullopt},
                      DeleteCase{u"", 0, 1, std::nullopt}));

TEST(delete_at_index, deletes_one_unit) {
  String text = u"abc";
  deleteAtIndex(text, 2);
  EXPECT_EQ(text, u"ab");
  deleteAtIndex(text, 0);
  EXPECT_EQ(text, u"b");
  // Half of a surrogate pair: the other half stays behind.
  text = u"\U0001F600";
  deleteAtIndex(text, 0);
  EXPECT_EQ(text, u"\xDE00");
}

TEST(delete_at_index, throws_for_an_index_outside_the_string) {
  String text = u"abc";
  EXPECT_THROW(deleteAtIndex(text, 3), std::out_of_range);
  EXPECT_THROW(deleteAtIndex(text, -1), std::out_of_range);
  EXPECT_EQ(text, u"abc");
  String empty;
  EXPECT_THROW(deleteAtIndex(empty, 0), std::out_of_range);
}

}  // namespace
}  // namespace phonepim
