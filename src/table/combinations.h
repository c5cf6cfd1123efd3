#pragma once

// Which options go together.

#include <string>
#include <vector>

#include "companion/command_line.h"

namespace colx::table {

// Throws usage_error when a command line has an option beside --contexts, --statistics, --compare or --profile that
// would have no effect there. Has nothing to say of a line that is wrong otherwise or asks for --help or --version.
void check_combination(const Program& program, const std::vector<std::string>& arguments);

}  // namespace colx::table
