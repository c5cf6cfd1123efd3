// Interning: texts that are nearly always there already, and texts that are all new.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "bench/synthetic.h"
#include "corpus/string_store.h"

namespace colx::bench {
namespace {

// The argument is the number of different texts.
void _intern_known(benchmark::State& state) {
  std::mt19937_64 random(5);
  std::vector<std::string> texts(std::size_t{1} << 16);
  for (std::string& text : texts)
    text = lemma_text(zipf(random, static_cast<std::uint32_t>(state.range(0))));
  StringStore<std::uint32_t> store(65535);
  for (const std::string& text : texts)
    store.store(text);
  for (auto _ : state) {
    for (const std::string& text : texts)
      benchmark::DoNotOptimize(store.store(text));
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(texts.size()) * state.iterations());
}
BENCHMARK(_intern_known)->Arg(1000)->Arg(50000)->Arg(400000);

void _intern_new(benchmark::State& state) {
  std::vector<std::string> texts;
  for (std::uint32_t rank = 0; rank < state.range(0); ++rank)
    texts.push_back(lemma_text(rank));
  for (auto _ : state) {
    StringStore<std::uint32_t> store(65535);
    for (const std::string& text : texts)
      benchmark::DoNotOptimize(store.store(text));
  }
  state.SetItemsProcessed(state.range(0) * state.iterations());
}
BENCHMARK(_intern_new)->Arg(1000)->Arg(50000)->Arg(400000);

}  // namespace
}  // namespace colx::bench
