#pragma once

// How often the patterns of N-grams occur when all N-grams are in memory: type by type, one number for each N-gram. As
// in model/pattern_frequencies a pattern is told apart by 64 bits: the number of the pattern without its last member,
// and the last member.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "util/key_sums.h"

namespace colx::scale {

// Works out the patterns of some types, one after another.
class PatternColumns {
 public:
  using Column = std::vector<std::uint32_t>;  // by record

  // Bytes that this takes for each record of n members.
  static std::uint64_t bytes_of_record(unsigned n);

  // Takes the records: for each position what stands for their members there, and their counts, the sum of which is
  // less than 2^32. Types come in ascending order and are less than `end`.
  PatternColumns(std::vector<Column> members, Column counts, unsigned end);

  // Works out a type. With `records_wanted` it is known behind it which record has which pattern first.
  void work_out(std::uint8_t type, bool records_wanted);

  // Of the type in hand: by record the sum of the counts of all records with its pattern; how many different patterns
  // there are; and a record for each of these, if they were wanted.
  const Column& sums() const { return _type_sums; }
  std::uint32_t different() const { return _sums.different(); }
  const std::vector<std::uint32_t>& records() const { return _records; }

  // What stands for the member of a record at a position.
  std::uint32_t member(std::uint32_t record, unsigned position) const { return _members[position][record]; }

 private:
  std::uint32_t _size() const { return static_cast<std::uint32_t>(_counts.size()); }
  const Column& _identified(std::uint8_t type);
  template <typename Use>
  void _with_keys(std::uint8_t type, const Use& use);
  void _number(std::uint8_t type);
  void _free_columns_before(std::uint8_t type);
  void _free(unsigned type);

  std::vector<Column> _members;  // by position
  Column _counts;
  unsigned _end;
  KeySums _sums;
  std::vector<Column> _numbers;  // by type: the numbers of its patterns by record; empty: not known
  std::vector<Column> _unused;   // whose memory is used again
  Column _type_sums;
  std::vector<std::uint32_t> _records;
};

}  // namespace colx::scale
