// Contingency tables and measures, and the whole end of a block with its memory of recent vectors. Items are N-grams.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "bench/synthetic.h"
#include "evaluation/evaluation.h"
#include "evaluation/thresholds.h"
#include "output/result_lines.h"

namespace colx::bench {
namespace {

void _tables_of(benchmark::State& state) {
  const auto n = static_cast<unsigned>(state.range(0));
  use_grammity(n);
  std::vector<std::uint32_t> frequencies(std::size_t{1} << n);
  for (std::size_t type = 0; type < frequencies.size(); ++type)
    frequencies[type] = static_cast<std::uint32_t>(1000000 >> (3 * __builtin_popcountll(type)));
  EvaluationTables tables;
  for (auto _ : state) {
    tables.assign(frequencies);
    benchmark::DoNotOptimize(tables.expected_table().data());
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(_tables_of)->DenseRange(2, 7);

void _evaluate_pairs(benchmark::State& state) {
  use_grammity(2);
  const auto vectors = pair_frequencies(4096);
  const std::vector<Measure> all = measures();
  EvaluationTables tables;
  std::vector<double> values;
  for (auto _ : state) {
    for (const auto& frequencies : vectors) {
      tables.assign(frequencies);
      benchmark::DoNotOptimize(evaluate(tables, all, values));
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(vectors.size()) * state.iterations());
}
BENCHMARK(_evaluate_pairs);

// The argument is the number of different vectors: a few are remembered, many are not.
void _result_lines(benchmark::State& state) {
  use_grammity(2);
  const auto vectors = pair_frequencies(static_cast<std::size_t>(state.range(0)));
  ResultLines lines;
  for (auto _ : state) {
    for (const auto& frequencies : vectors)
      benchmark::DoNotOptimize(lines.get(frequencies).data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(vectors.size()) * state.iterations());
}
BENCHMARK(_result_lines)->Arg(64)->Arg(65536);

}  // namespace
}  // namespace colx::bench
