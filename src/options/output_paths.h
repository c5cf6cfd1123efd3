#pragma once

// What a run would destroy by opening its output files.

#include <string>
#include <vector>

namespace colx {

// Makes sure that no output file that the settings name is also an input (the list, a datafile, a rule file, read or
// not) or another output. Files are told apart by device and inode, those that are still to be made by their folder and
// name; what is no regular file may be named at will. Throws fatal_error.
void check_output_paths(const std::vector<std::string>& datafiles);

}  // namespace colx
