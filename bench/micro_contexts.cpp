// Context lists: put together from windows of 20 words. Items are the words.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

#include "base/config.h"
#include "bench/synthetic.h"
#include "model/context.h"
#include "model/ngram.h"
#include "model/tagged_lemma.h"

namespace colx::bench {
namespace {

// Arguments: sightings of words by one N-gram, different context words among them.
void _contexts(benchmark::State& state) {
  constexpr std::uint32_t window = 20;
  settings::n = 2;
  NGram::init();
  std::mt19937_64 random(7);
  const auto words = static_cast<std::size_t>(state.range(0));
  std::array<unsigned char, ContextList::handle_size> handle;
  ContextList::clear(handle.data());
  ContextMemory memory;
  ContextList list(handle.data(), NGram::_full_ngram_type, memory);
  for (std::size_t i = 0; i < words; ++i) {
    memory.sightings.add_word(TaggedLemma::pack(zipf(random, static_cast<std::uint32_t>(state.range(1))), 0));
    if ((i + 1) % window != 0) continue;
    Sighting sighting;
    sighting.end = memory.sightings.words();
    sighting.begin = sighting.end - window;
    sighting.words.fill(Sighting::none);
    list.add(memory.sightings.add(sighting));
  }
  for (auto _ : state)
    benchmark::DoNotOptimize(list.parts().data());
  state.SetItemsProcessed(static_cast<std::int64_t>(words) * state.iterations());
}
BENCHMARK(_contexts)->Args({20, 20})->Iterations(20000);
BENCHMARK(_contexts)->Args({1000, 1000})->Args({1000, 100000})->Iterations(1000);
BENCHMARK(_contexts)->Args({100000, 1000})->Args({100000, 100000})->Iterations(10);
BENCHMARK(_contexts)->Args({1000000, 1000000})->Iterations(2);

}  // namespace
}  // namespace colx::bench
