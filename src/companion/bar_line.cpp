#include "companion/bar_line.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include <fmt/format.h>

namespace colx {

BarLine::BarLine(bool wanted) : _shown(wanted && ::isatty(STDERR_FILENO) == 1) {}

void BarLine::draw(unsigned percent, std::string_view remark) {
  if (!_shown) return;
  if (_drawn && percent == _percent && remark == _remark) return;
  std::string line = fmt::format("\r[{:<50}] {:3}%", std::string(std::min(percent, 100U) / 2, '#'), percent);
  if (!remark.empty()) line += fmt::format("  {}", remark);
  if (remark.size() < _remark.size()) line += "\x1B[K";  // what is left of a longer one
  std::fputs(line.c_str(), stderr);
  _percent = percent;
  _remark = remark;
  _drawn = true;
}

void BarLine::clear() {
  if (!_drawn) return;
  std::fputs("\r\x1B[K", stderr);
  _remark.clear();
  _drawn = false;
}

}  // namespace colx
