#pragma once

// From positions in a sentence to the members that a record keeps: the one place that says what makes two occurrences
// the same N-gram.

#include <cstdint>
#include <span>

#include "corpus/dependencies.h"
#include "corpus/word.h"
#include "extraction/ntree.h"
#include "model/ngram.h"

namespace colx {

// Makes the members of the occurrence that stands at these positions of the sentence, from 1 and ascending, one member
// for each. A member's parent is its place among the positions, from 1; one whose parent is not among them has parent 0
// and the relation "Head". A relation must have been converted to a code before.
inline void occurrence_members(WordRange sentence, std::span<const Position> positions,
                               std::span<NGram::Member> members) {
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const Word& word = sentence.first[positions[i] - 1];
    std::uint8_t parent = 0;
    for (std::size_t j = 0; j < positions.size(); ++j) {
      if (positions[j] == word.parent) parent = static_cast<std::uint8_t>(j + 1);
    }
    members[i] = NGram::Member(word.lemma, word.tag, parent, parent != 0 ? word.dependency : dependency::head);
  }
}

}  // namespace colx
