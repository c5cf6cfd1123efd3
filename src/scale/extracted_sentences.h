#pragma once

// How many sentences of a datafile ngrex extracts: all, but for those that its window has read ahead when the datafile
// ends.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace colx::scale {

// Counts them for a datafile whose sentences stand in these files, one after another. `last_at_end` says that the end
// was noticed while the last sentence was read, `has_bar` that a progress bar is drawn. The window is that of the
// settings.
std::uint64_t extracted_sentences(const std::vector<std::string>& words_files, bool last_at_end, bool has_bar);

}  // namespace colx::scale
