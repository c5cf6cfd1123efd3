#pragma once

// Reading of treebanks sentence by sentence.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "import/line_scan.h"
#include "import/other_rows.h"
#include "import/sentence.h"
#include "import/treebank_source.h"

namespace colx {

// Rows that are passed over on purpose.
struct PassedRows {
  std::uint64_t ranges = 0;
  std::uint64_t empty_nodes = 0;
};

// Which fields of words are wanted.
enum class WantedFields : std::uint8_t { all, xpos };

// Takes the rows of a source, which it does not own and which stands at its beginning, together to sentences.
//
// A sentence ends with an empty line, with one of white space, with the input, or where the numbers of words begin anew
// at 1. Comments, multiword ranges and empty nodes of the CoNLL formats are passed over. Every fault is noted as a
// problem; a sentence with one that costs it cannot be used. Faults of the tree are noted by check_tree, which every
// sentence without such a fault goes through. What concerns the format rather than the words, such as empty columns, is
// looked for in CoNLL-U only. What comments say of a sentence comes with it.
//
// Where only XPOS is wanted, of a CoNLL format, the other texts of words stay empty, and faults that do not cost
// sentences may go unnoticed; the sentences are the same, and so is whether they can be used.
class SentenceReader {
 public:
  SentenceReader(TreebankSource& source, TreebankFormat format, WantedFields wanted = WantedFields::all)
      : _source(source),
        _format(format),
        _wanted(wanted),
        _checks_format(format == TreebankFormat::conllu && wanted == WantedFields::all) {}

  // Reads the next sentence; returns false at the end. `problems` holds those of this sentence. Where something is
  // wrong between sentences it comes as a sentence without rows, which is none. Passes on input_error.
  bool next(TreebankSentence& sentence, std::vector<TreebankProblem>& problems);

  const PassedRows& passed() const { return _passed; }

  // How many lines ended with CR LF, which is noted as a problem once.
  std::uint64_t carriage_returns() const { return _carriage_returns; }

 private:
  // Rows behind a word that may open the next sentence, when an empty line is missing: comments, a range from 1, empty
  // nodes before the first word. What they are decides the next row of a word.
  struct Opening {
    OtherRows rows;
    SentenceComments comments;
    std::vector<TreebankProblem> if_inside;
    std::vector<TreebankProblem> if_first;
  };

  void _begin(TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  bool _next_line(std::vector<TreebankProblem>& problems);
  bool _restarts() const;
  LineTraits _scan_line();
  std::size_t _cut_line(std::string_view (&columns)[10]) const;
  // A column, from 0, with a TAB behind it.
  std::string_view _column(std::size_t column) const {
    const std::size_t begin = column == 0 ? 0 : _tabs[column - 1] + 1;
    return {_line.data() + begin, _tabs[column] - begin};
  }
  void _add_line(TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  void _add_conll_row(const LineTraits& traits, TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  bool _add_row_without_word(TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  void _add_conll_word(const LineTraits& traits, std::uint32_t parent, TreebankSentence& sentence);
  void _add_other_row(bool is_range, const std::string_view (&columns)[10], std::size_t count,
                      TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  void _add_datafile_row(TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  void _end_sentence(TreebankSentence& sentence, bool joined, std::vector<TreebankProblem>& problems);
  bool _check_order(std::uint32_t order, std::string_view text, TreebankSentence& sentence,
                    std::vector<TreebankProblem>& problems);
  void _close_opening(std::vector<TreebankProblem>& problems);
  void _note_line_without_row(const TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  void _note_end_of_input(const TreebankSentence& sentence, std::vector<TreebankProblem>& problems);
  void _note_broken_row(TreebankSentence& sentence, std::vector<TreebankProblem>& problems, Fault fault,
                        std::string text);
  TreebankProblem _problem(Fault fault, unsigned column, std::string text) const;
  void _note(std::vector<TreebankProblem>& problems, Fault fault, unsigned column, std::string text) const;

  TreebankSource& _source;
  TreebankFormat _format;
  WantedFields _wanted;
  bool _checks_format;  // also for what costs no sentence
  PassedRows _passed;
  std::uint64_t _carriage_returns = 0;
  bool _compression_noted = false;
  bool _any_sentence = false;

  std::string_view _line;  // without its line end
  std::array<std::size_t, 10> _tabs{};
  std::size_t _tab_count = 0;  // in the line; places of the first ten are kept
  bool _line_held = false;     // it belongs to the next sentence
  bool _orders_broken = false;
  bool _begins_with_one = false;
  bool _commented = false;        // there are comments before the sentence
  OtherRows _other_rows;          // of the sentence in hand
  std::uint64_t _range_line = 0;  // of the last range
  bool _range_has_parent = false;
  Opening _opening;
};

}  // namespace colx
