#pragma once

// A progress bar for reading, on standard error.

#include <cstddef>
#include <cstdint>

#include "companion/bar_line.h"

namespace colx {

// One line, redrawn in place, over a number of bytes; shown on a terminal only.
class ReadingBar {
 public:
  // `total`: how many bytes will be read; 0, not known, shows nothing.
  ReadingBar(std::size_t total, bool wanted);

  // Sets how many bytes of the input in hand have been read.
  void update(std::uint64_t bytes);

  // Counts the input in hand as done.
  void finish_input(std::uint64_t bytes) { _before += bytes; }

  // Clears the line, so that a message can be shown.
  void clear() { _line.clear(); }

 private:
  BarLine _line;
  std::uint64_t _total;
  std::uint64_t _before = 0;
};

}  // namespace colx
