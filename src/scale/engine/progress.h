#pragma once

// How far the work of ngrex-scale is. The work consists of stages, one after another, and a stage of things that take
// about as long as one another; whichever process does a thing says how far it is, in memory that all of them share,
// and the one that waits for the others draws a bar over all stages. Where no bar is drawn nothing of this costs
// anything.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/bar_line.h"

namespace colx::scale {

// Works out which part of the work is done, which never becomes less, and how long the rest will take.
class Forecast {
 public:
  // Takes the stages with their shares of the work.
  explicit Forecast(std::vector<std::pair<std::string_view, double>> shares) : _shares(std::move(shares)) {}

  // A stage begins, perhaps once more. One that is not known is none of the work.
  void begin(std::string_view stage);

  // The stage is at this part of it, from 0 to 1, of which `kept` had been done before the run.
  void set(double part, double kept);

  // What is done of the work, from 0 to 1.
  double done() const { return _done; }

  // The seconds that the rest will take when what this run has done took so many; negative when it is too early to
  // tell.
  double seconds_left(double elapsed) const;

 private:
  std::vector<std::pair<std::string_view, double>> _shares;
  double _before = 0;  // what the stages before take
  double _share = 0;   // of the stage in hand
  double _done = 0;
  double _kept = 0;         // of what is done, what was done before the run
  double _kept_before = 0;  // of that, in the stages before
};

// A time as a remark behind a bar, such as "3 min left".
std::string time_left(double seconds);

// Draws the bar while it lives. There is one at a time.
class WorkBar {
 public:
  // Takes the stages that are to come, for N-grams of N members.
  WorkBar(const std::vector<std::string_view>& stages, unsigned n, bool wanted);
  ~WorkBar();

  WorkBar(const WorkBar&) = delete;
  WorkBar& operator=(const WorkBar&) = delete;

 private:
  friend class Progress;
  struct Shared;

  void _draw();

  BarLine _line;
  Forecast _forecast;
  Shared* _shared = nullptr;
  std::chrono::steady_clock::time_point _begin = std::chrono::steady_clock::now();
  std::size_t _things = 1;  // of the stage in hand
  std::size_t _kept = 0;    // of them, done before the run
};

// What is said to the bar, if there is one.
class Progress {
 public:
  // Something is said once in so many sentences.
  static constexpr std::uint64_t sentences_of_a_report = 256;

  // A stage of so many things begins.
  static void begin_stage(std::string_view stage, std::size_t things);

  // So many of them had been done before the run.
  static void keep(std::size_t things);

  // Such a part of the thing that this process is at, from 0 to 1, is done; or all of it, and the next thing begins.
  static void set(double part);
  static void set(std::uint64_t done, std::uint64_t all) {
    if (is_shown() && all > 0) set(static_cast<double>(done) / static_cast<double>(all));
  }
  static void finish();

  // Whether there is a bar.
  static bool is_shown();

  // Draws it; for the process that waits for the others.
  static void draw();

  // Clears it, so that a message can be shown.
  static void hide();
};

}  // namespace colx::scale
