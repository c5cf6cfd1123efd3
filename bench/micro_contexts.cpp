// Context lists: sightings in runs of 20, as a window brings them, folded in the end, in memory of their own.
// Items are sightings.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

#include "bench/synthetic.h"
#include "model/context.h"
#include "model/tagged_lemma.h"

namespace colx::bench {
namespace {

// Arguments: sightings of one N-gram, different context words among them.
void _contexts(benchmark::State& state) {
  std::mt19937_64 random(7);
  const auto sightings = static_cast<std::size_t>(state.range(0));
  std::vector<std::uint32_t> words;
  for (std::size_t i = 0; i < sightings; ++i)
    words.push_back(TaggedLemma::pack(zipf(random, static_cast<std::uint32_t>(state.range(1))), 0));
  for (auto _ : state) {
    std::array<unsigned char, ContextList::handle_size> handle;
    ContextList::clear(handle.data());
    ContextMemory memory;
    ContextList list(handle.data(), memory);
    for (std::size_t i = 0; i < sightings; i += 20)
      list.add_wide(std::span<const std::uint32_t>(words).subspan(i, std::min<std::size_t>(20, sightings - i)));
    benchmark::DoNotOptimize(list.parts().data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(sightings) * state.iterations());
}
BENCHMARK(_contexts)->Args({20, 20})->Iterations(20000);
BENCHMARK(_contexts)->Args({1000, 1000})->Args({1000, 100000})->Iterations(1000);
BENCHMARK(_contexts)->Args({100000, 1000})->Args({100000, 100000})->Iterations(10);
BENCHMARK(_contexts)->Args({1000000, 1000000})->Iterations(2);

}  // namespace
}  // namespace colx::bench
