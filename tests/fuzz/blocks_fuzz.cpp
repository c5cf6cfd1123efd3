// Output datafiles of any bytes: a block that is accepted stands in every table as it is, and every format has a line
// for it. The first byte chooses the size of the reading buffer.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "companion/errors.h"
#include "rows/best_rows.h"
#include "rows/block_reader.h"
#include "rows/columns.h"
#include "rows/sort_order.h"
#include "table/formats.h"
#include "tests/fuzz/memory_file.h"
#include "tests/fuzz/target.h"

namespace {

using namespace colx;
using namespace colx::table;
using fuzz::promise;

// The table of one row in a format, with all columns there are.
std::string _table(const Row& row, Format format) {
  std::vector<Column> columns = default_columns(row.block.n);
  for (Column& column : cell_columns(row.block.n))
    columns.push_back(std::move(column));
  for (const std::string_view name : {"pattern", "G2", "X2", "MI", "MI3", "logDice", "Dice", "t", "z"})
    columns.push_back(*find_column(name));
  if (row.block.n == 2) {
    columns.push_back(*find_column("Fisher"));
    columns.push_back(*find_column("odds_ratio"));
  }
  std::vector<std::string> scratch(columns.size());
  std::vector<Field> fields;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    fields.push_back(field_of(columns[i], row, scratch[i]));
    if (!columns[i].is_text()) {
      const double value = value_of(fields.back());
      promise(std::isnan(value) == (text_of(fields.back()) == "NA"), "NA is what is not a number");
    }
  }
  TextOutput output;
  const auto writer = make_writer(format, output, {});
  writer->begin(headings_of(columns));
  writer->row(fields);
  writer->end();
  return output.text();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) return 0;
  const fuzz::MemoryFile file(fuzz::text_of(bytes + 1, size - 1));
  const SortOrder order = parse_sort_order("log_likelihood,+lemma1");
  BestRows sorted(5);
  std::string key;
  std::string accepted;
  try {
    BlockReader reader(file.path(), bytes[0]);
    Block block;
    while (reader.next(block)) {
      accepted += block.text;
      promise(block.n >= smallest_n && block.n <= largest_n, "2 to 7 words");
      const Row row(block, 1, {});
      key.clear();
      append_key(order, row, key);
      sorted.add({key, block.text, block.members_size});
      // Lines of tsv and jsonl cannot be broken by a field, as CR stands for itself there.
      for (const Format format : {Format::tsv, Format::jsonl}) {
        const std::string table = _table(row, format);
        promise(std::count(table.begin(), table.end(), '\n') == (format == Format::tsv ? 2 : 1), "one line a row");
      }
      for (const Format format : {Format::csv, Format::markdown, Format::aligned})
        promise(!_table(row, format).empty(), "a row in every format");
    }
    promise(accepted + "\n" == fuzz::text_of(bytes + 1, size - 1), "a whole file is its blocks and an empty line");
  } catch (const input_error&) {
    promise(fuzz::text_of(bytes + 1, size - 1).starts_with(accepted), "blocks before a fault are the file's");
  }
  sorted.sort();
  Block block;
  Fault fault;
  KeyedRow row;
  while (sorted.next(row))
    promise(parse_block(row.text, block, fault) == ParseStatus::complete, "a sorted row is a block still");
  return 0;
}
