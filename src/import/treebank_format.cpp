#include "import/treebank_format.h"

#include <algorithm>
#include <cstdint>

#include <fmt/format.h>

#include "corpus/datafile_format.h"
#include "import/sentence.h"
#include "import/tagset.h"

namespace colx {

bool PreviewLines::next() {
  while (!_rest.empty()) {
    const std::size_t end = _rest.find('\n');
    _is_whole = end != std::string_view::npos;
    _line = _rest.substr(0, end);
    _rest.remove_prefix(_is_whole ? end + 1 : _rest.size());
    ++_number;
    if (_line.starts_with(byte_order_mark)) _line.remove_prefix(byte_order_mark.size());
    if (!std::all_of(_line.begin(), _line.end(), is_white_space)) return true;
  }
  _line = {};
  return false;
}

std::size_t split_columns(std::string_view line, std::string_view (&columns)[10]) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  std::size_t count = 0;
  for (;;) {
    const std::size_t tab = line.find('\t');
    if (count < 10) columns[count] = line.substr(0, tab);
    ++count;
    if (tab == std::string_view::npos) return count;
    line.remove_prefix(tab + 1);
  }
}

std::size_t split_fields(std::string_view line, std::string_view (&fields)[6]) {
  std::size_t count = 0;
  for (std::size_t at = 0;;) {
    while (at < line.size() && is_white_space(line[at]))
      ++at;
    if (at == line.size()) return count;
    const std::size_t begin = at;
    while (at < line.size() && !is_white_space(line[at]))
      ++at;
    if (count < 6) fields[count] = line.substr(begin, at - begin);
    ++count;
  }
}

RowKind row_kind(std::string_view id) {
  const auto is_number = [](std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  };
  if (is_number(id)) return RowKind::word;
  const std::size_t mark = id.find_first_of("-.");
  if (mark == std::string_view::npos || !is_number(id.substr(0, mark)) || !is_number(id.substr(mark + 1))) {
    return RowKind::malformed;
  }
  return id[mark] == '-' ? RowKind::range : RowKind::empty_node;
}

std::optional<TreebankFormat> recognise_format(std::string_view beginning) {
  bool rows = false;
  bool conll = false;
  bool six_fields = false;
  bool comments = false;
  bool marked = false;
  bool universal = true;
  std::string_view columns[10];
  std::string_view fields[6];
  for (PreviewLines lines(beginning); lines.next();) {
    const std::string_view line = lines.line();
    // The last line of the preview may be cut; unless it is the only one it is not looked at.
    if (!lines.is_whole() && rows) break;
    if (lines.is_comment()) {
      comments = true;
      continue;
    }
    rows = true;
    if (split_columns(line, columns) != 10) {
      six_fields = six_fields || (split_fields(line, fields) == 6 && row_kind(fields[0]) == RowKind::word);
      continue;
    }
    const RowKind kind = row_kind(columns[0]);
    if (kind == RowKind::malformed) continue;
    conll = true;
    if (kind != RowKind::word) {
      marked = true;
    } else if (columns[3] != "_" && columns[3] != "CONJ" && !is_universal_class(columns[3])) {
      universal = false;
    }
  }
  if (!rows) return TreebankFormat::conllu;
  if (!conll) return six_fields ? std::optional(TreebankFormat::datafile) : std::nullopt;
  return comments || marked || universal ? TreebankFormat::conllu : TreebankFormat::conllx;
}

std::string describe_first_row(std::string_view beginning) {
  std::string_view columns[10];
  std::string_view fields[6];
  for (PreviewLines lines(beginning); lines.next();) {
    if (lines.is_comment()) continue;
    const std::size_t column_count = split_columns(lines.line(), columns);
    if (column_count == 10)
      return fmt::format("line {} has {} where the number of a word is expected", lines.number(),
                         in_quotes(columns[0]));
    return fmt::format("line {} has {} columns separated by TAB and {} fields separated by white space", lines.number(),
                       column_count, split_fields(lines.line(), fields));
  }
  return "no row was found";
}

}  // namespace colx
