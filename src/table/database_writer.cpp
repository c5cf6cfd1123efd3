#include "table/database_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "companion/errors.h"
#include "table/database.h"

namespace colx::table {

namespace {

// The columns of the table members behind N-gram and position, in their order.
constexpr std::array<Quantity, 5> _of_member = {Quantity::lemma, Quantity::tag, Quantity::parent, Quantity::relation,
                                                Quantity::marginal};

// Which field of a row has a value of a member; none when the row has no such field.
using Places = std::array<std::optional<std::size_t>, _of_member.size()>;

constexpr std::string_view _members_table =
    "CREATE TABLE members (ngram INTEGER NOT NULL, position INTEGER NOT NULL, lemma TEXT, tag TEXT, parent INTEGER,"
    " relation TEXT, marginal INTEGER, PRIMARY KEY (ngram, position)) WITHOUT ROWID";

constexpr std::string_view _indexes =
    "CREATE INDEX members_lemma ON members (lemma); CREATE INDEX members_relation ON members (relation, lemma)";

std::string_view _type_name(ValueType type) {
  switch (type) {
    case ValueType::text:
      return "TEXT";
    case ValueType::count:
      return "INTEGER";
    case ValueType::real:
      break;
  }
  return "REAL";
}

std::int64_t _whole(std::string_view digits) {
  std::int64_t value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

void _bind(Statement& statement, int parameter, ValueType type, const Field& field) {
  if (field.kind == FieldKind::text)
    statement.bind(parameter, field.content);
  else if (field.kind == FieldKind::not_a_number)
    statement.bind_null(parameter);
  else if (field.kind == FieldKind::number && type == ValueType::count)
    statement.bind(parameter, _whole(field.content));
  else
    statement.bind(parameter, value_of(field));
}

class DatabaseWriter : public Writer {
 public:
  DatabaseWriter(Output& output, const Look& look) : Writer(output, look), _database(*output.file()) {}

  void begin(std::span<const Heading> columns) override {
    _types.reserve(columns.size());
    std::vector<std::string> definitions = {"id INTEGER PRIMARY KEY"};
    std::vector<std::string> cells;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      _types.push_back(columns[i].type);
      const auto column = _is_flat() ? std::nullopt : find_column(columns[i].name);
      if (column.has_value() && _take(*column, i)) continue;
      definitions.push_back(fmt::format("\"{}\" {}", columns[i].name, _type_name(columns[i].type)));
      _of_ngram.push_back(i);
      if (!column.has_value()) continue;
      if (column->quantity == Quantity::cell) cells.push_back(_cell_rows(*column));
      if (column->quantity == Quantity::total) _total_place = i;
    }
    const std::string parameters = _parameters(1 + _of_ngram.size());
    if (_is_flat()) {
      _database.run(fmt::format("CREATE TABLE {} ({})", look().flat_name, fmt::join(definitions, ", ")));
      _ngram.emplace(_database, fmt::format("INSERT INTO {} VALUES ({})", look().flat_name, parameters));
      return;
    }
    if (cells.empty()) cells.emplace_back("SELECT 0 AS ngram, 0 AS cell, 0 AS observed WHERE 0");
    _database.run(fmt::format("CREATE TABLE ngrams ({}); {}; CREATE VIEW cells AS {}", fmt::join(definitions, ", "),
                              _members_table, fmt::join(cells, " UNION ALL ")));
    _ngram.emplace(_database, fmt::format("INSERT INTO ngrams VALUES ({})", parameters));
    _member.emplace(_database, fmt::format("INSERT INTO members VALUES ({})", _parameters(2 + _of_member.size())));
  }

  void row(std::span<const Field> fields) override {
    ++_rows;
    _ngram->bind(1, _rows);
    for (std::size_t k = 0; k < _of_ngram.size(); ++k)
      _bind(*_ngram, static_cast<int>(k) + 2, _types[_of_ngram[k]], fields[_of_ngram[k]]);
    _ngram->run();
    for (std::size_t k = 0; k < _members.size(); ++k) {
      _member->bind(1, _rows);
      _member->bind(2, static_cast<std::int64_t>(k) + 1);
      for (std::size_t i = 0; i < _of_member.size(); ++i)
        if (const auto place = _members[k][i]; place.has_value())
          _bind(*_member, static_cast<int>(i) + 3, _types[*place], fields[*place]);
      _member->run();
    }
    if (_total_place.has_value()) _see_total(_whole(fields[*_total_place].content));
  }

  void end() override {
    _ngram.reset();
    _member.reset();
    if (!_is_flat()) _database.run(std::string(_indexes));
    _describe();
    _database.close();
  }

 private:
  bool _is_flat() const { return !look().flat_name.empty(); }

  // Writes the table about.
  void _describe() {
    _database.run("CREATE TABLE about (key TEXT PRIMARY KEY, value) WITHOUT ROWID");
    Statement about(_database, "INSERT INTO about VALUES (?, ?)");
    for (const auto& [key, value] : look().origin) {
      about.bind(1, std::string_view(key));
      about.bind(2, std::string_view(value));
      about.run();
    }
    const auto tell = [&](std::string_view key, std::optional<std::int64_t> value) {
      about.bind(1, key);
      if (value.has_value())
        about.bind(2, *value);
      else
        about.bind_null(2);
      about.run();
    };
    tell("rows", _rows);
    if (_is_flat()) return;
    tell("n", _members.empty() ? std::nullopt : std::optional(static_cast<std::int64_t>(_members.size())));
    tell("total", _totals_differ ? std::nullopt : _total);
  }

  static std::string _parameters(std::size_t count) {
    std::string text = "?";
    for (std::size_t i = 1; i < count; ++i)
      text += ", ?";
    return text;
  }

  // Takes a column that is not one of the table ngrams.
  bool _take(const Column& column, std::size_t place) {
    if (column.quantity == Quantity::rank) return true;
    const auto* const found = std::find(_of_member.begin(), _of_member.end(), column.quantity);
    if (found == _of_member.end()) return false;
    if (_members.size() <= column.index) _members.resize(column.index + 1);
    _members[column.index][static_cast<std::size_t>(found - _of_member.begin())] = place;
    return true;
  }

  static std::string _cell_rows(const Column& cell) {
    return fmt::format("SELECT id AS ngram, {} AS cell, \"{}\" AS observed FROM ngrams", cell.index, cell.name);
  }

  void _see_total(std::int64_t total) {
    if (_total.has_value() && *_total != total) _totals_differ = true;
    _total = total;
  }

  Database _database;
  std::vector<ValueType> _types;       // of all fields
  std::vector<std::size_t> _of_ngram;  // which fields are columns of the table ngrams, behind the id
  std::vector<Places> _members;        // one for each word
  std::optional<std::size_t> _total_place;
  std::optional<Statement> _ngram;
  std::optional<Statement> _member;
  std::int64_t _rows = 0;
  std::optional<std::int64_t> _total;
  bool _totals_differ = false;
};

}  // namespace

std::unique_ptr<Writer> make_database_writer(Output& output, const Look& look) {
  if (output.file() == nullptr) throw usage_error("--format sqlite needs --output FILE");
  if (output.file()->temporary_path().empty())
    throw usage_error(fmt::format("--format sqlite: {} is not a regular file", output.file()->path()));
  return std::make_unique<DatabaseWriter>(output, look);
}

std::vector<Column> database_columns(std::span<const Column> columns, std::size_t n) {
  std::vector<Column> result;
  const auto add = [&](const Column& column) {
    if (std::find(result.begin(), result.end(), column) == result.end()) result.push_back(column);
  };
  std::for_each(columns.begin(), columns.end(), add);
  for (const char* const name : {"lemma", "tag", "parent", "relation", "marginal", "cell"}) {
    const std::vector<Column> all = n == 0 ? std::vector<Column>() : expand_column(name, n);
    std::for_each(all.begin(), all.end(), add);
  }
  return result;
}

}  // namespace colx::table
