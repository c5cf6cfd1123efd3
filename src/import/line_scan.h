#pragma once

// One quick look at the bytes of a row, after which most rows of a treebank need no other.

#include <cstdint>
#include <cstring>
#include <string_view>

namespace colx {

// What stands in a line.
struct LineTraits {
  bool blanks = false;        // a byte of white space other than TAB, a control character or a zero byte
  bool not_ascii = false;     // a byte of 0x80 or above
  bool empty_column = false;  // a TAB at an edge or behind another one

  bool operator==(const LineTraits&) const = default;
};

// Looks at a line without its line end, eight bytes at a time.
inline LineTraits scan_line(std::string_view line) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t highs = ones * 0x80;
  std::uint64_t blanks = 0;
  std::uint64_t not_ascii = 0;
  std::uint64_t empty = 0;
  std::uint64_t before = 0x80;  // in its lowest byte: a TAB, or the beginning, comes before
  for (std::size_t at = 0; at < line.size(); at += 8) {
    // Bytes behind the end are letters.
    std::uint64_t bytes = ones * 'x';
    std::memcpy(&bytes, line.data() + at, line.size() - at < 8 ? line.size() - at : 8);
    const std::uint64_t apart = bytes ^ ones * '\t';
    const std::uint64_t tabs = ~(((apart & ~highs) + ~highs) | apart) & highs;
    // A byte below 0x21 borrows from its highest bit; TABs and bytes of 0x80 and above are kept from it. What a borrow
    // does to the bytes above it does not matter, as there is one to be found already.
    const std::uint64_t shielded = bytes | tabs;
    blanks |= (shielded - ones * 0x21) & ~shielded & highs;
    not_ascii |= bytes & highs;
    empty |= tabs & (tabs << 8 | before);
    before = tabs >> 56;
  }
  return {blanks != 0, not_ascii != 0, empty != 0 || line.empty() || line.back() == '\t'};
}

}  // namespace colx
