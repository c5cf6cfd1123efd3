#pragma once

// What is written to a stream that belongs to somebody else, kept instead of shown, and the bars that may stand in it.

#include <ostream>
#include <sstream>
#include <string>

namespace colx::test {

// A progress bar that has just been made, and one that is complete.
inline const std::string bar_scale =
    "0%   10   20   30   40   50   60   70   80   90   100%\n"
    "|----|----|----|----|----|----|----|----|----|----|\n";
inline const std::string complete_bar = bar_scale + std::string(51, '*') + "\n";

// Takes over a stream's output until it goes out of scope.
class StreamCapture {
 public:
  explicit StreamCapture(std::ostream& stream) : _stream(stream), _usual(stream.rdbuf(_captured.rdbuf())) {}
  ~StreamCapture() { _stream.rdbuf(_usual); }

  StreamCapture(const StreamCapture&) = delete;
  StreamCapture& operator=(const StreamCapture&) = delete;

  std::string text() const { return _captured.str(); }

 private:
  std::ostringstream _captured;
  std::ostream& _stream;
  std::streambuf* _usual;
};

}  // namespace colx::test
