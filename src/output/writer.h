#pragma once

// The output datafile: a block of lines for each N-gram that passes sieves and thresholds. See docs/formats.md.

#include <ostream>

namespace colx {

// Writes the whole output datafile under a progress bar. Blocks come in the order in which the store is listed; N-grams
// of the full type are not to be found in it any more afterwards. The caller looks at the state of the stream.
void write(std::ostream& out);

}  // namespace colx
