#include "report/options.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::report {

namespace {

using OptionRow = Option<Options>;
using Choice = table::RowChoiceOptions<Options>;
using Corpus = concordance::CorpusOptions<Options>;
using Examples = concordance::ExampleOptions<Options>;

// The measures of a list, each once. Throws usage_error.
std::vector<const table::Association*> _measures(std::string_view list) {
  std::vector<const table::Association*> measures;
  for (;;) {
    const std::size_t comma = list.find(',');
    const std::string_view name = list.substr(0, comma);
    const table::Association* const measure = table::find_association(name);
    if (measure == nullptr) throw usage_error(fmt::format("there is no measure \"{}\"", name));
    if (std::find(measures.begin(), measures.end(), measure) == measures.end()) measures.push_back(measure);
    if (comma == std::string_view::npos) return measures;
    list.remove_prefix(comma + 1);
  }
}

// How close the words are, how sure that is, and how far above chance: what lexicographers look at first, for any N.
constexpr std::string_view usual_measures = "logDice,G2,MI";

constexpr auto _rows = std::to_array<OptionRow>({
    {{"-o,--output", "FILE", "write the report to FILE; - is standard output, the default"},
     [](Options& options, const GivenOption& given) {
       options.output = given.value == "-" ? "" : concordance::path_of(given);
     }},
    {{"--measures", "LIST",
      "textbook measures, separated by commas: G2, X2, simple_ll, expected, t, z, poisson, MI, MI3, local_mi, npmi, "
      "Dice, logDice, jaccard, min_sensitivity; for pairs phi, odds_ratio, log_ratio, delta_p12, delta_p21, p_G2, "
      "p_X2, Fisher; default logDice,G2,MI"},
     [](Options& options, const GivenOption& given) { options.measures = _measures(given.value); }},
    Choice::sort,
    Choice::memory,
    Choice::top,
    Choice::min_frequency,
    Choice::where,
    Choice::ignore_case,
    {{"--title", "TEXT", "the title of the report; default the name of the input"},
     [](Options& options, const GivenOption& given) { options.title = given.value; }},
    {{"-s,--statistics", "FILE", "take the size of the corpus from this statistics file of ngrex"},
     [](Options& options, const GivenOption& given) { options.statistics = concordance::path_of(given); }},
    Corpus::list,
    Corpus::prefix,
    Corpus::mask,
    Corpus::rules,
    Corpus::context_sentences,
    Corpus::context_words,
    {{"--examples", "K", "how many sentences for each N-gram, or all; default 3"}, Examples::examples.apply},
    Examples::sentences,
    {{"-h,--help", "", "print this help and exit"},
     [](Options& options, const GivenOption&) { options.information = help(program); },
     true},
    {{"--version", "", "print the version and exit"},
     [](Options& options, const GivenOption&) { options.information = version(program); },
     true},
});
constexpr auto _entries = entries_of(_rows);

// Standard input can be read once.
void _check_inputs(const Options& options) {
  if (options.input == "-" && options.statistics == "-")
    throw usage_error("--statistics: standard input is the output datafile already");
}

// Options that are about example sentences are a mistake without a corpus.
void _check_examples(const Options& options, const std::vector<std::string>& arguments) {
  if (options.wants_examples()) {
    if (options.list == "-" || options.rules == "-" || options.sentences == "-")
      throw usage_error("--list, --rules and --sentences do not read standard input");
    return;
  }
  for (const GivenOption& given : split_command_line(program, arguments).options)
    for (const std::string_view about_examples : {"prefix", "mask", "rules", "examples", "sentences"})
      if (given.key == about_examples)
        throw usage_error(
            fmt::format("--{} is for example sentences, which need the list of datafiles, -i", given.key));
}

}  // namespace

constinit const Program program = {
    .name = "ngrex-report",
    .operands = "[FILE]",
    .purpose =
        "Write the N-grams of an output datafile of ngrex as one HTML page, to be searched\n"
        "and looked at in a browser. The page needs no network and no other file.\n"
        "Without FILE, or when FILE is -, read standard input.",
    .notes =
        "Rows are in the order of --sort, without it by the first measure, the highest\n"
        "first. With -i the report has sentences for every N-gram, 3 unless --examples\n"
        "says otherwise; give -d, -m and -f as ngrex had them.\n"
        "Example:\n"
        "  ngrex-report --min-frequency 3 -i weather.list -m '*' -o pairs.html pairs.txt\n"
        "Exit status: 0 when the report is complete, 1 for failures, 2 for a wrong\n"
        "command line.",
    .options = _entries,
    .most_files = 1,
};

Options parse_options(const std::vector<std::string>& arguments) {
  Options options;
  std::vector<std::string> files;
  if (apply_command_line(program, _rows, arguments, options, files)) return options;
  _check_examples(options, arguments);
  options.command_line = shell_line(program, arguments);
  if (!files.empty()) options.input = files.front();
  _check_inputs(options);
  if (options.measures.empty()) options.measures = _measures(usual_measures);
  if (!options.sort.has_value()) options.sort = table::parse_sort_order(options.measures.front()->name);
  make_filters(options);
  return options;
}

}  // namespace colx::report
