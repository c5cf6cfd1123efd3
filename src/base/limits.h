#pragma once

// The limits that only very large corpora reach. They are variables so that tests can lower them and see what happens
// there (tests/limits); nothing that is installed changes them.

#include <cstdint>

namespace colx::limits {

// The largest frequency of an N-gram or a pattern, and the largest number of all N-grams: what occurs more often counts
// as occurring so often.
extern std::uint32_t frequency;

// The most different N-grams of one type. One more ends a run.
extern std::uint32_t records;

// The most lemmas that N-grams tell apart; those whose numbers differ by a multiple of it are the same to them.
extern std::uint32_t lemmas;

// The most occurrences of a record, on average, that contexts are kept as; beyond that they are kept as lists.
extern std::uint32_t sightings;

}  // namespace colx::limits
