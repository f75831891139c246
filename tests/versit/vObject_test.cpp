#include "phonepim/versit/vObject.h"

#include <gtest/gtest.h>

#include <string>

namespace phonepim {
namespace {

const unsigned char* Bytes(const char* text) { return reinterpret_cast<const unsigned char*>(text); }
std::string Contents(const vobj::_byte_array& array) {
  return std::string(reinterpret_cast<const char*>(array.GetData()), array.GetSize());
}

TEST(byte_array, grows_to_exactly_the_requested_size_and_never_shrinks) {
  vobj::_byte_array array;
  array.Free();
  array.SetData(Bytes("0123456789"), 10);
  const unsigned char* first = array.GetData();
  array.SetData(Bytes("abcd"), 4);
  EXPECT_EQ(array.GetData(), first);
  EXPECT_EQ(array.m_cbAlloc, 10u);
  EXPECT_EQ(Contents(array), "abcd");
  // A copy owns its bytes; assignment keeps the larger storage.
  vobj::_byte_array copy(array);
  EXPECT_NE(copy.GetData(), array.GetData());
  EXPECT_EQ(copy.m_cbAlloc, 4u);
  copy = array = copy;
  const vobj::_byte_array& same = array;
  array = same;
  EXPECT_EQ(Contents(array), "abcd");
  EXPECT_EQ(array.m_cbAlloc, 10u);
  array.SetData(Bytes("ABCDEFGHIJK"), 11);
  EXPECT_EQ(array.m_cbAlloc, 11u);
  EXPECT_EQ(Contents(array), "ABCDEFGHIJK");
  // Empty data keeps the storage; Alloc discards the contents.
  array.SetData(nullptr, 0);
  EXPECT_EQ(array.GetSize(), 0u);
  EXPECT_EQ(array.m_cbAlloc, 11u);
  array.Alloc(5);
  EXPECT_EQ(array.GetSize(), 0u);
  EXPECT_EQ(array.m_cbAlloc, 5u);
  array.Free();
  array.Free();
  EXPECT_EQ(array.m_pData, nullptr);
  EXPECT_EQ(array.m_cbAlloc + array.m_cbData, 0u);
}

TEST(byte_array, null_data_with_a_size_is_a_caller_error) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  vobj::_byte_array array;
  EXPECT_DEATH(array.SetData(nullptr, 3), "Assertion failed: \\(data != NULL \\|\\| size == 0\\), function SetData");
  EXPECT_DEATH(array.Alloc(0x100000000ul), "Assertion failed: \\(size <= 0xFFFFFFFF\\), function Alloc");
}

TEST(v_object, starts_without_an_id_or_bytes_and_clear_releases_objects) {
  auto object = std::make_shared<vObject>();
  EXPECT_EQ(object->objectID(), 0xFFFFFFFFu);
  EXPECT_EQ(object->object()->GetData(), nullptr);
  vObjectPtrArray objects;
  objects.push_back(object);
  objects.Clear();
  EXPECT_TRUE(objects.empty());
  EXPECT_EQ(object.use_count(), 1);
}

}  // namespace
}  // namespace phonepim
