#pragma once

// One parsed word of a corpus, as the sentence buffer holds it.

#include <cstdint>
#include <utility>

namespace colx {

// A plain value; which word of a buffer it is follows from its place there. The word form has no place here, see
// WordForms.
struct Word {
  std::uint32_t lemma;      // index in the lemma store
  std::uint8_t tag;         // index in the tag store
  std::uint16_t order;      // position in its sentence, from 1
  std::uint16_t parent;     // order of its parent in the dependency tree, 0 for the root
  std::uint8_t dependency;  // code of its relation to the parent
};

// Where a word stands in the sentence buffer.
using WordIterator = const Word*;

// A run of words in the sentence buffer, half open; valid until the buffer moves on.
using WordRange = std::pair<WordIterator, WordIterator>;

}  // namespace colx
