#pragma once

// The weak hash of N-gram records that, with the growth of the set they are listed in, fixes the order in which records
// are written. It finds nothing.

#include <cstdint>
#include <span>

#include "model/ngram.h"

namespace colx {

// Hashes records by a few low bits of lemma, parent and dependency of each member; tags do not count. Which bits
// depends on the number of members.
class NGramHashCounter {
 public:
  // Tells whether records of N-grams of this size can be hashed.
  static bool check(unsigned n);

  // Hashes a record of so many members.
  static std::uint32_t count_hash(const NGram& record, unsigned members_count);

  // The same for the record that would have these members.
  static std::uint32_t count_hash(std::span<const NGram::Member> members);
};

}  // namespace colx
