#pragma once

// A small cache from short texts to what they stand for, in front of a look-up that costs more.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "util/hashing.h"

namespace colx {

// Remembers the value of the last text in each of its 2^place_bits places; a text has one place only. Texts longer than
// `longest` bytes, at most 255, are never remembered. Costs one hash and one comparison.
template <typename Value, unsigned place_bits, std::size_t longest = 28>
class TextCache {
 public:
  // Returns the value of a text, computing it by `compute(text)` when it is not remembered.
  template <typename Compute>
  Value get(std::string_view text, const Compute& compute) {
    if (text.size() > longest) return compute(text);
    Entry& entry = _entries[_place(text)];
    if (entry.filled && entry.length == text.size() && equal_bytes(entry.text, text.data(), text.size())) {
      return entry.value;
    }
    const Value value = compute(text);
    std::memcpy(entry.text, text.data(), text.size());
    entry.length = static_cast<std::uint8_t>(text.size());
    entry.filled = true;
    entry.value = value;
    return value;
  }

 private:
  static_assert(longest <= std::numeric_limits<std::uint8_t>::max());

  struct Entry {
    char text[longest];
    std::uint8_t length;
    bool filled;
    Value value;
  };

  static std::size_t _place(std::string_view text) {
    if (text.size() > 16) return hash_bytes(text.data(), text.size()) >> (64 - place_bits);
    const std::size_t length = text.size() < 8 ? text.size() : 8;
    const std::uint64_t head = load_up_to_8(text.data(), length);
    const std::uint64_t tail = load_up_to_8(text.data() + text.size() - length, length);
    return ((head ^ (tail << 1) ^ text.size()) * hash_keys[0]) >> (64 - place_bits);
  }

  std::array<Entry, std::size_t{1} << place_bits> _entries{};
};

}  // namespace colx
