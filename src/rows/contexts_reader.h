#pragma once

// Reads a contexts file of ngrex word by word, in constant memory.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "rows/block.h"
#include "rows/line_reader.h"

namespace colx::table {

// An N-gram some of whose positions may be open.
struct Pattern {
  std::size_t n = 0;
  unsigned type = 0;  // the highest of n bits is for the first position; those that are not open are set
  std::array<Member, largest_n> members{};  // of positions that are not open

  bool is_open(std::size_t k) const { return (type >> (n - 1 - k) & 1) == 0; }
  bool is_full() const { return type + 1 == 1U << n; }
};

// A word that was seen around a pattern.
struct ContextWord {
  std::string_view lemma;
  std::string_view tag;
  bool is_narrow = false;
  std::uint64_t frequency = 0;
};

// A file or standard input, plain or compressed with gzip, as a sequence of context words.
class ContextsReader {
 public:
  // Opens a file; `-` is standard input. Throws input_error.
  explicit ContextsReader(const std::string& path) : _lines(path) {}

  // Takes the next context word, whose texts stay valid until the next call; false at the end of a complete file.
  // Throws input_error with the name of the input and the number of the line when it is malformed or truncated.
  bool next(ContextWord& word);

  // The pattern around which the word was seen; its n is 0 when the file has none.
  const Pattern& pattern() const { return _pattern; }

 private:
  enum class Section { none, narrow, wide };

  void _read_pattern(std::string_view line);
  void _take_member(std::string_view line);
  void _read_word(std::string_view line, ContextWord& word) const;

  LineReader _lines;
  Section _section = Section::none;
  Pattern _pattern;
  std::array<std::string, largest_n> _texts;  // lines of the pattern, of which its members are views
};

}  // namespace colx::table
