#pragma once

// The command line of ngrex-import.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companion/command_line.h"
#include "import/sentence.h"
#include "import/tagset.h"

namespace colx {

// What is to be done.
struct ImportSettings {
  std::vector<std::string> inputs;  // "-" is standard input; never empty
  std::optional<TreebankFormat> format;
  TagSource tag = TagSource::automatic;
  std::optional<bool> functions;       // not given: yes, but for a datafile that is only checked
  std::string relation_map;            // a file; empty: a built-in table, by content
  std::optional<bool> protect_lemmas;  // not given: by format
  std::string output;                  // empty: standard output
  std::string list;
  std::string sentences;    // a sentence file; empty: none
  std::uint64_t split = 0;  // words; 0: a single datafile
  std::string mask;
  bool check = false;
  bool strict = false;
  bool quiet = false;

  std::string
      information;  // what --help, --version, --tag-table or --print-relation-map print; the run then does nothing else
};

// What ngrex-import says of itself, with all its options.
extern constinit const Program import_program;

// Parses a command line without the program's name. Throws usage_error.
ImportSettings parse_import_options(const std::vector<std::string>& arguments);

}  // namespace colx
