#pragma once

// A progress bar for reading, on standard error.

#include <cstddef>
#include <cstdint>

namespace colx {

// One line, redrawn in place, over a number of bytes; shown on a terminal only.
class ReadingBar {
 public:
  // `total`: how many bytes will be read; 0, not known, shows nothing.
  ReadingBar(std::size_t total, bool wanted);
  ~ReadingBar() { clear(); }

  ReadingBar(const ReadingBar&) = delete;
  ReadingBar& operator=(const ReadingBar&) = delete;

  // Sets how many bytes of the input in hand have been read.
  void update(std::uint64_t bytes);

  // Counts the input in hand as done.
  void finish_input(std::uint64_t bytes) { _before += bytes; }

  // Clears the line, so that a message can be shown.
  void clear();

 private:
  static constexpr std::uint64_t not_drawn = 101;

  bool _shown;
  std::uint64_t _total;
  std::uint64_t _before = 0;
  std::uint64_t _percent = not_drawn;
};

}  // namespace colx
