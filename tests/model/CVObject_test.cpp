#include "phonepim/model/CVObject.h"

#include <gtest/gtest.h>

#include <climits>
#include <stdexcept>
#include <string>
#include <utility>

#include "model/AssertionPattern.h"

namespace phonepim {
namespace {

using testing_support::AssertionPattern;

TEST(CVObject, starts_without_items) {
  const CVObject record;
  EXPECT_EQ(record.storage(), 0);
  EXPECT_EQ(record.thisID(), 0);
  EXPECT_EQ(record.GetXItemCount(), 0);
  EXPECT_EQ(record.FindXItem("X-EXPIRY"), nullptr);
}

TEST(CVObject, storage_and_id) {
  CVObject record;
  record.setStorage(5);
  record.setThisID(-3);
  EXPECT_EQ(record.storage(), 5);
  EXPECT_EQ(record.thisID(), -3);
}

TEST(CVObject, NewXItem_appends_items_in_order) {
  CVObject record;
  CXItem* expiry = record.NewXItem("X-EXPIRY", "30", 0, -1);
  CXItem* group = record.NewXItem("X-GROUP", "\xE5\xAE\xB6", 7, 2);
  CXItem* extension = record.NewXItem(u"X-PBOEXTENSION", u"ext;1", 0x10000000u, 9);

  ASSERT_EQ(record.GetXItemCount(), 3);
  EXPECT_EQ(record.GetXItem(0), expiry);
  EXPECT_EQ(record.GetXItem(1), group);
  EXPECT_EQ(record.GetXItem(2), extension);

  EXPECT_EQ(expiry->Name(), u"X-EXPIRY");
  EXPECT_EQ(expiry->Data(), u"30");
  EXPECT_EQ(expiry->Param(), 0u);
  EXPECT_EQ(expiry->thisID(), -1);
  EXPECT_EQ(group->Name(), u"X-GROUP");
  EXPECT_EQ(group->Data(), u"\u5BB6");
  EXPECT_EQ(group->Param(), 7u);
  EXPECT_EQ(group->thisID(), 2);
  EXPECT_EQ(extension->Name(), u"X-PBOEXTENSION");
  EXPECT_EQ(extension->GetValue(), u"ext;1");
  EXPECT_EQ(extension->Param(), 0x10000000u);
  EXPECT_EQ(extension->thisID(), 9);
}

TEST(CVObject, null_name_and_text_read_empty) {
  CVObject record;
  CXItem* item = record.NewXItem(nullptr, nullptr, 0, -1);
  EXPECT_EQ(item->Name(), u"");
  EXPECT_TRUE(item->IsEmpty());
  EXPECT_EQ(record.FindXItem(u""), item);
}

TEST(CVObject, FindXItem_returns_the_first_of_a_name_exactly) {
  CVObject record;
  record.NewXItem("X-OTHER", "0", 0, -1);
  CXItem* first = record.NewXItem("X-GROUP", "1", 0, -1);
  record.NewXItem("X-GROUP", "2", 0, -1);

  EXPECT_EQ(record.FindXItem("X-GROUP"), first);
  EXPECT_EQ(record.FindXItem(u"X-GROUP"), first);
  EXPECT_EQ(std::as_const(record).FindXItem("X-GROUP"), first);
  EXPECT_EQ(record.FindXItem("x-group"), nullptr);
  EXPECT_EQ(record.FindXItem("X-GROUP "), nullptr);
  EXPECT_EQ(record.FindXItem("X-GROU"), nullptr);
  EXPECT_EQ(record.FindXItem("X-EXPIRY"), nullptr);
}

TEST(CVObject, DeleteXItemAtIndex_removes_one_and_uncovers_the_next_of_its_name) {
  CVObject record;
  record.NewXItem("X-GROUP", "1", 0, -1);
  CXItem* second = record.NewXItem("X-GROUP", "2", 0, -1);
  CXItem* other = record.NewXItem("X-OTHER", "3", 0, -1);

  record.DeleteXItemAtIndex(0);
  ASSERT_EQ(record.GetXItemCount(), 2);
  EXPECT_EQ(record.GetXItem(0), second);
  EXPECT_EQ(record.GetXItem(1), other);
  EXPECT_EQ(record.FindXItem("X-GROUP"), second);

  record.DeleteXItemAtIndex(1);
  ASSERT_EQ(record.GetXItemCount(), 1);
  EXPECT_EQ(record.FindXItem("X-OTHER"), nullptr);
}

TEST(CVObject, DeleteXItemAtIndex_outside_the_list_throws_range_error) {
  CVObject record;
  EXPECT_THROW(record.DeleteXItemAtIndex(0), std::out_of_range);
  record.NewXItem("X-A", "", 0, -1);
  EXPECT_THROW(record.DeleteXItemAtIndex(1), std::out_of_range);
  EXPECT_THROW(record.DeleteXItemAtIndex(-1), std::out_of_range);
  EXPECT_EQ(record.GetXItemCount(), 1);
}

TEST(CVObject, DeleteAllXItem_empties_the_list_and_creators_still_work) {
  CVObject record;
  record.NewXItem("X-A", "1", 0, -1);
  record.NewXItem("X-B", "2", 0, -1);
  record.DeleteAllXItem();
  EXPECT_EQ(record.GetXItemCount(), 0);
  EXPECT_EQ(record.FindXItem("X-A"), nullptr);

  CXItem* again = record.NewXItem("X-A", "3", 0, -1);
  ASSERT_EQ(record.GetXItemCount(), 1);
  EXPECT_EQ(record.GetXItem(0), again);
  EXPECT_EQ(record.FindXItem("X-A")->Data(), u"3");

  record.DeleteAllXItem();
  record.DeleteAllXItem();
  EXPECT_EQ(record.GetXItemCount(), 0);
}

class CVObjectDeathTest : public ::testing::TestWithParam<int> {};

// Index -1, the count, and far past it, on a record holding two items.
TEST_P(CVObjectDeathTest, GetXItem_outside_the_list_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CVObject record;
  record.NewXItem("X-A", "1", 0, -1);
  record.NewXItem("X-B", "2", 0, -1);
  const std::string pattern = AssertionPattern("index >= 0 && index < [m_arrXItem count]");
  EXPECT_DEATH(record.GetXItem(GetParam()), pattern);
  EXPECT_DEATH(std::as_const(record).GetXItem(GetParam()), pattern);
}

INSTANTIATE_TEST_SUITE_P(all, CVObjectDeathTest, ::testing::Values(-1, 2, 1000, INT_MIN));

TEST(CVObjectDeathTest, GetXItem_on_an_empty_list_fails_the_assertion) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  CVObject record;
  EXPECT_DEATH(record.GetXItem(0),
               AssertionPattern("index >= 0 && index < [m_arrXItem count]"));
}

}  // namespace
}  // namespace phonepim
