#pragma once

// The order in which records are listed, as a relation between any two of them. It is the order that listed_order works
// out for a whole table, told from two records alone: for those who do not hold the table.
//
// At the last growth of the set the smaller bucket comes first; in one bucket, whichever was fed later. Two records
// older than that growth were fed in the order in which the set of the growth before listed them, so that they compare
// as they did there, the other way round.

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "model/buckets.h"

namespace colx {

// A record as far as its place in the order goes.
struct ListedRecord {
  std::uint32_t weak_hash;
  std::uint64_t first_seen;  // any number that grows with the moment of its first sight
};

// Compares the records of a table of a given size.
class Listing {
 public:
  // `size` is at least 1.
  explicit Listing(std::uint64_t size);

  // The number of buckets in the end.
  std::uint32_t buckets() const { return bucket_counts[_growths]; }

  // The bucket of a hash in the end; buckets are listed one after another.
  std::uint32_t bucket(std::uint32_t weak_hash) const { return _divisors[_growths].remainder(weak_hash); }

  // The records that made the set grow, by their numbers in the order of first sight, from 0.
  std::vector<std::uint64_t> growing_records() const;

  // Tells when these records were first seen; to be called before any comparison of two records of one bucket.
  void set_growing_records(std::vector<std::uint64_t> first_seen) { _first_seen = std::move(first_seen); }

  // Tells whether one record is listed before another. No two were first seen at the same moment.
  bool before(const ListedRecord& a, const ListedRecord& b) const {
    bool turned = false;
    for (std::size_t growth = _growths;; --growth, turned = !turned) {
      const std::uint32_t bucket_a = _divisors[growth].remainder(a.weak_hash);
      const std::uint32_t bucket_b = _divisors[growth].remainder(b.weak_hash);
      if (bucket_a != bucket_b) return (bucket_a < bucket_b) != turned;
      const bool both_old =
          growth > 0 && a.first_seen < _first_seen[growth - 1] && b.first_seen < _first_seen[growth - 1];
      if (!both_old) return (a.first_seen > b.first_seen) != turned;
    }
  }

 private:
  std::size_t _growths = 0;
  std::vector<Divisor> _divisors;
  std::vector<std::uint64_t> _first_seen;  // by growth: of the record that caused it
};

}  // namespace colx
