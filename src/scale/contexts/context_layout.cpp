#include "scale/contexts/context_layout.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "model/ngram.h"
#include "scale/contexts/collect_task.h"
#include "scale/counting/count_task.h"
#include "scale/counting/layout.h"

namespace colx::scale {

namespace {

constexpr std::uint64_t most_context_ranges = 2048;
constexpr std::uint64_t ranges_of_a_context_part = 8;

// Into how many ranges a type may be cut. Merging leaves a segment of each range whenever an eighth of the memory is
// full, so that the index of what is merged, with 16 bytes a segment, grows with the ranges as what is put in order at
// a time shrinks: of D bytes, 128 R D / memory and D / R. Both are the same here.
std::uint64_t _most_ranges(const Plan& plan) {
  const auto balanced = static_cast<std::uint64_t>(std::sqrt(static_cast<double>(plan.memory) / 128));
  return std::clamp<std::uint64_t>(balanced, 1, most_context_ranges);
}

// Cuts all pairs where the bytes behind them come to equal parts; those of one type are taken to be of one size.
std::vector<Pairs> _cut(const std::vector<std::uint64_t>& bytes, unsigned bits, std::size_t tasks) {
  const std::uint64_t all = std::accumulate(bytes.begin(), bytes.end(), std::uint64_t{0});
  const std::uint64_t most = all / tasks + 1;
  std::vector<Pairs> list{{0, 0}};
  std::uint64_t held = 0;
  for (std::size_t type = 1; type < bytes.size(); ++type) {
    for (std::size_t bucket = 0; bucket < std::size_t{1} << bits; ++bucket) {
      const std::uint64_t size = bytes[type] >> bits;
      if (held > 0 && held + size > most) {
        list.push_back({list.back().end, list.back().end});
        held = 0;
      }
      held += size;
      ++list.back().end;
    }
  }
  return list;
}

}  // namespace

ContextLayout ContextLayout::from(const WorkFolder& folder, const Plan& plan,
                                  const std::vector<NumberedShard>& numbered) {
  ContextLayout layout;
  std::vector<std::uint64_t> bytes(NGram::_types_count, 0);
  for (std::size_t k = 0; k < numbered.size(); ++k) {
    if (!numbered[k].used) continue;
    const CollectResult result = CollectResult::from(folder.result(collect_name(k)));
    layout.shards.push_back(k);
    layout.runs.push_back(result.runs);
    layout.before.push_back(layout.occurrences);
    layout.occurrences += result.occurrences;
    for (std::size_t type = 0; type < bytes.size(); ++type)
      bytes[type] += result.bytes[type];
  }
  layout.records = records_by_type(folder, plan, Layout::from(folder, plan));
  layout.first_cells.resize(NGram::_types_count);
  const std::uint64_t of_a_part = context_part_bytes(plan);
  for (std::size_t type = NGram::_full_ngram_type; type > 0; --type) {
    layout.first_cells[type] = layout.cells;
    layout.cells +=
        std::clamp<std::uint64_t>(bytes[type] / of_a_part * ranges_of_a_context_part, 1, _most_ranges(plan));
  }
  layout.bits = plan.context_bits;
  layout.merges = _cut(bytes, plan.context_bits, plan.reduces);
  return layout;
}

std::vector<std::size_t> ContextLayout::merges_of(std::uint8_t type) const {
  std::vector<std::size_t> tasks;
  for (std::size_t task = 0; task < merges.size(); ++task)
    if (first_type(task) <= type && type <= last_type(task)) tasks.push_back(task);
  return tasks;
}

std::uint64_t context_part_bytes(const Plan& plan) {
  return std::max<std::uint64_t>(plan.memory / 4, 1024);
}

std::vector<ContextPart> context_parts(const std::vector<std::uint64_t>& bytes, std::uint64_t most_bytes) {
  std::vector<ContextPart> parts{{0, 0}};
  std::uint64_t held = 0;
  for (std::size_t cell = 0; cell < bytes.size(); ++cell) {
    if (held > 0 && held + bytes[cell] > most_bytes) {
      parts.push_back({cell, cell});
      held = 0;
    }
    parts.back().end_cell = cell + 1;
    held += bytes[cell];
  }
  return parts;
}

}  // namespace colx::scale
