#pragma once

// Random input for property tests. The seed is printed with the test and with every failure; the environment variable
// NGREX_TEST_SEED repeats a run.

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tests/support/seed.h"

namespace colx::test {

// A generator with a seed of its own, to be made once in each test that needs one.
class Random {
 public:
  // A number from 0 to `end` - 1; there is none if `end` is 0.
  std::uint32_t below(std::uint32_t end) {
    if (end == 0) throw std::invalid_argument("nothing to draw from");
    return std::uniform_int_distribution<std::uint32_t>(0, end - 1)(_engine);
  }

  // True once in `n` times.
  bool once_in(std::uint32_t n) { return below(n) == 0; }

  // A text of up to `longest` characters, each drawn from `alphabet`.
  std::string text(std::uint32_t longest, std::string_view alphabet) {
    std::string result(below(longest + 1), ' ');
    for (char& c : result)
      c = alphabet[below(static_cast<std::uint32_t>(alphabet.size()))];
    return result;
  }

  std::mt19937& engine() { return _engine; }

 private:
  const std::uint32_t _seed = choose_seed();
  std::mt19937 _engine{_seed};
  ::testing::ScopedTrace _trace{__FILE__, __LINE__, "NGREX_TEST_SEED=" + std::to_string(_seed)};
};

}  // namespace colx::test
