#include "examples/options.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::examples {

namespace {

using OptionRow = Option<Options>;
using Choice = table::RowChoiceOptions<Options>;
using Corpus = concordance::CorpusOptions<Options>;
using Examples = concordance::ExampleOptions<Options>;

Format _format(const GivenOption& given) {
  constexpr auto names = std::to_array<std::pair<std::string_view, Format>>({{"text", Format::text},
                                                                             {"kwic", Format::kwic},
                                                                             {"tsv", Format::tsv},
                                                                             {"jsonl", Format::jsonl},
                                                                             {"conllu", Format::conllu}});
  for (const auto& [name, format] : names)
    if (given.value == name) return format;
  reject(given, "text, kwic, tsv, jsonl or conllu");
}

constexpr auto _rows = std::to_array<OptionRow>({
    Corpus::list,
    Corpus::prefix,
    Corpus::mask,
    Corpus::rules,
    Corpus::context_sentences,
    Corpus::context_words,
    {{"-o,--output", "FILE", "write the examples to FILE; - is standard output, the default"},
     [](Options& options, const GivenOption& given) {
       options.output = given.value == "-" ? "" : concordance::path_of(given);
     }},
    Choice::where,
    Choice::ignore_case,
    Choice::min_frequency,
    Choice::sort,
    Choice::top,
    Choice::memory,
    {{"--pattern", "PATTERN",
      "look for a pattern in place of the N-grams of FILE, such as 'heavy <Atr rain', '* <Atr rain', 'take Obj> *' or "
      "'* <Atr rain/Sb'; may be given several times"},
     [](Options& options, const GivenOption& given) {
       options.queries.push_back(concordance::parse_query(given.value));
     }},
    Examples::examples,
    Examples::first,
    Examples::sentences,
    {{"--format", "FORMAT", "text, kwic, tsv, jsonl or conllu; default text"},
     [](Options& options, const GivenOption& given) { options.format = _format(given); }},
    {{"--tree", "", "draw the tree under every sentence"},
     [](Options& options, const GivenOption&) { options.tree = true; }},
    {{"-h,--help", "", "print this help and exit"},
     [](Options& options, const GivenOption&) { options.information = help(program); },
     true},
    {{"--version", "", "print the version and exit"},
     [](Options& options, const GivenOption&) { options.information = version(program); },
     true},
});
constexpr auto _entries = entries_of(_rows);

void _check_queries(const Options& options, const std::vector<std::string>& files) {
  if (!files.empty())
    throw usage_error(fmt::format("--pattern takes the place of FILE, found the file {} as well", files.front()));
  if (!options.conditions.empty() || options.letters == table::CaseOf::is_ignored || options.min_frequency > 0 ||
      options.sort.has_value() || options.top.has_value())
    throw usage_error(
        "--where, --ignore-case, --min-frequency, --sort and --top choose N-grams of FILE, and do not go "
        "with --pattern");
  const std::size_t n = options.queries.front().n();
  for (const concordance::Query& query : options.queries)
    if (query.n() != n)
      throw usage_error(fmt::format("expected patterns of equally many words, found \"{}\" of {} and \"{}\" of {}",
                                    options.queries.front().text, n, query.text, query.n()));
}

}  // namespace

constinit const Program program = {
    .name = "ngrex-examples",
    .operands = "-i LIST [FILE]",
    .purpose =
        "Show sentences of a corpus in which the N-grams of an output datafile of ngrex\n"
        "were counted. Without FILE, or when FILE is -, read standard input.",
    .notes =
        "Give -i, -d, -m and -f as ngrex had them: the sentences of an N-gram are then as\n"
        "many as its frequency says.\n"
        "Examples:\n"
        "  ngrex-examples -i weather.list -m '*' --where lemma2=rain pairs.txt\n"
        "  ngrex-examples -i weather.list --pattern '* <Atr rain' --examples all\n"
        "Exit status: 0 when everything is shown, 1 for failures, 2 for a wrong command\n"
        "line, 141 when the reader of the examples goes away.",
    .options = _entries,
    .most_files = 1,
};

Options parse_options(const std::vector<std::string>& arguments) {
  Options options;
  std::vector<std::string> files;
  if (apply_command_line(program, _rows, arguments, options, files)) return options;
  if (options.list.empty()) throw usage_error("expected the list of datafiles behind -i, found none");
  if (options.list == "-" || options.rules == "-" || options.sentences == "-")
    throw usage_error("--list, --rules and --sentences do not read standard input");
  if (options.tree && options.format != Format::text && options.format != Format::kwic)
    throw usage_error("--tree is for the formats text and kwic");
  if (!options.queries.empty()) _check_queries(options, files);
  if (!files.empty()) options.input = files.front();
  make_filters(options);
  return options;
}

}  // namespace colx::examples
