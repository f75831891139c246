// CVObject's extension items, and the element list's storage behind them:
// four pointers inline, the rest in a vector.
#include "phonepim/model/CVObject.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "model/AssertionPattern.h"
#include "phonepim/model/ElementVector.h"

namespace phonepim {
namespace {

TEST(vobject, appends_finds_the_first_of_a_name_and_deletes_items) {
  CVObject record;
  CXItem* group = record.NewXItem("X-GROUP", "\xE5\xAE\xB6", 7, 2);
  CXItem* second = record.NewXItem(u"X-GROUP", u"ext;1", 0x10000000u, 9);
  CXItem* unnamed = record.NewXItem(nullptr, nullptr, 0, -1);
  EXPECT_EQ((std::vector<String>{group->Name(), group->Data(), second->GetValue(), unnamed->Name()}),
            (std::vector<String>{u"X-GROUP", u"\u5BB6", u"ext;1", u""}));
  EXPECT_EQ((std::vector<std::int64_t>{group->Param(), group->thisID(), second->Param(), second->thisID()}),
            (std::vector<std::int64_t>{7, 2, 0x10000000, 9}));
  EXPECT_EQ(std::as_const(record).FindXItem(u"X-GROUP"), group);
  EXPECT_EQ(record.FindXItem(u""), unnamed);
  for (const char* other : {"x-group", "X-GROUP ", "X-GROU"}) EXPECT_EQ(record.FindXItem(other), nullptr) << other;
  record.DeleteXItemAtIndex(0);
  EXPECT_EQ(record.FindXItem("X-GROUP"), second);
  EXPECT_THROW(record.DeleteXItemAtIndex(2), std::out_of_range);
  EXPECT_THROW(record.DeleteXItemAtIndex(-1), std::out_of_range);
  record.DeleteAllXItem();
  EXPECT_EQ(record.GetXItemCount(), 0);
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const std::string pattern = testing_support::AssertionPattern("index >= 0 && index < [m_arrXItem count]");
  record.NewXItem("X-A", "1", 0, -1);
  for (int index : {-1, 1}) {
    EXPECT_DEATH(record.GetXItem(index), pattern);
    EXPECT_DEATH(std::as_const(record).GetXItem(index), pattern);
  }
}

struct Counted {
  Counted(int v, int* alive) : value(v), alive(alive) { ++*alive; }
  ~Counted() { --*alive; }
  int value;
  int* alive;
};

// Erasing keeps the order across the seam and destroys exactly one element:
// inline only, at the seam (four and five elements), and beyond it.
TEST(element_vector, erase_keeps_order_and_destroys_one) {
  const std::pair<int, std::size_t> rows[] = {{4, 3}, {5, 3}, {5, 4}, {5, 0}, {7, 2}, {7, 6}};
  for (const auto& [count, erased] : rows) {
    int alive = 0;
    {
      model_detail::ElementVector<Counted> list;
      std::vector<int> expected, values;
      for (int i = 0; i < count; ++i) {
        list.push_back(std::make_unique<Counted>(i, &alive));
        expected.push_back(i);
      }
      list.erase(erased);
      expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(erased));
      list.push_back(std::make_unique<Counted>(99, &alive));
      expected.push_back(99);
      for (std::size_t i = 0; i < list.size(); ++i) values.push_back(list[i]->value);
      EXPECT_EQ(std::pair(values, alive), std::pair(expected, count)) << count << " " << erased;
      if (count == 7) {
        list.clear();
        EXPECT_EQ(std::pair(list.size(), alive), std::pair(std::size_t{0}, 0));
      }
    }
    EXPECT_EQ(alive, 0);
  }
}

}  // namespace
}  // namespace phonepim
