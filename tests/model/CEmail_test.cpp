#include "phonepim/model/CEmail.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "model/AssertionPattern.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;

TEST(CEmail, initialisers) {
  const CEmail plain;
  EXPECT_EQ(plain.GetEmail(), u"");
  EXPECT_EQ(plain.GetType(), 0u);
  EXPECT_EQ(plain.thisID(), -1);
  EXPECT_EQ(plain.GetLabel(), nullptr);

  const CEmail addressOnly("a@example.org");
  EXPECT_EQ(addressOnly.GetEmail(), u"a@example.org");
  EXPECT_EQ(addressOnly.GetType(), 0u);
  EXPECT_EQ(addressOnly.thisID(), -1);

  const CEmail typed("b@example.org", kEmailTypeWork | kEmailTypePref, 5);
  EXPECT_EQ(typed.GetEmail(), u"b@example.org");
  EXPECT_EQ(typed.GetType(), 0x10000002u);
  EXPECT_EQ(typed.thisID(), 5);
  EXPECT_EQ(typed.GetLabel(), nullptr);

  const auto label = std::make_shared<const String>(u"Private");
  const CEmail labelled("c@example.org", kEmailTypeCustom, 6, label);
  EXPECT_EQ(labelled.GetType(), 0x10u);
  EXPECT_EQ(labelled.thisID(), 6);
  EXPECT_EQ(labelled.GetLabel(), label);
}

TEST(CEmail, keeps_its_label_alive) {
  auto label = std::make_shared<const String>(u"Private");
  const std::weak_ptr<const String> watch = label;
  auto email = std::make_unique<CEmail>("a@b", kEmailTypeCustom, 1, std::move(label));
  EXPECT_FALSE(watch.expired());
  email.reset();
  EXPECT_TRUE(watch.expired());
}

struct EmailEqualityCase {
  const char* name;
  const char* address;
  std::uint32_t type;
  std::int32_t id;
  bool expected;
};

// Compared with CEmail("user@example.org", HOME, 1), in both directions.
const EmailEqualityCase kEmailEquality[] = {
    {"same", "user@example.org", 0x1, 1, true},
    {"pref_added", "user@example.org", 0x10000001, 1, true},
    {"other_id", "user@example.org", 0x1, 77, true},
    {"other_type", "user@example.org", 0x2, 1, false},
    {"type_added", "user@example.org", 0x3, 1, false},
    {"no_type", "user@example.org", 0, 1, false},
    {"other_case", "User@example.org", 0x1, 1, false},
    {"other_address", "user@example.com", 0x1, 1, false},
    // A custom-label code keeps only its low bits once PREF is cleared.
    {"custom_code_one", "user@example.org", 0x10000001, 2, true},
    {"custom_code_two", "user@example.org", 0x10000002, 1, false},
};

class email_equality : public ::testing::TestWithParam<EmailEqualityCase> {};

TEST_P(email_equality, clears_pref_and_ignores_the_id) {
  const CEmail base("user@example.org", kEmailTypeHome, 1);
  const CEmail other(GetParam().address, GetParam().type, GetParam().id);
  EXPECT_EQ(base.isEqual(&other), GetParam().expected);
  EXPECT_EQ(other.isEqual(&base), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, email_equality, ::testing::ValuesIn(kEmailEquality),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CEmail, pref_alone_equals_no_type) {
  const CEmail a("a@b", kEmailTypePref, 1);
  const CEmail b("a@b", 0, 1);
  EXPECT_TRUE(a.isEqual(&b));
  EXPECT_TRUE(b.isEqual(&a));
}

TEST(CEmail, labels_are_not_compared) {
  const CEmail a("a@b", kEmailTypeCustom, 1, std::make_shared<const String>(u"One"));
  const CEmail b("a@b", kEmailTypeCustom, 1, std::make_shared<const String>(u"Two"));
  EXPECT_TRUE(a.isEqual(&b));
}

TEST(CEmailDeathTest, null_other_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const CEmail email("a@b", 0, 1);
  EXPECT_DEATH(email.isEqual(nullptr), AssertionPattern("email != nil"));
}

}  // namespace
}  // namespace phonepim
