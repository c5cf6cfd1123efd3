#include "table/table_run.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include "companion/errors.h"
#include "rows/block_reader.h"
#include "table/database_writer.h"

namespace colx::table {

namespace {

// Merged rows have no measures of the file, and types of pairs no more than their lemmas and, where it tells them
// apart, the relation.
std::vector<Column> _columns_by_default(const Options& options, std::size_t n) {
  if (options.format == Format::ucs)
    return options.merging.relation ? std::vector<Column>() : expand_column("relation1", n);
  if (!options.other.empty()) return default_columns_of_comparison(n);
  std::vector<Column> columns = default_columns(n);
  if (options.merging.is_wanted())
    std::erase_if(columns, [](const Column& column) { return column.quantity == Quantity::own_measure; });
  return columns;
}

// The columns to be printed for N-grams of n words, each once; with n = 0 those that are named and exist for some n.
std::vector<Column> _chosen_columns(const Options& options, Format format, std::size_t n) {
  std::vector<Column> columns;
  const auto add = [&](Column column) {
    if (std::find(columns.begin(), columns.end(), column) == columns.end()) columns.push_back(std::move(column));
  };
  const auto add_all = [&](std::vector<Column> more) {
    std::for_each(more.begin(), more.end(), [&](Column& column) { add(std::move(column)); });
  };
  if (options.columns.empty()) columns = _columns_by_default(options, n);
  if (options.columns.empty() && format == Format::sqlite) add(*find_column("per_million"));
  for (const std::string& name : options.columns)
    add_all(expand_column(name, n));
  for (const std::string& name : options.measures)
    add(*find_column(name));
  if (options.cells) add_all(cell_columns(n));
  if (options.tree_text) add(*find_column("pattern"));
  return columns;
}

}  // namespace

TableRun::TableRun(const Options& options, Format format, Output& output, const Look& look)
    : _options(options), _format(format), _writer(make_writer(format, output, look)) {
  if (options.per.has_value())
    _grouped =
        std::make_unique<GroupedRows>(options.groups, options.memory, options.top.value_or(SortedRows::no_limit));
  else if (options.sort.has_value())
    _sorted = rows_to_sort(options);
}

void TableRun::begin(std::size_t n) {
  if (n != 0) check_for_n(_options, n);
  _columns = _chosen_columns(_options, _format, n);
  if (_format == Format::sqlite) _columns = database_columns(_columns, n);
  if (_format == Format::ucs) _columns = ucs_columns(_columns);
  _scratch.resize(_columns.size());
  _fields.resize(_columns.size());
  _writer->begin(headings_of(_columns));
}

bool TableRun::add(const Block& block) {
  const bool waits = _sorted != nullptr || _grouped != nullptr;
  if (!waits && _is_full()) return false;
  std::optional<Counterpart> other;
  if (_compared != nullptr) other = _compared->counterpart_of_last();
  const Row row = _row(block, other);
  if (!is_chosen(_options, row)) return true;
  if (!waits) {
    _print(row);
    return !_is_full();
  }
  _key.clear();
  append_key(*_options.sort, row, _key);
  const KeyedRow keyed{_key, block.text, block.members_size};
  if (_grouped == nullptr) {
    _sorted->add(keyed);
    return true;
  }
  _group.clear();
  append_key(*_options.per, row, _group);
  _grouped->add(_group, row.contingency.frequency, keyed);
  return true;
}

void TableRun::end() {
  if (_sorted != nullptr) _print_all(*_sorted);
  if (_grouped != nullptr) _print_all(*_grouped);
  _writer->end();
}

template <typename Rows>
void TableRun::_print_all(Rows& rows) {
  rows.sort();
  KeyedRow row;
  Block block;
  Fault fault;
  while (!_is_full() && rows.next(row)) {
    // What was kept had been a block before.
    if (parse_block(row.text, block, fault) != ParseStatus::complete) throw std::logic_error(fault.message);
    std::optional<Counterpart> other;
    if (_compared != nullptr) other = _compared->counterpart_of(block);
    _print(_row(block, other));
  }
}

Row TableRun::_row(const Block& block, const std::optional<Counterpart>& other) const {
  return {block, _printed + 1, _options.style, other};
}

void TableRun::_print(const Row& row) {
  for (std::size_t i = 0; i < _columns.size(); ++i)
    _fields[i] = field_of(_columns[i], row, _scratch[i]);
  _writer->row(_fields);
  ++_printed;
}

void check_for_n(const Options& options, std::size_t n) {
  for (const std::string& name : options.measures)
    check_column(*find_column(name), n);
  check_choice(options, n);
  if (options.per.has_value())
    for (const SortKey& key : options.per->keys)
      check_column(key.column, n);
}

bool names_every_column(const Options& options) {
  return !options.columns.empty() && !options.cells &&
         std::none_of(options.columns.begin(), options.columns.end(),
                      [](const std::string& name) { return expand_column(name, 0).empty(); });
}

}  // namespace colx::table
