#pragma once

// N-grams as the columns of a report.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "report/column.h"
#include "rows/association.h"
#include "rows/block.h"
#include "rows/text_store.h"
#include "util/compact_index.h"

namespace colx::report {

// Takes N-grams in the order in which the report has them. A pair takes some 26 bytes and each further word 11, each
// text is kept once, and each distinct contingency table once, with its measures. Bytes of texts that are no UTF-8
// become U+FFFD, so that texts which differ in such bytes alone are one.
class ReportRows {
 public:
  // The rows have these measures, all of which must be defined for N-grams of n words.
  ReportRows(std::size_t n, std::vector<const table::Association*> measures);

  void add(const table::Block& block);

  std::size_t n() const { return _n; }
  std::size_t rows() const { return _rows; }
  std::size_t vectors() const { return _tables.size(); }

  // Gives the columns away; to be called once, at the end. Throws output_error when texts take 4 GiB or more.
  std::vector<Column> take_columns();

 private:
  // What the report keeps of one word of every N-gram.
  struct Word {
    std::vector<std::uint32_t> lemmas;
    std::vector<std::uint32_t> tags;
    std::vector<std::uint8_t> parents;
    std::vector<std::uint32_t> relations;
  };

  // The number of a contingency table, which is kept when it is new.
  std::uint32_t _vector_of(const table::Block& block);
  std::uint64_t _hash(std::uint32_t vector) const;
  bool _is(std::uint32_t vector, const table::Block& block) const;

  std::size_t _n;
  std::size_t _rows = 0;
  std::vector<const table::Association*> _measures;
  table::TextStore _lemmas;
  table::TextStore _tags;
  table::TextStore _relations;
  std::array<Word, table::largest_n> _words;
  std::vector<std::uint32_t> _vectors;  // of the rows
  CompactIndex _tables;
  std::vector<std::vector<std::uint64_t>> _cells;  // by cell, then by vector
  std::vector<std::vector<double>> _values;        // by measure, then by vector
};

}  // namespace colx::report
