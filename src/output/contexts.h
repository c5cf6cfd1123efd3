#pragma once

// The contexts file: every stored record of a non-empty type with the words seen around it. See docs/formats.md.

#include <ostream>
#include <span>

#include "base/notifier.h"
#include "corpus/word_texts.h"
#include "model/context.h"
#include "model/ngrams.h"
#include "output/text_buffer.h"

namespace colx {

// Writes the whole contexts file of a store, whose contexts were collected, under a progress bar: types from the full
// one down to 1, records in the order in which the store is listed. The caller looks at the state of the stream.
void write_contexts(std::ostream& out, const NGramStore& ngrams, const WordTexts& texts, const Notifier& progress);

// Writes the block of one record.
void _print_contexts(TextBuffer& out, const WordTexts& texts, const NGram& record,
                     std::span<const PartOfContext> parts);

// Writes the narrow or the wide ones of a list of context words, a line each, and an empty line.
void _print_context(TextBuffer& out, const WordTexts& texts, std::span<const PartOfContext> parts, bool narrow);

}  // namespace colx
