#include "examples/wanted_rows.h"

#include <stdexcept>

#include "rows/block_reader.h"
#include "rows/chosen_rows.h"
#include "rows/columns.h"

namespace colx::examples {

WantedRows::WantedRows(const Options& options, const std::vector<ListedDatafile>& datafiles) : _options(options) {
  const auto begin = [&](std::size_t n) {
    _n = n;
    _search = std::make_unique<concordance::Search>(options, datafiles, static_cast<unsigned>(n));
  };
  if (!options.queries.empty()) {
    begin(options.queries.front().n());
    for (const concordance::Query& query : options.queries)
      _search->add(query);
    return;
  }
  table::BlockReader reader(options.input);
  table::ChosenRows rows(reader, options);
  for (table::Block block; rows.next(block);) {
    if (_search == nullptr) begin(block.n);
    _search->add(block);
    _texts.emplace_back(block.text);
  }
  _n = rows.n();
}

std::optional<std::uint64_t> WantedRows::frequency(std::size_t ngram) const {
  if (!_options.queries.empty()) return std::nullopt;
  const table::Block block = _block_of(ngram);
  return block.cells[block.cell_count() - 1];
}

Heading WantedRows::heading(std::size_t ngram) {
  Heading heading;
  heading.rank = ngram + 1;
  if (!_options.queries.empty()) {
    heading.pattern = _options.queries[ngram].text;
    return heading;
  }
  _block = _block_of(ngram);
  table::write_tree_text(_block, _pattern);
  heading.pattern = _pattern;
  heading.block = &_block;
  heading.frequency = _block.cells[_block.cell_count() - 1];
  return heading;
}

table::Block WantedRows::_block_of(std::size_t ngram) const {
  table::Block block;
  table::Fault fault;
  // What was kept had been a block before.
  if (table::parse_block(_texts[ngram], block, fault) != table::ParseStatus::complete)
    throw std::logic_error(fault.message);
  return block;
}

}  // namespace colx::examples
