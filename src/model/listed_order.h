#pragma once

// The order in which the output files list records.
//
// It is that of a hash set by chaining, filled in the order of first sight: buckets are visited in index order and each
// chain from its head; a new record goes to the head of its chain. When the records would outnumber the buckets, the
// number of buckets becomes the next listed prime; the old buckets are emptied in index order, each from its head, and
// every record goes to the head of its new chain. Such a set is never built. The order depends on nothing but the
// sequence of insertions, so it is worked out once, when it is needed:
//
//   Between two growths the set is fed a sequence: the records it held in their order of iteration, then the new ones.
//   Its order of iteration is that sequence sorted by bucket, stably, after having been turned around.
//
// So the buckets in the end come one after another, and how the few records of one bucket stand can be told from the
// records alone (listing.h). One bucket sort does it, and time is linear in the number of records, unless nearly all
// have the same hash. Memory is a number of 32 bits for each record beside its hash.

#include <cstdint>

#include "util/zeroed_array.h"

namespace colx {

// Returns the numbers of records, given to them from 0 in the order of insertion, in the order in which they are
// listed. Entry i of `weak_hashes` is the hash of record i; its remainder by the number of buckets is its bucket.
ZeroedArray<std::uint32_t> listed_order(const ZeroedArray<std::uint32_t>& weak_hashes);

}  // namespace colx
