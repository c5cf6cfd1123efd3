#include "rows/row_choice.h"

#include <algorithm>
#include <utility>

#include "rows/best_rows.h"
#include "rows/sorted_rows.h"

namespace colx::table {

void make_filters(RowChoice& choice) {
  for (const std::string& condition : choice.conditions)
    choice.filters.emplace_back(condition, choice.letters);
}

std::vector<std::string> notes_of(const RowChoice& choice) {
  std::vector<std::string> notes;
  for (const RowFilter& filter : choice.filters)
    for (std::string& note : filter.notes())
      notes.push_back(std::move(note));
  return notes;
}

std::vector<std::string> set_files_of(const RowChoice& choice) {
  std::vector<std::string> files;
  for (const RowFilter& filter : choice.filters)
    for (std::string& file : filter.set_files())
      files.push_back(std::move(file));
  return files;
}

void check_choice(const RowChoice& choice, std::size_t n) {
  for (const RowFilter& filter : choice.filters)
    for (const Column& column : filter.columns())
      check_column(column, n);
  if (choice.sort.has_value())
    for (const SortKey& key : choice.sort->keys)
      check_column(key.column, n);
}

bool is_chosen(const RowChoice& choice, const Row& row) {
  const std::uint64_t in_other = row.other.has_value() ? row.other->frequency : 0;
  return std::max(row.contingency.frequency, in_other) >= choice.min_frequency &&
         std::all_of(choice.filters.begin(), choice.filters.end(),
                     [&](const RowFilter& filter) { return filter.admits(row); });
}

std::unique_ptr<OrderedRows> rows_to_sort(const RowChoice& choice) {
  constexpr std::size_t bytes_of_a_row = 512;
  if (choice.top.has_value() && *choice.top <= choice.memory / bytes_of_a_row)
    return std::make_unique<BestRows>(*choice.top);
  return std::make_unique<SortedRows>(choice.memory);
}

}  // namespace colx::table
