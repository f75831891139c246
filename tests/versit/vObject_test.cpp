#include "phonepim/versit/vObject.h"

#include <gtest/gtest.h>

#include <string>

namespace phonepim {
namespace {

const unsigned char* Bytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }
std::string Contents(const vobj::_byte_array& array) {
  return std::string(reinterpret_cast<const char*>(array.GetData()), array.GetSize()) + "/" +
         std::to_string(array.m_cbAlloc);
}

// The storage grows to exactly the size asked for and never shrinks; a copy
// owns its bytes, assignment keeps the larger storage, Alloc discards the
// contents.
TEST(byte_array, grows_to_exactly_the_requested_size_and_never_shrinks) {
  vobj::_byte_array array;
  array.Free();
  array.SetData(Bytes("0123456789"), 10);
  const unsigned char* first = array.GetData();
  array.SetData(Bytes("abcd"), 4);
  EXPECT_EQ(array.GetData(), first);
  vobj::_byte_array copy(array);
  EXPECT_NE(copy.GetData(), array.GetData());
  EXPECT_EQ(Contents(array) + " " + Contents(copy), "abcd/10 abcd/4");
  copy = array = copy;
  const vobj::_byte_array& same = array;
  array = same;
  EXPECT_EQ(Contents(array), "abcd/10");
  array.SetData(Bytes("ABCDEFGHIJK"), 11);
  EXPECT_EQ(Contents(array), "ABCDEFGHIJK/11");
  array.SetData(nullptr, 0);
  EXPECT_EQ(Contents(array), "/11");
  array.Alloc(5);
  EXPECT_EQ(Contents(array), "/5");
  array.Free();
  array.Free();
  EXPECT_EQ(array.m_pData, nullptr);
  EXPECT_EQ(array.m_cbAlloc + array.m_cbData, 0u);
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(array.SetData(nullptr, 3), "Assertion failed: \\(data != NULL \\|\\| size == 0\\), function SetData");
  EXPECT_DEATH(array.Alloc(0x100000000ul), "Assertion failed: \\(size <= 0xFFFFFFFF\\), function Alloc");
}

}  // namespace
}  // namespace phonepim
