#pragma once

// The command line of ngrex-import.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "import/sentence.h"
#include "import/tagset.h"

namespace colx {

// What is to be done.
struct ImportSettings {
  std::vector<std::string> inputs;  // "-" is standard input; never empty
  std::optional<TreebankFormat> format;
  TagSource tag = TagSource::automatic;
  bool functions = true;
  std::optional<bool> protect_lemmas;  // not given: by format
  std::string output;                  // empty: standard output
  std::string list;
  std::uint64_t split = 0;  // words; 0: a single datafile
  std::string mask;
  bool check = false;
  bool strict = false;
  bool quiet = false;
};

// One option of the table that feeds the command line; the man page and the completion name the same.
struct ImportOption {
  const char* names;  // separated by commas
  const char* value;  // the name of its value; empty: a flag
  const char* help;
};
std::span<const ImportOption> import_options();

// Either settings, or what to print and the exit status to end with: 0 for --help, --version and --tag-table, whose
// text goes to standard output, and 2 for a wrong command line, whose text goes to standard error.
struct ImportCommand {
  std::optional<ImportSettings> settings;
  int status = 0;
  std::string text;
};
ImportCommand parse_import_command(const std::vector<std::string>& arguments);

}  // namespace colx
