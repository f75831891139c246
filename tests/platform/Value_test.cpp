// Dynamic values: kinds, lookups, equality and the dictionary key order.
#include "phonepim/platform/Value.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <variant>
#include <vector>

namespace phonepim {
namespace {

// A narrow C string would otherwise turn into a boolean.
static_assert(!std::is_constructible_v<Value, const char*>);
static_assert(std::is_constructible_v<Value, const char16_t*>);

struct KindCase {
  Value value;
  Value::Type type;
  std::string_view name;
};

class value_kind : public ::testing::TestWithParam<KindCase> {};

TEST_P(value_kind, reports_its_type_and_name) {
  EXPECT_EQ(GetParam().value.type(), GetParam().type);
  EXPECT_EQ(TypeName(GetParam().value.type()), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    table, value_kind,
    ::testing::Values(KindCase{Value(), Value::Type::String, "string"},
                      KindCase{Value(u"x"), Value::Type::String, "string"},
                      KindCase{Value(String(u"y")), Value::Type::String, "string"},
                      KindCase{Value(7), Value::Type::Integer, "integer"},
                      KindCase{Value(0.5), Value::Type::Real, "real"},
                      KindCase{Value(true), Value::Type::Boolean, "boolean"},
                      KindCase{Value(Date{1.5}), Value::Type::Date, "date"},
                      KindCase{Value(Bytes{1, 2}), Value::Type::Data, "data"},
                      KindCase{Value(Array{}), Value::Type::Array, "array"},
                      KindCase{Value(Dictionary{}), Value::Type::Dictionary, "dictionary"}));

TEST(value, default_is_the_empty_string) {
  const Value value;
  ASSERT_TRUE(value.is<String>());
  EXPECT_EQ(value.get<String>(), u"");
}

TEST(value, accessors_answer_only_for_the_held_kind) {
  Value value(42);
  EXPECT_TRUE(value.is<std::int64_t>());
  EXPECT_FALSE(value.is<double>());
  EXPECT_FALSE(value.is<bool>());
  EXPECT_FALSE(value.is<String>());
  ASSERT_NE(value.getIf<std::int64_t>(), nullptr);
  EXPECT_EQ(*value.getIf<std::int64_t>(), 42);
  EXPECT_EQ(value.getIf<double>(), nullptr);
  EXPECT_EQ(value.getIf<String>(), nullptr);
  EXPECT_THROW(value.get<String>(), std::bad_variant_access);
  EXPECT_THROW(value.get<bool>(), std::bad_variant_access);
  // Changes through the accessors stay in the value.
  *value.getIf<std::int64_t>() = 43;
  value.get<std::int64_t>() += 1;
  EXPECT_EQ(value, Value(44));
  const Value& constant = value;
  EXPECT_EQ(constant.get<std::int64_t>(), 44);
  EXPECT_EQ(constant.getIf<Bytes>(), nullptr);
}

// --- Integers of every width are one kind ---

template <class T>
class value_integer : public ::testing::Test {};

using IntegerTypes =
    ::testing::Types<char, signed char, unsigned char, short, unsigned short, int,
                     unsigned int, long, long long, std::int8_t, std::uint8_t,
                     std::int16_t, std::uint16_t, std::int32_t, std::uint32_t,
                     std::int64_t, char16_t, char32_t, wchar_t>;
TYPED_TEST_SUITE(value_integer, IntegerTypes);

TYPED_TEST(value_integer, is_held_as_a_64_bit_integer) {
  using Limits = std::numeric_limits<TypeParam>;
  for (const TypeParam number : {Limits::min(), TypeParam{0}, TypeParam{1}, Limits::max()}) {
    const Value value(number);
    ASSERT_EQ(value.type(), Value::Type::Integer);
    EXPECT_EQ(value.get<std::int64_t>(), static_cast<std::int64_t>(number));
    EXPECT_EQ(value, Value(static_cast<std::int64_t>(number)));
  }
}

TEST(value_integer_unsigned, keeps_32_bit_unsigned_values_positive) {
  EXPECT_EQ(Value(UINT_MAX).get<std::int64_t>(), 4294967295LL);
  EXPECT_EQ(Value(std::uint64_t{1} << 62).get<std::int64_t>(), 4611686018427387904LL);
}

// --- Equality ---

struct EqualityCase {
  Value left;
  Value right;
  bool equal;
};

class value_equality : public ::testing::TestWithParam<EqualityCase> {};

TEST_P(value_equality, needs_the_same_kind_and_contents) {
  const EqualityCase& c = GetParam();
  EXPECT_EQ(c.left == c.right, c.equal);
  EXPECT_EQ(c.right == c.left, c.equal);
  EXPECT_EQ(c.left != c.right, !c.equal);
}

INSTANTIATE_TEST_SUITE_P(
    table, value_equality,
    ::testing::Values(
        EqualityCase{Value(1), Value(1LL), true},
        EqualityCase{Value(std::int8_t{5}), Value(std::uint64_t{5}), true},
        // Different kinds are never equal, however alike they look.
        EqualityCase{Value(1), Value(1.0), false},
        EqualityCase{Value(1), Value(true), false},
        EqualityCase{Value(0), Value(false), false},
        EqualityCase{Value(u"1"), Value(1), false},
        EqualityCase{Value(Date{0.0}), Value(0.0), false},
        EqualityCase{Value(Bytes{}), Value(u""), false},
        EqualityCase{Value(Array{}), Value(Dictionary{}), false},
        EqualityCase{Value(), Value(u""), true},
        EqualityCase{Value(u"a"), Value(u"A"), false},
        EqualityCase{Value(0.1 + 0.2), Value(0.3), false},
        EqualityCase{Value(Date{1.25}), Value(Date{1.25}), true},
        EqualityCase{Value(Bytes{0, 1}), Value(Bytes{0, 1}), true},
        EqualityCase{Value(Bytes{0, 1}), Value(Bytes{0}), false},
        EqualityCase{Value(Array{Value(1), Value(2)}), Value(Array{Value(1), Value(2)}), true},
        EqualityCase{Value(Array{Value(1), Value(2)}), Value(Array{Value(2), Value(1)}), false},
        EqualityCase{Value(Array{Value(1)}), Value(Array{Value(1.0)}), false},
        EqualityCase{Value(Dictionary{{u"a", Value(1)}}), Value(Dictionary{{u"a", Value(1)}}),
                     true},
        EqualityCase{Value(Dictionary{{u"a", Value(1)}}), Value(Dictionary{{u"b", Value(1)}}),
                     false},
        EqualityCase{Value(Dictionary{{u"a", Value(1)}}),
                     Value(Dictionary{{u"a", Value(1)}, {u"b", Value(2)}}), false}));

Dictionary SampleRecord() {
  return Dictionary{
      {u"com.apple.syncservices.RecordEntityName", Value(u"com.apple.contacts.Phone Number")},
      {u"value", Value(u"+81 3 1234 5678")},
      {u"primary", Value(true)},
      {u"meta",
       Value(Array{Value(Dictionary{{u"id", Value(u"A")}, {u"state", Value(1)}}),
                   Value(Dictionary{{u"id", Value(u"B")}, {u"state", Value(2)}})})},
  };
}

TEST(value_nested, compares_deeply) {
  const Value original(SampleRecord());
  Dictionary changed = SampleRecord();
  changed[u"meta"].get<Array>()[1].get<Dictionary>()[u"state"] = Value(3);
  EXPECT_EQ(original, Value(SampleRecord()));
  EXPECT_NE(original, Value(changed));
}

TEST(value_nested, copies_are_independent) {
  Value original(SampleRecord());
  Value copy = original;
  copy.get<Dictionary>()[u"meta"].get<Array>().push_back(Value(u"extra"));
  copy.get<Dictionary>()[u"value"] = Value(u"changed");
  EXPECT_EQ(original, Value(SampleRecord()));
  EXPECT_EQ(copy.get<Dictionary>()[u"meta"].get<Array>().size(), 3u);
}

TEST(dictionary, iterates_keys_in_utf16_unit_order) {
  Dictionary dictionary;
  for (const char16_t* key : {u"b", u"\uFFFF", u"a", u"\U0001F600", u"B", u"\u00E9", u"",
                              u"ab", u"A"}) {
    dictionary[key] = Value(1);
  }
  std::vector<String> keys;
  for (const auto& [key, value] : dictionary) keys.push_back(key);
  // A surrogate pair sorts before U+FFFF: units, not code points.
  EXPECT_EQ(keys, (std::vector<String>{u"", u"A", u"B", u"a", u"ab", u"b", u"\u00E9",
                                       u"\U0001F600", u"\uFFFF"}));
}

// --- Lookups ---

TEST(dictionary_find, returns_the_entry_or_null) {
  const Dictionary record = SampleRecord();
  const Value* value = Find(record, u"value");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(*value, Value(u"+81 3 1234 5678"));
  EXPECT_EQ(Find(record, u"Value"), nullptr);
  EXPECT_EQ(Find(record, u""), nullptr);
  EXPECT_EQ(Find(Dictionary{}, u"value"), nullptr);
}

TEST(dictionary_find, as_a_kind_is_null_for_another_kind) {
  const Dictionary record = SampleRecord();
  ASSERT_NE(FindAs<bool>(record, u"primary"), nullptr);
  EXPECT_TRUE(*FindAs<bool>(record, u"primary"));
  EXPECT_EQ(FindAs<std::int64_t>(record, u"primary"), nullptr);
  EXPECT_EQ(FindAs<String>(record, u"meta"), nullptr);
  EXPECT_EQ(FindAs<String>(record, u"missing"), nullptr);
  ASSERT_NE(FindAs<Array>(record, u"meta"), nullptr);
  EXPECT_EQ(FindAs<Array>(record, u"meta")->size(), 2u);
}

TEST(dictionary_find, changes_entries_in_place) {
  Dictionary record = SampleRecord();
  Value* value = Find(record, u"value");
  ASSERT_NE(value, nullptr);
  *value = Value(u"+49 30 1234");
  Array* meta = FindAs<Array>(record, u"meta");
  ASSERT_NE(meta, nullptr);
  Dictionary* first = (*meta)[0].getIf<Dictionary>();
  ASSERT_NE(first, nullptr);
  (*first)[u"state"] = Value(9);
  EXPECT_EQ(record[u"value"], Value(u"+49 30 1234"));
  EXPECT_EQ(record[u"meta"].get<Array>()[0].get<Dictionary>()[u"state"], Value(9));
  EXPECT_EQ(FindAs<Dictionary>(record, u"value"), nullptr);
}

}  // namespace
}  // namespace phonepim
