#pragma once

// One quick look at the bytes of a row, after which most rows of a treebank need no other.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace colx {

static_assert(std::endian::native == std::endian::little, "the first byte of a line is the lowest of a number");

// Eight bytes as a number, the first one lowest.
inline std::uint64_t load_bytes(const char* text) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, text, sizeof bytes);
  return bytes;
}

// What stands in a line.
struct LineTraits {
  bool blanks = false;        // a byte of white space other than TAB, a control character or a zero byte
  bool not_ascii = false;     // a byte of 0x80 or above
  bool empty_column = false;  // a TAB at an edge or behind another one

  bool operator==(const LineTraits&) const = default;
};

// What is seen of a line so far.
class LineScan {
 public:
  // Takes eight bytes, the first one as the lowest.
  void add(std::uint64_t bytes) {
    const std::uint64_t apart = bytes ^ ones * '\t';
    const std::uint64_t tabs = ~(((apart & ~highs) + ~highs) | apart) & highs;
    // A byte below 0x21 borrows from its highest bit; TABs and bytes of 0x80 and above are kept from it. What a borrow
    // does to the bytes above it does not matter, as there is one to be found already.
    const std::uint64_t shielded = bytes | tabs;
    _blanks |= (shielded - ones * 0x21) & ~shielded;
    _not_ascii |= bytes;
    _empty |= tabs & (tabs << 8 | _before);
    _before = tabs >> 56;
  }

  LineTraits traits() const { return {(_blanks & highs) != 0, (_not_ascii & highs) != 0, _empty != 0}; }

 private:
  static constexpr std::uint64_t ones = 0x0101010101010101;
  static constexpr std::uint64_t highs = ones * 0x80;

  std::uint64_t _blanks = 0;
  std::uint64_t _not_ascii = 0;
  std::uint64_t _empty = 0;
  std::uint64_t _before = 0x80;  // in its lowest byte: a TAB, or the beginning, comes before
};

// Looks at a line without its line end, eight bytes at a time.
inline LineTraits scan_line(std::string_view line) {
  LineScan scan;
  const char* at = line.data();
  const char* const end = at + line.size();
  for (; end - at >= 8; at += 8)
    scan.add(load_bytes(at));
  // Bytes behind the end are letters.
  char rest[9] = "xxxxxxxx";
  for (std::size_t i = 0; at + i < end; ++i)
    rest[i] = at[i];
  if (at < end) scan.add(load_bytes(rest));
  LineTraits traits = scan.traits();
  traits.empty_column = traits.empty_column || line.empty() || line.back() == '\t';
  return traits;
}

}  // namespace colx
