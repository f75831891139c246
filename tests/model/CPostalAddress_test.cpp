#include "phonepim/model/CPostalAddress.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <memory>
#include <string>

#include "model/AssertionPattern.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;

using Getter = const String& (CPostalAddress::*)() const;

struct PartCase {
  const char* name;
  unsigned int index;
  Getter get;
};

// The index numbers of the ADR value's components.
const PartCase kParts[] = {
    {"POBox", 0, &CPostalAddress::POBox},
    {"ExtAddr", 1, &CPostalAddress::ExtAddr},
    {"Street", 2, &CPostalAddress::Street},
    {"Locality", 3, &CPostalAddress::Locality},
    {"Region", 4, &CPostalAddress::Region},
    {"PostalCode", 5, &CPostalAddress::PostalCode},
    {"Country", 6, &CPostalAddress::Country},
    {"Neighbor", 7, &CPostalAddress::Neighbor},
};

void ExpectParts(const CPostalAddress& address, const String (&expected)[8]) {
  for (const PartCase& part : kParts) {
    EXPECT_EQ((address.*part.get)(), expected[part.index]) << part.name;
  }
}

TEST(CPostalAddress, init) {
  const CPostalAddress address;
  EXPECT_EQ(address.AddressID(), -1);
  EXPECT_EQ(address.Type(), 0u);
  EXPECT_EQ(address.Label(), nullptr);
  ExpectParts(address, {u"", u"", u"", u"", u"", u"", u"", u""});
}

TEST(CPostalAddress, initWithAddress_puts_the_text_in_the_street) {
  const CPostalAddress address("1 Main St", kAddressTypeHome, 4);
  EXPECT_EQ(address.AddressID(), 4);
  EXPECT_EQ(address.Type(), 0x1u);
  EXPECT_EQ(address.Label(), nullptr);
  ExpectParts(address, {u"", u"", u"1 Main St", u"", u"", u"", u"", u""});

  const auto label = std::make_shared<const String>(u"Cottage");
  const CPostalAddress labelled(nullptr, kAddressTypeCustom, 5, label);
  EXPECT_EQ(labelled.AddressID(), 5);
  EXPECT_EQ(labelled.Type(), 0x10u);
  EXPECT_EQ(labelled.Label(), label);
  ExpectParts(labelled, {u"", u"", u"", u"", u"", u"", u"", u""});
}

TEST(CPostalAddress, eight_part_initialisers_keep_the_order_and_empty_nulls) {
  const CPostalAddress address("PO 1", "Apt 2", "Street 3", "Town", "Region", "12345",
                               "Country", "Quarter", kAddressTypeWork | kAddressTypePref, 9);
  EXPECT_EQ(address.AddressID(), 9);
  EXPECT_EQ(address.Type(), 0x10000002u);
  EXPECT_EQ(address.Label(), nullptr);
  ExpectParts(address, {u"PO 1", u"Apt 2", u"Street 3", u"Town", u"Region", u"12345",
                        u"Country", u"Quarter"});

  const auto label = std::make_shared<const String>(u"Office");
  const CPostalAddress labelled(nullptr, nullptr, "S", nullptr, nullptr, nullptr,
                                "\xE6\x97\xA5\xE6\x9C\xAC", nullptr, kAddressTypeCustom, -1,
                                label);
  EXPECT_EQ(labelled.AddressID(), -1);
  EXPECT_EQ(labelled.Label(), label);
  ExpectParts(labelled, {u"", u"", u"S", u"", u"", u"", u"\u65E5\u672C", u""});
}

TEST(CPostalAddress, keeps_its_label_alive) {
  auto label = std::make_shared<const String>(u"Cottage");
  const std::weak_ptr<const String> watch = label;
  auto address = std::make_unique<CPostalAddress>("x", kAddressTypeCustom, 1, std::move(label));
  EXPECT_FALSE(watch.expired());
  address.reset();
  EXPECT_TRUE(watch.expired());
}

class address_part : public ::testing::TestWithParam<PartCase> {};

TEST_P(address_part, SetAddress_stores_at_its_index_only) {
  CPostalAddress address;
  address.SetAddress(u"value", GetParam().index);
  EXPECT_EQ((address.*GetParam().get)(), u"value");
  for (const PartCase& other : kParts) {
    if (other.index != GetParam().index) {
      EXPECT_EQ((address.*other.get)(), u"") << other.name;
    }
  }
}

TEST_P(address_part, a_difference_in_this_part_makes_addresses_unequal) {
  const CPostalAddress a("a", "b", "c", "d", "e", "f", "g", "h", 1, 1);
  CPostalAddress b("a", "b", "c", "d", "e", "f", "g", "h", 1, 1);
  ASSERT_TRUE(a.isEqual(&b));
  b.SetAddress(u"z", GetParam().index);
  EXPECT_FALSE(a.isEqual(&b));
  EXPECT_FALSE(b.isEqual(&a));
}

TEST_P(address_part, one_non_empty_part_makes_the_address_non_empty) {
  CPostalAddress address;
  address.SetAddress(u"-", GetParam().index);
  EXPECT_FALSE(address.IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(all, address_part, ::testing::ValuesIn(kParts),
                         [](const auto& info) { return std::string(info.param.name); });

struct AddressEqualityCase {
  const char* name;
  std::uint32_t type;
  std::int32_t id;
  const char* label;
  bool expected;
};

// Compared with an address of type HOME, ID 3 and no label, same parts.
const AddressEqualityCase kAddressEquality[] = {
    {"same", 0x1, 3, nullptr, true},
    {"pref_added", 0x10000001, 3, nullptr, true},
    {"labelled", 0x1, 3, "Cottage", true},
    {"other_id", 0x1, 4, nullptr, false},
    {"no_id", 0x1, -1, nullptr, false},
    {"other_type", 0x2, 3, nullptr, false},
    {"cell_added", 0x9, 3, nullptr, false},
};

class address_equality : public ::testing::TestWithParam<AddressEqualityCase> {};

TEST_P(address_equality, compares_id_type_without_pref_and_parts_not_label) {
  const CPostalAddress base("Street", kAddressTypeHome, 3);
  const CPostalAddress other(
      "Street", GetParam().type, GetParam().id,
      GetParam().label ? std::make_shared<const String>(StringFromUTF8(GetParam().label).value())
                       : nullptr);
  EXPECT_EQ(base.isEqual(&other), GetParam().expected);
  EXPECT_EQ(other.isEqual(&base), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, address_equality, ::testing::ValuesIn(kAddressEquality),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CPostalAddress, is_unequal_to_null) {
  const CPostalAddress address;
  EXPECT_FALSE(address.isEqual(nullptr));
}

TEST(CPostalAddress, emptiness_ignores_type_id_and_label) {
  EXPECT_TRUE(CPostalAddress().IsEmpty());
  EXPECT_TRUE(CPostalAddress(nullptr, kAddressTypeCustom | kTypePref, 12,
                             std::make_shared<const String>(u"Only a label"))
                  .IsEmpty());
  EXPECT_TRUE(CPostalAddress("", "", "", "", "", "", "", "", kAddressTypeWork, 2).IsEmpty());
  EXPECT_FALSE(CPostalAddress("1 Main St", 0, -1).IsEmpty());
}

class CPostalAddressDeathTest : public ::testing::TestWithParam<unsigned int> {};

TEST_P(CPostalAddressDeathTest, index_past_seven_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CPostalAddress address;
  EXPECT_DEATH(address.SetAddress(u"x", GetParam()),
               AssertionPattern("nIndex < kPostalAddressMax"));
}

INSTANTIATE_TEST_SUITE_P(all, CPostalAddressDeathTest, ::testing::Values(8u, 100u, UINT_MAX));

}  // namespace
}  // namespace phonepim
