#pragma once

// The kinds of faults that a treebank can have, and how often each was found. One table decides which of them cost the
// sentence and which are read over.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace colx {

// Those that cost the sentence come first; the report names faults in this order.
enum class Fault : std::uint8_t {
  zero_byte,
  columns,
  order,
  parent,
  too_many_words,
  word_as_other_row,
  parent_outside,
  cycle,
  no_root_in_part,
  text_too_long,

  compression,
  byte_order_mark,
  carriage_return,
  not_utf8,
  blank_line,
  trailing_space,
  missing_empty_line,
  extra_empty_line,
  missing_last_line,
  misplaced_comment,
  empty_column,
  misplaced_space,
  leading_zero,
  range,
  empty_node,
};
inline constexpr std::size_t fault_count = static_cast<std::size_t>(Fault::empty_node) + 1;

// The name of a kind in the report, in the plural.
std::string_view fault_name(Fault fault);

// Whether a sentence with such a fault has to be skipped; the words of others are read all the same.
bool costs_sentence(Fault fault);

// How often each kind was found.
class FaultCounts {
 public:
  void add(Fault fault, std::uint64_t count = 1) { _counts[static_cast<std::size_t>(fault)] += count; }

  std::uint64_t of(Fault fault) const { return _counts[static_cast<std::size_t>(fault)]; }

  // For the report: a line for the kinds that cost sentences and one for the others, each with its sum and followed by
  // a line for each of its kinds that was found; empty where there was none.
  std::string text() const;

 private:
  std::string _part(std::string_view title, bool costly) const;

  std::array<std::uint64_t, fault_count> _counts{};
};

}  // namespace colx
