#include "base/limits.h"

#include <limits>

namespace colx::limits {

std::uint32_t frequency = std::numeric_limits<std::uint32_t>::max();
std::uint32_t records = std::numeric_limits<std::uint32_t>::max() - 1;
std::uint32_t lemmas = std::uint32_t{1} << 24;
std::uint32_t sightings = 32;

}  // namespace colx::limits
