#include "rows/columns.h"

#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"
#include "rows/association.h"
#include "rows/block_reader.h"

namespace colx::table {

namespace {

struct Name {
  std::string_view name;
  Quantity quantity;
};

constexpr auto _plain = std::to_array<Name>({{"rank", Quantity::rank},
                                             {"frequency", Quantity::frequency},
                                             {"per_million", Quantity::per_million},
                                             {"total", Quantity::total},
                                             {"pattern", Quantity::tree_text},
                                             {"frequency_other", Quantity::frequency_other},
                                             {"per_million_other", Quantity::per_million_other},
                                             {"keyness", Quantity::keyness},
                                             {"keyness_log_ratio", Quantity::keyness_log_ratio}});

// Numbered from 1 by word, cells from 0.
constexpr std::array<Name, 6> _numbered = {{{"lemma", Quantity::lemma},
                                            {"tag", Quantity::tag},
                                            {"parent", Quantity::parent},
                                            {"relation", Quantity::relation},
                                            {"marginal", Quantity::marginal},
                                            {"cell", Quantity::cell}}};

// The measures of the file in the order in which they stand there.
constexpr std::array<std::string_view, most_measures> _own_measures = {
    "chi_square", "log_likelihood", "mutual_information", "pearson", "t_test", "z_score"};

Column _numbered_column(const Name& name, std::size_t index) {
  const std::size_t shown = name.quantity == Quantity::cell ? index : index + 1;
  return {name.quantity, index, fmt::format("{}{}", name.name, shown)};
}

std::size_t _count_of(Quantity quantity, std::size_t n) {
  return quantity == Quantity::cell ? std::size_t{1} << n : n;
}

void _append_columns(std::vector<Column>& columns, const Name& name, std::size_t n) {
  for (std::size_t i = 0; i < _count_of(name.quantity, n); ++i)
    columns.push_back(_numbered_column(name, i));
}

// A relation in the text of a tree, with the position of the parent where that is not the neighbour.
std::string _relation_label(std::string_view relation, std::uint32_t parent, bool is_neighbour) {
  return is_neighbour ? std::string(relation) : fmt::format("{}:{}", relation, parent);
}

Field _count_field(std::uint64_t count, std::string& scratch) {
  std::array<char, std::numeric_limits<std::uint64_t>::digits10 + 1> digits;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), count);
  scratch.assign(digits.data(), end);
  return {FieldKind::number, scratch};
}

Field _computed_field(double value, int precision, std::string& scratch) {
  if (std::isnan(value)) return {FieldKind::not_a_number, {}};
  if (std::isinf(value)) return {value < 0 ? FieldKind::minus_infinity : FieldKind::infinity, {}};
  scratch.clear();
  // Adding zero turns a negative zero into a positive one.
  fmt::format_to(std::back_inserter(scratch), FMT_STRING("{:.{}g}"), value + 0.0, precision);
  return {FieldKind::number, scratch};
}

Field _own_measure_field(std::string_view text) {
  if (text.ends_with("nan")) return {FieldKind::not_a_number, {}};
  if (text.ends_with("inf")) return {text[0] == '-' ? FieldKind::minus_infinity : FieldKind::infinity, {}};
  return {FieldKind::number, text};
}

std::uint64_t _count_of_row(const Column& column, const Row& row) {
  switch (column.quantity) {
    case Quantity::rank:
      return row.rank;
    case Quantity::parent:
      return row.block.members[column.index].parent;
    case Quantity::frequency:
      return row.contingency.frequency;
    case Quantity::marginal:
      return row.contingency.marginals[column.index];
    case Quantity::cell:
      return row.block.cells[column.index];
    case Quantity::total:
      return row.contingency.total;
    case Quantity::frequency_other:
      return row.other->frequency;
    case Quantity::lemma:
    case Quantity::tag:
    case Quantity::relation:
    case Quantity::own_measure:
    case Quantity::tree_text:
    case Quantity::association:
    case Quantity::per_million:
    case Quantity::per_million_other:
    case Quantity::keyness:
    case Quantity::keyness_log_ratio:
      break;  // no counts
  }
  return 0;
}

double _per_million(std::uint64_t frequency, std::uint64_t total) {
  return 1e6 * static_cast<double>(frequency) / static_cast<double>(total);
}

// Whether the value follows from cells, so that an N-gram which the file does not have is without it.
bool _needs_cells(Quantity quantity) {
  return quantity == Quantity::marginal || quantity == Quantity::cell || quantity == Quantity::association ||
         quantity == Quantity::own_measure;
}

}  // namespace

ValueType Column::type() const {
  switch (quantity) {
    case Quantity::lemma:
    case Quantity::tag:
    case Quantity::relation:
    case Quantity::tree_text:
      return ValueType::text;
    case Quantity::own_measure:
    case Quantity::association:
    case Quantity::per_million:
    case Quantity::per_million_other:
    case Quantity::keyness:
    case Quantity::keyness_log_ratio:
      return ValueType::real;
    case Quantity::rank:
    case Quantity::parent:
    case Quantity::frequency:
    case Quantity::marginal:
    case Quantity::total:
    case Quantity::cell:
    case Quantity::frequency_other:
      break;
  }
  return ValueType::count;
}

bool Column::is_of_comparison() const {
  return quantity == Quantity::frequency_other || quantity == Quantity::per_million_other ||
         quantity == Quantity::keyness || quantity == Quantity::keyness_log_ratio;
}

bool Column::is_computed() const {
  return quantity == Quantity::association || quantity == Quantity::keyness || quantity == Quantity::keyness_log_ratio;
}

std::vector<Heading> headings_of(std::span<const Column> columns) {
  std::vector<Heading> headings;
  for (const Column& column : columns)
    headings.push_back({column.name, column.type()});
  return headings;
}

std::optional<Column> find_column(std::string_view name) {
  for (const Name& plain : _plain)
    if (name == plain.name) return Column{plain.quantity, 0, std::string(name)};
  for (std::size_t i = 0; i < _own_measures.size(); ++i)
    if (name == _own_measures[i]) return Column{Quantity::own_measure, i, std::string(name)};
  if (const Association* const found = find_association(name); found != nullptr)
    return Column{Quantity::association, static_cast<std::size_t>(found - associations().data()), std::string(name)};
  for (const Name& numbered : _numbered) {
    if (!name.starts_with(numbered.name)) continue;
    const std::string_view digits = name.substr(numbered.name.size());
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    const std::size_t first = numbered.quantity == Quantity::cell ? 0 : 1;
    if (number < first || number - first >= _count_of(numbered.quantity, largest_n)) return std::nullopt;
    Column column = _numbered_column(numbered, number - first);
    if (column.name != name) return std::nullopt;
    return column;
  }
  return std::nullopt;
}

void check_column(const Column& column, std::size_t n) {
  bool exists = true;
  if (column.quantity == Quantity::association) {
    exists = is_defined(associations()[column.index], n);
  } else if (column.quantity == Quantity::own_measure) {
    exists = column.index < measures_of(n);
  } else {
    for (const Name& numbered : _numbered)
      if (column.quantity == numbered.quantity) exists = column.index < _count_of(column.quantity, n);
  }
  if (!exists) throw usage_error(fmt::format("N-grams of {} words have no {}", n, column.name));
}

std::vector<Column> expand_column(std::string_view name, std::size_t n) {
  std::vector<Column> result;
  for (const Name& numbered : _numbered) {
    if (name != numbered.name) continue;
    if (n != 0) _append_columns(result, numbered, n);
    return result;
  }
  const auto column = find_column(name);
  if (!column.has_value()) throw usage_error(fmt::format("there is no column \"{}\"", name));
  if (n != 0) check_column(*column, n);
  result.push_back(*column);
  return result;
}

std::vector<Column> default_columns(std::size_t n) {
  std::vector<Column> result = {*find_column("rank")};
  for (const std::string_view name : {"lemma", "tag", "parent", "relation", "frequency", "marginal", "total"})
    for (Column& column : expand_column(name, n))
      result.push_back(std::move(column));
  for (std::size_t i = 0; i < measures_of(n); ++i) {
    // Wrong for almost all tables of a corpus; it is there for those who ask for it.
    if (_own_measures[i] == "pearson") continue;
    result.push_back({Quantity::own_measure, i, std::string(_own_measures[i])});
  }
  return result;
}

std::vector<Column> default_columns_of_comparison(std::size_t n) {
  std::vector<Column> result;
  for (const std::string_view name : {"rank", "lemma", "tag", "parent", "relation", "frequency", "per_million",
                                      "frequency_other", "per_million_other", "keyness_log_ratio", "keyness"})
    for (Column& column : expand_column(name, n))
      result.push_back(std::move(column));
  return result;
}

std::vector<Column> cell_columns(std::size_t n) {
  return expand_column("cell", n);
}

void write_tree_text(const Block& block, std::string& out) {
  out.clear();
  for (std::size_t k = 0; k < block.n; ++k) {
    const Member& member = block.members[k];
    const std::size_t position = k + 1;
    if (k != 0) out += ' ';
    if (member.parent != 0 && member.parent < position)
      out += _relation_label(member.relation, member.parent, member.parent + 1 == position) + "> ";
    out += member.lemma;
    if (member.parent > position)
      out += " <" + _relation_label(member.relation, member.parent, member.parent == position + 1);
  }
}

double number_of(const Column& column, const Row& row) {
  const Contingency& table = row.contingency;
  if (!row.is_in_file() && _needs_cells(column.quantity)) return std::numeric_limits<double>::quiet_NaN();
  if (column.quantity == Quantity::own_measure) return measure_value(row.block.measures[column.index]);
  if (column.quantity == Quantity::association) return associate(associations()[column.index], table, row.style.sign);
  if (column.quantity == Quantity::per_million) return _per_million(table.frequency, table.total);
  if (column.quantity == Quantity::per_million_other) return _per_million(row.other->frequency, row.other->total);
  if (column.quantity == Quantity::keyness) return keyness(table.frequency, table.total, *row.other, row.style.sign);
  if (column.quantity == Quantity::keyness_log_ratio)
    return keyness_log_ratio(table.frequency, table.total, *row.other);
  return static_cast<double>(_count_of_row(column, row));
}

Field field_of(const Column& column, const Row& row, std::string& scratch) {
  switch (column.quantity) {
    case Quantity::lemma:
      return {FieldKind::text, row.block.members[column.index].lemma};
    case Quantity::tag:
      return {FieldKind::text, row.block.members[column.index].tag};
    case Quantity::relation:
      return {FieldKind::text, row.block.members[column.index].relation};
    case Quantity::tree_text:
      write_tree_text(row.block, scratch);
      return {FieldKind::text, scratch};
    case Quantity::own_measure:
      return _own_measure_field(row.block.measures[column.index]);
    case Quantity::association:
    case Quantity::per_million:
    case Quantity::per_million_other:
    case Quantity::keyness:
    case Quantity::keyness_log_ratio:
      return _computed_field(number_of(column, row), row.style.precision, scratch);
    case Quantity::rank:
    case Quantity::parent:
    case Quantity::frequency:
    case Quantity::marginal:
    case Quantity::total:
    case Quantity::cell:
    case Quantity::frequency_other:
      break;
  }
  if (!row.is_in_file() && _needs_cells(column.quantity)) return {FieldKind::not_a_number, {}};
  return _count_field(_count_of_row(column, row), scratch);
}

}  // namespace colx::table
