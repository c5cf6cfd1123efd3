#pragma once

// The command line of ngrex-table.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companion/command_line.h"
#include "rows/grouped_rows.h"
#include "rows/merging.h"
#include "rows/row_filter.h"
#include "rows/sort_order.h"
#include "table/formats.h"
#include "table/memory_size.h"

namespace colx::table {

// What ngrex-table says of itself, with all its options.
extern constinit const Program program;

// What kind of file is read.
enum class Input { ngrams, contexts, statistics };

// What a run is to do.
struct Options {
  Input kind = Input::ngrams;
  std::string input = "-";
  std::string other;                  // a file to compare with; empty: none
  std::string output;                 // empty: standard output
  std::vector<std::string> columns;   // names as given; empty: the default columns
  std::vector<std::string> measures;  // names, all of them known
  bool cells = false;
  bool tree_text = false;
  std::optional<SortOrder> sort;
  std::optional<std::string> profile;  // the word whose profile is written in place of a table
  std::optional<SortOrder> per;        // columns of the groups; nothing: there are none
  GroupOrder groups = GroupOrder::size;
  std::optional<Collation> collation;            // of texts; nothing: code points
  std::size_t memory = usual_memory_of_sorts();  // in bytes
  std::optional<std::uint64_t> top;
  std::uint64_t min_frequency = 0;
  Merging merging;
  std::vector<std::string> conditions;  // as given
  CaseOf letters = CaseOf::matters;     // of conditions
  std::vector<RowFilter> filters;       // made of the conditions
  std::optional<Format> format;
  Style style;
  std::optional<std::string> na;        // what stands for not-a-number
  bool byte_order_mark = false;         // of csv
  std::optional<bool> special_as_text;  // in jsonl, in place of null

  std::string command_line;  // as a shell would take it

  std::string information;  // what --help or --version print; the run then does nothing else
};

// Parses a command line without the program's name. Throws usage_error.
Options parse_options(const std::vector<std::string>& arguments);

}  // namespace colx::table
