#pragma once

// A table whose rows are no N-grams: columns are chosen by name, and rows are taken as they come.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "rows/field.h"
#include "table/options.h"
#include "table/writer.h"

namespace colx::table {

// The columns with the given names, as their places in `headings`; all of them when there are no names. A name like
// `lemma` stands for the headings lemma1, lemma2 and so on, which may be none; a column that is named twice is chosen
// once. Throws usage_error for a name that stands for nothing; `what` says of which table.
std::vector<std::size_t> chosen_columns(const std::vector<std::string>& names, std::span<const Heading> headings,
                                        std::string_view what);

// Writes the chosen columns of rows, up to --top of them.
class FlatTable {
 public:
  // Both must outlive the table.
  FlatTable(const Options& options, Writer& writer) : _options(options), _writer(writer) {}

  // Writes the header. Throws usage_error as chosen_columns does.
  void begin(std::span<const Heading> headings, std::string_view what);

  bool has_begun() const { return _begun; }

  // Whether no further row can change the table.
  bool is_full() const { return _options.top.has_value() && _rows >= *_options.top; }

  // Writes a row, which has a field for each heading. Requires a header, and that the table is not full.
  void row(std::span<const Field> fields);

 private:
  const Options& _options;
  Writer& _writer;
  bool _begun = false;
  std::vector<std::size_t> _columns;
  std::vector<Field> _fields;
  std::uint64_t _rows = 0;
};

}  // namespace colx::table
