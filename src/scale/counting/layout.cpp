#include "scale/counting/layout.h"

#include <algorithm>
#include <limits>

#include "base/config.h"
#include "base/errors.h"
#include "base/limits.h"
#include "model/ngram.h"
#include "scale/counting/pattern_columns.h"
#include "scale/counting/reduce_task.h"
#include "scale/shards/number_files.h"

namespace colx::scale {

namespace {

constexpr std::uint64_t most_ranges = 4096;
constexpr std::uint64_t ranges_of_a_part = 8;
constexpr std::uint64_t most_patterns_of_a_partition = std::uint64_t{32} << 10;
constexpr std::uint64_t least_patterns_of_a_partition = 64;
constexpr std::uint64_t most_records_in_hand = std::uint64_t{512} << 10;
constexpr std::uint64_t least_records_in_hand = 64;
constexpr unsigned most_partition_bits = 12;
// More take so long in the few tasks that there are types that many tasks share the work better.
constexpr std::uint64_t most_records_of_a_whole = std::uint64_t{8} << 20;

// A part in memory takes for each record: its bytes, an entry for sorting it, its patterns of one type on their way
// out, and when it is written the frequencies of all its patterns.
std::uint64_t _bytes_of_record() {
  return 6ULL * settings::n * 3 + 64 + (std::uint64_t{1} << settings::n) * 2;
}

// A partition in memory takes so much for each pattern, at the most.
std::uint64_t _bytes_of_pattern() {
  return 6ULL * settings::n + 16 + 32;
}

// Partitions of the patterns of a type, in bits of their hash. The patterns of a partition are in memory when they are
// counted, and so are the indexes of what all parts of the listing have left for it: 16 bytes for each part, type and
// partition. Where these would take more than an eighth of the memory, there are no more partitions than make both the
// same.
unsigned _partition_bits(std::uint64_t patterns, std::uint64_t parts, std::size_t memory) {
  const std::uint64_t fitting = memory / 2 / _bytes_of_pattern();
  const std::uint64_t of_a_partition = std::clamp(fitting, least_patterns_of_a_partition, most_patterns_of_a_partition);
  const std::uint64_t bytes_of_indexes = parts * (NGram::_types_count - 1U) * 16;
  unsigned bits = 0;
  while (bits < most_partition_bits && (patterns >> bits) > of_a_partition &&
         bytes_of_indexes << (bits + 1) <=
             std::max<std::uint64_t>(memory / 8, patterns * _bytes_of_pattern() >> (bits + 1)))
    ++bits;
  return bits;
}

}  // namespace

Layout Layout::from(const WorkFolder& folder, const Plan& plan) {
  Layout layout;
  for (std::size_t task = 0; task < plan.reduces; ++task) {
    const ReduceResult result = ReduceResult::from(folder.result(reduce_name(task)));
    layout.listed += result.listed;
    layout.refused += result.refused;
    layout.piece_shift = result.piece_shift;
  }
  if (layout.listed > limits::records) throw too_many_records(NGram::_full_ngram_type, limits::records);
  const std::uint64_t fitting = plan.memory / 2 / _bytes_of_record();
  const std::uint64_t even = layout.listed / (plan.reduces * 2) + 1;
  layout.most_records =
      std::clamp(std::min({fitting, most_records_in_hand, even}), least_records_in_hand, most_records_in_hand);
  layout.ranges = std::clamp<std::uint64_t>(layout.listed * ranges_of_a_part / layout.most_records, 1, most_ranges);
  const std::uint64_t patterns = layout.listed + layout.refused;
  // No count or sum of counts is greater than the number of all occurrences.
  const bool counts_fit = ((most_pieces + 1) << layout.piece_shift) - 1 <= std::numeric_limits<std::uint32_t>::max();
  const Manifest numbering = folder.result(number_name);
  layout.code = MemberCode(numbering.number("lemmas"), numbering.number("tags"));
  const std::uint64_t of_a_whole =
      std::min(most_records_of_a_whole, plan.memory / 2 / PatternColumns::bytes_of_record(settings::n));
  layout.whole = counts_fit && layout.code.fits() && patterns <= of_a_whole;
  if (!layout.whole)
    layout.partition_bits = _partition_bits(patterns, layout.listed / layout.most_records + 1, plan.memory);
  return layout;
}

}  // namespace colx::scale
