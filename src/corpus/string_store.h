#pragma once

// Interning of lemmas and tags: every distinct text is kept once and stands for itself by a dense index, in order of
// first sight. Texts live in the pool that a store is; they never move and are never dropped, so pointers to them stay
// valid as long as the store. Finding a text costs a logarithmic number of comparisons.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <stdexcept>
#include <vector>

#include "model/pool.h"

namespace colx {

// Says that a text is too long for a block of its store's pool.
class string_too_long : public std::length_error {
 public:
  // `length` and `limit` in bytes, without the terminating zero.
  string_too_long(std::size_t length, std::size_t limit);
};

// Orders two indexes by the bytes of the texts they stand for.
template <typename Index>
class StringStoreLessComparator {
 public:
  explicit StringStoreLessComparator(const std::vector<const char*>& texts) : _texts(texts) {}
  bool operator()(Index a, Index b) const;

 private:
  const std::vector<const char*>& _texts;
};

// Gives texts indexes from 0. The largest value of the index type is never given away: a store holds at most that many
// texts less one.
template <typename Index>
class StringStore : public RandomSizedMemoryPool<char> {
 public:
  // Makes an empty store in blocks of `block_size` + 1 bytes; a text and its terminating zero must fit in one.
  explicit StringStore(std::uint32_t block_size);

  // Returns the index of a zero-terminated text, which is copied when it is new. A text that is already there is found
  // even when the store is full. Throws index_overflow when there is no index left (the table then keeps one entry too
  // many) and string_too_long when the text does not fit in a block.
  Index store(const char* text);

  // Returns the text of an index that `store` gave.
  const char* operator[](Index index) const { return _texts[index]; }

  // Number of texts, which after an overflow counts the one that found no place.
  std::size_t size() const { return _texts.size(); }

 private:
  std::vector<const char*> _texts;
  std::set<Index, StringStoreLessComparator<Index>> _lookup;
};

extern template class StringStore<std::uint32_t>;
extern template class StringStore<std::uint8_t>;

}  // namespace colx
