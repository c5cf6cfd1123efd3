#pragma once

// The whole of ngrex-import, from the command line to the exit status.

#include <string>
#include <vector>

namespace colx {

// Does what the arguments, without the program's name, say; returns the exit status: 0, or 1 for skipped sentences
// or, with --check, other faults under --strict. Throws usage_error, input_error, output_error and reader_gone.
int run_import(const std::vector<std::string>& arguments);

}  // namespace colx
