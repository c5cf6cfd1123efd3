#pragma once

// The output datafile: a block of lines for each N-gram that passes sieves and thresholds. See docs/formats.md.

#include <ostream>

#include "base/notifier.h"
#include "corpus/word_texts.h"
#include "model/ngrams.h"

namespace colx {

// Writes the whole output datafile of a store under a progress bar. Blocks come in the order in which the store is
// listed. The caller looks at the state of the stream. Passes on what NGramsProcessor throws.
void write(std::ostream& out, const NGramStore& ngrams, const WordTexts& texts, const Notifier& progress);

}  // namespace colx
