#include "phonepim/model/CItem.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "phonepim/model/CEmail.h"
#include "phonepim/model/CMessengerID.h"
#include "phonepim/model/CNote.h"
#include "phonepim/model/CTelephoneNumber.h"
#include "phonepim/model/CURL.h"
#include "phonepim/model/CXItem.h"

namespace phonepim {
namespace {

TEST(CItem, init_gives_no_id_no_type_and_empty_text) {
  const CItem item;
  EXPECT_EQ(item.thisID(), -1);
  EXPECT_EQ(item.Param(), 0u);
  EXPECT_EQ(item.Data(), u"");
  ASSERT_NE(item.DataObject(), nullptr);
}

struct TextCase {
  const char* name;
  const char* utf8;
  String expected;
};

// Initialisers and setters take UTF-8 C strings.
const TextCase kTexts[] = {
    {"ascii", "+49 30 1234", u"+49 30 1234"},
    {"two_byte", "Caf\xC3\xA9", u"Caf\u00E9"},
    {"three_byte", "\xE8\x87\xAA\xE5\xAE\x85", u"\u81EA\u5B85"},
    {"four_byte", "\xF0\x9F\x93\x9E", u"\U0001F4DE"},
    {"empty", "", u""},
    {"null", nullptr, u""},
    {"truncated_sequence", "ab\xC3", u""},
    {"latin1_byte", "Caf\xE9", u""},
};

class item_text : public ::testing::TestWithParam<TextCase> {};

TEST_P(item_text, init_parameter_theID_reads_utf8) {
  const CItem item(GetParam().utf8, 0x12345678u, 42);
  EXPECT_EQ(item.Data(), GetParam().expected);
  EXPECT_EQ(item.GetValue(), GetParam().expected);
  EXPECT_EQ(item.Param(), 0x12345678u);
  EXPECT_EQ(item.thisID(), 42);
}

TEST_P(item_text, setters_read_utf8) {
  CItem item("old", 0, 0);
  item.SetValue(GetParam().utf8);
  EXPECT_EQ(item.Data(), GetParam().expected);
  item.setDataWithString(u"old");
  item.setData(GetParam().utf8);
  EXPECT_EQ(item.Data(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, item_text, ::testing::ValuesIn(kTexts),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CItem, every_setter_puts_in_a_new_value_object) {
  CItem item("555", 0, 0);
  const std::shared_ptr<const String> before = item.DataObject();
  item.SetValue("555");
  EXPECT_NE(item.DataObject(), before);
  const std::shared_ptr<const String> afterSetValue = item.DataObject();
  item.setData("555");
  EXPECT_NE(item.DataObject(), afterSetValue);
  const std::shared_ptr<const String> afterSetData = item.DataObject();
  item.setDataWithString(u"555");
  EXPECT_NE(item.DataObject(), afterSetData);
  EXPECT_EQ(*before, u"555");
}

TEST(CItem, copy_shares_the_value_object_until_set_again) {
  CItem original("555", 3, 4);
  CItem copy = original;
  EXPECT_EQ(copy.DataObject(), original.DataObject());
  copy.setDataWithString(u"666");
  EXPECT_EQ(original.Data(), u"555");
  EXPECT_NE(copy.DataObject(), original.DataObject());
}

struct ItemEqualityCase {
  const char* name;
  const char* data;
  std::uint32_t param;
  std::int32_t id;
  bool expected;
};

// Compared with CItem("Text", 5, 7).
const ItemEqualityCase kItemEquality[] = {
    {"same", "Text", 5, 7, true},
    {"other_text", "Text2", 5, 7, false},
    {"other_case", "text", 5, 7, false},
    {"other_id", "Text", 5, 8, false},
    {"other_type", "Text", 4, 7, false},
    {"pref_added", "Text", 5 | 0x10000000, 7, false},
};

class item_equality : public ::testing::TestWithParam<ItemEqualityCase> {};

TEST_P(item_equality, compares_text_id_and_type_both_ways) {
  const CItem base("Text", 5, 7);
  const CItem other(GetParam().data, GetParam().param, GetParam().id);
  EXPECT_EQ(base.isEqual(&other), GetParam().expected);
  EXPECT_EQ(other.isEqual(&base), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, item_equality, ::testing::ValuesIn(kItemEquality),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CItem, is_unequal_to_null) {
  const CItem item;
  EXPECT_FALSE(item.isEqual(nullptr));
}

TEST(CItem, equality_goes_by_text_not_by_value_object) {
  const CItem a("555", 1, 1);
  const CItem b("555", 1, 1);
  ASSERT_NE(a.DataObject(), b.DataObject());
  EXPECT_TRUE(a.isEqual(&b));
}

struct EmptinessCase {
  const char* name;
  std::function<std::unique_ptr<CItem>()> make;
  bool expected;
};

// Emptiness of every single-value element looks at the text only.
const EmptinessCase kEmptiness[] = {
    {"item_init", [] { return std::make_unique<CItem>(); }, true},
    {"item_text", [] { return std::make_unique<CItem>("x", 0, -1); }, false},
    {"item_type_and_id_only", [] { return std::make_unique<CItem>(nullptr, 0xFF, 9); }, true},
    {"item_space", [] { return std::make_unique<CItem>(" ", 0, -1); }, false},
    {"item_invalid_utf8", [] { return std::make_unique<CItem>("\xFF", 0, -1); }, true},
    {"telephone_init", [] { return std::make_unique<CTelephoneNumber>(); }, true},
    {"telephone_label_only",
     [] {
       return std::make_unique<CTelephoneNumber>("", kTelephoneTypeCustom, 1,
                                                 std::make_shared<const String>(u"Main"));
     },
     true},
    {"telephone_number", [] { return std::make_unique<CTelephoneNumber>("0"); }, false},
    {"email_label_only",
     [] {
       return std::make_unique<CEmail>(nullptr, kEmailTypeCustom, 1,
                                       std::make_shared<const String>(u"Private"));
     },
     true},
    {"email_address", [] { return std::make_unique<CEmail>("a@b"); }, false},
    {"url_type_only", [] { return std::make_unique<CURL>(nullptr, kURLTypeWork, 2); }, true},
    {"url_address", [] { return std::make_unique<CURL>("http://x"); }, false},
    {"messenger_type_only",
     [] { return std::make_unique<CMessengerID>("", kMessengerTypeSkype, 2); }, true},
    {"messenger_account", [] { return std::make_unique<CMessengerID>("me"); }, false},
    {"note_id_only", [] { return std::make_unique<CNote>(nullptr, 4); }, true},
    {"note_text", [] { return std::make_unique<CNote>("\n"); }, false},
    {"xitem_name_only",
     [] { return std::make_unique<CXItem>(u"X-EXPIRY", nullptr, 0, -1); }, true},
    {"xitem_text", [] { return std::make_unique<CXItem>(u"X-EXPIRY", "5", 0, -1); }, false},
};

class item_emptiness : public ::testing::TestWithParam<EmptinessCase> {};

TEST_P(item_emptiness, looks_at_the_text_only) {
  EXPECT_EQ(GetParam().make()->IsEmpty(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, item_emptiness, ::testing::ValuesIn(kEmptiness),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim
