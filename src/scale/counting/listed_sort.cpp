#include "scale/counting/listed_sort.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace colx::scale {

std::vector<ListedEntry> sorted_by_listing(const std::vector<ListedEntry>& entries, const Listing& listing) {
  std::uint32_t least = std::numeric_limits<std::uint32_t>::max();
  std::uint32_t largest = 0;
  for (const ListedEntry& entry : entries) {
    least = std::min(least, entry.bucket);
    largest = std::max(largest, entry.bucket);
  }
  if (entries.empty()) return {};
  std::vector<std::uint32_t> next(std::size_t{largest - least} + 2, 0);
  for (const ListedEntry& entry : entries)
    ++next[entry.bucket - least + 1];
  for (std::size_t b = 1; b < next.size(); ++b)
    next[b] += next[b - 1];
  std::vector<ListedEntry> sorted(entries.size());
  for (const ListedEntry& entry : entries)
    sorted[next[entry.bucket - least]++] = entry;
  const auto before = [&](const ListedEntry& a, const ListedEntry& b) {
    return listing.before({a.weak_hash, a.first}, {b.weak_hash, b.first});
  };
  for (auto begin = sorted.begin(); begin != sorted.end();) {
    auto end = begin + 1;
    while (end != sorted.end() && end->bucket == begin->bucket)
      ++end;
    if (end - begin > 1) std::sort(begin, end, before);
    begin = end;
  }
  return sorted;
}

}  // namespace colx::scale
