// Reading of datafiles: ordinary lines, and the same text with two blanks between fields, which is read field by field.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

#include "bench/synthetic.h"
#include "corpus/parser.h"

namespace colx::bench {
namespace {

void _parse(benchmark::State& state, const std::string& separator) {
  const std::string text = datafile(100000, separator);
  settings::morphologic_tag_mask = "***-";
  for (auto _ : state) {
    StringStore<std::uint32_t> lemmas(65535);
    StringStore<std::uint8_t> tags(65535);
    std::istringstream stream(text);
    Parser parser(stream, lemmas, tags, [](std::string_view) {});
    WordQueue words;
    while (parser.next(1, ContextWindow::sentences, words))
      words.drop_front(words.size());
    benchmark::DoNotOptimize(lemmas.size());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
  state.SetItemsProcessed(100000 * state.iterations());
}

void _parse_ordinary_lines(benchmark::State& state) {
  _parse(state, "\t");
}
BENCHMARK(_parse_ordinary_lines)->Unit(benchmark::kMillisecond);

void _parse_field_by_field(benchmark::State& state) {
  _parse(state, "  ");
}
BENCHMARK(_parse_field_by_field)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace colx::bench
