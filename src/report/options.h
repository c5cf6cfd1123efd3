#pragma once

// The command line of ngrex-report.

#include <cstdint>
#include <string>
#include <vector>

#include "companion/command_line.h"
#include "concordance/corpus_settings.h"
#include "concordance/example_settings.h"
#include "rows/association.h"
#include "rows/row_choice.h"

namespace colx::report {

// What ngrex-report says of itself, with all its options.
extern constinit const Program program;

// What a run is to do.
struct Options : table::RowChoice, concordance::CorpusSettings, concordance::ExampleSettings {
  Options() { examples = usual_examples; }

  static constexpr std::uint64_t usual_examples = 3;  // for each N-gram

  // Whether there are to be example sentences.
  bool wants_examples() const { return !list.empty(); }

  std::string input = "-";
  std::string output;      // empty: standard output
  std::string title;       // empty: the name of the input
  std::string statistics;  // a statistics file of the same run of ngrex; empty: none
  std::vector<const table::Association*> measures;

  std::string command_line;  // as a shell would take it

  std::string information;  // what --help or --version print; the run then does nothing else
};

// Parses a command line without the program's name. Throws usage_error, and input_error when a file of words cannot be
// read.
Options parse_options(const std::vector<std::string>& arguments);

}  // namespace colx::report
