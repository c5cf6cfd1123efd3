#include "util/array_pool.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace colx {

namespace {

constexpr std::size_t block_size = std::size_t{1} << 16;

// Every array must be able to hold an address.
constexpr std::size_t least_capacity = 4;

// Up to 8 units there is a class for every size, the first one in use being that of the least capacity; from there on
// there are eight classes to every doubling.
std::size_t _class_for(std::size_t size) {
  size = std::max(size, least_capacity) - 1;
  if (size < 8) return size;
  const auto step_bits = static_cast<std::size_t>(std::bit_width(size)) - 4;
  return 8 * step_bits + (size >> step_bits);
}

std::size_t _capacity_of(std::size_t size_class) {
  if (size_class < 8) return size_class + 1;
  return ((size_class % 8) + 9) << (size_class / 8 - 1);
}

}  // namespace

std::size_t ArrayPool::capacity_for(std::size_t size) {
  return _capacity_of(_class_for(size));
}

std::uint32_t* ArrayPool::take(std::size_t capacity) {
  std::uint32_t* const taken = _take(capacity);
  _taken += capacity;
  return taken;
}

std::uint32_t* ArrayPool::_take(std::size_t capacity) {
  std::uint32_t*& free = _free[_class_for(capacity)];
  if (free != nullptr) {
    std::uint32_t* const taken = free;
    std::memcpy(&free, taken, sizeof free);
    return taken;
  }
  if (capacity > block_size / 8) {
    _blocks.push_back(std::make_unique_for_overwrite<std::uint32_t[]>(capacity));
    return _blocks.back().get();
  }
  if (capacity > _left) {
    _blocks.push_back(std::make_unique_for_overwrite<std::uint32_t[]>(block_size));
    _next = _blocks.back().get();
    _left = block_size;
  }
  _left -= capacity;
  return std::exchange(_next, _next + capacity);
}

void ArrayPool::give_back(std::uint32_t* array, std::size_t capacity) {
  std::uint32_t*& free = _free[_class_for(capacity)];
  std::memcpy(array, &free, sizeof free);
  free = array;
  _taken -= capacity;
}

}  // namespace colx
