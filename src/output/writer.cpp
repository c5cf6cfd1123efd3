#include "output/writer.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>

#include "corpus/persistent.h"
#include "evaluation/ngrams_processor.h"
#include "evaluation/thresholds.h"
#include "output/members.h"
#include "run/config.h"
#include "run/progress_bar.h"

namespace colx {

namespace {

// No double has more significant digits than this in decimal; a stream that is asked for billions of them finds none
// more, but takes minutes for each number.
constexpr std::uint32_t most_digits = 1100;

// The standard library hands the precision on as an int, so that from 2^31 on it counts as none given: six digits. That
// is left to the stream.
std::streamsize _stream_precision(std::uint32_t precision) {
  return precision <= std::numeric_limits<int>::max() ? std::min(precision, most_digits) : precision;
}

template <typename Values>
void _print_line(std::ostream& os, const Values& values) {
  for (std::size_t i = 0; i < values.size(); ++i)
    os << (i == 0 ? "" : "\t") << values[i];
  os << '\n';
}

}  // namespace

void _print_tables(std::ostream& os, const EvaluationTables& t) {
  _print_line(os, t.contingency_table());
}

void _print_stats(std::ostream& os, const std::vector<double>& v) {
  _print_line(os, v);
}

void write(std::ostream& out) {
  const std::vector<Measure> list = measures();
  ProgressBar progress(persistent::ngrams.records(NGram::_full_ngram_type).size());
  out.precision(_stream_precision(settings::precision));
  NGramsProcessor processor(persistent::ngrams);
  while (processor.next()) {
    progress.advance(1);
    if (!passes_frequency_sieve(processor.frequencies()[NGram::_full_ngram_type])) continue;
    const EvaluationTables tables(processor.frequencies());
    const std::optional<std::vector<double>> values = evaluate(tables, list);
    if (!values) continue;
    _print_members(out, processor.current());
    _print_tables(out, tables);
    _print_stats(out, *values);
    out << '\n';
  }
  out << std::endl;
}

}  // namespace colx
