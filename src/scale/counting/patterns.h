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
#include "scale/counting/records.h"
#include "spill/encoding.h"
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

// The pairs of a type and a partition that one task has, by these numbers.
struct Pairs {
  std::size_t first = 0;
  std::size_t end = 0;
};

// The members of a stored record of N members.
inline NGram::Member member_at(const char* members, unsigned m) {
  return NGram::Member::load(reinterpret_cast<const unsigned char*>(members) + m * NGram::Member::size);
}

// The hash of a pattern of K members at these positions.
template <unsigned K>
std::uint64_t pattern_hash(const char* members, const Positions& positions) {
  std::uint64_t hash = 0;
  for (unsigned k = 0; k < K; ++k)
    hash += member_hash(member_at(members, k), positions.at[k]);
  return hash;
}

// What tells a file of patterns: a segment for each pair. In it stand the different patterns, as many of which have few
// lemmas and occur again and again: their number, and of each the members and the sum of the counts of its records.
// Then, for each record in their order, 0 for a pattern that no record before has, or the number of its pattern,
// from 1.
inline constexpr std::string_view patterns_kind = "pat2";

// A record as it is in memory: its members and its count.
struct CountedRecord {
  const char* members;
  std::uint64_t count;
};

// Whether it has to be known which record has which pattern.
enum class RecordsWanted { no, yes };

// Writes the patterns of records to a file.
FileMark write_patterns(const std::string& path, const std::vector<CountedRecord>& records, unsigned partition_bits,
                        RecordsWanted wanted);

// Reads the patterns of K members of a segment: calls `take_pattern(members, count)` for each, and then, for each
// record, `take_record(number)` with the number of its pattern, from 0.
template <unsigned K, typename TakePattern, typename TakeRecord>
void read_patterns(std::string_view segment, const TakePattern& take_pattern, const TakeRecord& take_record) {
  if (segment.empty()) return;
  const char* from = segment.data();
  const char* const end = from + segment.size();
  for (std::uint64_t left = get_short(from); left > 0; --left) {
    const char* const members = from;
    from += K * NGram::Member::size;
    take_pattern(members, get_short(from));
  }
  for (std::uint64_t next = 0; from != end;) {
    const std::uint64_t number = get_short(from);
    take_record(static_cast<std::size_t>(number == 0 ? next++ : number - 1));
  }
}

}  // namespace colx::scale
