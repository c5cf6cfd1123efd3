#pragma once

// The command line of ngrex-table.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "table/row_filter.h"
#include "table/sorted_rows.h"
#include "table/writers.h"

namespace colx::table {

// One option as the user sees it. This table is what the command line is parsed by, and what man page and completion
// are checked against.
struct OptionEntry {
  std::string_view name;   // without its two hyphens
  std::string_view value;  // name of the value in the help text; empty: the option is a switch
  std::string_view help;
  bool repeatable = false;
};

// All options, --help and --version included.
std::span<const OptionEntry> option_entries();

// What a run is to do.
struct Options {
  std::string input = "-";
  std::vector<std::string> columns;   // names as given; empty: the default columns
  std::vector<std::string> measures;  // names, all of them known
  bool cells = false;
  bool pattern = false;
  std::optional<SortOrder> sort;
  std::optional<std::uint64_t> top;
  std::uint64_t min_frequency = 0;
  std::vector<RowFilter> filters;
  std::optional<Format> format;

  std::string information;  // what --help or --version print; the run then does nothing else
};

// Parses a command line. Throws UsageError.
Options parse_options(int argc, const char* const* argv);

}  // namespace colx::table
