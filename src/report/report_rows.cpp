#include "report/report_rows.h"

#include <string>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "companion/utf8.h"
#include "rows/contingency.h"
#include "util/hashing.h"

namespace colx::report {

namespace {

std::uint32_t _number_of(std::string_view text, table::TextStore& texts) {
  return is_utf8(text) ? texts.number(text) : texts.number(as_utf8(text));
}

std::string _numbered(std::string_view name, std::size_t number) {
  return fmt::format("{}{}", name, number);
}

std::uint64_t _hash_of(const std::array<std::uint64_t, table::most_cells>& cells, std::size_t count) {
  return hash_bytes(reinterpret_cast<const char*>(cells.data()), count * sizeof cells[0]);
}

}  // namespace

ReportRows::ReportRows(std::size_t n, std::vector<const table::Association*> measures)
    : _n(n), _measures(std::move(measures)), _cells(std::size_t{1} << n), _values(_measures.size()) {}

void ReportRows::add(const table::Block& block) {
  for (std::size_t k = 0; k < _n; ++k) {
    const table::Member& member = block.members[k];
    Word& word = _words[k];
    word.lemmas.push_back(_number_of(member.lemma, _lemmas));
    word.tags.push_back(_number_of(member.tag, _tags));
    word.parents.push_back(static_cast<std::uint8_t>(member.parent));
    word.relations.push_back(_number_of(member.relation, _relations));
  }
  _vectors.push_back(_vector_of(block));
  ++_rows;
}

std::uint32_t ReportRows::_vector_of(const table::Block& block) {
  const std::uint64_t hash = _hash_of(block.cells, block.cell_count());
  const std::uint32_t known = _tables.find(hash, [&](std::uint32_t vector) { return _is(vector, block); });
  if (known != CompactIndex::none) return known;
  _tables.insert(hash, [&](std::uint32_t vector) { return _hash(vector); });
  for (std::size_t i = 0; i < block.cell_count(); ++i)
    _cells[i].push_back(block.cells[i]);
  const table::Contingency counts(block.n, {block.cells.data(), block.cell_count()});
  for (std::size_t i = 0; i < _measures.size(); ++i)
    _values[i].push_back(associate(*_measures[i], counts));
  return _tables.size() - 1;
}

std::uint64_t ReportRows::_hash(std::uint32_t vector) const {
  std::array<std::uint64_t, table::most_cells> cells;
  for (std::size_t i = 0; i < _cells.size(); ++i)
    cells[i] = _cells[i][vector];
  return _hash_of(cells, _cells.size());
}

bool ReportRows::_is(std::uint32_t vector, const table::Block& block) const {
  for (std::size_t i = _cells.size(); i-- > 0;)
    if (_cells[i][vector] != block.cells[i]) return false;
  return true;
}

std::vector<Column> ReportRows::take_columns() {
  std::vector<Column> columns;
  append_texts(_lemmas, "lemmas", columns);
  append_texts(_tags, "tags", columns);
  append_texts(_relations, "relations", columns);
  for (std::size_t k = 0; k < _n; ++k)
    columns.push_back({_numbered("lemma", k + 1), std::move(_words[k].lemmas)});
  for (std::size_t k = 0; k < _n; ++k)
    columns.push_back({_numbered("tag", k + 1), narrowed(std::exchange(_words[k].tags, {}))});
  for (std::size_t k = 0; k < _n; ++k)
    columns.push_back({_numbered("parent", k + 1), std::move(_words[k].parents)});
  for (std::size_t k = 0; k < _n; ++k)
    columns.push_back({_numbered("relation", k + 1), narrowed(std::exchange(_words[k].relations, {}))});
  columns.push_back({"vector", std::move(_vectors)});
  for (std::size_t i = 0; i < _cells.size(); ++i)
    columns.push_back({_numbered("cell", i), counts(std::exchange(_cells[i], {}))});
  for (std::size_t i = 0; i < _measures.size(); ++i)
    columns.push_back({fmt::format("measure.{}", _measures[i]->name), std::move(_values[i])});
  return columns;
}

}  // namespace colx::report
