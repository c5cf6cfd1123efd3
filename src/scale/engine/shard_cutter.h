#pragma once

// Where datafiles are cut.

#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

#include "scale/engine/shard.h"

namespace colx::scale {

// Cuts large datafiles into shards of that many bytes, inside datafiles only if that is wanted, and puts small ones
// together that follow one another. `starts` are datafiles with which a shard has to begin, the last of which is the
// first that is new; the others may have grown a bit and stay together all the same, as every shard behind a new cut
// would be another one.
std::vector<Shard> cut_into_shards(const std::vector<Datafile>& datafiles, std::uint64_t shard_size, bool inside,
                                   std::set<std::size_t> starts);

}  // namespace colx::scale
