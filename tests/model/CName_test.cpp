#include "phonepim/model/CName.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "model/AssertionPattern.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;

using Getter = const String& (CName::*)() const;

struct PartCase {
  const char* name;
  unsigned int index;
  Getter get;
};

// The index numbers of the N value's components.
const PartCase kParts[] = {
    {"Family", 0, &CName::Family},
    {"Given", 1, &CName::Given},
    {"Middle", 2, &CName::Middle},
    {"Prefix", 3, &CName::Prefix},
    {"Suffix", 4, &CName::Suffix},
    {"Phonetic_Family", 5, &CName::Phonetic_Family},
    {"Phonetic_Given", 6, &CName::Phonetic_Given},
    {"Phonetic_Middle", 7, &CName::Phonetic_Middle},
};

void ExpectParts(const CName& name, const String (&expected)[8]) {
  for (const PartCase& part : kParts) {
    EXPECT_EQ((name.*part.get)(), expected[part.index]) << part.name;
  }
}

TEST(CName, init_gives_eight_empty_parts) {
  const CName name;
  ExpectParts(name, {u"", u"", u"", u"", u"", u"", u"", u""});
}

TEST(CName, initWithName_sets_family_only) {
  ExpectParts(CName("Yamada"), {u"Yamada", u"", u"", u"", u"", u"", u"", u""});
  ExpectParts(CName(static_cast<const char*>(nullptr)), {u"", u"", u"", u"", u"", u"", u"", u""});
}

TEST(CName, eight_part_initialiser_keeps_the_order_and_empties_nulls) {
  const CName full("\xE5\xB1\xB1\xE7\x94\xB0", "Taro", "M", "Dr.", "Jr.", "yamada", "taro",
                   "em");
  ExpectParts(full, {u"\u5C71\u7530", u"Taro", u"M", u"Dr.", u"Jr.", u"yamada", u"taro", u"em"});
  const CName sparse(nullptr, "Taro", nullptr, nullptr, "III", nullptr, nullptr, "x");
  ExpectParts(sparse, {u"", u"Taro", u"", u"", u"III", u"", u"", u"x"});
}

class name_part : public ::testing::TestWithParam<PartCase> {};

TEST_P(name_part, SetName_stores_at_its_index_only) {
  CName name;
  name.SetName(u"value", GetParam().index);
  EXPECT_EQ((name.*GetParam().get)(), u"value");
  for (const PartCase& other : kParts) {
    if (other.index != GetParam().index) {
      EXPECT_EQ((name.*other.get)(), u"") << other.name;
    }
  }
  name.SetName(u"", GetParam().index);
  EXPECT_TRUE(name.IsEmpty());
}

TEST_P(name_part, a_difference_in_this_part_makes_names_unequal) {
  CName a("F", "G", "M", "P", "S", "pf", "pg", "pm");
  CName b("F", "G", "M", "P", "S", "pf", "pg", "pm");
  ASSERT_TRUE(a.IsEqual(&b));
  b.SetName((b.*GetParam().get)() + u"x", GetParam().index);
  EXPECT_FALSE(a.IsEqual(&b));
  EXPECT_FALSE(b.IsEqual(&a));
}

TEST_P(name_part, one_non_empty_part_makes_the_name_non_empty) {
  CName name;
  name.SetName(u" ", GetParam().index);
  EXPECT_FALSE(name.IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(all, name_part, ::testing::ValuesIn(kParts),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CName, equality_is_case_sensitive_and_rejects_null) {
  const CName a("Smith");
  const CName b("smith");
  EXPECT_FALSE(a.IsEqual(&b));
  EXPECT_FALSE(a.IsEqual(nullptr));
  const CName c("Smith");
  EXPECT_TRUE(a.IsEqual(&c));
  const CName empty;
  const CName alsoEmpty(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_TRUE(empty.IsEqual(&alsoEmpty));
  EXPECT_TRUE(empty.IsEmpty());
}

class CNameDeathTest : public ::testing::TestWithParam<unsigned int> {};

TEST_P(CNameDeathTest, index_past_seven_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CName name;
  EXPECT_DEATH(name.SetName(u"x", GetParam()), AssertionPattern("nIndex < 8"));
}

INSTANTIATE_TEST_SUITE_P(all, CNameDeathTest, ::testing::Values(8u, 9u, UINT_MAX));

}  // namespace
}  // namespace phonepim
