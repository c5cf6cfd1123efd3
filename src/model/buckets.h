#pragma once

// The numbers of buckets that the set has in whose order records are listed.

#include <array>
#include <cstdint>

namespace colx {

// The numbers of buckets, from the first one of a set that is made for a hundred records.
inline constexpr std::array<std::uint32_t, 26> bucket_counts = {
    193,      389,       769,       1543,      3079,      6151,       12289,      24593,     49157,
    98317,    196613,    393241,    786433,    1572869,   3145739,    6291469,    12582917,  25165843,
    50331653, 100663319, 201326611, 402653189, 805306457, 1610612741, 3221225473, 4294967291};

// Remainders by a divisor that is known in advance, by two multiplications (Lemire, Kaser and Kurz 2019).
class Divisor {
 public:
  explicit Divisor(std::uint32_t divisor) : _divisor(divisor), _inverse(~std::uint64_t{0} / divisor + 1) {}

  std::uint32_t remainder(std::uint32_t x) const {
    __extension__ using wide = unsigned __int128;
    return static_cast<std::uint32_t>((static_cast<wide>(_inverse * x) * _divisor) >> 64);
  }

 private:
  std::uint32_t _divisor;
  std::uint64_t _inverse;
};

}  // namespace colx
