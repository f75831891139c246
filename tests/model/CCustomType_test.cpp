#include "phonepim/model/CCustomType.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "phonepim/model/TypeMasks.h"

namespace phonepim {
namespace {

// The table is process-wide: every test starts and ends with it emptied.
class custom_type : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(CCustomType::Inst().DeleteAllItem()); }
  void TearDown() override { CCustomType::Inst().DeleteAllItem(); }
  CCustomType& table = CCustomType::Inst();
};

TEST_F(custom_type, Inst_is_one_table) {
  EXPECT_EQ(&CCustomType::Inst(), &CCustomType::Inst());
}

TEST_F(custom_type, entry_init) {
  const CCcustomTypeT entry;
  EXPECT_EQ(entry.CustomType_T(), 0x10000000u);
  EXPECT_EQ(entry.CustomType_Name(), String());
}

TEST_F(custom_type, codes_count_up_from_0x10000001_in_registration_order) {
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(One)"), 0x10000001u);
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(Two)"), 0x10000002u);
  EXPECT_EQ(table.ConvertCustomStrFromString(u"X-CUSTOM(Three)"), std::nullopt);
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(Four)"), 0x10000004u);

  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000001u), u"X-CUSTOM(One)");
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000002u), u"X-CUSTOM(Two)");
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000003u), u"X-CUSTOM(Three)");
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000004u), u"X-CUSTOM(Four)");
}

TEST_F(custom_type, every_code_carries_the_pref_bit) {
  const std::uint32_t code = table.ConvertCustomTypeFromString(u"X-CUSTOM(Main)");
  EXPECT_NE(code & kTypePref, 0u);
  EXPECT_EQ(code, kFirstCustomType);
}

TEST_F(custom_type, the_same_label_twice_gets_two_entries) {
  const std::uint32_t first = table.ConvertCustomTypeFromString(u"X-CUSTOM(Home)");
  const std::uint32_t second = table.ConvertCustomTypeFromString(u"X-CUSTOM(Home)");
  EXPECT_EQ(second, first + 1);
  EXPECT_EQ(table.ConvertStringValFromCustomType(first), u"X-CUSTOM(Home)");
  EXPECT_EQ(table.ConvertStringValFromCustomType(second), u"X-CUSTOM(Home)");
}

TEST_F(custom_type, unknown_codes_have_no_label) {
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000001u), std::nullopt);
  table.ConvertCustomTypeFromString(u"X-CUSTOM(A)");
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000000u), std::nullopt);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000002u), std::nullopt);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x1u), std::nullopt);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0u), std::nullopt);
}

TEST_F(custom_type, DeleteAllItem_hands_the_same_codes_out_again) {
  const std::uint32_t old = table.ConvertCustomTypeFromString(u"X-CUSTOM(Old)");
  table.ConvertCustomTypeFromString(u"X-CUSTOM(Older)");
  EXPECT_TRUE(table.DeleteAllItem());
  EXPECT_EQ(table.ConvertStringValFromCustomType(old), std::nullopt);
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(New)"), 0x10000001u);
  EXPECT_EQ(table.ConvertStringValFromCustomType(old), u"X-CUSTOM(New)");
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(Newer)"), 0x10000002u);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000002u), u"X-CUSTOM(Newer)");
}

struct LabelCase {
  const char* name;
  String argument;
  std::optional<String> stored;    // the label looked up by the new code
  std::optional<String> returned;  // what ConvertCustomStrFromString answers
};

#define QP_PREFIX u"X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,"

const LabelCase kLabels[] = {
    // Plain labels are kept whole, whatever the stripping would have done.
    {"plain", u"X-CUSTOM(Main)", u"X-CUSTOM(Main)", std::nullopt},
    {"plain_behind_pref", u"PREF=X-CUSTOM(Main)", u"PREF=X-CUSTOM(Main)", std::nullopt},
    {"plain_with_equals", u"X-CUSTOM(a==b)", u"X-CUSTOM(a==b)", std::nullopt},
    {"plain_without_parenthesis", u"Main", u"Main", std::nullopt},
    {"plain_unicode", u"X-CUSTOM(\u81EA\u5B85)", u"X-CUSTOM(\u81EA\u5B85)", std::nullopt},
    // The prefix counts only in exact case at the very start.
    {"prefix_lower_case", u"x-custom(charset=utf-8,encoding=quoted-printable,=41)",
     u"x-custom(charset=utf-8,encoding=quoted-printable,=41)", std::nullopt},
    {"prefix_not_at_start", u"PREF=" QP_PREFIX u"=41)", u"PREF=" QP_PREFIX u"=41)",
     std::nullopt},
    // Quoted-printable labels are stripped and decoded.
    {"qp_ascii", QP_PREFIX u"=41=42)", u"AB", u"AB"},
    {"qp_literal_text", QP_PREFIX u"Office)", u"Office", u"Office"},
    {"qp_utf8", QP_PREFIX u"=E8=87=AA=E5=AE=85)", u"\u81EA\u5B85", u"\u81EA\u5B85"},
    {"qp_lower_case_hex", QP_PREFIX u"=e8=87=aa=e5=ae=85)", u"\u81EA\u5B85", u"\u81EA\u5B85"},
    {"qp_underscore_is_space", QP_PREFIX u"My_Office)", u"My Office", u"My Office"},
    {"qp_last_character_goes_whatever_it_is", QP_PREFIX u"=41=42X", u"AB", u"AB"},
    {"qp_double_equals_removed", QP_PREFIX u"=41==42)", u"A42", u"A42"},
    {"qp_custom_removed_in_any_case", QP_PREFIX u"CuStOm(=41)", u"A", u"A"},
    {"qp_prefix_removed_again_in_any_case",
     QP_PREFIX u"x-custom(charset=utf-8,encoding=quoted-printable,=41)", u"A", u"A"},
    // Removal is one pass: text brought together by a removal stays.
    {"qp_removal_is_one_pass", QP_PREFIX u"cucustom(stom(B)", u"custom(B", u"custom(B"},
    {"qp_triple_equals_keeps_one", QP_PREFIX u"=41===42)", u"AB", u"AB"},
    // "==" goes before "custom(" is looked for, so it can join one.
    {"qp_double_equals_joins_custom", QP_PREFIX u"cu==stom(=41)", u"A", u"A"},
    {"qp_empty_label", QP_PREFIX u")", u"", u""},
    // A label that does not decode is registered without text.
    {"qp_trailing_equals", QP_PREFIX u"abc=)", std::nullopt, std::nullopt},
};

#undef QP_PREFIX

class custom_label : public custom_type, public ::testing::WithParamInterface<LabelCase> {};

TEST_P(custom_label, ConvertCustomTypeFromString_stores_the_label) {
  const std::uint32_t code = table.ConvertCustomTypeFromString(GetParam().argument);
  EXPECT_EQ(code, 0x10000001u);
  EXPECT_EQ(table.ConvertStringValFromCustomType(code), GetParam().stored);
}

TEST_P(custom_label, ConvertCustomStrFromString_registers_and_answers_decoded_labels_only) {
  EXPECT_EQ(table.ConvertCustomStrFromString(GetParam().argument), GetParam().returned);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000001u), GetParam().stored);
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(next)"), 0x10000002u);
}

INSTANTIATE_TEST_SUITE_P(all, custom_label, ::testing::ValuesIn(kLabels),
                         [](const auto& info) { return std::string(info.param.name); });

// Texts with no last character left after stripping: the counter has moved
// on, but no entry is added.
class custom_label_without_last_character
    : public custom_type,
      public ::testing::WithParamInterface<const char16_t*> {};

TEST_P(custom_label_without_last_character, throws_range_error) {
  EXPECT_THROW(table.ConvertCustomTypeFromString(GetParam()), std::out_of_range);
  EXPECT_THROW(table.ConvertCustomStrFromString(GetParam()), std::out_of_range);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000001u), std::nullopt);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000002u), std::nullopt);
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(after)"), 0x10000003u);
}

INSTANTIATE_TEST_SUITE_P(all, custom_label_without_last_character,
                         ::testing::Values(u"", u"==", u"Custom(", u"====custom(",
                                           u"X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,"));

}  // namespace
}  // namespace phonepim
