#pragma once

// The run of ngrex-examples, from N-grams to their sentences.

#include <string>
#include <vector>

namespace colx::examples {

// The whole program but for the telling of failures, which it throws; the result is the exit status.
int run(const std::vector<std::string>& arguments);

}  // namespace colx::examples
