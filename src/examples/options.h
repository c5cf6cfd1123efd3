#pragma once

// The command line of ngrex-examples.

#include <string>
#include <vector>

#include "companion/command_line.h"
#include "concordance/corpus_settings.h"
#include "concordance/example_settings.h"
#include "concordance/query.h"
#include "examples/formats.h"
#include "rows/row_choice.h"

namespace colx::examples {

// What ngrex-examples says of itself, with all its options.
extern constinit const Program program;

// What a run is to do.
struct Options : table::RowChoice, concordance::CorpusSettings, concordance::ExampleSettings {
  std::string input = "-";                  // an output datafile
  std::vector<concordance::Query> queries;  // in its place; empty: there are none
  std::string output;                       // empty: standard output
  Format format = Format::text;
  bool tree = false;

  std::string information;  // what --help or --version print; the run then does nothing else
};

// Parses a command line without the program's name. Throws usage_error, and input_error for files of words that
// conditions look into.
Options parse_options(const std::vector<std::string>& arguments);

}  // namespace colx::examples
