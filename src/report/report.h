#pragma once

// The run of ngrex-report, from an output datafile to a page.

#include <string>
#include <vector>

namespace colx::report {

// The whole program but for the telling of failures, which it throws; the result is the exit status.
int run(const std::vector<std::string>& arguments);

}  // namespace colx::report
