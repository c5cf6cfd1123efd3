#pragma once

// The contexts file: every stored record of a non-empty type with the words seen around it. See docs/formats.md.

#include <ostream>
#include <span>

#include "model/context.h"
#include "output/text_buffer.h"

namespace colx {

// Writes the whole contexts file under a progress bar: types from the full one down to 1, records in the order in which
// the store is listed. The caller looks at the state of the stream.
void write_contexts(std::ostream& out);

// Writes the narrow or the wide ones of a list of context words, a line each, and an empty line.
void _print_context(TextBuffer& out, std::span<const PartOfContext> parts, bool narrow);

}  // namespace colx
