#pragma once

// What a run of ngrex-examples looks for: the chosen N-grams of an output datafile, or patterns.

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "concordance/search.h"
#include "corpus/datafile_list.h"
#include "examples/example_writer.h"
#include "examples/options.h"
#include "rows/block.h"

namespace colx::examples {

// Reads all N-grams, of which it keeps the texts, and makes a search for them.
class WantedRows {
 public:
  // Options and datafiles must outlive the rows. Throws usage_error and input_error.
  WantedRows(const Options& options, const std::vector<ListedDatafile>& datafiles);

  // The search, in which N-grams have their numbers; null when there are none.
  concordance::Search* search() { return _search.get(); }

  std::size_t size() const { return _options.queries.empty() ? _texts.size() : _options.queries.size(); }

  // The N of all N-grams; 0 when the file has none.
  std::size_t n() const { return _n; }

  // The frequency that the file gives an N-gram; nothing for a pattern.
  std::optional<std::uint64_t> frequency(std::size_t ngram) const;

  // The heading of an N-gram, but for what was found of it. It is valid until the next call.
  Heading heading(std::size_t ngram);

 private:
  table::Block _block_of(std::size_t ngram) const;

  const Options& _options;
  std::size_t _n = 0;
  std::deque<std::string> _texts;  // of the blocks
  std::unique_ptr<concordance::Search> _search;
  table::Block _block;   // of the heading
  std::string _pattern;  // of the heading
};

}  // namespace colx::examples
