#pragma once

// Arrays of many sizes that grow, for lists that are kept by the million.
//
// Capacities come in classes, four to a doubling, so that at most a quarter of an array lies idle for want of a fitting
// class. An array that is given back serves the next request of its class. Small classes are cut from blocks; large
// ones are taken from the system one by one.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

namespace colx {

// Serves uninitialised arrays of Type, which must be trivial enough to be copied as bytes and as large as a pointer.
template <typename Type>
class ArrayPool {
  static_assert(sizeof(Type) >= sizeof(void*));

 public:
  // The smallest capacity of a class that is not less than `size`, 1 or more.
  static std::size_t capacity_for(std::size_t size) { return _capacity_of(_class_for(size)); }

  // Returns an array of a class capacity. Throws std::bad_alloc.
  Type* take(std::size_t capacity) {
    Type*& free = _free[_class_for(capacity)];
    if (free != nullptr) {
      Type* const taken = free;
      free = *reinterpret_cast<Type**>(taken);
      return taken;
    }
    if (capacity > block_size / 8) {
      _blocks.push_back(_allocate(capacity));
      return _blocks.back().get();
    }
    if (capacity > _left) {
      _blocks.push_back(_allocate(block_size));
      _next = _blocks.back().get();
      _left = block_size;
    }
    Type* const taken = _next;
    _next += capacity;
    _left -= capacity;
    return taken;
  }

  // Takes back an array of a class capacity.
  void give_back(Type* array, std::size_t capacity) {
    Type*& free = _free[_class_for(capacity)];
    *reinterpret_cast<Type**>(array) = free;
    free = array;
  }

 private:
  static constexpr std::size_t block_size = std::size_t{1} << 15;

  struct Release {
    void operator()(Type* array) const { ::operator delete(array); }
  };
  using Block = std::unique_ptr<Type, Release>;

  static Block _allocate(std::size_t size) { return Block(static_cast<Type*>(::operator new(size * sizeof(Type)))); }

  // Classes 0 to 3 hold 1 to 4, then four classes to every doubling.
  static std::size_t _class_for(std::size_t size) {
    if (size <= 4) return size - 1;
    const auto step_bits = static_cast<std::size_t>(std::bit_width(size - 1)) - 3;
    return 4 * step_bits + ((size - 1) >> step_bits);
  }
  static std::size_t _capacity_of(std::size_t size_class) {
    if (size_class < 4) return size_class + 1;
    return ((size_class & 3) + 5) << (size_class / 4 - 1);
  }

  std::array<Type*, 256> _free{};
  std::vector<Block> _blocks;
  Type* _next = nullptr;
  std::size_t _left = 0;
};

}  // namespace colx
