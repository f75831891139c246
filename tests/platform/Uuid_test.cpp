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
      // Version 4 and the RFC 4122 variant bits 10xx.
      const char16_t* allowed = dash ? u"-" : at == 14 ? u"4" : at == 19 ? u"89AB" : u"0123456789ABCDEF";
      EXPECT_NE(String(allowed).find(uuid[at]), String::npos) << at;
    }
  }
  EXPECT_EQ(seen.size(), 1000u);
}

}  // namespace
}  // namespace phonepim
