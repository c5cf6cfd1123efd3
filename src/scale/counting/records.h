#pragma once

// Records of N-grams as intermediate files hold them: their members, 6 bytes each, and what is known of them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "base/config.h"
#include "model/ngram.h"
#include "model/occurrence_batch.h"

namespace colx::scale {

// Members of one record.
using Members = std::array<NGram::Member, constants::max_grammity>;

// Reads `count` members that stand one behind the other.
inline void load_members(const char* from, std::size_t count, Members& members) {
  for (std::size_t m = 0; m < count; ++m)
    members[m] = NGram::Member::load(reinterpret_cast<const unsigned char*>(from) + m * NGram::Member::size);
}

// The part of a hash that says where a record belongs; `bits` may be 0.
inline std::size_t bucket_of(std::uint64_t hash, unsigned bits) {
  return bits == 0 ? 0 : static_cast<std::size_t>(hash >> (64 - bits));
}

// Writes 6 bytes of a member and returns their end; the two bytes behind are overwritten.
inline char* put_member(char* to, NGram::Member member) {
  const std::uint64_t bits = member.bits();
  std::memcpy(to, &bits, sizeof bits);
  return to + NGram::Member::size;
}

// Calls `take.template operator()<K>()` for a K from 1.
template <unsigned K = constants::max_grammity, typename Take>
void with_count(unsigned count, const Take& take) {
  if constexpr (K > 0) {
    if (count == K) {
      take.template operator()<K>();
    } else {
      with_count<K - 1>(count, take);
    }
  }
}

// The same for the N of the settings, and for the number of members that records of a type have.
template <typename Take>
void with_n(const Take& take) {
  with_count(settings::n, take);
}
template <typename Take>
void with_members_of(std::uint8_t type, const Take& take) {
  with_count(NGram::_members_count[type], take);
}

}  // namespace colx::scale
