// ElementVector: the owning pointer list behind a contact's element lists.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

namespace phonepim::model_detail {

/// A list of owned elements whose first `N` pointers live in the list
/// itself. A card read from a phone has one e-mail address, one postal
/// address and three or four numbers: with the pointers inline, filling a
/// contact allocates only the elements.
template <class T, std::size_t N = 4>
class ElementVector {
 public:
  using Pointer = std::unique_ptr<T>;

  ElementVector() = default;
  ElementVector(const ElementVector&) = delete;
  ElementVector& operator=(const ElementVector&) = delete;

  std::size_t size() const { return size_; }

  Pointer& operator[](std::size_t i) { return i < N ? inline_[i] : overflow_[i - N]; }
  const Pointer& operator[](std::size_t i) const {
    return i < N ? inline_[i] : overflow_[i - N];
  }

  void push_back(Pointer element) {
    if (size_ < N) {
      inline_[size_] = std::move(element);
    } else {
      overflow_.push_back(std::move(element));
    }
    ++size_;
  }

  /// Destroys the element at `i` and closes the gap, keeping the order.
  void erase(std::size_t i) {
    for (std::size_t j = i; j + 1 < size_; ++j) (*this)[j] = std::move((*this)[j + 1]);
    if (size_ > N) {
      overflow_.pop_back();
    } else {
      inline_[size_ - 1].reset();
    }
    --size_;
  }

  void clear() {
    for (Pointer& element : inline_) element.reset();
    overflow_.clear();
    size_ = 0;
  }

  void reserve(std::size_t n) {
    if (n > N) overflow_.reserve(n - N);
  }

 private:
  std::array<Pointer, N> inline_{};
  std::vector<Pointer> overflow_;
  std::size_t size_ = 0;
};

}  // namespace phonepim::model_detail
