#pragma once

// What the user is told when a string store has no index left.

#include <cstdint>
#include <limits>
#include <string>

#include "corpus/string_store.h"

namespace colx {

// Says which of the two stores has thrown index_overflow.
inline std::string explain_overflow(const StringStore<std::uint32_t>& lemmas, const StringStore<std::uint8_t>& tags) {
  if (lemmas.size() == std::numeric_limits<std::uint32_t>::max()) {
    return "Number of unique strings in lemmas store has overflowen numeric index type range!";
  }
  if (tags.size() == std::numeric_limits<std::uint8_t>::max()) {
    return "Number of unique strings in morphologic tags store has overflowen numeric index type range!";
  }
  return "Undetermined index overflow exception!";
}

}  // namespace colx
