#pragma once

// Arrays of 32-bit units of many sizes, for lists that are kept, and grow, by the million.
//
// Capacities come in classes, eight to a doubling, so that little of an array lies idle for want of a fitting class. An
// array that is given back serves the next request of its class. Small classes are cut from blocks; large ones are
// taken from the system one by one.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace colx {

// Serves uninitialised arrays, which live as long as the pool at the longest.
class ArrayPool {
 public:
  // The smallest capacity of a class that is not less than `size`, in units.
  static std::size_t capacity_for(std::size_t size);

  // Returns an array of a class capacity. Throws std::bad_alloc.
  std::uint32_t* take(std::size_t capacity);

  // Takes back an array of a class capacity.
  void give_back(std::uint32_t* array, std::size_t capacity);

  // The units of all arrays that have not been given back.
  std::size_t taken() const { return _taken; }

 private:
  using Block = std::unique_ptr<std::uint32_t[]>;

  std::uint32_t* _take(std::size_t capacity);

  std::array<std::uint32_t*, 512>
      _free{};  // by class: the first array that was given back; each holds the next one's address
  std::vector<Block> _blocks;
  std::uint32_t* _next = nullptr;  // in the block in hand
  std::size_t _left = 0;
  std::size_t _taken = 0;
};

}  // namespace colx
