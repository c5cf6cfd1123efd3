#include "model/listed_order.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "model/listing.h"

namespace colx {

ZeroedArray<std::uint32_t> listed_order(const ZeroedArray<std::uint32_t>& weak_hashes) {
  const auto size = static_cast<std::uint32_t>(weak_hashes.size());
  ZeroedArray<std::uint32_t> order(size);
  if (size == 0) return order;
  Listing listing(size);
  listing.set_growing_records(listing.growing_records());
  const auto bucket_of = [&](std::uint32_t number) { return listing.bucket(weak_hashes[number]); };

  // First by ranges of buckets, whose numbers fit into the cache together with what a sort of one of them needs.
  constexpr unsigned range_bits = 12;
  constexpr std::uint32_t range_size = 1U << range_bits;
  std::vector<std::uint32_t> begins((listing.buckets() - 1) / range_size + 2, 0);
  for (std::uint32_t number = 0; number < size; ++number)
    ++begins[(bucket_of(number) >> range_bits) + 1];
  for (std::size_t range = 1; range < begins.size(); ++range)
    begins[range] += begins[range - 1];
  std::vector<std::uint32_t> next(begins.begin(), begins.end() - 1);
  for (std::uint32_t number = size; number-- > 0;)
    order[next[bucket_of(number) >> range_bits]++] = number;

  // Then by bucket within each range, and in one bucket as records compare, for which those fed last are first already.
  const auto before = [&](std::uint32_t a, std::uint32_t b) {
    return listing.before({weak_hashes[a], a}, {weak_hashes[b], b});
  };
  std::vector<std::pair<std::uint32_t, std::uint32_t>> in_range;  // bucket within the range, number
  std::array<std::uint32_t, range_size + 1> ends;
  for (std::size_t range = 0; range + 1 < begins.size(); ++range) {
    in_range.clear();
    ends.fill(0);
    for (std::uint32_t i = begins[range]; i < begins[range + 1]; ++i) {
      const std::uint32_t bucket = bucket_of(order[i]) % range_size;
      in_range.emplace_back(bucket, order[i]);
      ++ends[bucket + 1];
    }
    ends[0] = begins[range];
    for (std::size_t bucket = 1; bucket < ends.size(); ++bucket)
      ends[bucket] += ends[bucket - 1];
    for (const auto& [bucket, number] : in_range)
      order[ends[bucket]++] = number;
    std::uint32_t begin = begins[range];
    for (std::size_t bucket = 0; bucket < range_size; ++bucket) {
      std::uint32_t* const records = &order[0];
      if (ends[bucket] - begin > 1) std::sort(records + begin, records + ends[bucket], before);
      begin = ends[bucket];
    }
  }
  return order;
}

}  // namespace colx
