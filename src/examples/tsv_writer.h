#pragma once

// Examples as a table with one row a hit.

#include <memory>

#include "companion/output.h"
#include "examples/example_writer.h"

namespace colx::examples {

// The output must outlive the writer.
std::unique_ptr<ExampleWriter> make_tsv_writer(Output& output);

}  // namespace colx::examples
