#include "examples/tsv_writer.h"

#include <string>

#include <fmt/format.h>

namespace colx::examples {

namespace {

class TsvWriter : public ExampleWriter {
 public:
  explicit TsvWriter(Output& output) : _output(output) {}

  void begin(std::size_t n) override {
    _n = n;
    _output << "rank\tpattern\tfile\tline\tid";
    for (std::size_t i = 1; i <= n; ++i)
      _output << fmt::format("\tword{}", i);
    _output << "\tsentence\n";
    _output.end_row();
  }

  void ngram(const Heading& heading) override { _begin = fmt::format("{}\t{}\t", heading.rank, heading.pattern); }

  void example(const concordance::ExampleSentence& sentence, const concordance::Hit& hit) override {
    _output << _begin << sentence.file << '\t' << std::to_string(sentence.line) << '\t';
    if (sentence.origin.has_value()) _output << sentence.origin->id;
    for (std::size_t i = 0; i < _n; ++i)
      _output << '\t' << std::to_string(hit.positions[i]);
    char before = '\t';
    for (const concordance::ExampleWord& word : sentence.words) {
      _output << before << word.form;
      before = ' ';
    }
    _output << '\n';
    _output.end_row();
  }

  void end() override {}

 private:
  Output& _output;
  std::size_t _n = 0;
  std::string _begin;
};

}  // namespace

std::unique_ptr<ExampleWriter> make_tsv_writer(Output& output) {
  return std::make_unique<TsvWriter>(output);
}

}  // namespace colx::examples
