#include "report/report.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "base/files.h"
#include "companion/descriptor.h"
#include "companion/errors.h"
#include "companion/new_file.h"
#include "companion/output.h"
#include "companion/utf8.h"
#include "concordance/told_warnings.h"
#include "report/html_file.h"
#include "report/options.h"
#include "report/report_examples.h"
#include "report/report_meta.h"
#include "report/report_rows.h"
#include "rows/block_reader.h"
#include "rows/chosen_rows.h"
#include "rows/columns.h"
#include "rows/statistics_reader.h"

namespace colx::report {

namespace {

void _tell(std::string_view sentence) {
  std::fputs(fmt::format("{}: {}\n", program.name, printable(sentence)).c_str(), stderr);
}

// The sums of a statistics file; they are those that it prints, modulo 2^32.
std::optional<CorpusSize> _corpus_size(const Options& options) {
  if (options.statistics.empty()) return std::nullopt;
  table::StatisticsReader reader(options.statistics);
  table::DatafileCounters counters;
  CorpusSize size;
  while (reader.next(counters)) {
    if (counters.is_overall) {
      size.words = counters.words;
      size.sentences = counters.sentences;
      size.ngrams = counters.extracted;
    } else {
      ++size.files;
    }
  }
  size.n = reader.n();
  return size;
}

// Says when a statistics file does not seem to be of the run that counted the N-grams.
void _tell_difference(const Options& options, const CorpusSize& corpus, std::size_t n, std::uint64_t total) {
  constexpr std::uint64_t range = std::uint64_t{1} << 32;  // of the counters of the file
  if (corpus.n == n && corpus.ngrams == total % range) return;
  _tell(fmt::format(
      "{} counts {} N-grams of {} words, the tables of {} have a total of {} of {}; is it of the same run of "
      "ngrex?",
      input_name(options.statistics), corpus.ngrams, corpus.n, input_name(options.input), total, n));
}

// The N-grams of an output datafile, all of which must be of one corpus and have the measures of the report.
class Source : public table::BlockSource {
 public:
  explicit Source(const Options& options) : _options(options), _reader(options.input) {}

  bool next(table::Block& block) override {
    if (!_reader.next(block)) return false;
    const std::uint64_t total =
        std::accumulate(block.cells.begin(), block.cells.begin() + block.cell_count(), std::uint64_t{0});
    if (!_total.has_value()) {
      _total = total;
      for (const table::Association* const measure : _options.measures)
        check_column(*table::find_column(measure->name), block.n);
    }
    if (total != *_total)
      throw input_error(
          fmt::format("{}: the tables of its N-grams have different totals, {} and {}, as if several files had been "
                      "joined",
                      input_name(_options.input), *_total, total));
    return true;
  }

  // The sum of the cells of each N-gram.
  std::uint64_t total() const { return *_total; }

 private:
  const Options& _options;
  table::BlockReader _reader;
  std::optional<std::uint64_t> _total;
};

// Says when the corpus does not seem to be the one that was counted.
void _tell_difference(const ReportExamples& examples) {
  if (examples.differing() == 0) return;
  _tell(fmt::format("{} of {} N-grams were not found as often as their frequency says; {}", examples.differing(),
                    examples.rows(), concordance::were_they_given));
}

Content _content(const Options& options, const std::vector<ListedDatafile>& datafiles) {
  const std::optional<CorpusSize> corpus = _corpus_size(options);
  Source source(options);
  table::ChosenRows chosen(source, options);
  std::optional<ReportRows> rows;
  std::optional<ReportExamples> examples;
  for (table::Block block; chosen.next(block);) {
    if (!rows.has_value()) {
      rows.emplace(block.n, options.measures);
      if (options.wants_examples()) examples.emplace(options, options, datafiles, block.n);
    }
    rows->add(block);
    if (examples.has_value()) examples->add(block);
  }
  if (chosen.n() == 0)
    throw input_error(fmt::format("{} has no N-gram; there is no report", input_name(options.input)));
  if (!rows.has_value()) rows.emplace(chosen.n(), options.measures);
  if (corpus.has_value()) _tell_difference(options, *corpus, chosen.n(), source.total());
  Content content;
  content.title = title_of(options);
  content.columns = rows->take_columns();
  std::optional<ExampleCounts> example_counts;
  if (examples.has_value()) {
    concordance::ToldWarnings warnings(_tell);
    examples->find(options.memory, [&](std::string_view warning) { warnings.take(warning); });
    warnings.tell_rest();
    example_counts = {options.examples, examples->rows(), examples->sentences(), examples->are_cited()};
    content.examples = examples->take_columns();
    _tell_difference(*examples);
  }
  content.meta = meta_of(options, {chosen.found(), chosen.admitted(), source.total()}, *rows, corpus, example_counts,
                         content.columns, content.examples);
  return content;
}

// A page that is sent by mail should be smaller, and a browser takes its time with it.
void _tell_size(const Options& options) {
  constexpr std::size_t megabyte = 1'000'000;
  constexpr std::size_t large = 30 * megabyte;
  const auto file = regular_file(options.output);
  if (file.has_value() && file->size > large)
    _tell(fmt::format("{} takes {} MB, which is much for a page; --top or --min-frequency makes it smaller",
                      options.output, file->size / megabyte));
}

void _deliver(const Options& options) {
  std::vector<ListedDatafile> datafiles;
  if (options.wants_examples()) datafiles = concordance::datafiles_of(options);
  if (options.output.empty()) {
    if (::isatty(STDOUT_FILENO) == 1)
      throw usage_error("a page is nothing for a terminal; write it to a file, with -o FILE");
    StandardOutput output;
    write_html(_content(options, datafiles), output);
    return;
  }
  std::vector<std::string> inputs = set_files_of(options);
  inputs.insert(inputs.end(), {options.input, options.statistics, options.sentences});
  for (std::string& file : inputs_of(options, datafiles))
    inputs.push_back(std::move(file));
  check_output_path(options.output, inputs);
  NewFile file(options.output);
  FileOutput output(file);
  write_html(_content(options, datafiles), output);
  file.commit();
  _tell_size(options);
}

}  // namespace

int run(const std::vector<std::string>& arguments) {
  if (!use_utf8_characters()) _tell("the system has no locale C.UTF-8; regular expressions see bytes");
  const Options options = parse_options(arguments);
  if (!options.information.empty()) {
    write_to_standard_output(options.information);
    return 0;
  }
  for (const std::string& note : notes_of(options))
    _tell(note);
  if (const std::string note = note_on(options); !note.empty()) _tell(note);
  _deliver(options);
  return 0;
}

}  // namespace colx::report
