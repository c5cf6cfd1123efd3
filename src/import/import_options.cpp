#include "import/import_options.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include "companion/errors.h"
#include "companion/sentence_record.h"
#include "corpus/datafile_format.h"
#include "import/relation_tables.h"

namespace colx {

namespace {

using OptionRow = Option<ImportSettings>;

const std::string& _path(const GivenOption& given) {
  if (given.value.empty()) reject(given, "the path of a file");
  return given.value;
}

TreebankFormat _format(const GivenOption& given) {
  if (given.value == "conllu") return TreebankFormat::conllu;
  if (given.value == "conllx") return TreebankFormat::conllx;
  if (given.value == "datafile") return TreebankFormat::datafile;
  reject(given, "conllu, conllx or datafile");
}

TagSource _tag_source(const GivenOption& given) {
  if (given.value == "xpos") return TagSource::xpos;
  if (given.value == "upos") return TagSource::upos;
  if (given.value == "feats") return TagSource::feats;
  reject(given, "xpos, upos or feats");
}

bool _wants_functions(const GivenOption& given) {
  if (given.value != "keep" && given.value != "functions") reject(given, "keep or functions");
  return given.value == "functions";
}

const RelationTable& _relation_table(const GivenOption& given) {
  const RelationTable* const table = relation_table(given.value);
  if (table == nullptr) reject(given, "ud or sud");
  return *table;
}

const std::string& _mask(const GivenOption& given) {
  if (!is_tag_mask(given.value)) reject(given, "a mask of * and -");
  return given.value;
}

constexpr auto _rows = std::to_array<OptionRow>({
    {{"-o,--output", "FILE", "write the datafile to FILE; - is standard output, the default"},
     [](ImportSettings& settings, const GivenOption& given) {
       settings.output = _path(given) == "-" ? "" : given.value;
     }},
    {{"--from", "FORMAT", "format of the input: conllu, conllx or datafile; recognised by content where not given"},
     [](ImportSettings& settings, const GivenOption& given) { settings.format = _format(given); }},
    {{"--tag", "SOURCE", "tags: xpos, upos or feats; default xpos when nearly all are of equal length, else feats"},
     [](ImportSettings& settings, const GivenOption& given) { settings.tag = _tag_source(given); }},
    {{"--relations", "HOW", "keep relations or turn them into analytical functions: keep, functions (default)"},
     [](ImportSettings& settings, const GivenOption& given) { settings.functions = _wants_functions(given); }},
    {{"--relation-map", "FILE", "the table of relations and functions; without it ud or sud, by content"},
     [](ImportSettings& settings, const GivenOption& given) { settings.relation_map = _path(given); }},
    {{"--print-relation-map", "NAME", "print a built-in table of relations and functions and exit: ud, sud"},
     [](ImportSettings& settings, const GivenOption& given) { settings.information = _relation_table(given).text; },
     true},
    {{"--protect-lemmas", "", "replace ' : ; ^ _ in lemmas by look-alikes; default for CoNLL-U"},
     [](ImportSettings& settings, const GivenOption&) { settings.protect_lemmas = true; }},
    {{"--no-protect-lemmas", "", "leave lemmas as they are; default for CoNLL-X and datafiles"},
     [](ImportSettings& settings, const GivenOption&) { settings.protect_lemmas = false; }},
    {{"--split", "WORDS", "several datafiles of at most WORDS words, numbered before the extension of FILE"},
     [](ImportSettings& settings, const GivenOption& given) { settings.split = whole_number(given, 1); }},
    {{"--list", "FILE", "write the paths of the datafiles to the list FILE, or add them to it"},
     [](ImportSettings& settings, const GivenOption& given) { settings.list = _path(given); }},
    {{"--sentences", "FILE", "keep in FILE, for each sentence, its source, sent_id and text, or add them to it"},
     [](ImportSettings& settings, const GivenOption& given) { settings.sentences = _path(given); }},
    {{"--mask", "MASK", "count distinct tags also under this tag mask of * and -"},
     [](ImportSettings& settings, const GivenOption& given) { settings.mask = _mask(given); }},
    {{"--check", "", "write nothing, only report what is wrong"},
     [](ImportSettings& settings, const GivenOption&) { settings.check = true; }},
    {{"--strict", "",
      "exit status 1 if a sentence was skipped or, with --check, if anything was wrong or there are too many tags"},
     [](ImportSettings& settings, const GivenOption&) { settings.strict = true; }},
    {{"--tag-table", "", "print the letters of --tag feats and exit"},
     [](ImportSettings& settings, const GivenOption&) { settings.information = tag_table(); },
     true},
    {{"-q,--quiet", "", "no report and no progress bar"},
     [](ImportSettings& settings, const GivenOption&) { settings.quiet = true; }},
    {{"-h,--help", "", "print this help and exit"},
     [](ImportSettings& settings, const GivenOption&) { settings.information = help(import_program); },
     true},
    {{"--version", "", "print the version and exit"},
     [](ImportSettings& settings, const GivenOption&) { settings.information = version(import_program); },
     true},
});
constexpr auto _entries = entries_of(_rows);

// Refuses what the options do not allow together.
void _check_conflicts(const ImportSettings& settings) {
  if (settings.check &&
      (!settings.output.empty() || !settings.list.empty() || !settings.sentences.empty() || settings.split != 0))
    throw usage_error("--check writes nothing and does not go with --output, --list, --sentences or --split");
  if (settings.output.empty() && settings.split != 0) throw usage_error("--split needs --output FILE");
  if (settings.output.empty() && !settings.list.empty()) throw usage_error("--list needs --output FILE");
  if (settings.output.empty() && !settings.sentences.empty())
    throw usage_error("--sentences needs --output FILE, by whose name the sentences are found again");
  if (!settings.relation_map.empty() && settings.functions == false)
    throw usage_error("--relation-map does not go with --relations keep");
  if (settings.relation_map == "-") throw usage_error("--relation-map: expected the path of a file, found \"-\"");
  if (settings.list == "-") throw usage_error("--list: expected the path of a file, found \"-\"");
  if (settings.sentences == "-") throw usage_error("--sentences: expected the path of a file, found \"-\"");
  if (!settings.sentences.empty() && settings.sentences == settings.output)
    throw usage_error("--sentences and --output name the same file");
  if (!settings.sentences.empty() && !may_stand_in_sentence_file(settings.output))
    throw usage_error("a path with a TAB or a line end cannot stand in a sentence file");
  if (!settings.list.empty() && settings.output.find('\n') != std::string::npos)
    throw usage_error("a path with a line end cannot stand in a list file");
  if (std::count(settings.inputs.begin(), settings.inputs.end(), "-") > 1)
    throw usage_error("standard input is named twice");
}

}  // namespace

constinit const Program import_program = {
    .name = "ngrex-import",
    .operands = "[FILE...]",
    .purpose =
        "Turn treebanks in CoNLL-U or CoNLL-X, plain or gzipped, into a datafile of ngrex.\n"
        "Without FILE, or when FILE is -, read standard input.",
    .notes =
        "Exit status: 0 when all went well, 1 for failures (and skipped sentences under\n"
        "--strict), 2 for a wrong command line.",
    .options = _entries,
    .most_files = std::numeric_limits<std::size_t>::max(),
};

ImportSettings parse_import_options(const std::vector<std::string>& arguments) {
  ImportSettings settings;
  if (apply_command_line(import_program, _rows, arguments, settings, settings.inputs)) return settings;
  if (settings.inputs.empty()) settings.inputs.emplace_back("-");
  _check_conflicts(settings);
  return settings;
}

}  // namespace colx
