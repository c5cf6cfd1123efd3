#pragma once

// The checks and preparations between reading the command line and reading the corpus.

#include <cstdint>
#include <string>
#include <vector>

namespace colx {

// Sets up the N-gram machinery, loads the rule files and warns of settings without effect. Returns false, having said
// why, when a rule file cannot be opened. Throws fatal_error when one cannot be read to its end.
bool startup_init();

// Reads the list of datafiles and tries each. Appends the paths of those that can be opened to `files` and adds their
// sizes in bytes to `total_size`, modulo 2^32. Returns false, having said why, when the list cannot be opened or names
// no datafile, or when any datafile cannot be opened; all such are reported. Throws fatal_error when the list cannot be
// read to its end.
bool read_and_check_input_datafiles(std::vector<std::string>& files, std::uint32_t& total_size);

}  // namespace colx
