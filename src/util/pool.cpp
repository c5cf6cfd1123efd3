#include "util/pool.h"

#include <utility>

namespace colx {

template <typename Type>
MemoryBlock<Type>::MemoryBlock(std::uint32_t size)
    : _begin(std::make_unique_for_overwrite<Type[]>(size)), _next(_begin.get()), _end(_next + size) {}

template <typename Type>
Type* MemoryBlock<Type>::take(std::size_t size) {
  if (free() < size) return nullptr;
  return std::exchange(_next, _next + size);
}

template <typename Type>
std::unique_ptr<MemoryBlock<Type>> RandomSizedMemoryPool<Type>::create_new_block() {
  return std::make_unique<MemoryBlock<Type>>(_block_size);
}

template <typename Type>
void RandomSizedMemoryPool<Type>::clear() {
  _mem_blocks.clear();
}

template <typename Type>
Type* RandomSizedMemoryPool<Type>::get_memory(std::size_t size) {
  if (_block_size < size) return nullptr;
  if (_current == nullptr) {
    _current = create_new_block();
  } else if (_current->free() < size) {
    _change_block(size);
  }
  return _current->take(size);
}

// Files the current block under what is free in it and makes the best fitting earlier block the current one, the one
// filed first among equals, or a new block when none fits.
template <typename Type>
void RandomSizedMemoryPool<Type>::_change_block(std::size_t size) {
  const auto best_fit = _mem_blocks.lower_bound(static_cast<std::uint32_t>(size));
  if (best_fit == _mem_blocks.end()) {
    std::unique_ptr<MemoryBlock<Type>> successor = create_new_block();
    const auto filed = _mem_blocks.emplace(_current->free(), nullptr);
    filed->second = std::exchange(_current, std::move(successor));
  } else {
    const auto filed = _mem_blocks.emplace(_current->free(), nullptr);
    filed->second = std::exchange(_current, std::move(best_fit->second));
    _mem_blocks.erase(best_fit);
  }
}

template class MemoryBlock<char>;
template class RandomSizedMemoryPool<char>;

}  // namespace colx
