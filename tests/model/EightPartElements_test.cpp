// The two elements of eight indexed parts, CName (N) and CPostalAddress
// (ADR): initialisers, one setter per index, equality and emptiness.
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "model/AssertionPattern.h"
#include "phonepim/model/CName.h"
#include "phonepim/model/CPostalAddress.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;

std::vector<String> Parts(const CName& n) {
  return {n.Family(), n.Given(), n.Middle(), n.Prefix(), n.Suffix(), n.Phonetic_Family(), n.Phonetic_Given(),
          n.Phonetic_Middle()};
}
std::vector<String> Parts(const CPostalAddress& a) {
  return {a.POBox(), a.ExtAddr(), a.Street(), a.Locality(), a.Region(), a.PostalCode(), a.Country(), a.Neighbor()};
}

TEST(eight_parts, each_index_sets_its_part_only_and_decides_equality_and_emptiness) {
  for (unsigned index = 0; index < 8; ++index) {
    std::vector<String> expected(8);
    expected[index] = u"value";
    CName name;
    name.SetName(u"value", index);
    CPostalAddress address;
    address.SetAddress(u"value", index);
    EXPECT_EQ(std::pair(Parts(name), Parts(address)), std::pair(expected, expected)) << index;
    EXPECT_EQ(std::pair(name.IsEmpty(), address.IsEmpty()), std::pair(false, false)) << index;
    CName a("F", "G", "M", "P", "S", "pf", "pg", "pm");
    CName b = a;
    b.SetName(u"x", index);
    EXPECT_EQ(std::pair(a.IsEqual(&b), b.IsEqual(&a)), std::pair(false, false)) << index;
    const CPostalAddress c("a", "b", "c", "d", "e", "f", "g", "h", 1, 1);
    CPostalAddress d = c;
    ASSERT_TRUE(c.isEqual(&d));
    d.SetAddress(u"z", index);
    EXPECT_EQ(std::pair(c.isEqual(&d), d.isEqual(&c)), std::pair(false, false)) << index;
  }
}

TEST(eight_parts, equality_is_case_sensitive_and_an_address_takes_id_and_type_without_pref_not_the_label) {
  const CName smith("Smith"), lower("smith"), same("Smith");
  EXPECT_EQ(std::pair(smith.IsEqual(&lower), smith.IsEqual(&same)), std::pair(false, true));
  EXPECT_FALSE(smith.IsEqual(nullptr));
  const CPostalAddress base("Street", kAddressTypeHome, 3);
  const struct {
    std::uint32_t type;
    std::int32_t id;
    bool labelled, expected;
  } rows[] = {{0x10000001, 3, true, true}, {0x1, 4, false, false}, {0x9, 3, false, false}};
  for (const auto& r : rows) {
    const CPostalAddress other("Street", r.type, r.id,
                               r.labelled ? std::make_shared<const String>(u"Cottage") : nullptr);
    EXPECT_EQ(std::pair(base.isEqual(&other), other.isEqual(&base)), std::pair(r.expected, r.expected)) << &r - rows;
  }
  EXPECT_FALSE(base.isEqual(nullptr));
  EXPECT_TRUE(CPostalAddress(nullptr, kAddressTypeCustom, 12, std::make_shared<const String>(u"x")).IsEmpty());
}

TEST(eight_parts, an_index_past_seven_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CName name;
  CPostalAddress address;
  for (unsigned index : {8u, UINT_MAX}) {
    EXPECT_DEATH(name.SetName(u"x", index), AssertionPattern("nIndex < 8"));
    EXPECT_DEATH(address.SetAddress(u"x", index), AssertionPattern("nIndex < kPostalAddressMax"));
  }
}

}  // namespace
}  // namespace phonepim
