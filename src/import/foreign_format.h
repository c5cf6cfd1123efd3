#pragma once

// Recognition of what is taken for a treebank by mistake: archives, compressed and binary data, other encodings, and
// texts of other formats.

#include <optional>
#include <string>
#include <string_view>

namespace colx {

// For a message: what a text seems to be, and what can be done about it.
struct ForeignFormat {
  std::string found;
  std::string advice;
};

// Looks at the first bytes, which no treebank begins with: compression other than gzip, archives, UTF-16 and UTF-32,
// zero bytes by the dozen.
std::optional<ForeignFormat> foreign_bytes(std::string_view beginning);

// Looks at rows, of which some may look like those of a treebank: CoNLL-U Plus with other columns than CoNLL-U, lines
// that end with CR alone, words without text, rows without HEAD. All rows of the beginning must agree.
std::optional<ForeignFormat> foreign_rows(std::string_view beginning);

// Says what a text seems to be in which no format was recognised.
ForeignFormat guess_of_unrecognised(std::string_view beginning);

}  // namespace colx
