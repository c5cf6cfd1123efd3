#pragma once

// Datafiles as a plan finds them: how large they are, whether they can be read, and what tells that they have changed.

#include <cstddef>
#include <string>
#include <vector>

#include "scale/engine/shard.h"
#include "scale/engine/work_folder.h"

namespace colx::scale {

// Looks at the datafiles of a list, with so many processes where contents have to be read. What can be read only once
// is copied to the folder. The version of one that has not changed since it was among `before` is taken from there; one
// that cannot be read has none, and the scan will find the fault where it is.
std::vector<Datafile> look_at_datafiles(const WorkFolder& folder, const std::vector<std::string>& paths,
                                        const std::vector<Datafile>& before, std::size_t jobs);

}  // namespace colx::scale
