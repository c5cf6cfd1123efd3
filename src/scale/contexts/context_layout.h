#pragma once

// How the work on contexts is cut up behind their collection. All of it follows from what the tasks before have said.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "scale/counting/count_task.h"
#include "scale/engine/plan.h"
#include "scale/shards/number_task.h"

namespace colx::scale {

// Sizes that are known when everything is counted and all contexts are collected. A cell is a range of buckets of the
// listing of one type; cells are numbered in the order in which they are written, from the full type down to type 1.
struct ContextLayout {
  std::vector<std::size_t> shards;       // whose contexts were collected
  std::vector<std::size_t> runs;         // of each of them
  std::vector<std::uint64_t> before;     // occurrences in the shards before each of them
  std::uint64_t occurrences = 0;         // of all
  std::vector<std::uint64_t> records;    // by type: how many are listed
  std::vector<std::size_t> first_cells;  // by type
  std::size_t cells = 0;
  unsigned bits = 0;          // of the hash, by which runs are ordered
  std::vector<Pairs> merges;  // the pairs of types and buckets of each task that merges

  std::size_t end_cell(std::uint8_t type) const { return type > 1 ? first_cells[type - 1U] : cells; }
  std::size_t cell_of(std::uint8_t type, std::uint32_t bucket, std::uint32_t buckets) const {
    const std::size_t ranges = end_cell(type) - first_cells[type];
    return first_cells[type] + static_cast<std::size_t>(std::uint64_t{bucket} * ranges / buckets);
  }

  // The types that a task merges, which are a run of them: its cells are those of all of these.
  std::uint8_t type_of(std::size_t pair) const { return static_cast<std::uint8_t>((pair >> bits) + 1); }
  std::uint8_t first_type(std::size_t merge) const { return type_of(merges[merge].first); }
  std::uint8_t last_type(std::size_t merge) const { return type_of(merges[merge].end - 1); }
  std::vector<std::size_t> merges_of(std::uint8_t type) const;

  static ContextLayout from(const WorkFolder& folder, const Plan& plan, const std::vector<NumberedShard>& numbered);
};

// How many bytes of context words one task may have in memory to put their records in order.
std::uint64_t context_part_bytes(const Plan& plan);

// The cells that one task puts in order.
struct ContextPart {
  std::size_t first_cell = 0;
  std::size_t end_cell = 0;
};

// The parts, one behind the other, by the bytes of each cell.
std::vector<ContextPart> context_parts(const std::vector<std::uint64_t>& bytes, std::uint64_t most_bytes);

}  // namespace colx::scale
