#include "table/options.h"

#include <array>
#include <limits>
#include <string_view>

#include <fmt/format.h>

#include "companion/errors.h"
#include "rows/association.h"
#include "table/combinations.h"

namespace colx::table {

namespace {

using OptionRow = Option<Options>;
using Choice = RowChoiceOptions<Options>;

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

GroupOrder _group_order(const GivenOption& given) {
  if (given.value == "size") return GroupOrder::size;
  if (given.value != "name") reject(given, "size or name");
  return GroupOrder::name;
}

Format _format(const GivenOption& given) {
  const auto format = find_format(given.value);
  if (!format.has_value()) reject(given, "tsv, csv, jsonl, markdown, ucs, table, sqlite or xlsx");
  return *format;
}

std::string _na(const GivenOption& given) {
  if (given.value.find_first_of("\t\r\n") != std::string::npos) reject(given, "a text without TAB and line end");
  return given.value;
}

bool _special_as_text(const GivenOption& given) {
  if (given.value != "null" && given.value != "strings") reject(given, "null or strings");
  return given.value == "strings";
}

std::string _path(const GivenOption& given) {
  if (given.value.empty()) reject(given, "the name of a file");
  return given.value == "-" ? "" : given.value;
}

std::string _input(const GivenOption& given) {
  if (given.value.empty()) reject(given, "the name of a FILE");
  return given.value;
}

void _read_other(Options& options, Input kind, const GivenOption& given) {
  options.kind = kind;
  options.input = _input(given);
}

constexpr auto _rows = std::to_array<OptionRow>({
    {{"-o,--output", "FILE", "write the table to FILE; - is standard output, the default"},
     [](Options& options, const GivenOption& given) { options.output = _path(given); }},
    {{"--columns", "LIST", "columns to print instead of the default ones, separated by commas"},
     [](Options& options, const GivenOption& given) { options.columns = _split_list(given); }},
    {{"--cells", "", "add the cells of the contingency table"},
     [](Options& options, const GivenOption&) { options.cells = true; }},
    {{"--pattern", "", "add the N-gram as a readable tree"},
     [](Options& options, const GivenOption&) { options.tree_text = true; }},
    {{"--measures", "LIST",
      "add textbook measures, separated by commas: G2, X2, simple_ll, expected, t, z, poisson, MI, MI3, local_mi, "
      "npmi, "
      "Dice, logDice, jaccard, min_sensitivity; for pairs phi, odds_ratio, log_ratio, delta_p12, delta_p21, p_G2, "
      "p_X2, "
      "Fisher"},
     [](Options& options, const GivenOption& given) { options.measures = _split_list(given); }},
    Choice::sort,
    {{"--per", "LIST",
      "make groups of rows that agree in these columns, separated by commas; --sort is for the rows of a group, --top "
      "K prints the first K of each"},
     [](Options& options, const GivenOption& given) { options.per = parse_group_columns(given.value); }},
    {{"--groups", "HOW", "order of the groups of --per: size, the default, which is their frequency, or name"},
     [](Options& options, const GivenOption& given) { options.groups = _group_order(given); }},
    {{"--profile", "WORD",
      "print for reading with what a lemma occurs, by relation and direction; --sort is for the rows of a block, by "
      "logDice when it is not given, --top K prints the first K of each, 10 when it is not given"},
     [](Options& options, const GivenOption& given) {
       if (given.value.empty()) reject(given, "a lemma");
       options.profile = given.value;
     }},
    {{"--locale", "", "sort texts as the locale of the environment does, not by code points"},
     [](Options& options, const GivenOption&) { options.collation = Collation::of_environment(); }},
    Choice::memory,
    Choice::top,
    Choice::min_frequency,
    Choice::where,
    Choice::ignore_case,
    {{"--merge", "LIST",
      "add pairs up that differ in these only, separated by commas: order (the dependent then comes first), tag, "
      "relation; with margins and measures anew"},
     [](Options& options, const GivenOption& given) { merge(options.merging, given.value); }},
    {{"--within", "HOW",
      "relation: make the table of every pair inside its relation; head-relation: take the margin of the head inside "
      "the relation, and that of the dependent over all"},
     [](Options& options, const GivenOption& given) { options.merging.within = parse_within(given.value); }},
    {{"--format", "FORMAT",
      "tsv, csv, jsonl, markdown, ucs, table, sqlite or xlsx; default table on a terminal, else tsv"},
     [](Options& options, const GivenOption& given) { options.format = _format(given); }},
    {{"--precision", "DIGITS", "significant digits of computed measures, 1 to 17; default 10"},
     [](Options& options, const GivenOption& given) { options.style.precision = _precision(given); }},
    {{"--na", "TEXT", "what stands for values that are not a number; default NA"},
     [](Options& options, const GivenOption& given) { options.na = _na(given); }},
    {{"--bom", "", "begin csv with a byte order mark, by which spreadsheets know UTF-8"},
     [](Options& options, const GivenOption&) { options.byte_order_mark = true; }},
    {{"--json-numbers", "HOW", "what jsonl has for NA, Inf and -Inf: null, the default, or strings"},
     [](Options& options, const GivenOption& given) { options.special_as_text = _special_as_text(given); }},
    {{"--unsigned", "",
      "leave out the sign of G2, X2 and simple_ll, which is that of frequency less expected frequency"},
     [](Options& options, const GivenOption&) { options.style.sign = Sign::none; }},
    {{"--compare", "FILE", "compare with another output datafile: frequencies of both, log ratio and keyness"},
     [](Options& options, const GivenOption& given) { options.other = _input(given); }},
    {{"--contexts", "FILE", "read a contexts file of ngrex instead: one row a context word"},
     [](Options& options, const GivenOption& given) { _read_other(options, Input::contexts, given); }},
    {{"--statistics", "FILE", "read a statistics file of ngrex instead: one row a datafile"},
     [](Options& options, const GivenOption& given) { _read_other(options, Input::statistics, given); }},
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
    if (find_association(name) == nullptr) throw usage_error(fmt::format("there is no measure \"{}\"", name));
}

[[noreturn]] void _refuse_files(const std::vector<std::string>& files) {
  throw usage_error(fmt::format(
      "expected one FILE, found {}: {} and {}; the counts of several files cannot be added, as the cells of "
      "an N-gram depend on all N-grams of its corpus, also on those that its file leaves out; run ngrex "
      "over one list with all datafiles instead",
      files.size(), files[0], files[1]));
}

template <typename Check>
void _for_every_printed_column(const Options& options, const Check& check) {
  for (const std::string& name : options.columns)
    for (const Column& column : expand_column(name, 0))
      check(column);
}

// Columns by which rows are chosen, sorted or grouped.
template <typename Check>
void _for_every_deciding_column(const Options& options, const Check& check) {
  for (const RowFilter& filter : options.filters)
    for (const Column& column : filter.columns())
      check(column);
  for (const std::optional<SortOrder>& order : {options.sort, options.per})
    if (order.has_value())
      for (const SortKey& key : order->keys)
        check(key.column);
}

// Whether a column says the same in every row, as the field was dropped.
bool _is_dropped(const Column& column, const Merging& merging) {
  return (column.quantity == Quantity::tag && merging.tag) ||
         (column.quantity == Quantity::relation && merging.relation);
}

void _check_merging(const Options& options) {
  const Merging& merging = options.merging;
  if (!merging.is_wanted()) return;
  if (merging.relation && merging.within != Within::everything)
    throw usage_error("--merge relation leaves no relation that --within could go by");
  const auto check = [](const Column& column) {
    if (column.quantity == Quantity::own_measure)
      throw usage_error(fmt::format(
          "{} is of the pairs as the file has them; rows made by --merge, --within or the format ucs have the measures "
          "of --measures",
          column.name));
  };
  const auto check_choice = [&](const Column& column) {
    check(column);
    if (_is_dropped(column, merging))
      throw usage_error(fmt::format("rows cannot be chosen or sorted by {}, which --merge{} drops{}", column.name,
                                    options.format == Format::ucs ? " or the format ucs" : "",
                                    column.quantity == Quantity::relation ? "; --within relation keeps it" : ""));
  };
  _for_every_printed_column(options, check);
  _for_every_deciding_column(options, check_choice);
}

void _check_comparison(const Options& options) {
  if (!options.other.empty()) {
    if (options.other == "-" && options.input == "-")
      throw usage_error("--compare: standard input cannot be both of the files that are compared");
    if (options.format == Format::ucs)
      throw usage_error("--format ucs does not go with --compare, as it has no place for pairs that only one file has");
    return;
  }
  const auto check = [](const Column& column) {
    if (column.is_of_comparison()) throw usage_error(fmt::format("the column {} needs --compare FILE", column.name));
  };
  _for_every_printed_column(options, check);
  _for_every_deciding_column(options, check);
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
        "t_test, z_score; on request pearson, per_million, cell0.., pattern, and every\n"
        "measure of --measures; with --compare frequency_other, per_million_other,\n"
        "keyness and keyness_log_ratio.\n"
        "(Use pearson for samples of some hundred words only: see the man page.)\n"
        "In --columns a name without its number (lemma) stands for all of its columns.\n"
        "Example:\n"
        "  ngrex-table --min-frequency 3 --measures logDice --sort logDice pairs.txt\n"
        "Exit status: 0 when the table is complete, 1 for failures, 2 for a wrong\n"
        "command line, 141 when the reader of the table goes away.",
    .options = _entries,
    .most_files = std::numeric_limits<std::size_t>::max(),  // refused below, with the reason
};

Options parse_options(const std::vector<std::string>& arguments) {
  Options options;
  check_combination(program, arguments);
  std::vector<std::string> files;
  if (apply_command_line(program, _rows, arguments, options, files)) return options;
  options.command_line = shell_line(program, arguments);
  if (options.kind != Input::ngrams) {
    if (!files.empty()) throw usage_error(fmt::format("expected one input, found {} and {}", options.input, files[0]));
    return options;
  }
  if (files.size() > 1) _refuse_files(files);
  if (!files.empty()) options.input = files.front();
  make_filters(options);
  if (options.per.has_value() && !options.sort.has_value()) options.sort = parse_sort_order("frequency");
  for (std::optional<SortOrder>* const order : {&options.sort, &options.per})
    if (order->has_value()) (*order)->collation = options.collation;
  _check_names(options);
  if (options.format == Format::ucs) options.merging = merging_of_ucs(options.merging);
  _check_merging(options);
  _check_comparison(options);
  return options;
}

}  // namespace colx::table
