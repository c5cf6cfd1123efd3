#pragma once

// A text progress bar: two scale lines when it is made, then up to 51 marks and a line end.

#include <iosfwd>
#include <memory>

namespace boost {
class progress_display;
}

namespace colx {

// Draws on a stream, which it does not own, how much of an expected count is done. An expected count of 0 is taken
// as 1. A bar whose count never reaches the expected one stays unfinished.
class ProgressBar {
 public:
  ProgressBar(std::ostream& stream, unsigned long expected_count);
  ~ProgressBar();
  ProgressBar(ProgressBar&&) noexcept;
  ProgressBar& operator=(ProgressBar&&) noexcept;

  // Adds to the count and draws the marks that are due.
  void advance(unsigned long increment);

  // Brings the count to the expected one, which draws the rest of the bar and its line end.
  void complete();

 private:
  std::unique_ptr<boost::progress_display> _display;
};

}  // namespace colx
