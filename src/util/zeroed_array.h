#pragma once

// Large arrays that start as zeros, straight from the system.

#include <cstddef>
#include <utility>

namespace colx {

// Owns `bytes` zeroed bytes, or nothing. Large ones ask for huge pages, because the look-ups in them are random. What
// has not been written to takes no memory.
class ZeroedMemory {
 public:
  ZeroedMemory() = default;
  // Throws std::bad_alloc.
  explicit ZeroedMemory(std::size_t bytes);
  ~ZeroedMemory();
  ZeroedMemory(ZeroedMemory&& other) noexcept
      : _bytes(std::exchange(other._bytes, 0)), _data(std::exchange(other._data, nullptr)) {}
  ZeroedMemory& operator=(ZeroedMemory&& other) noexcept {
    std::swap(_bytes, other._bytes);
    std::swap(_data, other._data);
    return *this;
  }

  void* data() const { return _data; }

 private:
  std::size_t _bytes = 0;
  void* _data = nullptr;
};

// An array of `size` numbers, all 0 at the start.
template <typename Number>
class ZeroedArray {
 public:
  ZeroedArray() = default;
  explicit ZeroedArray(std::size_t size) : _memory(size * sizeof(Number)), _size(size) {}
  ZeroedArray(ZeroedArray&& other) noexcept : _memory(std::move(other._memory)), _size(std::exchange(other._size, 0)) {}
  ZeroedArray& operator=(ZeroedArray&& other) noexcept {
    _memory = std::move(other._memory);
    std::swap(_size, other._size);
    return *this;
  }

  Number& operator[](std::size_t i) { return data()[i]; }
  const Number& operator[](std::size_t i) const { return data()[i]; }
  std::size_t size() const { return _size; }
  const Number* begin() const { return data(); }
  const Number* end() const { return data() + _size; }

 private:
  Number* data() const { return static_cast<Number*>(_memory.data()); }

  ZeroedMemory _memory;
  std::size_t _size = 0;
};

}  // namespace colx
