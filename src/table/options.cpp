#include "table/options.h"

#include <CLI/CLI.hpp>
#include <array>
#include <charconv>
#include <map>

#include <fmt/format.h>

#include "table/association.h"
#include "table/errors.h"

namespace colx::table {

namespace {

constexpr std::array<OptionEntry, 11> _entries = {{
    {"columns", "LIST", "Columns to print, separated by commas"},
    {"cells", "", "Add the cells of the contingency table"},
    {"pattern", "", "Add the N-gram as a readable tree"},
    {"measures", "LIST",
     "Add textbook measures, separated by commas: G2, X2, MI, MI3, logDice, Dice, t, z; for pairs Fisher, odds_ratio"},
    {"sort", "COLUMN", "Sort by a column, descending; +COLUMN ascending"},
    {"top", "K", "Print the first K rows only"},
    {"min-frequency", "F", "Leave out N-grams that occur less than F times"},
    {"where", "CONDITION",
     "Leave out N-grams that do not meet 'COLUMN=VALUE' or 'COLUMN~REGEX'; may be given several times", true},
    {"format", "FORMAT", "tsv, csv, jsonl, markdown, ucs or table (default: table on a terminal, tsv otherwise)"},
    {"help", "", "Print this help and exit"},
    {"version", "", "Print the version and exit"},
}};

constexpr std::string_view _footer =
    "FILE is an output datafile of ngrex; without FILE, or with -, standard input is read.\n"
    "Columns: rank, lemma1 to lemmaN, tag1.., parent1.., relation1.., frequency, marginal1..,\n"
    "total, chi_square, log_likelihood and for pairs mutual_information, pearson, t_test,\n"
    "z_score; cell0.., pattern, and every measure of --measures. In --columns a name\n"
    "without its number (lemma) stands for all of its columns.\n"
    "Example: ngrex-table --min-frequency 3 --measures logDice --sort logDice --top 20 pairs.txt";

std::vector<std::string> _split_list(std::string_view option, std::string_view list) {
  std::vector<std::string> result;
  for (;;) {
    const std::size_t comma = list.find(',');
    result.emplace_back(list.substr(0, comma));
    if (result.back().empty()) throw UsageError(fmt::format("the list of --{} has an empty name", option));
    if (comma == std::string_view::npos) return result;
    list.remove_prefix(comma + 1);
  }
}

std::uint64_t _whole_number(std::string_view option, std::string_view text) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size())
    throw UsageError(fmt::format("--{} expects a whole number from 0, not \"{}\"", option, text));
  return value;
}

void _check_names(const Options& options) {
  for (const std::string& name : options.columns)
    expand_column(name, 0);
  for (const std::string& name : options.measures)
    if (!find_association(name).has_value()) throw UsageError(fmt::format("there is no measure \"{}\"", name));
}

}  // namespace

std::span<const OptionEntry> option_entries() {
  return _entries;
}

Options parse_options(int argc, const char* const* argv) {
  CLI::App app("Print the N-grams of an output datafile as a table, one row each.", "ngrex-table");
  app.set_help_flag();
  app.footer(std::string(_footer));
  app.get_formatter()->column_width(26);

  std::map<std::string_view, bool> switches;
  std::map<std::string_view, std::vector<std::string>> values;
  for (const OptionEntry& entry : _entries) {
    const std::string name = "--" + std::string(entry.name);
    if (entry.value.empty()) {
      app.add_flag(name, switches[entry.name], std::string(entry.help));
      continue;
    }
    CLI::Option* const option = app.add_option(name, values[entry.name], std::string(entry.help));
    option->type_name(std::string(entry.value))->expected(1)->allow_extra_args(false);
    option->multi_option_policy(entry.repeatable ? CLI::MultiOptionPolicy::TakeAll : CLI::MultiOptionPolicy::TakeLast);
  }
  Options options;
  app.add_option("FILE", options.input, "The output datafile")->type_name("");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }

  if (switches["help"]) {
    options.information = app.help();
    return options;
  }
  if (switches["version"]) {
    options.information = "ngrex-table " NGREX_VERSION "\n";
    return options;
  }
  const auto given = [&](std::string_view name) -> const std::string* {
    return values[name].empty() ? nullptr : &values[name].back();
  };
  options.cells = switches["cells"];
  options.pattern = switches["pattern"];
  if (const auto* const list = given("columns")) options.columns = _split_list("columns", *list);
  if (const auto* const list = given("measures")) options.measures = _split_list("measures", *list);
  if (const auto* const name = given("sort")) options.sort = parse_sort_order(*name);
  if (const auto* const number = given("top")) options.top = _whole_number("top", *number);
  if (const auto* const number = given("min-frequency"))
    options.min_frequency = _whole_number("min-frequency", *number);
  for (const std::string& condition : values["where"])
    options.filters.emplace_back(condition);
  if (const auto* const name = given("format")) {
    options.format = find_format(*name);
    if (!options.format.has_value())
      throw UsageError(fmt::format("--format expects tsv, csv, jsonl, markdown, ucs or table, not \"{}\"", *name));
  }
  _check_names(options);
  return options;
}

}  // namespace colx::table
