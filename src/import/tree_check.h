#pragma once

// Faults of dependency trees.

#include <cstdint>
#include <vector>

#include "import/sentence.h"

namespace colx {

// Notes every word whose parent lies outside the sentence and every cycle of parents, the latter once, at its first
// word; `column` is where the parent stands. Several roots are no fault. Linear in the words.
void check_tree(const TreebankSentence& sentence, unsigned column, const char* column_name,
                std::vector<TreebankProblem>& problems);

// The largest number of children of a word, and the first word with as many; 0 for a sentence without any edge.
struct WidestNode {
  std::uint32_t children = 0;
  std::uint64_t line = 0;
};
WidestNode widest_node(const TreebankSentence& sentence);

}  // namespace colx
