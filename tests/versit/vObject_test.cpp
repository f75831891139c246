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
  array.SetData(Bytes("0123456789"), 10);
  EXPECT_EQ(array.m_cbAlloc, 10u);
  EXPECT_EQ(array.GetSize(), 10u);
  EXPECT_EQ(Contents(array), "0123456789");
  const unsigned char* first = array.GetData();

  array.SetData(Bytes("abcd"), 4);
  EXPECT_EQ(array.GetData(), first);
  EXPECT_EQ(array.m_cbAlloc, 10u);
  EXPECT_EQ(Contents(array), "abcd");

  array.SetData(Bytes("ABCDEFGHIJK"), 11);
  EXPECT_EQ(array.m_cbAlloc, 11u);
  EXPECT_EQ(Contents(array), "ABCDEFGHIJK");

  // Empty data keeps the storage.
  const unsigned char* eleven = array.GetData();
  array.SetData(nullptr, 0);
  EXPECT_EQ(array.GetSize(), 0u);
  EXPECT_EQ(array.GetData(), eleven);
  EXPECT_EQ(array.m_cbAlloc, 11u);
}

TEST(byte_array, alloc_discards_the_contents) {
  vobj::_byte_array array;
  array.SetData(Bytes("abc"), 3);
  array.Alloc(5);
  EXPECT_EQ(array.GetSize(), 0u);
  EXPECT_EQ(array.m_cbAlloc, 5u);
  EXPECT_NE(array.GetData(), nullptr);
  array.Alloc(0);
  EXPECT_EQ(array.m_cbAlloc, 0u);
}

TEST(byte_array, free_on_an_empty_array_leaves_it_empty) {
  vobj::_byte_array array;
  array.Free();
  EXPECT_EQ(array.m_pData, nullptr);
  EXPECT_EQ(array.m_cbData, 0u);
  EXPECT_EQ(array.m_cbAlloc, 0u);
  array.SetData(Bytes("x"), 1);
  array.Free();
  array.Free();
  EXPECT_EQ(array.m_pData, nullptr);
  EXPECT_EQ(array.m_cbData, 0u);
  EXPECT_EQ(array.m_cbAlloc, 0u);
}

TEST(byte_array, copies_own_their_bytes) {
  vobj::_byte_array array;
  array.SetData(Bytes("hello"), 5);
  vobj::_byte_array copy(array);
  EXPECT_NE(copy.GetData(), array.GetData());
  EXPECT_EQ(Contents(copy), "hello");
  EXPECT_EQ(copy.m_cbAlloc, 5u);

  vobj::_byte_array bigger;
  bigger.SetData(Bytes("0123456789"), 10);
  bigger = array;
  EXPECT_EQ(Contents(bigger), "hello");
  EXPECT_EQ(bigger.m_cbAlloc, 10u);
  auto& same = bigger;
  bigger = same;
  EXPECT_EQ(Contents(bigger), "hello");
}

TEST(byte_array_death, null_data_with_a_size_is_a_caller_error) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  vobj::_byte_array array;
  EXPECT_DEATH(array.SetData(nullptr, 3),
               "Assertion failed: \\(data != NULL \\|\\| size == 0\\), function SetData");
  EXPECT_DEATH(array.Alloc(0x100000000ul),
               "Assertion failed: \\(size <= 0xFFFFFFFF\\), function Alloc");
}

TEST(v_object, starts_without_an_id_or_bytes) {
  vObject object;
  EXPECT_EQ(object.objectID(), 0xFFFFFFFFu);
  ASSERT_NE(object.object(), nullptr);
  EXPECT_EQ(object.object()->GetSize(), 0u);
  EXPECT_EQ(object.object()->GetData(), nullptr);
  object.setObjectID(42);
  EXPECT_EQ(object.objectID(), 42u);
  object.object()->SetData(Bytes("BEGIN:VCARD"), 11);
  EXPECT_EQ(Contents(*object.object()), "BEGIN:VCARD");
}

TEST(v_object_ptr_array, clear_releases_the_objects) {
  auto object = std::make_shared<vObject>();
  vObjectPtrArray objects;
  objects.push_back(object);
  objects.push_back(std::make_shared<vObject>());
  EXPECT_EQ(object.use_count(), 2);
  objects.Clear();
  EXPECT_TRUE(objects.empty());
  EXPECT_EQ(object.use_count(), 1);
}

}  // namespace
}  // namespace phonepim
