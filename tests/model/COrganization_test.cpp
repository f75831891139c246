#include "phonepim/model/COrganization.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace phonepim {
namespace {

TEST(organization, equality_compares_lines_then_texts_then_type) {
  const struct {
    std::function<void(COrganization&)> change;
    bool expected;
  } rows[] = {
      {[](COrganization&) {}, true},
      {[](COrganization& o) { o.Additional().push_back(u""); }, false},
      {[](COrganization& o) { std::swap(o.Additional()[0], o.Additional()[1]); }, false},
      {[](COrganization& o) { o.SetName(u"acme"); }, false},
      {[](COrganization& o) { o.SetUnit(u"Sales "); }, false},
      {[](COrganization& o) { o.SetPosition(u""); }, false},
      {[](COrganization& o) { o.SetType(kOrganizationTypeWork | kTypePref); }, false},
  };
  for (const auto& r : rows) {
    COrganization a("ACME", "Sales", "Clerk", "A", kOrganizationTypeWork);
    a.Additional().push_back(u"B");
    COrganization b = a;
    r.change(b);
    EXPECT_EQ(std::pair(a.IsEqual(&b), b.IsEqual(&a)), std::pair(r.expected, r.expected)) << &r - rows;
  }
  EXPECT_FALSE(COrganization().IsEqual(nullptr));
}

TEST(organization, is_empty_without_texts_and_lines) {
  COrganization emptyLine;
  emptyLine.Additional().push_back(u"");
  const struct {
    COrganization org;
    bool expected;
  } rows[] = {{COrganization("", "", "", "", kOrganizationTypeWork), true}, {COrganization(nullptr, "U", nullptr), false},
              {COrganization(nullptr, nullptr, "P"), false}, {COrganization("N", nullptr, nullptr), false},
              {emptyLine, false}};
  for (const auto& r : rows) EXPECT_EQ(r.org.IsEmpty(), r.expected) << &r - rows;
}

}  // namespace
}  // namespace phonepim
