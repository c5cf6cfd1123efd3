#pragma once

// Merging contexts: what the runs of all shards hold of a record becomes one list, ranked as it is written, and the
// records are distributed over the ranges of buckets in which they are listed.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "scale/contexts/context_layout.h"
#include "scale/engine/plan.h"

namespace colx::scale {

// The file of merged records: for each round, which ends when the memory is full, a segment for each cell of the
// types of the task. A record is its members, the number of its first occurrence in the corpus, the bytes of its lists,
// and these: narrow contexts, of the full type only, and wide ones. Beside it the file that says how many bytes each
// cell has in it, 64 bits each.
inline constexpr std::string_view merged_kind = "merg";
inline constexpr std::string_view cells_kind = "cell";

// The file of first occurrences: for each round a segment for every type of the task and piece of the corpus, with the
// number of the first occurrence of each record, 64 bits.
inline constexpr std::string_view firsts_kind = "firs";
inline constexpr std::size_t firsts_pieces = 64;
unsigned firsts_shift(std::uint64_t occurrences);

// The name of a task, and of what it leaves.
std::string merge_name(std::size_t task);

// What the tasks depend on, as far as it is the same for all; and what one of them depends on.
std::uint64_t merges_mark(const WorkFolder& folder, const Plan& plan, const ContextLayout& layout);
std::uint64_t merge_key(std::uint64_t merges_mark, const Pairs& pairs);

// Does one task.
void merge(const WorkFolder& folder, const Plan& plan, const ContextLayout& layout, std::uint64_t merges_mark,
           std::size_t task);

// The bytes of each cell, from what all tasks have left.
std::vector<std::uint64_t> merged_bytes(const WorkFolder& folder, const Plan& plan, const ContextLayout& layout);

}  // namespace colx::scale
