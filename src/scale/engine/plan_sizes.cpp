#include "scale/engine/plan_sizes.h"

#include <algorithm>

#include "base/config.h"
#include "options/params.h"

namespace colx::scale {

namespace {

constexpr std::uint64_t least_shard = std::uint64_t{1} << 20;
constexpr std::uint64_t largest_shard = std::uint64_t{256} << 20;
constexpr unsigned most_bucket_bits = 18;
constexpr std::uint64_t least_records_of_a_bucket = 16;
constexpr std::uint64_t most_records_of_a_bucket = 8192;
constexpr std::uint64_t bytes_of_entry = 16;  // of the index of a run
constexpr std::uint64_t usual_sentence = 20;  // in words
constexpr std::uint64_t growth_worth_a_new_plan = 16;

// While records are added up.
std::uint64_t _bytes_in_a_sum() {
  return 6ULL * settings::n + 64;
}

}  // namespace

std::uint64_t usual_shard_size(std::uint64_t bytes_of_corpus, std::size_t jobs) {
  const std::uint64_t even = bytes_of_corpus / (std::max<std::uint64_t>(jobs, 1) * 2) + 1;
  return std::clamp(even, least_shard, largest_shard);
}

std::uint64_t expected_records(std::uint64_t bytes_of_corpus) {
  // A word takes twenty bytes or more; of larger N-grams there are some more than words.
  return bytes_of_corpus / 20 * (settings::n > 2 ? 2U * (settings::n - 2U) : 1U);
}

unsigned usual_bucket_bits(std::uint64_t records, std::size_t memory, std::size_t shards) {
  const std::uint64_t of_a_bucket =
      std::clamp(memory / 2 / _bytes_in_a_sum(), least_records_of_a_bucket, most_records_of_a_bucket);
  unsigned bits = 0;
  while (bits < most_bucket_bits && (records >> bits) > of_a_bucket)
    ++bits;
  while (bits > 0 && (shards * bytes_of_entry << bits) > memory / 8)
    --bits;
  return bits;
}

unsigned usual_context_bits(std::uint64_t records, std::size_t memory, std::size_t shards) {
  if (!settings::context_tracing_on()) return 0;
  constexpr std::uint64_t most_entries = std::uint64_t{16} << 10;
  const std::uint64_t types = (std::uint64_t{1} << settings::n) - 1;
  const ContextWindow& window = settings::context_window;
  const std::uint64_t words = window.mode == ContextWindow::words ? std::uint64_t{2} * window.size
                                                                  : usual_sentence * (window.size + std::uint64_t{1});
  const std::uint64_t bytes = records * (words * sizeof(std::uint32_t) + 6ULL * settings::n);
  const std::uint64_t runs = shards + records * (24 + 40 * types) / std::max<std::uint64_t>(memory, 1);
  unsigned bits = 0;
  while ((bytes >> bits) > memory / 16 && (types << (bits + 1)) <= most_entries &&
         (runs * types * bytes_of_entry << (bits + 1)) <= memory / 8)
    ++bits;
  return bits;
}

std::size_t usual_reduces(std::uint64_t records, std::size_t memory, std::size_t jobs, unsigned bucket_bits) {
  const std::uint64_t by_memory = records * _bytes_in_a_sum() / std::max<std::uint64_t>(memory / 2, 1) + 1;
  return std::clamp<std::uint64_t>(std::max<std::uint64_t>(by_memory, jobs), 1, std::uint64_t{1} << bucket_bits);
}

bool has_outgrown(std::uint64_t bytes_of_corpus, std::uint64_t bytes_before, std::size_t memory, unsigned bucket_bits) {
  return bytes_of_corpus / growth_worth_a_new_plan >= bytes_before &&
         (expected_records(bytes_of_corpus) >> bucket_bits) > memory / 2 / _bytes_in_a_sum();
}

}  // namespace colx::scale
