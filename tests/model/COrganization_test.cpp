#include "phonepim/model/COrganization.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace phonepim {
namespace {

TEST(COrganization, initialisers) {
  const COrganization plain;
  EXPECT_EQ(plain.Type(), 0u);
  EXPECT_EQ(plain.Name(), u"");
  EXPECT_EQ(plain.Unit(), u"");
  EXPECT_EQ(plain.Position(), u"");
  EXPECT_TRUE(plain.Additional().empty());

  const COrganization three("ACME", nullptr, "CEO");
  EXPECT_EQ(three.Type(), 0u);
  EXPECT_EQ(three.Name(), u"ACME");
  EXPECT_EQ(three.Unit(), u"");
  EXPECT_EQ(three.Position(), u"CEO");
  EXPECT_TRUE(three.Additional().empty());

  const COrganization five("ACME", "R&D", "Lead", "Lab 2", kOrganizationTypeWork);
  EXPECT_EQ(five.Type(), 0x2u);
  EXPECT_EQ(five.Unit(), u"R&D");
  EXPECT_EQ(five.Additional(), std::vector<String>{u"Lab 2"});
}

struct AdditionalCase {
  const char* name;
  const char* additional;
  std::vector<String> expected;
};

const AdditionalCase kAdditional[] = {
    {"null", nullptr, {}},
    {"empty", "", {}},
    {"space", " ", {u" "}},
    {"text", "Floor 3", {u"Floor 3"}},
    {"not_utf8", "\xFF\xFE", {}},
};

class organization_additional : public ::testing::TestWithParam<AdditionalCase> {};

TEST_P(organization_additional, only_a_non_empty_line_is_added) {
  const COrganization org("N", "U", "P", GetParam().additional, kOrganizationTypeEtc);
  EXPECT_EQ(org.Additional(), GetParam().expected);
  EXPECT_EQ(org.Type(), 0x8u);
}

INSTANTIATE_TEST_SUITE_P(all, organization_additional, ::testing::ValuesIn(kAdditional),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(COrganization, setters_store_copies_and_lines_can_be_appended) {
  COrganization org;
  String name = u"ACME";
  org.SetName(name);
  name += u" Inc";
  org.SetUnit(u"Sales");
  org.SetPosition(u"Clerk");
  org.SetType(kOrganizationTypeHome);
  org.Additional().push_back(u"Line 1");
  org.Additional().push_back(u"Line 2");
  EXPECT_EQ(org.Name(), u"ACME");
  EXPECT_EQ(org.Unit(), u"Sales");
  EXPECT_EQ(org.Position(), u"Clerk");
  EXPECT_EQ(org.Type(), 0x1u);
  EXPECT_EQ(org.Additional(), (std::vector<String>{u"Line 1", u"Line 2"}));
}

struct OrgEqualityCase {
  const char* name;
  std::function<void(COrganization&)> change;
  bool expected;
};

// Applied to one of two copies of ACME / Sales / Clerk, WORK, lines "A", "B".
const OrgEqualityCase kOrgEquality[] = {
    {"unchanged", [](COrganization&) {}, true},
    {"extra_line", [](COrganization& o) { o.Additional().push_back(u"C"); }, false},
    {"line_missing", [](COrganization& o) { o.Additional().pop_back(); }, false},
    {"lines_swapped", [](COrganization& o) { std::swap(o.Additional()[0], o.Additional()[1]); },
     false},
    {"empty_line_added", [](COrganization& o) { o.Additional().push_back(u""); }, false},
    {"other_name", [](COrganization& o) { o.SetName(u"acme"); }, false},
    {"other_unit", [](COrganization& o) { o.SetUnit(u"Sales "); }, false},
    {"other_position", [](COrganization& o) { o.SetPosition(u""); }, false},
    {"pref_added", [](COrganization& o) { o.SetType(kOrganizationTypeWork | kTypePref); }, false},
    {"other_type", [](COrganization& o) { o.SetType(kOrganizationTypeHome); }, false},
};

class organization_equality : public ::testing::TestWithParam<OrgEqualityCase> {};

TEST_P(organization_equality, compares_lines_then_texts_then_type) {
  COrganization a("ACME", "Sales", "Clerk", "A", kOrganizationTypeWork);
  a.Additional().push_back(u"B");
  COrganization b = a;
  GetParam().change(b);
  EXPECT_EQ(a.IsEqual(&b), GetParam().expected);
  EXPECT_EQ(b.IsEqual(&a), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, organization_equality, ::testing::ValuesIn(kOrgEquality),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(COrganization, is_unequal_to_null) {
  const COrganization org;
  EXPECT_FALSE(org.IsEqual(nullptr));
}

struct OrgEmptinessCase {
  const char* name;
  std::function<COrganization()> make;
  bool expected;
};

const OrgEmptinessCase kOrgEmptiness[] = {
    {"init", [] { return COrganization(); }, true},
    {"nulls", [] { return COrganization(nullptr, nullptr, nullptr); }, true},
    {"type_only", [] { return COrganization("", "", "", "", kOrganizationTypeWork); }, true},
    {"name", [] { return COrganization("N", nullptr, nullptr); }, false},
    {"unit", [] { return COrganization(nullptr, "U", nullptr); }, false},
    {"position", [] { return COrganization(nullptr, nullptr, "P"); }, false},
    {"line_only", [] { return COrganization(nullptr, nullptr, nullptr, "L", 0); }, false},
    {"empty_line_only",
     [] {
       COrganization org;
       org.Additional().push_back(u"");
       return org;
     },
     false},
};

class organization_emptiness : public ::testing::TestWithParam<OrgEmptinessCase> {};

TEST_P(organization_emptiness, needs_no_text_and_no_lines) {
  EXPECT_EQ(GetParam().make().IsEmpty(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, organization_emptiness, ::testing::ValuesIn(kOrgEmptiness),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim
