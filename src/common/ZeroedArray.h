#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace velda {

// A fixed-size array of plain values that starts all zero bytes. A large one
// comes from the system already zeroed and is not written over, so each of
// its pages costs only when it is first used: growing such an array does
// not stop the program while the whole of it is cleared.
template <typename T>
class ZeroedArray {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>, "the values are plain bytes");

 public:
  ZeroedArray() = default;
  // Throws std::bad_alloc.
  explicit ZeroedArray(size_t count) : values_(static_cast<T*>(std::calloc(count, sizeof(T)))), count_(count) {
    if (!values_ && count > 0) throw std::bad_alloc();
  }
  ZeroedArray(ZeroedArray&& other) noexcept
      : values_(std::move(other.values_)), count_(std::exchange(other.count_, 0)) {}
  ZeroedArray& operator=(ZeroedArray&& other) noexcept {
    values_ = std::move(other.values_);
    count_ = std::exchange(other.count_, 0);
    return *this;
  }

  size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }
  T* data() const { return values_.get(); }
  T& operator[](size_t i) const { return values_[i]; }

 private:
  struct Free {
    void operator()(T* values) const { std::free(values); }
  };
  std::unique_ptr<T[], Free> values_;
  size_t count_ = 0;
};

}  // namespace velda
