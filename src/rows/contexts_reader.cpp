#include "rows/contexts_reader.h"

#include <fmt/format.h>

#include "rows/line_fields.h"

namespace colx::table {

namespace {

constexpr std::string_view end_of_file =
    "a contexts file, which ends with the empty lines of its last N-gram and one more";

}  // namespace

bool ContextsReader::next(ContextWord& word) {
  for (;;) {
    const std::string_view line = _lines.need(end_of_file);
    if (_section == Section::none) {
      std::string_view more;
      if (line.empty() && _lines.next(more))
        _lines.fail("expected the end of the file after the empty line that ends it");
      if (line.empty()) return false;
      _read_pattern(line);
      _section = _pattern.is_full() ? Section::narrow : Section::wide;
    } else if (!line.empty()) {
      _read_word(line, word);
      return true;
    } else if (_section == Section::narrow) {
      _section = Section::wide;
    } else {
      const std::string_view closing = _lines.need(end_of_file);
      if (!closing.empty())
        _lines.fail(fmt::format("expected a second empty line below the wide context, found {}", shown_text(closing)));
      _section = Section::none;
    }
  }
}

// Reads the lines of a pattern, of which the first has been taken, and the empty line below them.
void ContextsReader::_read_pattern(std::string_view line) {
  const std::size_t n = _pattern.n;  // of the pattern before, or 0
  _pattern = {};
  while (!line.empty()) {
    _take_member(line);
    line = _lines.need(end_of_file);
  }
  if (_pattern.n < smallest_n)
    _lines.fail(fmt::format("expected position {} of an N-gram, found an empty line", _pattern.n + 1));
  if (n != 0 && n != _pattern.n)
    _lines.fail(fmt::format("an N-gram of {} positions in a file of N-grams of {}", _pattern.n, n));
  if (_pattern.type == 0) _lines.fail("an N-gram whose positions are all open has no contexts");
  for (std::size_t k = 0; k < _pattern.n; ++k)
    if (_pattern.members[k].parent > _pattern.n)
      _lines.fail(
          fmt::format("the parent {} above is no position of an N-gram of {}", _pattern.members[k].parent, _pattern.n));
}

void ContextsReader::_take_member(std::string_view line) {
  const std::size_t k = _pattern.n;
  std::array<std::string_view, 5> fields;
  std::size_t count = split_fields(line, fields);
  std::uint64_t number = 0;
  const bool is_open = count == 2 && fields[1] == "*";
  if (k == largest_n || !parse_count(fields[0], number) || number != k + 1 || !(is_open || count == fields.size()))
    _lines.fail(
        fmt::format("expected position {} of an N-gram (position, lemma, tag, parent, relation, or position and *, "
                    "separated by TABs){}, found {}",
                    k + 1, k < smallest_n ? "" : " or the empty line below it", shown_text(line)));
  ++_pattern.n;
  _pattern.type = _pattern.type << 1 | (is_open ? 0U : 1U);
  if (is_open) return;
  if (!parse_count(fields[3], number) || number > largest_n)
    _lines.fail(fmt::format("expected the position of the parent or 0 as 4th field, found {}", shown_text(fields[3])));
  // The line goes when the next one is taken.
  _texts[k] = line;
  count = split_fields(_texts[k], fields);
  _pattern.members[k] = {fields[1], fields[2], fields[4], static_cast<std::uint32_t>(number)};
}

void ContextsReader::_read_word(std::string_view line, ContextWord& word) const {
  std::array<std::string_view, 3> fields;
  if (split_fields(line, fields) != fields.size() || !parse_count(fields[2], word.frequency))
    _lines.fail(
        fmt::format("expected a context word (lemma, tag, frequency, separated by TABs) or an empty line, found {}",
                    shown_text(line)));
  word.lemma = fields[0];
  word.tag = fields[1];
  word.is_narrow = _section == Section::narrow;
}

}  // namespace colx::table
