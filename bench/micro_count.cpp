// Counting batches of occurrences under the full type, of records that fit in the cache and of millions that do not,
// and the order in which the records are listed in the end.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "bench/synthetic.h"
#include "model/record_table.h"
#include "util/pool.h"

namespace colx::bench {
namespace {

struct Table {
  VoidPool pool{RecordTable::records_per_chunk * NGram::_ngrams_memory_sizes[settings::n] * 8};
  RecordTable records{NGram::_full_ngram_type, pool};

  void count(const OccurrenceBatch& batch) {
    records.count(
        batch, [](std::size_t) { return true; }, [](std::size_t, const NGram*) {});
  }
};

// Arguments: N, and how many different lemmas stand at each position, all equally likely.
void _count_known(benchmark::State& state) {
  const auto n = static_cast<unsigned>(state.range(0));
  use_grammity(n);
  const std::vector<OccurrenceBatch> made = batches(4096, n, static_cast<std::uint32_t>(state.range(1)), false);
  Table table;
  for (const OccurrenceBatch& batch : made)
    table.count(batch);
  std::size_t next = 0;
  for (auto _ : state)
    table.count(made[next++ % made.size()]);
  state.SetItemsProcessed(static_cast<std::int64_t>(OccurrenceBatch::capacity) * state.iterations());
  state.counters["records"] = table.records.size();
}
BENCHMARK(_count_known)->Args({2, 30})->Args({2, 20000})->Args({3, 10})->Args({3, 20000});

// A whole table from nothing, of skewed occurrences: finding, making and growing as in a run.
void _count_from_empty(benchmark::State& state) {
  const auto n = static_cast<unsigned>(state.range(0));
  use_grammity(n);
  const std::vector<OccurrenceBatch> made = batches(static_cast<std::size_t>(state.range(1)), n, 100000, true);
  std::uint32_t records = 0;
  for (auto _ : state) {
    Table table;
    for (const OccurrenceBatch& batch : made)
      table.count(batch);
    records = table.records.size();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(OccurrenceBatch::capacity * made.size()) * state.iterations());
  state.counters["records"] = records;
}
BENCHMARK(_count_from_empty)->Args({2, 16})->Args({2, 4096})->Args({3, 4096})->Unit(benchmark::kMillisecond);

// The argument is the number of batches counted before. Items are records.
void _replay(benchmark::State& state) {
  use_grammity(2);
  Table table;
  for (const OccurrenceBatch& batch : batches(static_cast<std::size_t>(state.range(0)), 2, 100000, true))
    table.count(batch);
  for (auto _ : state)
    benchmark::DoNotOptimize(table.records.listed_order().size());
  state.SetItemsProcessed(static_cast<std::int64_t>(table.records.size()) * state.iterations());
  state.counters["records"] = table.records.size();
}
BENCHMARK(_replay)->Arg(16)->Arg(512)->Arg(8192)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace colx::bench
