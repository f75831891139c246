#include "phonepim/platform/String.h"

#include <gtest/gtest.h>

namespace phonepim {
namespace {

TEST(string_from_bytes, rejects_invalid_utf8) {
  EXPECT_FALSE(StringFromBytes("\xC3", 1, StringEncoding::UTF8).has_value());
}

}  // namespace
}  // namespace phonepim
