#pragma once

// An occurrence of a wanted N-gram.

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>

#include "base/config.h"
#include "extraction/ntree.h"

namespace colx::concordance {

// Where a sentence stands. Two hits with equal places are in the same sentence.
struct Place {
  std::uint32_t datafile = 0;  // in the list, from 0
  std::uint32_t line = 0;      // of the first word, from 1, as warnings count them
  std::uint32_t words = 0;
  std::uint64_t begin = 0;  // in bytes of the datafile
  std::uint64_t end = 0;

  auto operator<=>(const Place&) const = default;
};

// Which N-gram occurs where. The positions, from 1 and ascending, are those of its words in their order; the first n
// are used.
struct Hit {
  std::size_t ngram = 0;  // its number, from 0
  Place place;
  std::array<Position, constants::max_grammity> positions{};

  auto operator<=>(const Hit&) const = default;
};

}  // namespace colx::concordance
