#include "phonepim/model/CURL.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace phonepim {
namespace {

TEST(CURL, initialisers) {
  const CURL plain;
  EXPECT_EQ(plain.GetURL(), u"");
  EXPECT_EQ(plain.GetType(), 0u);
  EXPECT_EQ(plain.thisID(), -1);

  const CURL addressOnly("http://example.org/");
  EXPECT_EQ(addressOnly.GetURL(), u"http://example.org/");
  EXPECT_EQ(addressOnly.GetType(), 0u);
  EXPECT_EQ(addressOnly.thisID(), -1);

  const CURL typed("http://example.org/", kURLTypeWork, 8);
  EXPECT_EQ(typed.GetType(), 0x2u);
  EXPECT_EQ(typed.thisID(), 8);
}

struct UrlEqualityCase {
  const char* name;
  const char* url;
  std::uint32_t type;
  std::int32_t id;
  bool expected;
};

// Compared with CURL("http://a.example/", WORK, 1), in both directions.
const UrlEqualityCase kUrlEquality[] = {
    {"same", "http://a.example/", 0x2, 1, true},
    {"pref_added", "http://a.example/", 0x10000002, 1, true},
    {"other_id", "http://a.example/", 0x2, 3, true},
    {"other_type", "http://a.example/", 0x1, 1, false},
    {"no_type", "http://a.example/", 0, 1, false},
    {"other_case", "HTTP://a.example/", 0x2, 1, false},
    {"trailing_slash_missing", "http://a.example", 0x2, 1, false},
};

class url_equality : public ::testing::TestWithParam<UrlEqualityCase> {};

TEST_P(url_equality, clears_pref_and_ignores_the_id) {
  const CURL base("http://a.example/", kURLTypeWork, 1);
  const CURL other(GetParam().url, GetParam().type, GetParam().id);
  EXPECT_EQ(base.isEqual(&other), GetParam().expected);
  EXPECT_EQ(other.isEqual(&base), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(all, url_equality, ::testing::ValuesIn(kUrlEquality),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CURL, is_unequal_to_null) {
  const CURL url("http://a.example/");
  EXPECT_FALSE(url.isEqual(nullptr));
}

}  // namespace
}  // namespace phonepim
