// Trees and their pieces, for N from 2 to 5. Items are pieces.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <span>
#include <vector>

#include "bench/synthetic.h"
#include "extraction/ntree.h"

namespace colx::bench {
namespace {

void _enumerate(benchmark::State& state, std::uint16_t words, std::uint16_t reach) {
  const std::vector<Word> made = sentence(words, reach);
  const auto n = static_cast<unsigned>(state.range(0));
  NTree tree;
  SubtreeEnumerator enumerator;
  std::int64_t pieces = 0;
  for (auto _ : state) {
    tree.build({made.data(), made.data() + made.size()});
    enumerator.extract_subtrees(tree, n, [&](std::span<const Position> piece) {
      benchmark::DoNotOptimize(piece.data());
      ++pieces;
    });
  }
  state.SetItemsProcessed(pieces);
}

void _enumerate_typical_tree(benchmark::State& state) {
  _enumerate(state, 20, 6);
}
BENCHMARK(_enumerate_typical_tree)->DenseRange(2, 5);

void _enumerate_long_sentence(benchmark::State& state) {
  _enumerate(state, 400, 6);
}
BENCHMARK(_enumerate_long_sentence)->DenseRange(2, 5);

void _enumerate_wide_tree(benchmark::State& state) {
  _enumerate(state, 60, 0);
}
BENCHMARK(_enumerate_wide_tree)->DenseRange(2, 5);

void _build_tree(benchmark::State& state) {
  const std::vector<Word> made = sentence(static_cast<std::uint16_t>(state.range(0)), 6);
  NTree tree;
  for (auto _ : state) {
    tree.build({made.data(), made.data() + made.size()});
    benchmark::DoNotOptimize(tree.size());
  }
  state.SetItemsProcessed(state.range(0) * state.iterations());
}
BENCHMARK(_build_tree)->Arg(5)->Arg(20)->Arg(400);

}  // namespace
}  // namespace colx::bench
