#pragma once

// The choice of rows from an output datafile, as every program that reads one offers it: conditions, a least frequency,
// an order and how many.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "companion/command_line.h"
#include "companion/memory_size.h"
#include "rows/memory_size.h"
#include "rows/ordered_rows.h"
#include "rows/row_filter.h"
#include "rows/sort_order.h"

namespace colx::table {

// Which rows are wanted, and in what order. The settings of a program derive from it.
struct RowChoice {
  std::optional<SortOrder> sort;                 // nothing: as they stand in the file
  std::size_t memory = usual_memory_of_sorts();  // in bytes
  std::optional<std::uint64_t> top;              // nothing: all
  std::uint64_t min_frequency = 0;
  std::vector<std::string> conditions;  // as given
  CaseOf letters = CaseOf::matters;     // of conditions
  std::vector<RowFilter> filters;       // made of the conditions
};

// The rows of a program's table of options that fill its choice.
template <std::derived_from<RowChoice> Settings>
struct RowChoiceOptions {
  static constexpr Option<Settings> sort{
      {"--sort", "LIST",
       "sort by columns, separated by commas: ascending with + before a column, descending with -, without a sign "
       "texts "
       "ascending and numbers descending"},
      [](Settings& settings, const GivenOption& given) { settings.sort = parse_sort_order(given.value); }};
  static constexpr Option<Settings> memory{
      {"--memory", "SIZE",
       "what sorting takes before it goes on in a temporary file, such as 256M or 2G; default a "
       "quarter of the machine's"},
      [](Settings& settings, const GivenOption& given) { settings.memory = memory_size(given); }};
  static constexpr Option<Settings> top{
      {"--top", "K", "take the first K rows only"},
      [](Settings& settings, const GivenOption& given) { settings.top = whole_number(given, 0); }};
  static constexpr Option<Settings> min_frequency{
      {"--min-frequency", "F", "leave out N-grams that occur fewer than F times"},
      [](Settings& settings, const GivenOption& given) { settings.min_frequency = whole_number(given, 0); }};
  static constexpr Option<Settings> where{
      {"--where", "CONDITION",
       "leave out N-grams that do not meet a condition, such as 'lemma1=rain', 'lemma2~^un', 'logDice>=7' or 'lemma1 "
       "in FILE'; operators are = != ~ !~ < <= >= >, in, not in; conditions may be joined by and, or; may be given "
       "several times"},
      [](Settings& settings, const GivenOption& given) { settings.conditions.push_back(given.value); }};
  static constexpr Option<Settings> ignore_case{
      {"--ignore-case", "", "take capital and small letters for the same in conditions and words"},
      [](Settings& settings, const GivenOption&) { settings.letters = CaseOf::is_ignored; }};
};

// Makes the filters of the conditions; to be called once, after all options were applied. Throws usage_error for a
// condition that will not do, and input_error when a file of words cannot be read.
void make_filters(RowChoice& choice);

// What the user should know of how conditions were taken, one sentence each, and the files that they read.
std::vector<std::string> notes_of(const RowChoice& choice);
std::vector<std::string> set_files_of(const RowChoice& choice);

// Throws usage_error when rows are chosen or sorted by something that N-grams of n words do not have.
void check_choice(const RowChoice& choice, std::size_t n);

// Whether a row, which is of an N that was checked, is frequent enough and meets the conditions. In a comparison its
// frequency is the larger of both files.
bool is_chosen(const RowChoice& choice, const Row& row);

// What puts the rows of a sorted choice in order: all of them, or where these surely fit into memory the first ones.
std::unique_ptr<OrderedRows> rows_to_sort(const RowChoice& choice);

}  // namespace colx::table
