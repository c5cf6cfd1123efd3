#pragma once

// The columns of a table: their names, and their values for one N-gram.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "rows/association.h"
#include "rows/block.h"
#include "rows/contingency.h"
#include "rows/counterpart.h"
#include "rows/field.h"

namespace colx::table {

enum class Quantity {
  rank,
  lemma,
  tag,
  parent,
  relation,
  frequency,
  marginal,
  total,
  own_measure,
  cell,
  tree_text,
  association,
  per_million,
  // of a comparison with another file
  frequency_other,
  per_million_other,
  keyness,
  keyness_log_ratio
};

struct Column {
  Quantity quantity = Quantity::rank;
  std::size_t index = 0;  // which word, measure or cell, from 0
  std::string name;

  // Lemmas, tags, relations and trees are texts; everything else is a number.
  ValueType type() const;
  bool is_text() const { return type() == ValueType::text; }

  // Whether the column depends on the N-gram alone, and not on its place in the table.
  bool is_of_block() const { return quantity != Quantity::rank; }

  // Whether the column needs another file to compare with.
  bool is_of_comparison() const;

  // Whether the values are computed here, so that their last digits are rounding.
  bool is_computed() const;

  // The same column, under whatever name.
  bool operator==(const Column& other) const { return quantity == other.quantity && index == other.index; }
};

// How computed values are shown.
struct Style {
  int precision = 10;           // significant digits
  Sign sign = Sign::of_excess;  // of the statistics that get one
};

// One N-gram in its place in the table.
struct Row {
  Row(const Block& source, std::uint64_t place, const Style& shown,
      const std::optional<Counterpart>& in_other = std::nullopt)
      : block(source),
        rank(place),
        style(shown),
        contingency(source.n, {source.cells.data(), source.cell_count()}),
        other(in_other) {}

  const Block& block;  // not owned
  std::uint64_t rank;  // from 1
  Style style;
  Contingency contingency;
  std::optional<Counterpart> other;  // when two files are compared

  // Whether the N-gram stands in the file itself; one that does not has no values but its words and its two counts.
  bool is_in_file() const { return !other.has_value() || other->is_in_file; }
};

// The columns as writers see them.
std::vector<Heading> headings_of(std::span<const Column> columns);

// The column of that name, for some N; nothing when no N has such a column.
std::optional<Column> find_column(std::string_view name);

// The columns that a word of a column list stands for: one column, or with a name like `lemma` all its numbered columns
// up to n. Throws usage_error when the name is unknown or the column does not exist for N-grams of n words. With n = 0
// (no N-gram is known) every known name is accepted, and a name like `lemma` stands for no column.
std::vector<Column> expand_column(std::string_view name, std::size_t n);

// Throws usage_error when N-grams of n words have no such column.
void check_column(const Column& column, std::size_t n);

// What the table has when nothing is said about columns: of the measures of the file those that can be relied on.
std::vector<Column> default_columns(std::size_t n);

// The same when two files are compared.
std::vector<Column> default_columns_of_comparison(std::size_t n);

// The 2^n observed cells.
std::vector<Column> cell_columns(std::size_t n);

// The N-gram as a readable tree: lemmas in word order; a word with its parent on the right is followed by `<relation`,
// one with its parent on the left preceded by `relation>`. When the parent is not the next word, its position follows
// the relation after a colon. Replaces the content of `out`.
void write_tree_text(const Block& block, std::string& out);

// The value of a numeric column; one of a comparison requires that the row has a counterpart. It is of a computed
// measure with all its digits, of anything else as it is printed.
double number_of(const Column& column, const Row& row);

// The value of any column as a field. The content is a view into the block, or into `scratch`, which is overwritten.
Field field_of(const Column& column, const Row& row, std::string& scratch);

}  // namespace colx::table
