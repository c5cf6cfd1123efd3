#pragma once

// One table from its N-grams to its last row: which are in it, in what order, with which columns.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "rows/columns.h"
#include "rows/compared_rows.h"
#include "rows/grouped_rows.h"
#include "rows/ordered_rows.h"
#include "table/formats.h"
#include "table/options.h"

namespace colx::table {

// Takes N-grams one after another and hands their rows to a writer, at once or, when they are to be sorted, at the end.
class TableRun {
 public:
  // Options and output must outlive the run.
  TableRun(const Options& options, Format format, Output& output, const Look& look);

  // The rows are compared with what another file has; to be said before `begin`. It is the source of all N-grams, each
  // of which has to be added before the next one is taken, and must outlive the run.
  void compare(const ComparedRows& compared) { _compared = &compared; }

  // Takes all that follows from N and writes the header; n = 0 when there is no N-gram. Throws usage_error when the
  // options ask for something that N-grams of n words do not have.
  void begin(std::size_t n);

  // Takes an N-gram. False when no further one can change the table.
  bool add(const Block& block);

  // Writes what is still held back.
  void end();

 private:
  // Whether all rows that are wanted have been printed.
  bool _is_full() const { return !_grouped && _options.top.has_value() && _printed >= *_options.top; }

  Row _row(const Block& block, const std::optional<Counterpart>& other) const;
  void _print(const Row& row);

  // Puts rows that waited in order and prints them.
  template <typename Rows>
  void _print_all(Rows& rows);

  const Options& _options;
  Format _format;
  std::unique_ptr<Writer> _writer;
  std::unique_ptr<OrderedRows> _sorted;   // nothing: rows are printed as they come
  std::unique_ptr<GroupedRows> _grouped;  // in place of _sorted when there are groups
  std::string _key;
  std::string _group;
  const ComparedRows* _compared = nullptr;  // not owned
  std::vector<Column> _columns;
  std::vector<std::string> _scratch;  // one for each column, as fields point into it
  std::vector<Field> _fields;
  std::uint64_t _printed = 0;
};

// Throws usage_error when the options choose or sort by something that N-grams of n words do not have.
void check_for_n(const Options& options, std::size_t n);

// Whether the columns are known without an N-gram, whose number of words would tell how many there are of a kind.
bool names_every_column(const Options& options);

}  // namespace colx::table
