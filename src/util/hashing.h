#pragma once

// Strong hashes for finding things. They never show in any output.

#include <cstddef>
#include <cstdint>

#include "util/short_runs.h"

namespace colx {

// Multiplies two words to 128 bits and folds the halves together, so that every bit of either reaches every bit.
inline std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
  __extension__ using wide = unsigned __int128;
  const wide product = static_cast<wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

// Odd constants without structure, one for each use.
inline constexpr std::uint64_t hash_keys[] = {0x9E3779B97F4A7C15, 0xC2B2AE3D27D4EB4F, 0xD6E8FEB86659FD93,
                                              0xA24BAED4963EE407, 0x9FB21C651E98DF25, 0x8EBC6AF09C88C6E3,
                                              0xBF58476D1CE4E5B9, 0x94D049BB133111EB};

// Hashes a run of bytes.
inline std::uint64_t hash_bytes(const char* bytes, std::size_t length) {
  std::uint64_t hash = hash_keys[0] ^ length;
  for (; length > 8; bytes += 8, length -= 8)
    hash = mix(hash ^ load_up_to_8(bytes, 8), hash_keys[1]);
  return mix(mix(hash ^ load_up_to_8(bytes, length), hash_keys[2]), hash_keys[3]);
}

}  // namespace colx
