#include "import/reading_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include <fmt/format.h>

namespace colx {

ReadingBar::ReadingBar(std::size_t total, bool wanted)
    : _shown(wanted && total > 0 && ::isatty(STDERR_FILENO) == 1), _total(total) {}

void ReadingBar::update(std::uint64_t bytes) {
  if (!_shown) return;
  const std::uint64_t percent = std::min<std::uint64_t>(100, (_before + bytes) * 100 / _total);
  if (percent == _percent) return;
  _percent = percent;
  std::fputs(fmt::format("\r[{:<50}] {:3}%", std::string(percent / 2, '#'), percent).c_str(), stderr);
}

void ReadingBar::clear() {
  if (_percent == not_drawn) return;
  std::fputs("\r\x1B[K", stderr);
  _percent = not_drawn;
}

}  // namespace colx
