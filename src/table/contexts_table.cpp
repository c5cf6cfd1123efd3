#include "table/contexts_table.h"

#include <array>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "rows/contexts_reader.h"

namespace colx::table {

namespace {

std::vector<Heading> _headings(std::size_t n) {
  std::vector<Heading> headings = {{"type", ValueType::count}};
  for (const std::string_view name : {"lemma", "tag", "parent", "relation"})
    for (std::size_t k = 1; k <= n; ++k)
      headings.push_back({fmt::format("{}{}", name, k), name == "parent" ? ValueType::count : ValueType::text});
  headings.push_back({"word", ValueType::text});
  headings.push_back({"word_tag", ValueType::text});
  headings.push_back({"role", ValueType::text});
  headings.push_back({"frequency", ValueType::count});
  return headings;
}

// Whether every column is named with its number, so that the header is known without an N-gram.
bool _names_every_column(const Options& options) {
  const std::vector<Heading> headings = _headings(largest_n);
  for (const std::string& name : options.columns) {
    const std::vector<std::size_t> columns = chosen_columns({name}, headings, "");
    if (headings[columns[0]].name != name) return false;
  }
  return !options.columns.empty();
}

// Fields of a row, and the texts of its numbers.
class ContextRow {
 public:
  explicit ContextRow(std::size_t n) : _n(n), _fields(5 + 4 * n) {}

  // The fields stay valid as long as the pattern and the word do, and until the next call.
  std::span<const Field> of(const Pattern& pattern, const ContextWord& word) {
    constexpr Field open{FieldKind::text, "*"};
    _set_count(0, _type, pattern.type);
    for (std::size_t k = 0; k < _n; ++k) {
      const Member& member = pattern.members[k];
      const bool is_open = pattern.is_open(k);
      _fields[1 + k] = is_open ? open : Field{FieldKind::text, member.lemma};
      _fields[1 + _n + k] = is_open ? open : Field{FieldKind::text, member.tag};
      if (is_open)
        _fields[1 + 2 * _n + k] = {FieldKind::not_a_number, {}};
      else
        _set_count(1 + 2 * _n + k, _parents[k], member.parent);
      _fields[1 + 3 * _n + k] = is_open ? open : Field{FieldKind::text, member.relation};
    }
    const std::size_t at = 1 + 4 * _n;
    _fields[at] = {FieldKind::text, word.lemma};
    _fields[at + 1] = {FieldKind::text, word.tag};
    _fields[at + 2] = {FieldKind::text, word.is_narrow ? "narrow" : "wide"};
    _set_count(at + 3, _frequency, word.frequency);
    return _fields;
  }

 private:
  void _set_count(std::size_t at, std::string& text, std::uint64_t count) {
    text = fmt::format_int(count).str();
    _fields[at] = {FieldKind::number, text};
  }

  std::size_t _n;
  std::vector<Field> _fields;
  std::string _type;
  std::array<std::string, largest_n> _parents;
  std::string _frequency;
};

}  // namespace

void write_contexts(const Options& options, FlatTable& table) {
  chosen_columns(options.columns, _headings(largest_n), "a contexts file");
  ContextsReader reader(options.input);
  ContextWord word;
  const auto begin = [&] {
    const std::size_t n = reader.pattern().n;
    if (n != 0 || _names_every_column(options))
      table.begin(_headings(n == 0 ? largest_n : n), fmt::format("a contexts file of N-grams of {} words", n));
    return ContextRow(n);
  };
  if (!reader.next(word)) {
    begin();
    return;
  }
  ContextRow row = begin();
  do {
    if (table.is_full()) return;
    if (word.frequency >= options.min_frequency) table.row(row.of(reader.pattern(), word));
  } while (!table.is_full() && reader.next(word));
}

}  // namespace colx::table
