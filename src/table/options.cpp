#include "table/options.h"

#include <array>
#include <string_view>

#include <fmt/format.h>

#include "companion/errors.h"
#include "table/association.h"

namespace colx::table {

namespace {

constexpr std::array<OptionEntry, 12> _entries = {{
    {"--columns", "LIST", "columns to print instead of the default ones, separated by commas"},
    {"--cells", "", "add the cells of the contingency table"},
    {"--pattern", "", "add the N-gram as a readable tree"},
    {"--measures", "LIST",
     "add textbook measures, separated by commas: G2, X2, MI, MI3, logDice, Dice, t, z; for pairs Fisher, odds_ratio"},
    {"--sort", "COLUMN", "sort by a column, descending; +COLUMN ascending"},
    {"--top", "K", "print the first K rows only"},
    {"--min-frequency", "F", "leave out N-grams that occur fewer than F times"},
    {"--where", "CONDITION",
     "leave out N-grams that do not meet a condition, such as 'lemma1=rain', 'lemma2~^un' or 'logDice>=7'; operators "
     "are = != ~ !~ < <= >= >; may be given several times"},
    {"--format", "FORMAT", "tsv, csv, jsonl, markdown, ucs or table; default table on a terminal, else tsv"},
    {"--precision", "DIGITS", "significant digits of computed measures, 1 to 17; default 10"},
    {"-h,--help", "", "print this help and exit"},
    {"--version", "", "print the version and exit"},
}};

std::vector<std::string> _split_list(std::string_view key, std::string_view list) {
  std::vector<std::string> result;
  for (;;) {
    const std::size_t comma = list.find(',');
    result.emplace_back(list.substr(0, comma));
    if (result.back().empty()) throw usage_error(fmt::format("--{}: the list has an empty name", key));
    if (comma == std::string_view::npos) return result;
    list.remove_prefix(comma + 1);
  }
}

int _precision(std::string_view key, std::string_view value) {
  constexpr std::size_t most = 17;  // which tell any two doubles apart
  const std::size_t digits = whole_number(key, value, 1);
  if (digits > most) throw usage_error(fmt::format("--{}: expected at most {}, found \"{}\"", key, most, value));
  return static_cast<int>(digits);
}

Format _format_named(const std::string& name) {
  const auto format = find_format(name);
  if (!format.has_value())
    throw usage_error(fmt::format("--format: expected tsv, csv, jsonl, markdown, ucs or table, found \"{}\"", name));
  return *format;
}

void _apply(std::string_view key, const std::string& value, Options& options) {
  if (key == "columns")
    options.columns = _split_list(key, value);
  else if (key == "cells")
    options.cells = true;
  else if (key == "pattern")
    options.pattern = true;
  else if (key == "measures")
    options.measures = _split_list(key, value);
  else if (key == "sort")
    options.sort = parse_sort_order(value);
  else if (key == "top")
    options.top = whole_number(key, value, 0);
  else if (key == "min-frequency")
    options.min_frequency = whole_number(key, value, 0);
  else if (key == "where")
    options.filters.emplace_back(value);
  else if (key == "precision")
    options.precision = _precision(key, value);
  else if (key == "format")
    options.format = _format_named(value);
}

void _check_names(const Options& options) {
  for (const std::string& name : options.columns)
    expand_column(name, 0);
  for (const std::string& name : options.measures)
    if (!find_association(name).has_value()) throw usage_error(fmt::format("there is no measure \"{}\"", name));
}

}  // namespace

constinit const Program program = {
    .name = "ngrex-table",
    .operands = "[FILE]",
    .purpose =
        "Print the N-grams of an output datafile of ngrex as a table, one row each.\n"
        "Without FILE, or when FILE is -, read standard input.",
    .notes =
        "Columns: rank, lemma1 to lemmaN, tag1.., parent1.., relation1.., frequency,\n"
        "marginal1.., total, chi_square, log_likelihood and for pairs mutual_information,\n"
        "pearson, t_test, z_score; cell0.., pattern, and every measure of --measures.\n"
        "In --columns a name without its number (lemma) stands for all of its columns.\n"
        "Example:\n"
        "  ngrex-table --min-frequency 3 --measures logDice --sort logDice pairs.txt\n"
        "Exit status: 0 when the table is complete, 1 for failures, 2 for a wrong\n"
        "command line.",
    .options = _entries,
    .most_files = 1,
};

Options parse_options(const std::vector<std::string>& arguments) {
  const CommandLine line = parse_command_line(program, arguments);
  Options options;
  for (const auto& [key, value] : line.options) {
    options.information = answer(program, key);
    if (!options.information.empty()) return options;
  }
  for (const auto& [key, value] : line.options)
    _apply(key, value, options);
  if (!line.files.empty()) options.input = line.files.front();
  _check_names(options);
  return options;
}

}  // namespace colx::table
