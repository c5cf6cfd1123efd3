#pragma once

// How the work behind the reduction is cut up. All of it follows from what the tasks before have said, so that every
// task works it out for itself.

#include <cstddef>
#include <cstdint>

#include "model/listing.h"
#include "scale/counting/member_code.h"
#include "scale/engine/plan.h"

namespace colx::scale {

// Sizes that are known when all runs are reduced.
struct Layout {
  std::uint64_t listed = 0;      // N-grams that are listed
  std::uint64_t refused = 0;     // N-grams that the morphological filter refuses
  unsigned piece_shift = 0;      // by which the reduction has counted first places
  std::size_t ranges = 1;        // of buckets of the listing, as the arranged files have them
  unsigned partition_bits = 0;   // of the hash of a pattern
  bool whole = false;            // whether all N-grams are in memory when their patterns are counted
  MemberCode code;               // by which their members are in memory then
  std::size_t most_records = 1;  // about so many records may be in memory when they are put in order

  std::size_t partitions() const { return std::size_t{1} << partition_bits; }
  std::size_t range_of(std::uint32_t bucket, std::uint32_t buckets) const {
    return static_cast<std::size_t>(std::uint64_t{bucket} * ranges / buckets);
  }

  // Throws fatal_error when there are more listed N-grams than ngrex can hold.
  static Layout from(const WorkFolder& folder, const Plan& plan);
};

}  // namespace colx::scale
