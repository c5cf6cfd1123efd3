#pragma once

// The profile of a word: with what it occurs, in which relations, for reading.

#include "companion/output.h"
#include "rows/block_source.h"
#include "table/options.h"

namespace colx::table {

// Writes what the chosen N-grams of the source say of the word of --profile, in blocks: for pairs by relation and by
// whether the word is its head or its dependent, for longer N-grams by the shape of their tree around the word. Blocks
// are ordered by the sum of their frequencies, rows within them as --sort says or else by logDice. `bold` is for titles
// on a terminal. All rows of the word are held in memory. Throws usage_error when the N-grams have no such column, and
// input_error when none of them has the word.
void write_profile(const Options& options, BlockSource& source, Output& output, bool bold);

}  // namespace colx::table
