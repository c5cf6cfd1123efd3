#include "base/progress_bar.h"

#include "base/boost_progress.h"

namespace colx {

ProgressBar::ProgressBar(std::ostream& stream, unsigned long expected_count)
    : _display(std::make_unique<boost::progress_display>(expected_count, stream, "", "", "")) {}

ProgressBar::~ProgressBar() = default;
ProgressBar::ProgressBar(ProgressBar&&) noexcept = default;
ProgressBar& ProgressBar::operator=(ProgressBar&&) noexcept = default;

void ProgressBar::advance(unsigned long increment) {
  *_display += increment;
}

void ProgressBar::complete() {
  *_display += _display->expected_count() - _display->count();
}

}  // namespace colx
