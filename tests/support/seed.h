#pragma once

// Where random tests take their seed from.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string>

namespace colx::test {

// The environment variable NGREX_TEST_SEED, or else chance; printed so that it can be given again.
inline std::uint32_t choose_seed() {
  const char* const given = std::getenv("NGREX_TEST_SEED");
  std::uint32_t seed = 0;
  if (given == nullptr || *given == '\0') {
    seed = std::random_device()();
  } else {
    char* end = nullptr;
    seed = static_cast<std::uint32_t>(std::strtoul(given, &end, 10));
    if (*end != '\0') throw std::invalid_argument(std::string("NGREX_TEST_SEED is no number: ") + given);
  }
  std::printf("NGREX_TEST_SEED=%u\n", seed);
  std::fflush(stdout);
  return seed;
}

}  // namespace colx::test
