#pragma once

// Putting records that are in memory into the order in which they are listed.

#include <cstdint>
#include <vector>

#include "model/listing.h"

namespace colx::scale {

// A record in memory, as far as its place goes.
struct ListedEntry {
  std::uint64_t first;  // the number of its first occurrence
  std::uint64_t begin;  // where its bytes are
  std::uint32_t weak_hash;
  std::uint32_t bucket;
};

// The entries by bucket, and in one bucket as the listing says.
std::vector<ListedEntry> sorted_by_listing(const std::vector<ListedEntry>& entries, const Listing& listing);

}  // namespace colx::scale
