#include "phonepim/model/CMessengerID.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace phonepim {
namespace {

TEST(CMessengerID, initialisers) {
  const CMessengerID plain;
  EXPECT_EQ(plain.GetMessengerID(), u"");
  EXPECT_EQ(plain.GetType(), 0u);
  EXPECT_EQ(plain.thisID(), -1);

  const CMessengerID accountOnly("someone");
  EXPECT_EQ(accountOnly.GetMessengerID(), u"someone");
  EXPECT_EQ(accountOnly.GetType(), 0u);
  EXPECT_EQ(accountOnly.thisID(), -1);

  const CMessengerID typed("someone", kMessengerTypeSkype, 4);
  EXPECT_EQ(typed.GetType(), 0x8u);
  EXPECT_EQ(typed.thisID(), 4);
}

struct MessengerEqualityCase {
  const char* name;
  const char* account;
  std::uint32_t type;
  std::int32_t id;
  bool expected;
};

// Compared with CMessengerID("someone", SKYPE, 1), in both directions.
const MessengerEqualityCase kMessengerEquality[] = {
    {"same", "someone", 0x8, 1, true},
    {"other_id", "someone", 0x8, 2, true},
    {"pref_added", "someone", 0x10000008, 1, false},
    {"other_service", "someone", 0x10, 1, false},
    {"service_added", "someone", 0x9, 1, false},
    {"other_case", "Someone", 0x8, 1, false},
    {"other_account", "someone2", 0x8, 1, false},
};

class messenger_equality : public ::testing::TestWithParam<MessengerEqualityCase> {};

TEST_P(messenger_equality, needs_exactly_equal_types) {
  const CMessengerID base("someone", kMessengerTypeSkype, 1);
  const CMessengerID other(GetParam().account, GetParam().type, GetParam().id);
  EXPECT_EQ(base.isEqual(&other), GetParam().expected);
  EXPECT_EQ(other.isEqual(&base), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, messenger_equality, ::testing::ValuesIn(kMessengerEquality),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CMessengerID, is_unequal_to_null) {
  const CMessengerID id("x");
  EXPECT_FALSE(id.isEqual(nullptr));
}

}  // namespace
}  // namespace phonepim
