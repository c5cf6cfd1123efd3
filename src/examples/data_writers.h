#pragma once

// The writers for programs, see formats.h.

#include <memory>

#include "companion/output.h"
#include "examples/example_writer.h"
#include "examples/look.h"

namespace colx::examples {

std::unique_ptr<ExampleWriter> make_tsv_writer(Output& output);
std::unique_ptr<ExampleWriter> make_json_lines_writer(Output& output);

// Keeps some 90 bytes for each example until the end, as a sentence is written once with all hits in it.
std::unique_ptr<ExampleWriter> make_conllu_writer(Output& output, SentenceSource sentences);

}  // namespace colx::examples
