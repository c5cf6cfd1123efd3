#pragma once

// Bump allocation from large blocks, for records and texts that are made by the million and kept until the process
// ends. A request never spans blocks; the tail that it leaves in one is kept and serves a later request that fits.
// Addresses are stable and advance by exactly the sizes asked for, without alignment. Nothing is given back one by one.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>

namespace colx {

// One block of raw memory, owned, with the place up to which it is taken.
template <typename Type>
class MemoryBlock {
 public:
  explicit MemoryBlock(std::uint32_t size);

  // Takes `size` units off the free part, or returns null when it is smaller than that.
  Type* take(std::size_t size);

  std::uint32_t free() const { return static_cast<std::uint32_t>(_end - _next); }

 private:
  std::unique_ptr<Type[]> _begin;
  Type* _next;
  Type* _end;
};

// What every pool of blocks offers.
template <typename Type, template <typename> class Block>
class MemoryPool {
 public:
  virtual ~MemoryPool() = default;
  virtual std::unique_ptr<Block<Type>> create_new_block() = 0;
  virtual void clear() = 0;
  virtual Type* get_memory(std::size_t size) = 0;

 protected:
  MemoryPool() = default;
  MemoryPool(MemoryPool&&) noexcept = default;
  MemoryPool& operator=(MemoryPool&&) noexcept = default;
};

// Serves requests of any size up to that of its blocks. Costs one comparison and one addition while the current block
// lasts, and a logarithmic search among the tails of earlier ones when it does not.
template <typename Type>
class RandomSizedMemoryPool : public MemoryPool<Type, MemoryBlock> {
 public:
  // Takes no memory until the first request.
  explicit RandomSizedMemoryPool(std::uint32_t block_size) : _block_size(block_size) {}

  std::unique_ptr<MemoryBlock<Type>> create_new_block() override;

  // Releases every block but the current one.
  void clear() override;

  // Returns the address of `size` fresh units, uninitialised, or null when `size` exceeds the block size. Throws
  // std::bad_alloc, and is then as it was before.
  Type* get_memory(std::size_t size) override;

  std::uint32_t block_size() const { return _block_size; }

 private:
  void _change_block(std::size_t size);

  std::uint32_t _block_size;
  std::unique_ptr<MemoryBlock<Type>> _current;
  std::multimap<std::uint32_t, std::unique_ptr<MemoryBlock<Type>>>
      _mem_blocks;  // earlier blocks by what is free in them
};

// A pool of bytes for objects that are built in place.
class VoidPool : public RandomSizedMemoryPool<char> {
 public:
  using RandomSizedMemoryPool<char>::RandomSizedMemoryPool;

  // As get_memory, untyped.
  virtual void* get_raw_memory(std::size_t size) { return get_memory(size); }
};

extern template class MemoryBlock<char>;
extern template class RandomSizedMemoryPool<char>;

}  // namespace colx
