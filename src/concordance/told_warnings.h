#pragma once

// What is said of the faults of a corpus: of a few of them each, of the others how many there are.

#include <cstdint>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "base/warning_sink.h"

namespace colx::concordance {

// Hands the first warnings of a search on.
class ToldWarnings {
 public:
  explicit ToldWarnings(WarningSink tell) : _tell(std::move(tell)) {}

  void take(std::string_view warning) {
    if (++_count <= told_one_by_one) _tell(warning);
  }

  // To be called when there will be no further one.
  void tell_rest() const {
    if (_count > told_one_by_one)
      _tell(fmt::format("{} further sentences are skipped, as ngrex skips them", _count - told_one_by_one));
  }

 private:
  static constexpr std::uint64_t told_one_by_one = 5;

  WarningSink _tell;
  std::uint64_t _count = 0;
};

}  // namespace colx::concordance
