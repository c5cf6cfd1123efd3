#include "scale/engine/progress.h"

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <new>

#include <fmt/format.h>

namespace colx::scale {

namespace {

// What a thing counts when it is done.
constexpr std::uint64_t whole_thing = std::uint64_t{1} << 20;

// Which part of the processor time each stage takes, as measured on generated words.
struct Share {
  std::string_view stage;
  double of_pairs;
  double of_others;
};
constexpr Share shares[] = {{"plan", 1, 1},    {"scan", 16, 3},       {"number", 1, 1},    {"map", 24, 19},
                            {"reduce", 3, 3},  {"arrange", 5, 6},     {"order", 13, 22},   {"count", 4, 8},
                            {"write", 33, 37}, {"collect", 180, 180}, {"merge", 100, 100}, {"format", 110, 110}};

std::vector<std::pair<std::string_view, double>> _shares_of(const std::vector<std::string_view>& stages, unsigned n) {
  std::vector<std::pair<std::string_view, double>> list;
  double all = 0;
  for (const std::string_view stage : stages) {
    const auto* const found =
        std::find_if(std::begin(shares), std::end(shares), [&](const Share& share) { return share.stage == stage; });
    if (found == std::end(shares)) continue;
    list.emplace_back(stage, n == 2 ? found->of_pairs : found->of_others);
    all += list.back().second;
  }
  for (auto& [stage, share] : list)
    share /= all;
  return list;
}

// Before so much is done, and so many seconds have passed, nobody can say how long the rest will take.
constexpr double least_done = 0.01;
constexpr double least_elapsed = 2;

WorkBar* _bar = nullptr;
std::uint64_t _said = 0;  // of the thing that this process is at

}  // namespace

void Forecast::begin(std::string_view stage) {
  _before = _share = 0;
  for (const auto& [name, share] : _shares) {
    if (name == stage) {
      _share = share;
      break;
    }
    _before += share;
  }
  if (_share == 0) _before = _done;
  _kept_before = _kept;
}

void Forecast::set(double part, double kept) {
  _done = std::max(_done, std::min(_before + _share * part, 1.0));
  _kept = std::max(_kept, std::min(_kept_before + _share * kept, _done));
}

double Forecast::seconds_left(double elapsed) const {
  const double worked = _done - _kept;
  if (worked < least_done || elapsed < least_elapsed) return -1;
  return elapsed / worked * (1 - _done);
}

std::string time_left(double seconds) {
  const auto whole = static_cast<std::uint64_t>(std::ceil(seconds));
  if (whole < 60) return fmt::format("{} s left", whole);
  const std::uint64_t minutes = (whole + 59) / 60;
  if (minutes < 60) return fmt::format("{} min left", minutes);
  return fmt::format("{} h {} min left", minutes / 60, minutes % 60);
}

struct WorkBar::Shared {
  std::atomic<std::uint64_t> done = 0;  // in the stage in hand
  static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
};

WorkBar::WorkBar(const std::vector<std::string_view>& stages, unsigned n, bool wanted)
    : _line(wanted), _forecast(_shares_of(stages, n)) {
  if (!_line.shown()) return;
  void* const memory = ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return;
  _shared = new (memory) Shared;
  _bar = this;
  _draw();
}

WorkBar::~WorkBar() {
  if (_shared == nullptr) return;
  _bar = nullptr;
  ::munmap(_shared, sizeof(Shared));
}

void WorkBar::_draw() {
  const double things = static_cast<double>(std::max<std::size_t>(_things, 1));
  const double done = static_cast<double>(_shared->done.load()) / static_cast<double>(whole_thing);
  const double kept = static_cast<double>(_kept);
  _forecast.set(std::min((done + kept) / things, 1.0), kept / things);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - _begin;
  const double left = _forecast.seconds_left(elapsed.count());
  _line.draw(static_cast<unsigned>(_forecast.done() * 100), left < 0 ? "" : time_left(left));
}

void Progress::begin_stage(std::string_view stage, std::size_t things) {
  if (_bar == nullptr) return;
  _bar->_shared->done = 0;
  _bar->_forecast.begin(stage);
  _bar->_things = things;
  _bar->_kept = 0;
  _said = 0;
  _bar->_draw();
}

void Progress::keep(std::size_t things) {
  if (_bar == nullptr) return;
  _bar->_kept = things;
  _bar->_draw();
}

void Progress::set(double part) {
  if (_bar == nullptr) return;
  const auto now = static_cast<std::uint64_t>(std::clamp(part, 0.0, 1.0) * static_cast<double>(whole_thing));
  if (now <= _said) return;
  _bar->_shared->done += now - _said;
  _said = now;
}

void Progress::finish() {
  set(1);
  _said = 0;
}

bool Progress::is_shown() {
  return _bar != nullptr;
}

void Progress::draw() {
  if (_bar != nullptr) _bar->_draw();
}

void Progress::hide() {
  if (_bar != nullptr) _bar->_line.clear();
}

}  // namespace colx::scale
