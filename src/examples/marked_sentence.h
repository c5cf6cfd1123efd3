#pragma once

// A sentence in pieces, so that the members of an N-gram can be marked in it.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "concordance/example_sentence.h"
#include "concordance/hit.h"

namespace colx::examples {

// Part of a sentence.
struct Piece {
  std::string text;
  bool is_member = false;
  bool is_top = false;  // of the top word of the N-gram

  friend bool operator==(const Piece&, const Piece&) = default;
};

// Which of the n positions of a hit, from 0, is that of the N-gram's top word.
std::size_t top_of(const concordance::ExampleSentence& sentence, const concordance::Hit& hit, std::size_t n);

// The sentence as it was written or, where that is not known or its words cannot be told in it, its forms joined by
// blanks; taken together the pieces are the sentence. Members that are written as one word are one piece.
std::vector<Piece> marked_sentence(const concordance::ExampleSentence& sentence, const concordance::Hit& hit,
                                   std::size_t n);

// The sentence alone: as it was written or, where that is not known, its forms joined by blanks.
std::string plain_sentence(const concordance::ExampleSentence& sentence);

// How the sentence is called: by its identifier or, without one, by file and line of the treebank or of the datafile.
std::string name_of(const concordance::ExampleSentence& sentence);

}  // namespace colx::examples
