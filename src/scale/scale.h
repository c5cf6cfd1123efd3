#pragma once

// ngrex-scale as a whole.

#include <string>
#include <vector>

namespace colx::scale {

// Does what the arguments, without the program's name, ask for; returns the exit status. Throws usage_error and what
// run_companion takes.
int scale(const std::vector<std::string>& arguments);

}  // namespace colx::scale
