#include "base/limits.h"

#include <limits>

namespace colx::limits {

std::uint32_t frequency = std::numeric_limits<std::uint32_t>::max();

}  // namespace colx::limits
