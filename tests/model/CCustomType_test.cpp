#include "phonepim/model/CCustomType.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace phonepim {
namespace {

// The table is process-wide: every test starts and ends with it emptied.
class custom_type : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(table.DeleteAllItem()); }
  void TearDown() override { table.DeleteAllItem(); }
  CCustomType& table = CCustomType::Inst();
};

TEST_F(custom_type, codes_count_up_from_0x10000001_and_start_again_after_delete_all) {
  EXPECT_EQ(&CCustomType::Inst(), &table);
  EXPECT_EQ(CCcustomTypeT().CustomType_T(), 0x10000000u);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000001u), std::nullopt);
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(Home)"), 0x10000001u);
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(Home)"), 0x10000002u);
  EXPECT_EQ(table.ConvertCustomStrFromString(u"X-CUSTOM(Three)"), std::nullopt);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000002u), u"X-CUSTOM(Home)");
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000003u), u"X-CUSTOM(Three)");
  for (std::uint32_t unknown : {0x10000000u, 0x10000004u, 0x1u}) {
    EXPECT_EQ(table.ConvertStringValFromCustomType(unknown), std::nullopt) << unknown;
  }
  EXPECT_TRUE(table.DeleteAllItem());
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000001u), std::nullopt);
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(New)"), 0x10000001u);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000001u), u"X-CUSTOM(New)");
}

#define QP_PREFIX u"X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,"

// The label stored for the new code, and what ConvertCustomStrFromString
// answers: only labels it had to decode.
TEST_F(custom_type, keeps_plain_labels_whole_and_decodes_quoted_printable_ones) {
  const struct {
    String argument;
    std::optional<String> stored, returned;
  } rows[] = {
      {u"PREF=X-CUSTOM(a==b)", u"PREF=X-CUSTOM(a==b)", std::nullopt},
      // The prefix counts only in exact case at the very start.
      {u"x-custom(charset=utf-8,encoding=quoted-printable,=41)",
       u"x-custom(charset=utf-8,encoding=quoted-printable,=41)", std::nullopt},
      {u"PREF=" QP_PREFIX u"=41)", u"PREF=" QP_PREFIX u"=41)", std::nullopt},
      {QP_PREFIX u"=e8=87=AA_Office)", u"\u81EA Office", u"\u81EA Office"},
      // The last character goes whatever it is; "==" is removed.
      {QP_PREFIX u"=41==42X", u"A42", u"A42"},
      // "custom(" and the prefix again are removed in any case, in one pass:
      // text brought together by a removal stays.
      {QP_PREFIX u"CuStOm(=41)", u"A", u"A"},
      {QP_PREFIX u"x-custom(charset=utf-8,encoding=quoted-printable,=41)", u"A", u"A"},
      {QP_PREFIX u"cucustom(stom(B)", u"custom(B", u"custom(B"},
      {QP_PREFIX u"=41===42)", u"AB", u"AB"},
      // "==" goes before "custom(" is looked for, so it can join one.
      {QP_PREFIX u"cu==stom(=41)", u"A", u"A"},
      {QP_PREFIX u")", u"", u""},
      // A label that does not decode is registered without text.
      {QP_PREFIX u"abc=)", std::nullopt, std::nullopt},
  };
  for (const auto& r : rows) {
    ASSERT_TRUE(table.DeleteAllItem());
    EXPECT_EQ(table.ConvertCustomTypeFromString(r.argument), 0x10000001u);
    EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000001u), r.stored) << &r - rows;
    EXPECT_EQ(table.ConvertCustomStrFromString(r.argument), r.returned) << &r - rows;
    EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000002u), r.stored) << &r - rows;
  }
}

// Texts with no last character left after stripping: the counter has moved
// on, but no entry is added.
TEST_F(custom_type, text_without_a_last_character_throws_a_range_error) {
  for (const char16_t* text : {u"", u"====custom(", QP_PREFIX}) {
    EXPECT_THROW(table.ConvertCustomTypeFromString(text), std::out_of_range);
  }
  EXPECT_THROW(table.ConvertCustomStrFromString(u"=="), std::out_of_range);
  EXPECT_EQ(table.ConvertStringValFromCustomType(0x10000001u), std::nullopt);
  EXPECT_EQ(table.ConvertCustomTypeFromString(u"X-CUSTOM(after)"), 0x10000005u);
}

#undef QP_PREFIX

}  // namespace
}  // namespace phonepim
