#pragma once

// The words of a sentence in its text as it was written.

#include <cstddef>
#include <string_view>
#include <vector>

#include "concordance/example_sentence.h"

namespace colx::examples {

// Where a word stands in a text, in bytes.
struct TextSpan {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool is_whole = true;  // the form itself stands there; else what is written in place of this and perhaps other words

  friend bool operator==(const TextSpan&, const TextSpan&) = default;
};

// Finds the forms of words, in their order, in the text of their sentence. Where forms and text differ, as in `zum` for
// `zu` and `dem`, words share what is written between those that are found before and behind; that may be nothing.
std::vector<TextSpan> find_words(std::string_view text, const std::vector<concordance::ExampleWord>& words);

}  // namespace colx::examples
