#include "import/reading_bar.h"

#include <algorithm>

namespace colx {

ReadingBar::ReadingBar(std::size_t total, bool wanted) : _line(wanted && total > 0), _total(total) {}

void ReadingBar::update(std::uint64_t bytes) {
  if (!_line.shown()) return;
  _line.draw(static_cast<unsigned>(std::min<std::uint64_t>(100, (_before + bytes) * 100 / _total)));
}

}  // namespace colx
