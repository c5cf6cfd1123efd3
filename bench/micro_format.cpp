// Doubles as text: the project's own conversion, the standard library's, and a stream. The argument is the precision.

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <random>
#include <sstream>
#include <vector>

#include "bench/synthetic.h"
#include "evaluation/thresholds.h"
#include "output/number_format.h"

namespace colx::bench {
namespace {

// The measures of pairs, as they are written.
std::vector<double> _numbers() {
  use_grammity(2);
  const std::vector<Measure> all = measures();
  std::vector<double> numbers;
  std::vector<double> values;
  for (const auto& frequencies : pair_frequencies(512)) {
    if (evaluate(EvaluationTables(frequencies), all, values))
      numbers.insert(numbers.end(), values.begin(), values.end());
  }
  return numbers;
}

template <typename Format>
void _format(benchmark::State& state, const Format& format) {
  const std::vector<double> numbers = _numbers();
  for (auto _ : state) {
    for (const double x : numbers)
      format(x);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(numbers.size()) * state.iterations());
}

void _format_general(benchmark::State& state) {
  const auto precision = static_cast<std::uint32_t>(state.range(0));
  std::vector<char> text(longest_general(precision));
  _format(state, [&](double x) { benchmark::DoNotOptimize(format_general(text.data(), x, precision)); });
}
BENCHMARK(_format_general)->Arg(6)->Arg(10)->Arg(17)->Arg(20);

void _format_to_chars(benchmark::State& state) {
  const auto precision = static_cast<int>(state.range(0));
  std::vector<char> text(longest_general(static_cast<std::uint32_t>(precision)));
  _format(state, [&](double x) {
    benchmark::DoNotOptimize(
        std::to_chars(text.data(), text.data() + text.size(), x, std::chars_format::general, precision).ptr);
  });
}
BENCHMARK(_format_to_chars)->Arg(6)->Arg(10)->Arg(17)->Arg(20);

void _format_stream(benchmark::State& state) {
  std::ostringstream out;
  out.precision(state.range(0));
  _format(state, [&](double x) {
    out.seekp(0);
    out << x;
    benchmark::DoNotOptimize(out);
  });
}
BENCHMARK(_format_stream)->Arg(6)->Arg(10)->Arg(17)->Arg(20);

void _format_unsigned(benchmark::State& state) {
  std::mt19937_64 random(6);
  std::vector<std::uint32_t> numbers(4096);
  for (std::uint32_t& number : numbers)
    number = zipf(random, 1000000000);
  std::vector<char> text(16);
  for (auto _ : state) {
    for (const std::uint32_t number : numbers)
      benchmark::DoNotOptimize(format_unsigned(text.data(), number));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(numbers.size()) * state.iterations());
}
BENCHMARK(_format_unsigned);

}  // namespace
}  // namespace colx::bench
