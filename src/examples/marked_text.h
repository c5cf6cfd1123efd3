#pragma once

// A text for a terminal, character by character: how many columns each takes, and which belong to members.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "companion/output.h"
#include "examples/marked_sentence.h"

namespace colx::examples {

// How members of an N-gram are shown. In colour the top word is underlined.
enum class Marks : std::uint8_t { brackets, colour };

// Collects pieces of text. Characters that a terminal would obey are replaced.
class MarkedText {
 public:
  explicit MarkedText(Marks marks) : _marks(marks) {}

  // Appends a text without marks, or a piece of a sentence.
  void append(std::string_view text) { _append(text, Mark::none); }
  void append(const Piece& piece);

  // Characters, and the columns that those from `begin` to `end` take.
  std::size_t size() const { return _characters.size(); }
  std::size_t width(std::size_t begin, std::size_t end) const;
  std::size_t width() const { return width(0, size()); }

  // Where to stop, and where to begin, to take as much as fits into that many columns.
  std::size_t end_of(std::size_t begin, std::size_t columns) const;
  std::size_t begin_of(std::size_t end, std::size_t columns) const;

  // Where a line of at most that many columns ends that begins there: behind the last blank that fits or, between wide
  // characters or where there is no blank, behind the last character; at least one character is taken.
  std::size_t end_of_line(std::size_t begin, std::size_t columns) const;

  // The place behind the blanks that begin, and before those that end there.
  std::size_t behind_blanks(std::size_t begin) const;
  std::size_t before_blanks(std::size_t begin, std::size_t end) const;

  // Whether its first letter is of a script that is written from right to left.
  bool is_right_to_left() const;

  // Writes the characters from `begin` to `end`.
  void write(Output& output, std::size_t begin, std::size_t end) const;
  void write(Output& output) const { write(output, 0, size()); }

 private:
  enum class Mark : std::uint8_t { none, member, top };
  struct Shown {
    std::uint32_t begin;  // in _bytes
    std::uint8_t size;
    std::uint8_t width;
    Mark mark;
  };

  void _append(std::string_view text, Mark mark);
  bool _is_blank(std::size_t i) const { return _bytes[_characters[i].begin] == ' '; }

  Marks _marks;
  std::string _bytes;
  std::vector<Shown> _characters;
};

}  // namespace colx::examples
