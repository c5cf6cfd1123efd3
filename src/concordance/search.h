#pragma once

// Finds the occurrences of N-grams in a corpus: exactly those that ngrex counts with the same list, prefix, mask, rules
// and context window, each as often as ngrex counts it.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/warning_sink.h"
#include "concordance/corpus_settings.h"
#include "concordance/example_sentence.h"
#include "concordance/example_settings.h"
#include "concordance/hit.h"
#include "concordance/query.h"
#include "rows/block.h"

namespace colx::concordance {

// To be used in this order: construct, add what is wanted, run once, then take the hits. Memory is that of what is
// wanted and of the hits that are kept, which is `memory` at most when all are; it does not grow with the corpus.
//
// Only one search may be at work at a time, as the parser goes by process-wide settings.
class Search {
 public:
  // Looks for N-grams of n words in `datafiles`. Both must outlive the search. Throws input_error when the rules cannot
  // be read.
  Search(const CorpusSettings& settings, const std::vector<ListedDatafile>& datafiles, unsigned n);
  ~Search();

  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

  // Asks for the N-gram of a block, or for what meets a query, of n words either. N-grams are numbered from 0 in the
  // order in which they were added; one that was added twice has its hits under both numbers. Throws input_error.
  void add(const table::Block& block);
  void add(const Query& query);

  // Goes over the datafiles once. `warn` takes what ngrex warns of, with the name of the datafile. Hits that do not fit
  // into `memory` bytes, when all are kept, go to a temporary file. Throws input_error and output_error.
  void run(const ExampleSettings& wanted, std::size_t memory, const WarningSink& warn);

  // How often an N-gram occurs in what was read, which is all of the corpus unless the first hits were enough.
  std::uint64_t found(std::size_t ngram) const;

  // Whether all of the corpus was read.
  bool is_complete() const;

  // Takes the next hit that was chosen, by ascending number of the N-gram; false behind the last one. All or the first
  // ones are in the order of the corpus. A choice is in its own order, which like the choice itself depends on the
  // sentences and the N-gram alone, and not on the order of datafiles: sentences of 6 to 25 words come first, and no
  // sentence comes twice as long as there is another one.
  bool next(Hit& hit);

  // The sentence at a place, valid until the next call; calls with one place after another read it once. Throws
  // input_error when the datafile has changed.
  const ExampleSentence& sentence(const Place& place);

 private:
  class Work;
  std::unique_ptr<Work> _work;
};

}  // namespace colx::concordance
