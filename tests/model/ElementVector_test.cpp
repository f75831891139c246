// The element list's storage: four pointers inline, the rest in a vector;
// erasing keeps the order across the seam and destroys exactly one element.
#include "phonepim/model/ElementVector.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace phonepim::model_detail {
namespace {

struct Counted {
  explicit Counted(int v, int* alive) : value(v), alive(alive) { ++*alive; }
  ~Counted() { --*alive; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  int value;
  int* alive;
};

std::vector<int> Values(const ElementVector<Counted>& list) {
  std::vector<int> values;
  for (std::size_t i = 0; i < list.size(); ++i) values.push_back(list[i]->value);
  return values;
}

struct EraseCase {
  int count;
  std::size_t erased;
};

class element_vector_erase : public ::testing::TestWithParam<EraseCase> {};

TEST_P(element_vector_erase, keeps_order_and_destroys_one) {
  int alive = 0;
  {
    ElementVector<Counted> list;
    std::vector<int> expected;
    for (int i = 0; i < GetParam().count; ++i) {
      list.push_back(std::make_unique<Counted>(i, &alive));
      expected.push_back(i);
    }
    list.erase(GetParam().erased);
    expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(GetParam().erased));
    EXPECT_EQ(Values(list), expected);
    EXPECT_EQ(alive, GetParam().count - 1);
    list.push_back(std::make_unique<Counted>(99, &alive));
    expected.push_back(99);
    EXPECT_EQ(Values(list), expected);
  }
  EXPECT_EQ(alive, 0);
}

// Inline only, at the seam (four and five elements), and beyond it.
INSTANTIATE_TEST_SUITE_P(cases, element_vector_erase,
                         ::testing::Values(EraseCase{1, 0}, EraseCase{4, 0}, EraseCase{4, 3},
                                           EraseCase{5, 3}, EraseCase{5, 4}, EraseCase{5, 0},
                                           EraseCase{7, 2}, EraseCase{7, 5}, EraseCase{7, 6}));

TEST(element_vector, clear_destroys_inline_and_spilled_elements) {
  int alive = 0;
  ElementVector<Counted> list;
  for (int i = 0; i < 6; ++i) list.push_back(std::make_unique<Counted>(i, &alive));
  list.clear();
  EXPECT_EQ(list.size(), 0u);
  EXPECT_EQ(alive, 0);
  list.push_back(std::make_unique<Counted>(7, &alive));
  EXPECT_EQ(Values(list), std::vector<int>{7});
}

}  // namespace
}  // namespace phonepim::model_detail
