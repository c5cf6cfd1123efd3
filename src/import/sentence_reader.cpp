#include "import/sentence_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "companion/utf8.h"
#include "corpus/datafile_format.h"
#include "import/conll_columns.h"
#include "import/line_scan.h"
#include "import/tree_check.h"
#include "import/treebank_format.h"

namespace colx {

namespace {

constexpr std::array datafile_columns = {"", "order", "form", "lemma", "tag", "parent", "relation"};
constexpr unsigned conll_head = 7;
constexpr unsigned datafile_parent = 5;

// A copy of the fields of a row from one to another, made at once.
class KeptFields {
 public:
  KeptFields(std::string_view first, std::string_view last, TextArena& texts)
      : _row(first.data()),
        _copy(texts.keep({_row, static_cast<std::size_t>(last.data() + last.size() - _row)}).data()) {}

  // The copy of a field of the row.
  std::string_view operator()(std::string_view field) const { return {_copy + (field.data() - _row), field.size()}; }

 private:
  const char* _row;
  const char* _copy;
};

bool _is_white(std::string_view line) {
  return std::all_of(line.begin(), line.end(), is_white_space);
}

bool _has_root(const TreebankSentence& sentence) {
  return std::any_of(sentence.words.begin(), sentence.words.end(), [](const TreebankWord& w) { return w.parent == 0; });
}

}  // namespace

bool SentenceReader::next(TreebankSentence& sentence, std::vector<TreebankProblem>& problems) {
  // Beside a missing empty line.
  bool joined = _line_held;
  _begin(sentence, problems);
  while (_next_line(problems)) {
    if (_line.empty() || (is_white_space(_line.front()) && _is_white(_line))) {
      _note_line_without_row(sentence, problems);
      if (sentence.rows == 0 && problems.empty()) {
        sentence.comments.clear();
        continue;
      }
      _end_sentence(sentence, joined, problems);
      return true;
    }
    if (_begins_with_one && _restarts()) {
      _note(problems, Fault::missing_empty_line, 0,
            "expected an empty line between sentences, found the first word of the next one");
      _line_held = true;
      joined = true;
      _end_sentence(sentence, joined, problems);
      return true;
    }
    _add_line(sentence, problems);
  }
  _note_end_of_input(sentence, problems);
  _end_sentence(sentence, joined, problems);
  return sentence.rows > 0 || !problems.empty();
}

void SentenceReader::_begin(TreebankSentence& sentence, std::vector<TreebankProblem>& problems) {
  sentence.words.clear();
  sentence.texts.clear();
  sentence.comments.clear();
  sentence.rows = 0;
  sentence.line = 0;
  problems.clear();
  _orders_broken = false;
  _begins_with_one = false;
  _commented = false;
  _other_rows = _opening.rows;
  if (!_line_held) return;
  problems.swap(_opening.if_first);
  std::swap(sentence.comments, _opening.comments);
  _opening = {};
}

// Fetches a line without what may stand around it. A byte order mark at the beginning of a line is left by whatever put
// files together; in a datafile ngrex would stumble on it.
bool SentenceReader::_next_line(std::vector<TreebankProblem>& problems) {
  if (std::exchange(_line_held, false)) return true;
  if (!_source.next_line(_line)) return false;
  const bool datafile = _format == TreebankFormat::datafile;
  if (_line.starts_with(byte_order_mark)) {
    _line.remove_prefix(byte_order_mark.size());
    if (datafile)
      _note(problems, Fault::byte_order_mark, 0,
            "expected text, found a byte order mark, at which ngrex loses the sentence");
    else if (_format == TreebankFormat::conllu)
      _note(problems, Fault::byte_order_mark, 0, "expected text, found a byte order mark");
  }
  if (!_line.ends_with('\r')) return true;
  _line.remove_suffix(1);
  if (_format != TreebankFormat::conllx && ++_carriage_returns == 1)
    _note(problems, Fault::carriage_return, 0,
          "expected lines that end with LF, found CR LF here and possibly further down");
  return true;
}

// Whether the line is the row of a first word.
bool SentenceReader::_restarts() const {
  std::string_view row = _line;
  if (_format == TreebankFormat::datafile)
    while (!row.empty() && is_white_space(row.front()))
      row.remove_prefix(1);
  if (row.size() < 2 || row[0] != '1') return false;
  return _format == TreebankFormat::datafile ? is_white_space(row[1]) : row[1] == '\t';
}

// A line that is empty or all white space.
void SentenceReader::_note_line_without_row(const TreebankSentence& sentence, std::vector<TreebankProblem>& problems) {
  const bool datafile = _format == TreebankFormat::datafile;
  if (!_line.empty()) {
    _note(problems, Fault::blank_line, 0,
          datafile ? "expected an empty line, found one of white space, which does not end a sentence"
                   : "expected an empty line, found one of white space");
  } else if (_format == TreebankFormat::conllu && sentence.rows == 0) {
    _note(problems, Fault::extra_empty_line, 0,
          _commented ? "expected a sentence behind the comments, found an empty line"
                     : "expected a sentence, found one empty line more");
  }
}

void SentenceReader::_note_end_of_input(const TreebankSentence& sentence, std::vector<TreebankProblem>& problems) {
  if (_format != TreebankFormat::conllu) return;
  if (sentence.rows > 0)
    _note(problems, Fault::missing_last_line, 0, "expected an empty line behind the last sentence, found the end");
  else if (_commented && _any_sentence)
    _note(problems, Fault::missing_last_line, 0, "expected a sentence behind the comments, found the end");
}

void SentenceReader::_end_sentence(TreebankSentence& sentence, bool joined, std::vector<TreebankProblem>& problems) {
  if (!_line_held && !_opening.if_inside.empty()) _close_opening(problems);
  if (_other_rows.covered() > sentence.rows) {
    std::string text = fmt::format("expected a range within the sentence of {} words, found one up to {}",
                                   sentence.rows, _other_rows.covered());
    if (_range_has_parent) {
      ++sentence.rows;
      text += " with a parent, as words have it";
    }
    problems.push_back({_range_line, 1, conll_columns[1], std::move(text),
                        _range_has_parent ? Fault::word_as_other_row : Fault::range});
  }
  std::stable_sort(problems.begin(), problems.end(), [](auto& a, auto& b) { return a.line < b.line; });
  if (sentence.rows == 0) return;
  _any_sentence = true;
  if (must_be_skipped(problems)) return;
  const bool datafile = _format == TreebankFormat::datafile;
  const unsigned column = datafile ? datafile_parent : conll_head;
  check_tree(sentence, column, datafile ? datafile_columns[column] : conll_columns[column], problems);
  // Numbers that begin anew may also be wrong ones; a part of a sentence has no root.
  if (joined && !must_be_skipped(problems) && !_has_root(sentence)) {
    problems.push_back({sentence.line, 0, "",
                        "expected a root, as an empty line is missing before or behind, found none",
                        Fault::no_root_in_part});
  }
}

TreebankProblem SentenceReader::_problem(Fault fault, unsigned column, std::string text) const {
  const char* const name = _format == TreebankFormat::datafile ? datafile_columns.at(column) : conll_columns.at(column);
  return {_source.line_number(), column, name, std::move(text), fault};
}

void SentenceReader::_note(std::vector<TreebankProblem>& problems, Fault fault, unsigned column,
                           std::string text) const {
  problems.push_back(_problem(fault, column, std::move(text)));
}

// What could have opened the next sentence stands in this one.
void SentenceReader::_close_opening(std::vector<TreebankProblem>& problems) {
  std::move(_opening.if_inside.begin(), _opening.if_inside.end(), std::back_inserter(problems));
  _opening = {};
}

// Looks at the line and notes where its TABs are.
LineTraits SentenceReader::_scan_line() {
  std::size_t count = 0;
  const LineTraits traits = scan_line(_line, [&](std::size_t at) {
    if (count < _tabs.size()) _tabs[count] = at;
    ++count;
  });
  _tab_count = count;
  return traits;
}

// Cuts the line at its TABs, as split_columns does it.
std::size_t SentenceReader::_cut_line(std::string_view (&columns)[10]) const {
  const std::string_view line = _line.substr(0, _line.size() - (_line.ends_with('\r') ? 1 : 0));
  std::size_t begin = 0;
  for (std::size_t c = 0; c < 10 && c <= _tab_count; ++c) {
    const std::size_t end = c < _tab_count ? _tabs[c] : line.size();
    columns[c] = {line.data() + begin, end - begin};
    begin = end + 1;
  }
  return _tab_count + 1;
}

void SentenceReader::_add_line(TreebankSentence& sentence, std::vector<TreebankProblem>& problems) {
  const bool conllu = _format == TreebankFormat::conllu;
  const LineTraits traits = _format == TreebankFormat::datafile ? LineTraits{.blanks = true} : _scan_line();
  if (_checks_format && traits.not_ascii && !is_utf8(_line))
    _note(problems, Fault::not_utf8, 0, "expected text in UTF-8, found bytes that are none");
  if (sentence.rows == 0) sentence.line = _source.line_number();
  if (traits.blanks && _line.find('\0') != std::string_view::npos) {
    _note_broken_row(sentence, problems, Fault::zero_byte, "expected text, found a zero byte");
  } else if (_format == TreebankFormat::datafile) {
    _add_datafile_row(sentence, problems);
  } else if (!_line.starts_with('#')) {
    _add_conll_row(traits, sentence, problems);
  } else if (sentence.rows == 0) {
    _commented = conllu;
    sentence.comments.take(_line);
  } else if (conllu) {
    _opening.comments.take(_line);
    _opening.if_inside.push_back(_problem(
        Fault::misplaced_comment, 0, "expected comments before the first word of a sentence only, found one behind"));
  }
}

// Notes a row that cannot be taken apart; after it orders are not checked.
void SentenceReader::_note_broken_row(TreebankSentence& sentence, std::vector<TreebankProblem>& problems, Fault fault,
                                      std::string text) {
  if (!_opening.if_inside.empty()) _close_opening(problems);
  ++sentence.rows;
  _orders_broken = true;
  _note(problems, fault, 0, std::move(text));
}

// Checks that a row continues the run of orders, which begins at 1; of a sentence only the first break is noted. The
// order is 0 where the text is no number.
bool SentenceReader::_check_order(std::uint32_t order, std::string_view text, TreebankSentence& sentence,
                                  std::vector<TreebankProblem>& problems) {
  if (!_opening.if_inside.empty()) _close_opening(problems);
  ++sentence.rows;
  if (_orders_broken) return false;
  if (order != sentence.rows) {
    _orders_broken = true;
    _note(problems, Fault::order, 1, fmt::format("expected the number {}, found {}", sentence.rows, in_quotes(text)));
    return false;
  }
  _begins_with_one = true;
  if (sentence.rows > longest_sentence) {
    _orders_broken = true;
    _note(problems, Fault::too_many_words, 1,
          fmt::format("expected a sentence of at most {} words, found more", longest_sentence));
    return false;
  }
  return true;
}

// A range or an empty node, of which only CoNLL-U knows.
void SentenceReader::_add_other_row(bool is_range, const std::string_view (&columns)[10], std::size_t count,
                                    TreebankSentence& sentence, std::vector<TreebankProblem>& problems) {
  ++(is_range ? _passed.ranges : _passed.empty_nodes);
  if (_format != TreebankFormat::conllu) return;
  const std::string_view id = columns[0];
  const auto add = [&](OtherRows& rows, std::uint64_t words) {
    return is_range ? rows.add_range(id, words) : rows.add_empty_node(id, words);
  };
  const Fault fault = is_range ? Fault::range : Fault::empty_node;
  std::string text = add(_other_rows, sentence.rows);
  std::uint32_t parent = 0;
  const bool has_parent = count == 10 && whole_column(columns[conll_head - 1], parent);
  if (!text.empty() && has_parent) {
    _note_broken_row(sentence, problems, Fault::word_as_other_row, text + " with a parent, as words have it");
    return;
  }
  if (is_range && text.empty()) {
    _range_line = _source.line_number();
    _range_has_parent = has_parent;
  }
  if (sentence.rows > 0 && id.starts_with(is_range ? "1-" : "0.")) {
    _opening.if_inside.push_back(_problem(fault, 1, std::move(text)));
    text = add(_opening.rows, 0);
    if (!text.empty())
      _opening.if_first.push_back(_problem(fault, 1, std::move(text)));
    else if (is_range)
      _range_line = _source.line_number();
  } else if (!text.empty()) {
    _note(problems, fault, 1, std::move(text));
  }
  if (count != 10) {
    _note(problems, fault, 0, fmt::format("expected 10 columns separated by TAB, found {}", count));
  } else if (text = is_range ? misused_column_of_range(columns) : misused_column_of_empty_node(columns);
             !text.empty()) {
    _note(problems, fault, 0, std::move(text));
  }
}

// Adds a row of a range, of an empty node or of another number of columns than ten; returns whether it is one.
bool SentenceReader::_add_row_without_word(TreebankSentence& sentence, std::vector<TreebankProblem>& problems) {
  std::string_view columns[10];
  const std::size_t count = _cut_line(columns);
  const RowKind kind = row_kind(columns[0]);
  if (kind == RowKind::range || kind == RowKind::empty_node) {
    _add_other_row(kind == RowKind::range, columns, count, sentence, problems);
    return true;
  }
  if (count == 10) return false;
  _note_broken_row(sentence, problems, Fault::columns,
                   fmt::format("expected 10 columns separated by TAB, found {}", count));
  return true;
}

void SentenceReader::_add_conll_row(const LineTraits& traits, TreebankSentence& sentence,
                                    std::vector<TreebankProblem>& problems) {
  const bool has_ten_columns = _tab_count == 9;
  if (_checks_format && has_ten_columns && (traits.blanks || traits.empty_column)) {
    std::string_view columns[10];
    _cut_line(columns);
    check_columns(columns, _source.line_number(), problems);
  }
  const std::uint32_t order = has_ten_columns ? number_or_0(_column(0)) : 0;
  if (order == 0 && _add_row_without_word(sentence, problems)) return;
  const bool in_order = _check_order(order, _column(0), sentence, problems);
  const std::string_view head = _column(conll_head - 1);
  std::uint32_t parent = 0;
  if (!whole_column(head, parent)) {
    _note(problems, Fault::parent, conll_head,
          fmt::format("expected the number of a word or 0, found {}", in_quotes(head)));
    return;
  }
  if (_checks_format) {
    for (const unsigned column : {1U, conll_head})
      if (has_leading_zero(_column(column - 1)))
        _note(problems, Fault::leading_zero, column,
              fmt::format("expected a number without leading zeros, found {}", in_quotes(_column(column - 1))));
  }
  if (in_order) _add_conll_word(traits, parent, sentence);
}

void SentenceReader::_add_conll_word(const LineTraits& traits, std::uint32_t parent, TreebankSentence& sentence) {
  TreebankWord& word = sentence.words.emplace_back();
  word.parent = parent;
  word.line = _source.line_number();
  if (_wanted == WantedFields::xpos) {
    word.xpos = sentence.texts.keep(_column(4));
    return;
  }
  word.is_plain = !traits.blanks && !traits.wide_space;
  const KeptFields kept(_column(1), _column(7), sentence.texts);
  word.form = kept(_column(1));
  word.lemma = kept(_column(2));
  word.upos = kept(_column(3));
  word.xpos = kept(_column(4));
  word.feats = kept(_column(5));
  word.relation = kept(_column(7));
}

void SentenceReader::_add_datafile_row(TreebankSentence& sentence, std::vector<TreebankProblem>& problems) {
  if (_source.compressed() && !_compression_noted) {
    _compression_noted = true;
    _note(problems, Fault::compression, 0, "expected plain text, found compressed data, which ngrex does not read");
  }
  std::string_view fields[6];
  const std::size_t count = split_fields(_line, fields);
  if (count != 6) {
    _note_broken_row(sentence, problems, Fault::columns,
                     fmt::format("expected 6 fields separated by white space, found {}", count));
    return;
  }
  const bool in_order = _check_order(number_or_0(fields[0]), fields[0], sentence, problems);
  if (is_white_space(_line.back())) {
    _note(problems, Fault::trailing_space, 0,
          "expected the line to end with its sixth field, found white space, which ends the sentence");
  }
  std::uint32_t parent = 0;
  if (!whole_column(fields[datafile_parent - 1], parent)) {
    _note(problems, Fault::parent, datafile_parent,
          fmt::format("expected the number of a word or 0, found {}", in_quotes(fields[datafile_parent - 1])));
    return;
  }
  if (!in_order) return;
  const KeptFields kept(fields[1], fields[5], sentence.texts);
  TreebankWord& word = sentence.words.emplace_back();
  word.form = kept(fields[1]);
  word.lemma = kept(fields[2]);
  word.xpos = kept(fields[3]);
  word.parent = parent;
  word.relation = kept(fields[5]);
  word.line = _source.line_number();
}

}  // namespace colx
