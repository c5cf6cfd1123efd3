#pragma once

// Example sentences of the N-grams of a report, as columns.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "base/warning_sink.h"
#include "concordance/corpus_settings.h"
#include "concordance/example_sentence.h"
#include "concordance/example_settings.h"
#include "concordance/search.h"
#include "report/column.h"
#include "rows/block.h"
#include "rows/text_store.h"
#include "util/compact_index.h"

namespace colx::report {

// To be used in this order: construct, add every row of the report, find once, take the columns once. Memory is that of
// the search, of the hits that are shown (4 bytes and 2 for each word) and of their sentences, each of which is kept
// once (some 18 bytes a word and each text once).
class ReportExamples {
 public:
  // Both settings and the datafiles must outlive the examples. Throws input_error when the rules cannot be read.
  ReportExamples(const concordance::CorpusSettings& corpus, const concordance::ExampleSettings& wanted,
                 const std::vector<ListedDatafile>& datafiles, std::size_t n);

  // Asks for the sentences of the next row.
  void add(const table::Block& block);

  // Goes over the corpus, with so much memory for the hits, and over its sentences again. `warn` takes what ngrex warns
  // of. Throws input_error and output_error.
  void find(std::size_t memory, const WarningSink& warn);

  std::size_t rows() const { return _frequencies.size(); }
  std::size_t sentences() const { return _sentences.ends.size(); }
  // How many rows have another frequency than what was found.
  std::size_t differing() const { return _differing; }
  // Whether identifiers and texts of sentences are known.
  bool are_cited() const { return _are_cited; }

  // Gives the columns away. Throws output_error when texts take 4 GiB or more.
  std::vector<Column> take_columns();

 private:
  using Numbers32 = std::vector<std::uint32_t>;

  // By sentence, in the order of the corpus.
  struct Sentences {
    Numbers32 files;  // texts
    Numbers32 lines;
    Numbers32 ids;      // texts
    Numbers32 texts;    // texts
    Numbers32 sources;  // texts
    Numbers32 source_lines;
    Numbers32 ends;  // in the words
  };
  // By word.
  struct Words {
    Numbers32 forms;  // texts, like the next three
    Numbers32 lemmas;
    Numbers32 tags;
    Numbers32 relations;
    std::vector<std::uint16_t> parents;
  };

  std::uint32_t _number_of(const concordance::Place& place);
  std::uint32_t _text(std::string_view text);
  void _put_in_order();
  void _keep(const concordance::ExampleSentence& sentence);
  void _number_texts_anew();

  concordance::Search _search;
  const concordance::ExampleSettings& _wanted;
  std::size_t _n;
  std::vector<std::uint64_t> _frequencies;  // by row
  std::size_t _differing = 0;

  CompactIndex _known;
  std::vector<concordance::Place> _places;  // of the sentences; by number of first sight until they are in order
  Numbers32 _hit_ends;                      // by row
  Numbers32 _hit_sentences;
  std::vector<std::vector<std::uint16_t>> _hit_words;  // by word of the N-gram, then by hit

  table::TextStore _texts;  // the first one is empty
  Sentences _sentences;
  Words _words;
  bool _are_cited = false;
};

}  // namespace colx::report
