#include "report/report.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "companion/new_file.h"
#include "companion/output.h"
#include "companion/utf8.h"
#include "report/html_file.h"
#include "report/options.h"
#include "report/report_meta.h"
#include "report/report_rows.h"
#include "rows/block_reader.h"
#include "rows/chosen_rows.h"
#include "rows/columns.h"
#include "rows/statistics_reader.h"

namespace colx::report {

namespace {

void _tell(std::string_view sentence) {
  std::fputs(fmt::format("{}: {}\n", program.name, sentence).c_str(), stderr);
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
  return size;
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

Content _content(const Options& options) {
  const std::optional<CorpusSize> corpus = _corpus_size(options);
  Source source(options);
  table::ChosenRows chosen(source, options);
  std::optional<ReportRows> rows;
  for (table::Block block; chosen.next(block); rows->add(block))
    if (!rows.has_value()) rows.emplace(block.n, options.measures);
  if (chosen.n() == 0)
    throw input_error(fmt::format("{} has no N-gram; there is no report", input_name(options.input)));
  if (!rows.has_value()) rows.emplace(chosen.n(), options.measures);
  Content content;
  content.title = title_of(options);
  content.columns = rows->take_columns();
  content.meta = meta_of(options, {chosen.found(), chosen.admitted(), source.total()}, *rows, corpus, content.columns);
  return content;
}

void _deliver(const Options& options) {
  if (options.output.empty()) {
    if (::isatty(STDOUT_FILENO) == 1)
      throw usage_error("a page is nothing for a terminal; write it to a file, with -o FILE");
    StandardOutput output;
    write_html(_content(options), output);
    return;
  }
  std::vector<std::string> inputs = set_files_of(options);
  inputs.insert(inputs.end(), {options.input, options.statistics});
  check_output_path(options.output, inputs);
  NewFile file(options.output);
  FileOutput output(file);
  write_html(_content(options), output);
  file.commit();
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
  _deliver(options);
  return 0;
}

}  // namespace colx::report
