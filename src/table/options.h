#pragma once

// The command line of ngrex-table.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companion/command_line.h"
#include "rows/grouped_rows.h"
#include "rows/merging.h"
#include "rows/row_choice.h"
#include "table/formats.h"

namespace colx::table {

// What ngrex-table says of itself, with all its options.
extern constinit const Program program;

// What kind of file is read.
enum class Input { ngrams, contexts, statistics };

// What a run is to do. Of the choice of rows, `top` is for each group, or block, where there are such.
struct Options : RowChoice {
  Input kind = Input::ngrams;
  std::string input = "-";
  std::string other;                  // a file to compare with; empty: none
  std::string output;                 // empty: standard output
  std::vector<std::string> columns;   // names as given; empty: the default columns
  std::vector<std::string> measures;  // names, all of them known
  bool cells = false;
  bool tree_text = false;
  std::optional<std::string> profile;  // the word whose profile is written in place of a table
  std::optional<SortOrder> per;        // columns of the groups; nothing: there are none
  GroupOrder groups = GroupOrder::size;
  std::optional<Collation> collation;  // of texts; nothing: code points
  Merging merging;
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
