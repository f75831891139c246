// Dynamic values: kinds, equality, the dictionary key order and lookups.
#include "phonepim/platform/Value.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace phonepim {
namespace {

// A narrow C string would otherwise turn into a boolean.
static_assert(!std::is_constructible_v<Value, const char*>);

TEST(value, names_its_kind_and_holds_every_integer_width_as_one) {
  const struct {
    Value value;
    std::string_view name;
  } rows[] = {{Value(), "string"},          {Value(std::uint8_t{7}), "integer"},
              {Value(0.5), "real"},         {Value(true), "boolean"},
              {Value(Date{1.5}), "date"},   {Value(Bytes{1}), "data"},
              {Value(Array{}), "array"},    {Value(Dictionary{}), "dictionary"}};
  for (const auto& r : rows) EXPECT_EQ(TypeName(r.value.type()), r.name);
  EXPECT_EQ(Value(UINT_MAX).get<std::int64_t>(), 4294967295LL);
  EXPECT_EQ(Value(char16_t{0xFFFF}), Value(0xFFFF));
}

TEST(value, equal_only_with_the_same_kind_and_contents) {
  const struct {
    Value left, right;
    bool equal;
  } rows[] = {
      {Value(std::int8_t{5}), Value(std::uint64_t{5}), true},
      {Value(1), Value(1.0), false},
      {Value(0), Value(false), false},
      {Value(Date{0.0}), Value(0.0), false},
      {Value(Bytes{}), Value(u""), false},
      {Value(Array{Value(1), Value(2)}), Value(Array{Value(2), Value(1)}), false},
      {Value(Dictionary{{u"a", 1}}), Value(Dictionary{{u"b", 1}}), false},
      {Value(Dictionary{{u"a", Array{Value(u"x")}}}), Value(Dictionary{{u"a", Array{Value(u"x")}}}), true},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(std::pair(r.left == r.right, r.right != r.left), std::pair(r.equal, !r.equal)) << &r - rows;
  }
}

TEST(dictionary, iterates_keys_in_utf16_unit_order) {
  Dictionary dictionary;
  for (const char16_t* key : {u"b", u"\uFFFF", u"a", u"\U0001F600", u"B", u""}) dictionary[key] = 1;
  std::vector<String> keys;
  for (const auto& [key, value] : dictionary) keys.push_back(key);
  // A surrogate pair sorts before U+FFFF: units, not code points.
  EXPECT_EQ(keys, (std::vector<String>{u"", u"B", u"a", u"b", u"\U0001F600", u"\uFFFF"}));
}

TEST(dictionary, find_gives_the_entry_to_change_in_place_or_null) {
  Dictionary record{{u"value", u"+81 3 1234 5678"}, {u"meta", Array{Value(1)}}};
  const Dictionary& constant = record;
  EXPECT_EQ(Find(constant, u"Value"), nullptr);
  EXPECT_EQ(*Find(constant, u"value"), Value(u"+81 3 1234 5678"));
  EXPECT_EQ(FindAs<String>(record, u"meta"), nullptr);
  *Find(record, u"value") = u"+49";
  FindAs<Array>(record, u"meta")->push_back(Value(2));
  EXPECT_EQ(record, (Dictionary{{u"value", u"+49"}, {u"meta", Array{Value(1), Value(2)}}}));
}

}  // namespace
}  // namespace phonepim
