#pragma once

// The limits that only very large corpora reach. They are variables so that tests can lower them and see what happens
// there (tests/limits); nothing that is installed changes them.

#include <cstdint>

namespace colx::limits {

// The largest frequency of an N-gram or a pattern, and the largest number of all N-grams: what occurs more often counts
// as occurring so often.
extern std::uint32_t frequency;

}  // namespace colx::limits
