#pragma once

// Which hits are kept while a corpus is searched.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "concordance/example_settings.h"
#include "concordance/hit.h"

namespace colx::concordance {

// Takes hits in the order of the corpus, and gives back those that were chosen.
class HitChoice {
 public:
  HitChoice() = default;
  virtual ~HitChoice() = default;

  HitChoice(const HitChoice&) = delete;
  HitChoice& operator=(const HitChoice&) = delete;

  // Takes a hit. `sentence` is a hash of what the sentence says, by which sentences are told apart. Throws output_error
  // when a temporary file cannot be written.
  virtual void add(const Hit& hit, std::uint64_t sentence) = 0;

  // Whether no further hit can change the choice.
  virtual bool is_full() const { return false; }

  // To be called once, after the last hit.
  virtual void finish() = 0;

  // Takes the next hit, by ascending number of its N-gram; false behind the last one. Requires finish(). Throws
  // input_error when the temporary file cannot be read.
  virtual bool next(Hit& hit) = 0;
};

// What the choice is to know of an N-gram.
struct ChoiceTerms {
  std::uint64_t hash = 0;  // of what it is, by which its sentences are chosen
  std::uint64_t most = 0;  // hits that there can be
};

// Makes what chooses as the settings say. `ranks` has for each datafile of the list its place among all paths in their
// order; the choice depends on these alone. All hits are kept in `memory` bytes, and beyond these in a temporary file.
std::unique_ptr<HitChoice> make_choice(const ExampleSettings& settings, std::vector<ChoiceTerms> ngrams,
                                       std::vector<std::uint32_t> ranks, std::size_t memory);

}  // namespace colx::concordance
