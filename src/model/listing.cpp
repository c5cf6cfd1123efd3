#include "model/listing.h"

namespace colx {

Listing::Listing(std::uint64_t size) {
  while (_growths + 1 < bucket_counts.size() && bucket_counts[_growths] < size)
    ++_growths;
  for (std::size_t i = 0; i <= _growths; ++i)
    _divisors.emplace_back(bucket_counts[i]);
}

std::vector<std::uint64_t> Listing::growing_records() const {
  return {bucket_counts.begin(), bucket_counts.begin() + static_cast<std::ptrdiff_t>(_growths)};
}

}  // namespace colx
