#pragma once

// The patterns of records: for every type between the empty and the full one the members at its significant positions.
// They are written by partitions of their hash, so that the counts of equal ones come together.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/config.h"
#include "scale/records.h"
#include "spill/segment_file.h"

namespace colx::scale {

// The significant positions of a type, ascending, counted from 0.
struct Positions {
  explicit Positions(std::uint8_t type) {
    for (unsigned i = 0; i < settings::n; ++i)
      if (NGram::significant(type, i)) at[count++] = i;
  }

  std::array<unsigned, constants::max_grammity> at{};
  unsigned count = 0;
};

// The patterns of one partition of one type, numbered across all types: first those of type 1.
inline std::size_t pair_of(std::uint8_t type, std::size_t partition, unsigned partition_bits) {
  return (std::size_t{type} - 1U) << partition_bits | partition;
}
inline std::size_t pairs_count(unsigned partition_bits) {
  return (std::size_t{NGram::_full_ngram_type} - 1U) << partition_bits;
}

// The members of a stored record of N members.
inline NGram::Member member_at(const char* members, unsigned m) {
  return NGram::Member::load(reinterpret_cast<const unsigned char*>(members) + m * NGram::Member::size);
}

// The partition of the pattern that a record has at these positions.
inline std::size_t partition_of(const char* members, const Positions& positions, unsigned partition_bits) {
  std::uint64_t hash = 0;
  for (unsigned i = 0; i < positions.count; ++i)
    hash += member_hash(member_at(members, positions.at[i]), positions.at[i]);
  return bucket_of(hash, partition_bits);
}

// What tells a file of patterns: a segment for each pair, in which the patterns stand in the order of their records,
// each with the count of its record.
inline constexpr std::string_view patterns_kind = "patt";

// A record as it is in memory: its members and its count.
struct CountedRecord {
  const char* members;
  std::uint64_t count;
};

// Writes the patterns of records to a file.
FileMark write_patterns(const std::string& path, const std::vector<CountedRecord>& records, unsigned partition_bits);

}  // namespace colx::scale
