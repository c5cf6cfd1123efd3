#include "table/table.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "table/block_reader.h"
#include "table/sorted_rows.h"
#include "table/writers.h"

namespace colx::table {

namespace {

// The columns to be printed for N-grams of n words, each once; with n = 0 those that are named and exist for some n.
std::vector<Column> _chosen_columns(const Options& options, std::size_t n) {
  std::vector<Column> columns;
  const auto add = [&](Column column) {
    if (std::find(columns.begin(), columns.end(), column) == columns.end()) columns.push_back(std::move(column));
  };
  const auto add_all = [&](std::vector<Column> more) {
    std::for_each(more.begin(), more.end(), [&](Column& column) { add(std::move(column)); });
  };
  if (options.columns.empty()) columns = default_columns(n);
  for (const std::string& name : options.columns)
    add_all(expand_column(name, n));
  for (const std::string& name : options.measures)
    add(*find_column(name));
  if (options.cells) add_all(cell_columns(n));
  if (options.pattern) add(*find_column("pattern"));
  return columns;
}

// Whether the columns are known without an N-gram, whose number of words would tell how many there are of a kind.
bool _names_every_column(const Options& options) {
  return !options.columns.empty() && !options.cells &&
         std::none_of(options.columns.begin(), options.columns.end(),
                      [](const std::string& name) { return expand_column(name, 0).empty(); });
}

void _check_for_n(const Options& options, Format format, std::size_t n) {
  if (format == Format::ucs && n != 2)
    throw usage_error(fmt::format("the format ucs is for pairs; this file has N-grams of {} words", n));
  for (const std::string& name : options.measures)
    check_column(*find_column(name), n);
  for (const RowFilter& filter : options.filters)
    check_column(filter.column(), n);
  if (options.sort.has_value()) check_column(options.sort->column, n);
}

// Columns, writer and the count of rows of one table.
class TableRun {
 public:
  TableRun(const Options& options, Format format, Output& output, bool bold)
      : _options(options), _format(format), _writer(make_writer(format, output, bold)) {
    if (options.sort.has_value()) _sorted = std::make_unique<SortedRows>(*options.sort, options.top);
  }

  // Takes all that follows from N and writes the header; n = 0 when the file has no N-gram.
  void begin(std::size_t n) {
    if (n != 0) _check_for_n(_options, _format, n);
    _columns = _chosen_columns(_options, n);
    if (_format == Format::ucs) _columns = ucs_columns(_columns);
    _scratch.resize(_columns.size());
    _fields.resize(_columns.size());
    _writer->begin(_columns);
  }

  // False when no further block can change the table.
  bool add(const Block& block) {
    if (_is_full()) return false;
    const Row row(block, _printed + 1, _options.precision);
    if (row.contingency.frequency < _options.min_frequency) return true;
    for (const RowFilter& filter : _options.filters)
      if (!filter.admits(row)) return true;
    if (_sorted)
      _sorted->add(row);
    else
      _print(row);
    return !_is_full();
  }

  void end() {
    if (_sorted) {
      _sorted->sort();
      Block block;
      Fault fault;
      for (std::size_t i = 0; i < _sorted->size(); ++i) {
        // What was kept had been a block before.
        if (parse_block(_sorted->text(i), block, fault) != ParseStatus::complete) throw std::logic_error(fault.message);
        _print(Row(block, _printed + 1, _options.precision));
      }
    }
    _writer->end();
  }

 private:
  // Whether all rows that are wanted have been printed.
  bool _is_full() const { return !_sorted && _options.top.has_value() && _printed >= *_options.top; }

  void _print(const Row& row) {
    for (std::size_t i = 0; i < _columns.size(); ++i)
      _fields[i] = field_of(_columns[i], row, _scratch[i]);
    _writer->row(_fields);
    ++_printed;
  }

  const Options& _options;
  Format _format;
  std::unique_ptr<Writer> _writer;
  std::unique_ptr<SortedRows> _sorted;
  std::vector<Column> _columns;
  std::vector<std::string> _scratch;  // one for each column, as fields point into it
  std::vector<Field> _fields;
  std::uint64_t _printed = 0;
};

bool _is_set(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

void write_table(const Options& options, Output& output, bool on_terminal, bool bold) {
  const Format format = options.format.value_or(on_terminal ? Format::aligned : Format::tsv);
  BlockReader reader(options.input);
  TableRun table(options, format, output, bold);
  Block block;
  bool begun = false;
  try {
    while (reader.next(block)) {
      if (!begun) table.begin(block.n);
      begun = true;
      if (!table.add(block)) break;
    }
  } catch (const input_error& error) {
    table.end();
    output.flush();
    throw input_error(fmt::format("{}; {}", error.what(), begun ? "the table ends here" : "there is no table"));
  }
  if (!begun && (format == Format::ucs || _names_every_column(options))) table.begin(format == Format::ucs ? 2 : 0);
  table.end();
  output.flush();
}

int run(const std::vector<std::string>& arguments) {
  const Options options = parse_options(arguments);
  if (!options.information.empty()) {
    write_to_standard_output(options.information);
    return 0;
  }
  const bool on_terminal = ::isatty(STDOUT_FILENO) == 1;
  StandardOutput output;
  try {
    write_table(options, output, on_terminal, on_terminal && !_is_set("NO_COLOR"));
  } catch (const std::bad_alloc&) {
    if (!options.sort.has_value()) throw;
    throw std::runtime_error(
        "not enough memory to sort this table; --top K needs less, and without --sort none is needed");
  }
  return 0;
}

}  // namespace colx::table
