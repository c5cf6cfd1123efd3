#pragma once

// What every format of ngrex-examples does.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "concordance/example_sentence.h"
#include "concordance/hit.h"
#include "rows/block.h"

namespace colx::examples {

// An N-gram, or a pattern, and what was found of it.
struct Heading {
  std::size_t rank = 1;                    // from 1, in the order of the output
  std::string_view pattern;                // as a readable tree
  const table::Block* block = nullptr;     // null for a pattern from the command line
  std::optional<std::uint64_t> frequency;  // in the output datafile; nothing for a pattern
  std::uint64_t found = 0;                 // occurrences in what was read of the corpus
  std::uint64_t shown = 0;                 // of these, how many follow
  bool is_complete = true;                 // all of the corpus was read
};

// Takes N-grams in their order, each with its examples. Nothing that is handed in outlives the call but what the next
// call of `ngram` replaces: a heading is valid until then.
class ExampleWriter {
 public:
  ExampleWriter() = default;
  virtual ~ExampleWriter() = default;

  ExampleWriter(const ExampleWriter&) = delete;
  ExampleWriter& operator=(const ExampleWriter&) = delete;

  // To be called once, before everything else; N-grams are of n words.
  virtual void begin(std::size_t n) = 0;

  // Turns to another N-gram. There are `shown` calls of `example` before the next one.
  virtual void ngram(const Heading& heading) = 0;

  // An occurrence of the N-gram in hand, and its sentence.
  virtual void example(const concordance::ExampleSentence& sentence, const concordance::Hit& hit) = 0;

  // To be called once, at the end.
  virtual void end() = 0;
};

}  // namespace colx::examples
