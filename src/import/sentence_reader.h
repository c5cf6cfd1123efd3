#pragma once

// Reading of treebanks sentence by sentence.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "import/sentence.h"
#include "import/treebank_source.h"

namespace colx {

// Rows that are passed over on purpose.
struct PassedRows {
  std::uint64_t ranges = 0;
  std::uint64_t empty_nodes = 0;
};

// Takes the rows of a source, which it does not own and which stands at its beginning, together to sentences.
//
// A sentence ends with an empty line or with the input. Comments, multiword ranges and empty nodes of the CoNLL formats
// are passed over. Every fault of a row is noted as a problem; a sentence with one that is not marked as repaired
// cannot be used. Faults of the tree are noted by check_tree, which every sentence without other faults goes through.
class SentenceReader {
 public:
  SentenceReader(TreebankSource& source, TreebankFormat format) : _source(source), _format(format) {}

  // Reads the next sentence that has at least one row; returns false at the end. `problems` holds those of this
  // sentence. Passes on input_error.
  bool next(TreebankSentence& sentence, std::vector<TreebankProblem>& problems);

  const PassedRows& passed() const { return _passed; }

 private:
  void _add_row(std::string_view line, TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  void _add_conll_row(std::string_view line, TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  void _add_datafile_row(std::string_view line, TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  bool _ends_sentence(std::string_view line) const;
  void _note_carriage_return(std::vector<TreebankProblem>& problems);
  void _pass_byte_order_mark(std::string_view& line, std::vector<TreebankProblem>& problems);
  void _note_broken_row(std::vector<TreebankProblem>& problems, std::string text);
  bool _check_order(std::string_view text, std::vector<TreebankProblem>& problems);
  void _note(std::vector<TreebankProblem>& problems, unsigned column, std::string text, bool repaired = false);

  TreebankSource& _source;
  TreebankFormat _format;
  PassedRows _passed;
  bool _carriage_returns_noted = false;
  bool _compression_noted = false;
  bool _orders_broken = false;
  std::uint64_t _rows = 0;  // word rows of the sentence in hand, good or bad
};

}  // namespace colx
