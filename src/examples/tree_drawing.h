#pragma once

// The dependency tree of a sentence in plain text.

#include <cstddef>

#include "companion/output.h"
#include "concordance/example_sentence.h"
#include "concordance/hit.h"
#include "examples/marked_text.h"

namespace colx::examples {

// Draws the tree with box-drawing characters, a line for each word with its number, its form and its relation. A word
// stands below what hangs from it on its left and above what hangs from it on its right, which is the order of the
// sentence unless branches cross. Lines are kept within `width` columns where the depth of the tree allows it. Of more
// than 500 words it says only that they are.
void draw_tree(Output& output, const concordance::ExampleSentence& sentence, const concordance::Hit& hit, std::size_t n,
               Marks marks, std::size_t width);

}  // namespace colx::examples
