#pragma once

// How finely a plan cuts up the work, by the size of the corpus and the memory of a process. Sizes are guesses, which
// decide about time alone: what is larger than expected is done in several passes. N and the window are those of the
// settings.

#include <cstddef>
#include <cstdint>

namespace colx::scale {

// The bytes of a shard where nobody wishes for others: between a least and a largest, in shards enough for everybody
// to have several.
std::uint64_t usual_shard_size(std::uint64_t bytes_of_corpus, std::size_t jobs);

// The distinct N-grams to be expected of a corpus, rather too many than too few.
std::uint64_t expected_records(std::uint64_t bytes_of_corpus);

// Bits of the hash of a record by which runs are ordered, for buckets that are added up in memory one by one, as long
// as the indexes of all runs, which are in memory then, take no more than an eighth of it.
unsigned usual_bucket_bits(std::uint64_t records, std::size_t memory, std::size_t shards);

// The same of runs of contexts, for buckets of which the contexts of one type take a sixteenth of the memory; 0 when
// there are no contexts.
unsigned usual_context_bits(std::uint64_t records, std::size_t memory, std::size_t shards);

// Tasks that add up the runs: for everybody to have one, and for each to get by with its memory.
std::size_t usual_reduces(std::uint64_t records, std::size_t memory, std::size_t jobs, unsigned bucket_bits);

// Whether buckets made for a corpus of before are too coarse for that of now: it is many times as large, so that to
// count it from the start costs little more than to count what is new, and a bucket of it no longer fits into the
// memory.
bool has_outgrown(std::uint64_t bytes_of_corpus, std::uint64_t bytes_before, std::size_t memory, unsigned bucket_bits);

}  // namespace colx::scale
