#include "table/options.h"

#include <array>
#include <string_view>

#include <fmt/format.h>

#include "companion/errors.h"
#include "rows/association.h"

namespace colx::table {

namespace {

using OptionRow = Option<Options>;

std::vector<std::string> _split_list(const GivenOption& given) {
  std::vector<std::string> result;
  std::string_view list = given.value;
  for (;;) {
    const std::size_t comma = list.find(',');
    result.emplace_back(list.substr(0, comma));
    if (result.back().empty()) throw usage_error(fmt::format("--{}: the list has an empty name", given.key));
    if (comma == std::string_view::npos) return result;
    list.remove_prefix(comma + 1);
  }
}

int _precision(const GivenOption& given) {
  constexpr std::size_t most = 17;  // which tell any two doubles apart
  const std::size_t digits = whole_number(given, 1);
  if (digits > most) reject(given, fmt::format("at most {}", most));
  return static_cast<int>(digits);
}

Format _format(const GivenOption& given) {
  const auto format = find_format(given.value);
  if (!format.has_value()) reject(given, "tsv, csv, jsonl, markdown, ucs or table");
  return *format;
}

constexpr auto _rows = std::to_array<OptionRow>({
    {{"--columns", "LIST", "columns to print instead of the default ones, separated by commas"},
     [](Options& options, const GivenOption& given) { options.columns = _split_list(given); }},
    {{"--cells", "", "add the cells of the contingency table"},
     [](Options& options, const GivenOption&) { options.cells = true; }},
    {{"--pattern", "", "add the N-gram as a readable tree"},
     [](Options& options, const GivenOption&) { options.tree_text = true; }},
    {{"--measures", "LIST",
      "add textbook measures, separated by commas: G2, X2, MI, MI3, logDice, Dice, t, z; for pairs Fisher, odds_ratio"},
     [](Options& options, const GivenOption& given) { options.measures = _split_list(given); }},
    {{"--sort", "COLUMN", "sort by a column, descending; +COLUMN ascending"},
     [](Options& options, const GivenOption& given) { options.sort = parse_sort_order(given.value); }},
    {{"--top", "K", "print the first K rows only"},
     [](Options& options, const GivenOption& given) { options.top = whole_number(given, 0); }},
    {{"--min-frequency", "F", "leave out N-grams that occur fewer than F times"},
     [](Options& options, const GivenOption& given) { options.min_frequency = whole_number(given, 0); }},
    {{"--where", "CONDITION",
      "leave out N-grams that do not meet a condition, such as 'lemma1=rain', 'lemma2~^un' or 'logDice>=7'; operators "
      "are = != ~ !~ < <= >= >; may be given several times"},
     [](Options& options, const GivenOption& given) { options.filters.emplace_back(given.value); }},
    {{"--format", "FORMAT", "tsv, csv, jsonl, markdown, ucs or table; default table on a terminal, else tsv"},
     [](Options& options, const GivenOption& given) { options.format = _format(given); }},
    {{"--precision", "DIGITS", "significant digits of computed measures, 1 to 17; default 10"},
     [](Options& options, const GivenOption& given) { options.precision = _precision(given); }},
    {{"-h,--help", "", "print this help and exit"},
     [](Options& options, const GivenOption&) { options.information = help(program); },
     true},
    {{"--version", "", "print the version and exit"},
     [](Options& options, const GivenOption&) { options.information = version(program); },
     true},
});
constexpr auto _entries = entries_of(_rows);

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
        "(Use pearson for samples of some hundred words only: see the man page.)\n"
        "In --columns a name without its number (lemma) stands for all of its columns.\n"
        "Example:\n"
        "  ngrex-table --min-frequency 3 --measures logDice --sort logDice pairs.txt\n"
        "Exit status: 0 when the table is complete, 1 for failures, 2 for a wrong\n"
        "command line.",
    .options = _entries,
    .most_files = 1,
};

Options parse_options(const std::vector<std::string>& arguments) {
  Options options;
  std::vector<std::string> files;
  if (apply_command_line(program, _rows, arguments, options, files)) return options;
  if (!files.empty()) options.input = files.front();
  _check_names(options);
  return options;
}

}  // namespace colx::table
