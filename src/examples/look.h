#pragma once

// What writers of examples are told besides the examples.

#include <cstddef>
#include <functional>

#include "concordance/example_sentence.h"
#include "concordance/hit.h"

namespace colx::examples {

// What is known of the place where examples are shown. Every writer takes what its format has a use for.
struct Look {
  bool colour = false;    // text, kwic: members in colour, and not in brackets
  bool tree = false;      // text, kwic: the dependency tree under each sentence
  std::size_t width = 0;  // text, kwic: columns of the terminal; 0: it is none
};

// Gives the sentence at a place once more; valid until the next call.
using SentenceSource = std::function<const concordance::ExampleSentence&(const concordance::Place& place)>;

}  // namespace colx::examples
