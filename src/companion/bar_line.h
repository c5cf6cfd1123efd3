#pragma once

// The line of a progress bar on standard error.

#include <string>
#include <string_view>

namespace colx {

// One line, redrawn in place; nothing at all where standard error is no terminal.
class BarLine {
 public:
  explicit BarLine(bool wanted);
  ~BarLine() { clear(); }

  BarLine(const BarLine&) = delete;
  BarLine& operator=(const BarLine&) = delete;

  bool shown() const { return _shown; }

  // Draws so many of a hundred parts and a remark behind them, which must keep to the line.
  void draw(unsigned percent, std::string_view remark = {});

  // Clears the line, so that a message can be shown.
  void clear();

 private:
  bool _shown;
  bool _drawn = false;  // whether this stands there:
  unsigned _percent = 0;
  std::string _remark;
};

}  // namespace colx
