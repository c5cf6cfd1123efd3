#pragma once

// One N-gram of an output datafile, taken apart.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace colx::table {

inline constexpr std::size_t smallest_n = 2;
inline constexpr std::size_t largest_n = 7;
inline constexpr std::size_t most_cells = std::size_t{1} << largest_n;
inline constexpr std::size_t most_measures = 6;

// Numbers above this are not exact in a double; no total of a file may reach beyond it.
inline constexpr std::uint64_t largest_total = std::uint64_t{1} << 53;

// How many measures the program writes below an N-gram of n words.
constexpr std::size_t measures_of(std::size_t n) {
  return n == 2 ? 6 : 2;
}

struct Member {
  std::string_view lemma;
  std::string_view tag;
  std::string_view relation;
  std::uint32_t parent = 0;  // position of the parent within the N-gram, from 1; 0 for the top word
};

// All texts are views into the memory from which the block was parsed.
struct Block {
  std::size_t n = 0;
  std::array<Member, largest_n> members{};
  std::array<std::uint64_t, most_cells> cells{};         // the first 2^n are used, cell 0 first
  std::array<std::string_view, most_measures> measures;  // as they stand; the first measures_of(n) are used
  std::string_view text;                                 // the whole block, its empty line included
  std::size_t members_size = 0;                          // how much of `text` the member lines take

  std::size_t cell_count() const { return std::size_t{1} << n; }
  std::size_t measure_count() const { return measures_of(n); }
};

}  // namespace colx::table
