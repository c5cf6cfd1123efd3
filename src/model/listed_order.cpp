#include "model/listed_order.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "model/buckets.h"

namespace colx {

namespace {

// Sorts the sequence whose entry i is `sequence[i]` while that lasts and i thereafter, up to `count` entries, by bucket
// and within a bucket from the last entry to the first.
ZeroedArray<std::uint32_t> _sort_by_bucket(const ZeroedArray<std::uint32_t>& sequence, std::uint32_t count,
                                           std::uint32_t buckets, const ZeroedArray<std::uint32_t>& weak_hashes) {
  // First by ranges of buckets, whose numbers fit into the cache together with what a sort of one of them needs.
  constexpr unsigned range_bits = 12;
  constexpr std::uint32_t range_size = 1U << range_bits;
  const Divisor divisor(buckets);
  const auto bucket_of = [&](std::uint32_t number) { return divisor.remainder(weak_hashes[number]); };

  std::vector<std::uint32_t> begins((buckets - 1) / range_size + 2, 0);
  for (std::uint32_t number = 0; number < count; ++number)
    ++begins[(bucket_of(number) >> range_bits) + 1];
  for (std::size_t range = 1; range < begins.size(); ++range)
    begins[range] += begins[range - 1];
  ZeroedArray<std::uint32_t> sorted(count);
  std::vector<std::uint32_t> next(begins.begin(), begins.end() - 1);
  const auto place = [&](std::uint32_t number) { sorted[next[bucket_of(number) >> range_bits]++] = number; };
  for (std::uint32_t i = count; i-- > sequence.size();)
    place(i);
  for (std::size_t i = sequence.size(); i-- > 0;)
    place(sequence[i]);

  // Then within each range.
  std::vector<std::pair<std::uint32_t, std::uint32_t>> in_range;  // bucket within the range, number
  std::array<std::uint32_t, range_size + 1> places;
  for (std::size_t range = 0; range + 1 < begins.size(); ++range) {
    in_range.clear();
    places.fill(0);
    for (std::uint32_t i = begins[range]; i < begins[range + 1]; ++i) {
      const std::uint32_t bucket = bucket_of(sorted[i]) % range_size;
      in_range.emplace_back(bucket, sorted[i]);
      ++places[bucket + 1];
    }
    places[0] = begins[range];
    for (std::size_t bucket = 1; bucket < places.size(); ++bucket)
      places[bucket] += places[bucket - 1];
    for (const auto& [bucket, number] : in_range)
      sorted[places[bucket]++] = number;
  }
  return sorted;
}

}  // namespace

ZeroedArray<std::uint32_t> listed_order(const ZeroedArray<std::uint32_t>& weak_hashes) {
  const auto size = static_cast<std::uint32_t>(weak_hashes.size());
  ZeroedArray<std::uint32_t> order;
  for (const std::uint32_t buckets : bucket_counts) {
    order = _sort_by_bucket(order, std::min(size, buckets), buckets, weak_hashes);
    if (size <= buckets) break;
  }
  return order;
}

}  // namespace colx
