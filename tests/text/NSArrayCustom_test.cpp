// The integer helpers over value arrays.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>

#include "phonepim/text/NSArrayCustom.h"

namespace phonepim {
namespace {

TEST(add_int_value, appends_integers_of_the_full_int_range) {
  Array array;
  for (int value : {1, -1, 0, INT_MIN, INT_MAX}) addIntValue(array, value);
  EXPECT_EQ(array, (Array{Value(1), Value(-1), Value(0), Value(INT_MIN), Value(INT_MAX)}));
  for (const Value& element : array) EXPECT_EQ(element.type(), Value::Type::Integer);
}

struct InsertCase {
  int index;
  std::optional<Array> expected;  // nothing: out of range
};

class insert_int_value : public ::testing::TestWithParam<InsertCase> {};

TEST_P(insert_int_value, inserts_before_the_index_up_to_the_end) {
  const Array original{Value(1), Value(2)};
  Array array = original;
  if (GetParam().expected) {
    insertIntValue(array, 9, GetParam().index);
    EXPECT_EQ(array, *GetParam().expected);
  } else {
    EXPECT_THROW(insertIntValue(array, 9, GetParam().index), std::out_of_range);
    EXPECT_EQ(array, original);
  }
}

INSTANTIATE_TEST_SUITE_P(
    table, insert_int_value,
    ::testing::Values(InsertCase{0, Array{Value(9), Value(1), Value(2)}},
                      InsertCase{1, Array{Value(1), Value(9), Value(2)}},
                      InsertCase{2, Array{Value(1), Value(2), Value(9)}},
                      InsertCase{3, std::nullopt},
                      InsertCase{-1, std::nullopt},
                      InsertCase{INT_MIN, std::nullopt}));

TEST(insert_int_value_empty, into_an_empty_array_only_at_zero) {
  Array array;
  EXPECT_THROW(insertIntValue(array, 5, 1), std::out_of_range);
  insertIntValue(array, 5, 0);
  EXPECT_EQ(array, Array{Value(5)});
}

struct SetCase {
  int index;
  std::optional<Array> expected;  // nothing: out of range
};

class set_int_value : public ::testing::TestWithParam<SetCase> {};

TEST_P(set_int_value, replaces_an_existing_element_only) {
  // The element replaced may be of any kind; it becomes an integer.
  const Array original{Value(1), Value(u"two")};
  Array array = original;
  if (GetParam().expected) {
    setIntValue(array, 7, GetParam().index);
    EXPECT_EQ(array, *GetParam().expected);
  } else {
    EXPECT_THROW(setIntValue(array, 7, GetParam().index), std::out_of_range);
    EXPECT_EQ(array, original);
  }
}

INSTANTIATE_TEST_SUITE_P(table, set_int_value,
                         ::testing::Values(SetCase{0, Array{Value(7), Value(u"two")}},
                                           SetCase{1, Array{Value(1), Value(7)}},
                                           SetCase{2, std::nullopt},
                                           SetCase{-1, std::nullopt}));

TEST(set_int_value_empty, throws_on_an_empty_array) {
  Array array;
  EXPECT_THROW(setIntValue(array, 1, 0), std::out_of_range);
  EXPECT_TRUE(array.empty());
}

struct IntValueCase {
  Value element;
  int expected;
};

class int_value_at_index : public ::testing::TestWithParam<IntValueCase> {};

TEST_P(int_value_at_index, reads_the_elements_int_value) {
  // Not alone in the array, so that the index is really used.
  const Array array{Value(u"before"), GetParam().element, Value(99)};
  EXPECT_EQ(intValueAtIndex(array, 1), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    table, int_value_at_index,
    ::testing::Values(
        IntValueCase{Value(42), 42},
        IntValueCase{Value(-42), -42},
        IntValueCase{Value(INT_MIN), INT_MIN},
        // A wider integer keeps its low 32 bits, as a number's int value does.
        IntValueCase{Value(std::int64_t{0x100000005}), 5},
        IntValueCase{Value(std::int64_t{0x80000000}), INT_MIN},
        IntValueCase{Value(std::uint64_t{0xFFFFFFFFFFFFFFFF}), -1},
        // Reals truncate toward zero and saturate.
        IntValueCase{Value(3.9), 3},
        IntValueCase{Value(-3.9), -3},
        IntValueCase{Value(1e20), INT_MAX},
        IntValueCase{Value(-1e20), INT_MIN},
        IntValueCase{Value(std::numeric_limits<double>::infinity()), INT_MAX},
        IntValueCase{Value(std::nan("")), 0},
        IntValueCase{Value(true), 1},
        IntValueCase{Value(false), 0},
        // A string's leading decimal number.
        IntValueCase{Value(u"17"), 17},
        IntValueCase{Value(u"  42abc"), 42},
        IntValueCase{Value(u"\u3000\t\n12"), 12},
        IntValueCase{Value(u"-17"), -17},
        IntValueCase{Value(u"+8"), 8},
        IntValueCase{Value(u"1 2"), 1},
        IntValueCase{Value(u"- 5"), 0},
        IntValueCase{Value(u"abc"), 0},
        IntValueCase{Value(u""), 0},
        IntValueCase{Value(u"2147483647"), INT_MAX},
        IntValueCase{Value(u"-2147483648"), INT_MIN},
        IntValueCase{Value(u"2147483648"), INT_MAX},
        IntValueCase{Value(u"-99999999999999999999999999"), INT_MIN},
        IntValueCase{Value(u"\uFF11\uFF12"), 0},
        // Anything that is not a number gives 0.
        IntValueCase{Value(Date{12.0}), 0},
        IntValueCase{Value(Bytes{'1', '2'}), 0},
        IntValueCase{Value(Array{Value(5)}), 0},
        IntValueCase{Value(Dictionary{{u"a", Value(5)}}), 0}));

TEST(int_value_at_index_bounds, throws_for_an_index_outside_the_array) {
  const Array array{Value(1), Value(2)};
  EXPECT_THROW(intValueAtIndex(array, 2), std::out_of_range);
  EXPECT_THROW(intValueAtIndex(array, -1), std::out_of_range);
  EXPECT_THROW(intValueAtIndex(Array{}, 0), std::out_of_range);
}

TEST(int_helpers, build_and_read_back_a_day_list) {
  Array days;
  addIntValue(days, 1);
  addIntValue(days, 15);
  insertIntValue(days, -1, 0);
  setIntValue(days, 31, 2);
  ASSERT_EQ(days.size(), 3u);
  EXPECT_EQ(intValueAtIndex(days, 0), -1);
  EXPECT_EQ(intValueAtIndex(days, 1), 1);
  EXPECT_EQ(intValueAtIndex(days, 2), 31);
}

}  // namespace
}  // namespace phonepim
