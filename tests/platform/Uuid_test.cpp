// New identifiers.
#include "phonepim/platform/Uuid.h"

#include <gtest/gtest.h>

#include <set>

namespace phonepim {
namespace {

bool IsUpperHex(char16_t unit) {
  return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F');
}

TEST(new_uuid_string, is_an_upper_case_random_uuid) {
  for (int i = 0; i < 100; ++i) {
    const String uuid = NewUUIDString();
    ASSERT_EQ(uuid.size(), 36u);
    for (std::size_t at = 0; at < uuid.size(); ++at) {
      if (at == 8 || at == 13 || at == 18 || at == 23) {
        EXPECT_EQ(uuid[at], u'-') << at;
      } else {
        EXPECT_TRUE(IsUpperHex(uuid[at])) << at;
      }
    }
    // Version 4 (random) and the RFC 4122 variant bits 10xx.
    EXPECT_EQ(uuid[14], u'4');
    EXPECT_NE(String(u"89AB").find(uuid[19]), String::npos);
  }
}

TEST(new_uuid_string, never_repeats) {
  std::set<String> seen;
  for (int i = 0; i < 10000; ++i) seen.insert(NewUUIDString());
  EXPECT_EQ(seen.size(), 10000u);
}

}  // namespace
}  // namespace phonepim
