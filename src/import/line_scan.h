#pragma once

// One quick look at the bytes of a row, after which most rows of a treebank need no other.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "util/short_runs.h"

namespace colx {

// What stands in a line.
struct LineTraits {
  bool blanks = false;        // a byte of white space other than TAB, a control character or a zero byte
  bool not_ascii = false;     // a byte of 0x80 or above
  bool empty_column = false;  // a TAB at an edge or behind another one

  bool operator==(const LineTraits&) const = default;
};

// Looks at a line without its line end, eight bytes at a time, and calls `found(position)` for every TAB in order.
template <typename Found>
[[gnu::always_inline]] inline LineTraits scan_line(std::string_view line, const Found& found) {
  static_assert(std::endian::native == std::endian::little,
                "bytes are looked at from the lowest of a word to the highest");
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t highs = ones * 0x80;
  std::uint64_t blanks = 0;
  std::uint64_t not_ascii = 0;
  std::uint64_t empty = 0;
  std::uint64_t before = 0x80;  // in its lowest byte: a TAB, or the beginning, comes before
  const auto look = [&](std::uint64_t bytes, std::size_t at) {
    const std::uint64_t apart = bytes ^ ones * '\t';
    std::uint64_t tabs = ~(((apart & ~highs) + ~highs) | apart) & highs;
    // A byte below 0x21 borrows from its highest bit; TABs and bytes of 0x80 and above are kept from it. What a borrow
    // does to the bytes above it does not matter, as there is one to be found already.
    const std::uint64_t shielded = bytes | tabs;
    blanks |= (shielded - ones * 0x21) & ~shielded & highs;
    not_ascii |= bytes & highs;
    empty |= tabs & (tabs << 8 | before);
    before = tabs >> 56;
    for (; tabs != 0; tabs &= tabs - 1)
      found(at + static_cast<std::size_t>(std::countr_zero(tabs)) / 8);
  };
  std::size_t at = 0;
  for (; line.size() - at >= 8; at += 8) {
    std::uint64_t bytes;
    std::memcpy(&bytes, line.data() + at, 8);
    look(bytes, at);
  }
  if (const std::size_t rest = line.size() - at; rest > 0) {
    // Bytes behind the end are letters.
    look(load_up_to_8(line.data() + at, rest) | (ones * 'x') << 8 * rest, at);
  }
  return {blanks != 0, not_ascii != 0, empty != 0 || line.empty() || line.back() == '\t'};
}

inline LineTraits scan_line(std::string_view line) {
  return scan_line(line, [](std::size_t) {});
}

}  // namespace colx
