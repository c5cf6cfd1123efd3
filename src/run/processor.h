#pragma once

// The loop over all datafiles of a run.

#include <cstdint>
#include <string>
#include <vector>

namespace colx {

// Extracts every datafile in turn, keeps its statistics and reports progress; `total_size` is the sum of the sizes in
// bytes, 0 when unknown. A datafile that cannot be opened any more is skipped with a warning. Throws fatal_error, which
// names the datafile, the store or the type, when a datafile cannot be read to its end, and when memory, the indexes of
// a string store or the records of a type run out.
void process(const std::vector<std::string>& files, std::uint32_t total_size);

}  // namespace colx
