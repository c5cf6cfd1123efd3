#pragma once

// The checks and preparations between reading the command line and reading the corpus.

#include <cstdint>
#include <string>
#include <vector>

namespace colx {

// Sets up the N-gram machinery, loads the rule files and warns of settings without effect. Returns false, having said
// why, when a rule file cannot be read.
bool startup_init();

// Reads the list of datafiles and tries each. Appends the paths of those that can be opened to `files` and adds their
// sizes in bytes to `total_size`, modulo 2^32. Returns false, having said why, when the list cannot be read or names no
// datafile, or when any datafile cannot be opened; all such are reported.
bool read_and_check_input_datafiles(std::vector<std::string>& files, std::uint32_t& total_size);

}  // namespace colx
