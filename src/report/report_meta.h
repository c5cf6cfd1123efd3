#pragma once

// What a report says of itself: where its rows come from, which they are, and where each column stands.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "report/column.h"
#include "report/options.h"
#include "report/report_rows.h"

namespace colx::report {

// The size of the corpus, as the statistics file has it.
struct CorpusSize {
  std::uint64_t files = 0;
  std::uint64_t words = 0;
  std::uint64_t sentences = 0;
  std::uint64_t ngrams = 0;
  std::size_t n = 0;  // of the N-grams; 0 when there is no datafile
};

// What is known of the N-grams of the input: how many there are, and how many of them are admitted by the choice.
struct InputCounts {
  std::uint64_t found = 0;
  std::uint64_t admitted = 0;
  std::uint64_t total = 0;  // of the cells of each N-gram
};

// What the report has of example sentences.
struct ExampleCounts {
  std::optional<std::uint64_t> each;  // as many for each N-gram; nothing: all
  std::uint64_t ngrams = 0;           // for so many N-grams
  std::uint64_t sentences = 0;
  bool are_cited = false;
};

// The title of the report.
std::string title_of(const Options& options);

// The description as JSON that may stand in a script element.
std::string meta_of(const Options& options, const InputCounts& counts, const ReportRows& rows,
                    const std::optional<CorpusSize>& corpus, const std::optional<ExampleCounts>& examples,
                    const std::vector<Column>& columns, const std::vector<Column>& example_columns);

}  // namespace colx::report
