#pragma once

// The writers for people, see formats.h.

#include <memory>

#include "companion/output.h"
#include "examples/example_writer.h"
#include "examples/look.h"

namespace colx::examples {

std::unique_ptr<ExampleWriter> make_text_writer(Output& output, const Look& look);
std::unique_ptr<ExampleWriter> make_kwic_writer(Output& output, const Look& look);

}  // namespace colx::examples
