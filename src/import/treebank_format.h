#pragma once

// Recognition of the format of a treebank by its content.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "import/sentence.h"

namespace colx {

// Goes through the lines at the beginning of a text that are neither empty nor all white space. A byte order mark
// before a line is taken off.
class PreviewLines {
 public:
  explicit PreviewLines(std::string_view beginning) : _rest(beginning) {}

  // Goes to the next line; returns false at the end, where the line is empty.
  bool next();

  std::string_view line() const { return _line; }
  bool is_comment() const { return _line.starts_with('#'); }

  // Whether it has its line end; of the last one the rest may be missing.
  bool is_whole() const { return _is_whole; }

  // Its number in the text, from 1.
  std::uint64_t number() const { return _number; }

 private:
  std::string_view _rest;
  std::string_view _line;
  std::uint64_t _number = 0;
  bool _is_whole = false;
};

// Looks at the beginning of a text. A row of ten columns separated by TABs makes it one of the CoNLL formats, else one
// of six fields separated by white space a datafile. It is CoNLL-U when there is a comment, a multiword range or an
// empty node, or when the fourth column of every row is a universal word class; else CoNLL-X. Returns nothing when
// there are rows and none is of any format; a text without rows counts as CoNLL-U.
std::optional<TreebankFormat> recognise_format(std::string_view beginning);

// For the message about a text that is not recognised: what its first row looks like.
std::string describe_first_row(std::string_view beginning);

// Takes a line end of CR LF off, and cuts at TABs. Returns the number of columns; only the first ten are stored.
std::size_t split_columns(std::string_view line, std::string_view (&columns)[10]);

// Cuts at white space. Returns the number of fields; only the first six are stored.
std::size_t split_fields(std::string_view line, std::string_view (&fields)[6]);

// What the first column of a CoNLL row says.
enum class RowKind : unsigned char { word, range, empty_node, malformed };
RowKind row_kind(std::string_view id);

}  // namespace colx
