#include "import/sentence_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "import/tree_check.h"
#include "import/treebank_format.h"

namespace colx {

namespace {

constexpr std::array conll_columns = {"",      "ID",   "FORM",   "LEMMA", "UPOS", "XPOS",
                                      "FEATS", "HEAD", "DEPREL", "DEPS",  "MISC"};
constexpr std::array datafile_columns = {"", "order", "form", "lemma", "tag", "parent", "relation"};
constexpr unsigned conll_head = 7;
constexpr unsigned datafile_parent = 5;

bool _is_number(std::string_view text, std::uint32_t& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

bool SentenceReader::next(TreebankSentence& sentence, std::vector<TreebankProblem>& problems) {
  sentence.words.clear();
  sentence.line = 0;
  problems.clear();
  _orders_broken = false;
  _rows = 0;
  bool any_row = false;
  std::string_view line;
  while (_source.next_line(line)) {
    _pass_byte_order_mark(line, problems);
    if (_format == TreebankFormat::datafile && line.ends_with('\r')) _note_carriage_return(problems);
    if (_ends_sentence(line)) {
      if (_format == TreebankFormat::datafile && !line.empty() && line != "\r") {
        _note(problems, 0, "expected an empty line, found one of white space, which does not end a sentence", true);
      }
      if (any_row) break;
      continue;
    }
    if (_format == TreebankFormat::datafile && _source.compressed() && !_compression_noted) {
      _compression_noted = true;
      _note(problems, 0, "expected plain text, found compressed data, which ngrex does not read", true);
    }
    if (!any_row) sentence.line = _source.line_number();
    const std::uint64_t rows_before = _rows;
    const std::size_t problems_before = problems.size();
    _add_row(line, sentence, problems);
    any_row = any_row || _rows > rows_before || problems.size() > problems_before;
  }
  if (any_row && !must_be_skipped(problems)) {
    const bool datafile = _format == TreebankFormat::datafile;
    const unsigned column = datafile ? datafile_parent : conll_head;
    check_tree(sentence, column, datafile ? datafile_columns[column] : conll_columns[column], problems);
  }
  return any_row;
}

void SentenceReader::_note(std::vector<TreebankProblem>& problems, unsigned column, std::string text, bool repaired) {
  const char* const name = _format == TreebankFormat::datafile ? datafile_columns.at(column) : conll_columns.at(column);
  problems.push_back({_source.line_number(), column, name, std::move(text), repaired});
}

// An empty line, or one of white space. In the CoNLL formats one with a TAB is a row, though a broken one.
bool SentenceReader::_ends_sentence(std::string_view line) const {
  return std::all_of(line.begin(), line.end(), is_field_separator) &&
         (_format == TreebankFormat::datafile || line.find('\t') == std::string_view::npos);
}

void SentenceReader::_note_carriage_return(std::vector<TreebankProblem>& problems) {
  if (_carriage_returns_noted) return;
  _carriage_returns_noted = true;
  _note(problems, 0, "expected lines that end with LF, found CR LF here and possibly further down", true);
}

// A mark at the beginning of a line is left by whatever put files together. In a datafile ngrex would stumble on it.
void SentenceReader::_pass_byte_order_mark(std::string_view& line, std::vector<TreebankProblem>& problems) {
  if (!line.starts_with(byte_order_mark)) return;
  line.remove_prefix(byte_order_mark.size());
  if (_format == TreebankFormat::datafile)
    _note(problems, 0, "expected text, found a byte order mark, at which ngrex loses the sentence", true);
}

void SentenceReader::_add_row(std::string_view line, TreebankSentence& sentence,
                              std::vector<TreebankProblem>& problems) {
  if (line.find('\0') != std::string_view::npos) {
    _note_broken_row(problems, "expected text, found a zero byte");
    return;
  }
  if (_format == TreebankFormat::datafile) {
    _add_datafile_row(line, sentence, problems);
  } else {
    _add_conll_row(line, sentence, problems);
  }
}

// Notes a row that cannot be taken apart; after it orders are not checked.
void SentenceReader::_note_broken_row(std::vector<TreebankProblem>& problems, std::string text) {
  ++_rows;
  _orders_broken = true;
  _note(problems, 0, std::move(text));
}

// Checks that a row continues the run of orders; of a sentence only the first break is noted.
bool SentenceReader::_check_order(std::string_view text, std::vector<TreebankProblem>& problems) {
  ++_rows;
  if (_orders_broken) return false;
  std::uint32_t order = 0;
  if (!_is_number(text, order) || order != _rows) {
    _orders_broken = true;
    _note(problems, 1, fmt::format("expected the number {}, found {}", _rows, quoted(text)));
    return false;
  }
  if (_rows > longest_treebank_sentence) {
    _orders_broken = true;
    _note(problems, 1, fmt::format("expected a sentence of at most {} words, found more", longest_treebank_sentence));
    return false;
  }
  return true;
}

void SentenceReader::_add_conll_row(std::string_view line, TreebankSentence& sentence,
                                    std::vector<TreebankProblem>& problems) {
  if (line.starts_with('#')) return;
  std::string_view columns[10];
  const std::size_t count = split_columns(line, columns);
  const RowKind kind = row_kind(columns[0]);
  if (kind == RowKind::range || kind == RowKind::empty_node) {
    ++(kind == RowKind::range ? _passed.ranges : _passed.empty_nodes);
    return;
  }
  if (count != 10) {
    _note_broken_row(problems, fmt::format("expected 10 columns separated by TAB, found {}", count));
    return;
  }
  const bool in_order = _check_order(columns[0], problems);
  std::uint32_t parent = 0;
  if (!_is_number(columns[conll_head - 1], parent)) {
    _note(problems, conll_head,
          fmt::format("expected the number of a word or 0, found {}", quoted(columns[conll_head - 1])));
    return;
  }
  if (!in_order) return;
  TreebankWord& word = sentence.words.emplace_back();
  word.form = columns[1];
  word.lemma = columns[2];
  word.upos = columns[3];
  word.xpos = columns[4];
  word.feats = columns[5];
  word.parent = parent;
  word.relation = columns[7];
  word.line = _source.line_number();
}

void SentenceReader::_add_datafile_row(std::string_view line, TreebankSentence& sentence,
                                       std::vector<TreebankProblem>& problems) {
  std::string_view fields[6];
  const std::size_t count = split_fields(line, fields);
  if (count != 6) {
    _note_broken_row(problems, fmt::format("expected 6 fields separated by white space, found {}", count));
    return;
  }
  const bool in_order = _check_order(fields[0], problems);
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (is_field_separator(line.back())) {
    _note(problems, 0, "expected the line to end with its sixth field, found white space, which ends the sentence",
          true);
  }
  std::uint32_t parent = 0;
  if (!_is_number(fields[datafile_parent - 1], parent)) {
    _note(problems, datafile_parent,
          fmt::format("expected the number of a word or 0, found {}", quoted(fields[datafile_parent - 1])));
    return;
  }
  if (!in_order) return;
  TreebankWord& word = sentence.words.emplace_back();
  word.form = fields[1];
  word.lemma = fields[2];
  word.xpos = fields[3];
  word.parent = parent;
  word.relation = fields[5];
  word.line = _source.line_number();
}

}  // namespace colx
