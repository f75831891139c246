#include "phonepim/model/CTelephoneNumber.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

namespace phonepim {
namespace {

TEST(CTelephoneNumber, initialisers) {
  const CTelephoneNumber plain;
  EXPECT_EQ(plain.GetNumber(), u"");
  EXPECT_EQ(plain.GetType(), 0u);
  EXPECT_EQ(plain.thisID(), -1);
  EXPECT_EQ(plain.GetLabel(), nullptr);

  const CTelephoneNumber numberOnly("+81 3 1234");
  EXPECT_EQ(numberOnly.GetNumber(), u"+81 3 1234");
  EXPECT_EQ(numberOnly.GetType(), 0u);
  EXPECT_EQ(numberOnly.thisID(), -1);
  EXPECT_EQ(numberOnly.GetLabel(), nullptr);

  const CTelephoneNumber typed("110", kTelephoneTypeWork | kTelephoneTypeFax, 12);
  EXPECT_EQ(typed.GetNumber(), u"110");
  EXPECT_EQ(typed.GetType(), 0xAu);
  EXPECT_EQ(typed.Param(), 0xAu);
  EXPECT_EQ(typed.thisID(), 12);
  EXPECT_EQ(typed.GetLabel(), nullptr);

  const auto label = std::make_shared<const String>(u"Zentrale");
  const CTelephoneNumber labelled(nullptr, kTelephoneTypeCustom, 3, label);
  EXPECT_EQ(labelled.GetNumber(), u"");
  EXPECT_EQ(labelled.GetType(), 0x100000u);
  EXPECT_EQ(labelled.thisID(), 3);
  EXPECT_EQ(labelled.GetLabel(), label);
}

TEST(CTelephoneNumber, keeps_its_label_alive_and_lets_it_go) {
  auto label = std::make_shared<const String>(u"Main");
  const std::weak_ptr<const String> watch = label;
  auto number = std::make_unique<CTelephoneNumber>("1", kTelephoneTypeCustom, 1,
                                                   std::move(label));
  EXPECT_FALSE(watch.expired());
  EXPECT_EQ(*number->GetLabel(), u"Main");
  {
    const CTelephoneNumber copy = *number;
    number.reset();
    EXPECT_FALSE(watch.expired());
    EXPECT_EQ(*copy.GetLabel(), u"Main");
  }
  EXPECT_TRUE(watch.expired());
}

struct SharedTypeCase {
  const char* name;
  std::uint32_t mine;
  std::uint32_t theirs;
  bool expected;
};

// Both numbers share one value object; only the types differ.
const SharedTypeCase kSharedTypes[] = {
    {"cell_cell", 0x20, 0x20, true},
    {"cell_cellhome", 0x20, 0x21, true},
    {"cellhome_cell", 0x21, 0x20, true},
    {"cellhome_cellhome", 0x21, 0x21, true},
    {"home_home", 0x1, 0x1, true},
    {"zero_zero", 0, 0, true},
    {"custom_code_same", 0x10000001, 0x10000001, true},
    {"cell_cellwork", 0x20, 0x22, false},
    {"cellwork_cell", 0x22, 0x20, false},
    {"cell_cellpref", 0x20, 0x10000020, false},
    {"cellhomepref_cell", 0x10000021, 0x20, false},
    {"home_cellhome", 0x1, 0x21, false},
    {"cellhome_home", 0x21, 0x1, false},
    {"home_homepref", 0x1, 0x10000001, false},
    {"voice_voicehome", 0x4, 0x5, false},
};

class telephone_shared_types : public ::testing::TestWithParam<SharedTypeCase> {};

TEST_P(telephone_shared_types, match_exactly_or_as_cell_and_cell_home) {
  const CTelephoneNumber mine("+1 555 0100", GetParam().mine, 1);
  CTelephoneNumber theirs = mine;
  theirs.SetType(GetParam().theirs);
  ASSERT_EQ(mine.DataObject(), theirs.DataObject());
  EXPECT_EQ(mine.isEqual(&theirs), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, telephone_shared_types, ::testing::ValuesIn(kSharedTypes),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CTelephoneNumber, equal_digits_in_different_value_objects_are_unequal) {
  const CTelephoneNumber a("+1 555 0100", kTelephoneTypeCell, 1);
  const CTelephoneNumber b("+1 555 0100", kTelephoneTypeCell, 1);
  EXPECT_FALSE(a.isEqual(&b));
  EXPECT_FALSE(b.isEqual(&a));
  // Not even CELL against CELL|HOME rescues them.
  const CTelephoneNumber c("+1 555 0100", kTelephoneTypeCell | kTelephoneTypeHome, 1);
  EXPECT_FALSE(a.isEqual(&c));
  EXPECT_FALSE(c.isEqual(&a));
}

TEST(CTelephoneNumber, a_number_equals_itself) {
  const CTelephoneNumber a("0", kTelephoneTypeHome, 1);
  EXPECT_TRUE(a.isEqual(&a));
}

TEST(CTelephoneNumber, setting_the_same_digits_again_breaks_equality) {
  const CTelephoneNumber a("0", kTelephoneTypeHome, 1);
  CTelephoneNumber b = a;
  ASSERT_TRUE(a.isEqual(&b));
  b.SetNumber(u"0");
  EXPECT_FALSE(a.isEqual(&b));
  EXPECT_FALSE(b.isEqual(&a));
}

TEST(CTelephoneNumber, id_and_label_are_ignored) {
  const CTelephoneNumber a("0", kTelephoneTypeCell, 1, std::make_shared<const String>(u"A"));
  CTelephoneNumber b = a;
  b.setThisID(99);
  const CTelephoneNumber c(nullptr, kTelephoneTypeCell, 2, std::make_shared<const String>(u"B"));
  CTelephoneNumber d = c;
  d.setThisID(5);
  EXPECT_TRUE(a.isEqual(&b));
  EXPECT_TRUE(c.isEqual(&d));
  EXPECT_TRUE(d.isEqual(&c));
}

TEST(CTelephoneNumber, is_unequal_to_null) {
  const CTelephoneNumber a;
  EXPECT_FALSE(a.isEqual(nullptr));
}

TEST(CTelephoneNumber, rule_is_chosen_by_the_receiver_through_the_base) {
  const CTelephoneNumber a("0", kTelephoneTypeCell, 1);
  const CItem b("0", kTelephoneTypeCell, 1);
  const CItem& asItem = a;
  // The number's identity rule applies even when called through CItem ...
  EXPECT_FALSE(asItem.isEqual(&b));
  // ... while the base rule, text-based, finds the two equal.
  EXPECT_TRUE(b.isEqual(&a));
}

}  // namespace
}  // namespace phonepim
