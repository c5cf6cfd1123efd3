#pragma once

// What stands above the examples of an N-gram.

#include <string>

#include "examples/example_writer.h"

namespace colx::examples {

// One line without its end, such as `3. heavy <Atr rain (9 times, 5 shown)`, for a terminal.
std::string heading_text(const Heading& heading);

}  // namespace colx::examples
