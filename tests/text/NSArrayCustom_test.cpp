// The integer helpers over value arrays.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "phonepim/text/NSArrayCustom.h"

namespace phonepim {
namespace {

TEST(int_array, inserts_up_to_the_end_and_sets_existing_elements_only) {
  Array days;
  addIntValue(days, 1);
  addIntValue(days, INT_MIN);
  insertIntValue(days, 9, 2);
  insertIntValue(days, -1, 0);
  EXPECT_EQ(days, (Array{Value(-1), Value(1), Value(INT_MIN), Value(9)}));
  for (const Value& day : days) EXPECT_EQ(day.type(), Value::Type::Integer);
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
  const struct {
    Value element;
    int expected;
  } rows[] = {
      {Value(-42), -42},
      // A wider integer keeps its low 32 bits, as a number's int value does.
      {Value(std::int64_t{0x100000005}), 5},
      {Value(std::uint64_t{0xFFFFFFFFFFFFFFFF}), -1},
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
