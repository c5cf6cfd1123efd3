#pragma once

// How many sentences of a datafile ngrex extracts: all, but for those that its window has read ahead when the datafile
// ends.

#include <cstdint>

#include "scale/engine/work_folder.h"
#include "scale/shards/datafile_sentences.h"

namespace colx::scale {

// Counts them for a datafile of these sentences; `has_bar` says that ngrex draws a progress bar. The window is that of
// the settings.
std::uint64_t extracted_sentences(const WorkFolder& folder, const SentencesOfDatafile& sentences, bool has_bar);

}  // namespace colx::scale
