#pragma once

// The whole of ngrex-import, from the command line to the exit status.

#include <string>
#include <vector>

namespace colx {

// Does what the arguments, without the program's name, say; returns the exit status: 0, 1 for failures, and for skipped
// sentences under --strict, 2 for a wrong command line.
int run_import(const std::vector<std::string>& arguments);

}  // namespace colx
