#pragma once

// How many sentences of a datafile ngrex extracts: all, but for those that its window has read ahead when the datafile
// ends.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "scale/work_folder.h"

namespace colx::scale {

// Counts them for a datafile of these shards. `last_at_end` says that the end
// was noticed while the last sentence was read, `has_bar` that a progress bar is drawn. The window is that of the
// settings.
std::uint64_t extracted_sentences(const WorkFolder& folder, const std::vector<std::size_t>& shards, bool last_at_end,
                                  bool has_bar);

}  // namespace colx::scale
