#pragma once

// One quick look at the bytes of a row, after which most rows of a treebank need no other.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "util/short_runs.h"

namespace colx {

// Whether a byte may begin one of the white-space characters of Unicode beyond ASCII, which are U+0085, U+1680, U+2000
// to U+200A, U+2028, U+2029, U+202F, U+205F and U+3000, in UTF-8.
constexpr bool may_begin_wide_space(unsigned char byte) {
  return byte == 0xC2 || (byte >= 0xE1 && byte <= 0xE3);
}

// What stands in a line.
struct LineTraits {
  bool blanks = false;        // a byte of white space other than TAB, a control character or a zero byte
  bool not_ascii = false;     // a byte of 0x80 or above
  bool wide_space = false;    // a byte that may begin white space beyond ASCII
  bool empty_column = false;  // a TAB at an edge or behind another one

  bool operator==(const LineTraits&) const = default;
};

// Collects the traits of a line piece by piece.
class LineScan {
 public:
  // Looks at up to eight bytes; those of the word behind them are letters. Returns a bit for each of them from the
  // lowest, set where there is a TAB.
  std::uint64_t look_at_8(std::uint64_t bytes) {
    static_assert(std::endian::native == std::endian::little, "the first byte is the lowest of its word");
    constexpr std::uint64_t highs = ones * 0x80;
    const std::uint64_t apart = bytes ^ ones * '\t';
    const std::uint64_t tabs = ~(((apart & ~highs) + ~highs) | apart) & highs;
    // A byte below 0x21 borrows from its highest bit; TABs and bytes of 0x80 and above are kept from it. What a borrow
    // does to the bytes above it does not matter, as there is one to be found already.
    const std::uint64_t shielded = bytes | tabs;
    _blanks = _blanks || ((shielded - ones * 0x21) & ~shielded & highs) != 0;
    const std::uint64_t wide = bytes & highs;
    _not_ascii = _not_ascii || wide != 0;
    for (std::uint64_t rest = wide; rest != 0; rest &= rest - 1)
      _wide_space =
          _wide_space || may_begin_wide_space(static_cast<unsigned char>(bytes >> (std::countr_zero(rest) - 7)));
    // The multiplication brings the highest bits of all bytes together, in order.
    return (tabs >> 7) * 0x0102040810204080 >> 56;
  }

#ifdef __SSE2__
  // The same for sixteen bytes.
  std::uint64_t look_at_16(const char* bytes) {
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    const __m128i tabs = _mm_cmpeq_epi8(text, _mm_set1_epi8('\t'));
    const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(text, _mm_set1_epi8(0x20)), text);
    _low = _mm_or_si128(_low, _mm_andnot_si128(tabs, low));
    _all = _mm_or_si128(_all, text);
    const __m128i above = _mm_sub_epi8(text, _mm_set1_epi8('\xE1'));
    const __m128i asian = _mm_cmpeq_epi8(_mm_min_epu8(above, _mm_set1_epi8(2)), above);
    _wide = _mm_or_si128(_wide, _mm_or_si128(asian, _mm_cmpeq_epi8(text, _mm_set1_epi8('\xC2'))));
    return static_cast<unsigned>(_mm_movemask_epi8(tabs));
  }

  // The same for 64 bytes.
  std::uint64_t look_at_64(const char* bytes) {
    return look_at_16(bytes) | look_at_16(bytes + 16) << 16 | look_at_16(bytes + 32) << 32 |
           look_at_16(bytes + 48) << 48;
  }
#endif

  // Takes the TABs of the next 64 bytes, or of the last ones, and calls `found(position)` for each. So many at a time,
  // because it is the end of a run of TABs that costs.
  template <typename Found>
  void note_tabs(std::uint64_t tabs, std::size_t at, const Found& found) {
    _empty_column = _empty_column || (tabs & (tabs << 1 | _before)) != 0;
    _before = tabs >> 63;
    for (; tabs != 0; tabs &= tabs - 1)
      found(at + static_cast<std::size_t>(std::countr_zero(tabs)));
  }

  // What was found, given the whole line.
  LineTraits traits(std::string_view line) const {
    bool blanks = _blanks;
    bool not_ascii = _not_ascii;
    bool wide_space = _wide_space;
#ifdef __SSE2__
    blanks = blanks || _mm_movemask_epi8(_low) != 0;
    not_ascii = not_ascii || _mm_movemask_epi8(_all) != 0;
    wide_space = wide_space || _mm_movemask_epi8(_wide) != 0;
#endif
    return {blanks, not_ascii, wide_space, _empty_column || line.empty() || line.back() == '\t'};
  }

  static constexpr std::uint64_t ones = 0x0101010101010101;

 private:
  bool _blanks = false;
  bool _not_ascii = false;
  bool _wide_space = false;
  bool _empty_column = false;
  std::uint64_t _before = 1;  // 1: a TAB, or the beginning, comes before
#ifdef __SSE2__
  __m128i _low = _mm_setzero_si128();   // not zero where a byte of white space was seen
  __m128i _all = _mm_setzero_si128();   // the bits of all bytes seen
  __m128i _wide = _mm_setzero_si128();  // not zero where a byte that may begin white space was seen
#endif
};

// Looks at a line without its line end, eight bytes at a time, and calls `found(position)` for every TAB in order.
template <typename Found>
inline LineTraits scan_line_by_8(std::string_view line, const Found& found) {
  LineScan scan;
  for (std::size_t at = 0; at < line.size(); at += 64) {
    const std::string_view piece = line.substr(at, 64);
    std::uint64_t tabs = 0;
    std::size_t i = 0;
    for (; piece.size() - i >= 8; i += 8)
      tabs |= scan.look_at_8(load_up_to_8(piece.data() + i, 8)) << i;
    if (const std::size_t rest = piece.size() - i; rest > 0)
      tabs |= scan.look_at_8(load_up_to_8(piece.data() + i, rest) | scan.ones * 'x' << 8 * rest) << i;
    scan.note_tabs(tabs, at, found);
  }
  return scan.traits(line);
}

// The same, sixteen bytes at a time where the processor has registers for that.
template <typename Found>
inline LineTraits scan_line(std::string_view line, const Found& found) {
#ifdef __SSE2__
  // The last bytes are taken with some that come before them.
  if (line.size() >= 64) {
    LineScan scan;
    std::size_t at = 0;
    for (; line.size() - at >= 64; at += 64)
      scan.note_tabs(scan.look_at_64(line.data() + at), at, found);
    if (const std::size_t rest = line.size() - at; rest > 0)
      scan.note_tabs(scan.look_at_64(line.data() + line.size() - 64) >> (64 - rest), at, found);
    return scan.traits(line);
  }
  if (line.size() >= 16) {
    LineScan scan;
    std::uint64_t tabs = 0;
    std::size_t i = 0;
    for (; line.size() - i >= 16; i += 16)
      tabs |= scan.look_at_16(line.data() + i) << i;
    if (const std::size_t rest = line.size() - i; rest > 0)
      tabs |= scan.look_at_16(line.data() + line.size() - 16) >> (16 - rest) << i;
    scan.note_tabs(tabs, 0, found);
    return scan.traits(line);
  }
#endif
  return scan_line_by_8(line, found);
}

inline LineTraits scan_line(std::string_view line) {
  return scan_line(line, [](std::size_t) {});
}

}  // namespace colx
