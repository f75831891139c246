// New identifiers.
#include "phonepim/platform/Uuid.h"

#include <gtest/gtest.h>

#include <set>

namespace phonepim {
namespace {

TEST(new_uuid_string, is_a_fresh_upper_case_random_uuid) {
  std::set<String> seen;
  for (int i = 0; i < 1000; ++i) {
    const String uuid = NewUUIDString();
    seen.insert(uuid);
    ASSERT_EQ(uuid.size(), 36u);
    for (std::size_t at = 0; at < uuid.size(); ++at) {
      const bool dash = at == 8 || at == 13 || at == 18 || at == 23;
      EXPECT_EQ(String(dash ? u"-" : u"0123456789ABCDEF").find(uuid[at]) != String::npos, true) << at;
    }
    // Version 4 and the RFC 4122 variant bits 10xx.
    EXPECT_EQ(uuid[14], u'4');
    EXPECT_NE(String(u"89AB").find(uuid[19]), String::npos);
  }
  EXPECT_EQ(seen.size(), 1000u);
}

}  // namespace
}  // namespace phonepim
