#include <string>

#include <fmt/format.h>

#include "examples/clean_text.h"
#include "examples/data_writers.h"
#include "examples/marked_sentence.h"

namespace colx::examples {

namespace {

// A line for each example, in columns separated by TAB.
class TsvWriter : public ExampleWriter {
 public:
  explicit TsvWriter(Output& output) : _output(output) {}

  void begin(std::size_t n) override {
    _n = n;
    _output << "rank\tpattern\tfrequency\tfile\tline\ttreebank\ttreebank_line\tid";
    for (std::size_t k = 1; k <= n; ++k)
      _output << fmt::format("\tword{}", k);
    _output << "\tsentence\n";
  }

  void ngram(const Heading& heading) override {
    _of_ngram = fmt::format("{}\t{}\t{}\t", heading.rank, clean_text(heading.pattern),
                            heading.frequency ? std::to_string(*heading.frequency) : "NA");
  }

  void example(const concordance::ExampleSentence& sentence, const concordance::Hit& hit) override {
    const auto& origin = sentence.origin;
    _output << _of_ngram << clean_text(sentence.file) << fmt::format("\t{}\t", sentence.line)
            << (origin ? fmt::format("{}\t{}\t{}", clean_text(origin->source), origin->line, clean_text(origin->id))
                       : "\tNA\t");
    for (std::size_t k = 0; k < _n; ++k)
      _output << fmt::format("\t{}", hit.positions[k]);
    _output << '\t' << clean_text(plain_sentence(sentence)) << '\n';
    _output.end_row();
  }

  void end() override { _output.flush(); }

 private:
  Output& _output;
  std::size_t _n = 0;
  std::string _of_ngram;  // the first fields
};

}  // namespace

std::unique_ptr<ExampleWriter> make_tsv_writer(Output& output) {
  return std::make_unique<TsvWriter>(output);
}

}  // namespace colx::examples
