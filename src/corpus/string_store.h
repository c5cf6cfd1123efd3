#pragma once

// Interning of lemmas and tags: every distinct text is kept once and stands for itself by a dense index, in order of
// first sight. Texts live in the pool that a store is; they never move and are never dropped, so pointers to them stay
// valid as long as the store. Finding a text costs its hash and one comparison.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "util/compact_index.h"
#include "util/pool.h"

namespace colx {

// Says that a text is too long for a block of its store's pool.
class string_too_long : public std::length_error {
 public:
  // `length` and `limit` in bytes, without the terminating zero.
  string_too_long(std::size_t length, std::size_t limit);
};

// Gives texts indexes from 0. The largest value of the index type is never given away: a store holds at most that many
// texts less one.
template <typename Index>
class StringStore : public RandomSizedMemoryPool<char> {
 public:
  // Makes an empty store for texts that take, with their terminating zero, at most `block_size` + 1 bytes each.
  explicit StringStore(std::uint32_t block_size);

  // The index that a closed store gives for every text that it does not have; that of no text.
  static constexpr Index others = std::numeric_limits<Index>::max();

  // Closes the store: it takes no further text, and thus no further memory, for readers of a corpus that look for known
  // words only.
  void close() { _is_closed = true; }

  // Returns the index of a text without zero bytes, which is copied when it is new, unless the store is closed. A text
  // that is already there is found even when the store is full. Throws index_overflow when there is no index left (the
  // table then keeps one entry too many) and string_too_long when the text does not fit in a block.
  Index store(std::string_view text);

  // Returns the index of a text that is there; nothing is stored. The text may be anything.
  std::optional<Index> find(std::string_view text) const;

  // Returns the text of an index that `store` gave; there is a zero behind it.
  std::string_view operator[](Index index) const { return _text(index); }

  // Number of texts, which after an overflow counts the one that found no place.
  std::size_t size() const { return _texts.size(); }

 private:
  using Length = std::uint16_t;

  std::uint32_t _find(std::uint64_t hash, std::string_view text) const;

  // Every text stands behind its length.
  std::string_view _text(std::size_t index) const {
    Length length;
    std::memcpy(&length, _texts[index] - sizeof length, sizeof length);
    return {_texts[index], length};
  }

  std::vector<const char*> _texts;
  CompactIndex _lookup;
  bool _is_closed = false;
};

extern template class StringStore<std::uint32_t>;
extern template class StringStore<std::uint8_t>;

}  // namespace colx
