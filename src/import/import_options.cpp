#include "import/import_options.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx {

namespace {

constexpr auto _entries = std::to_array<OptionEntry>({
    {"-o,--output", "FILE", "write the datafile to FILE; - is standard output, the default"},
    {"--from", "FORMAT", "format of the input: conllu, conllx or datafile; recognised by content where not given"},
    {"--tag", "SOURCE", "tags: xpos, upos or feats; default xpos when all are of equal length, else feats"},
    {"--relations", "HOW", "keep relations or turn them into analytical functions: keep, functions (default)"},
    {"--protect-lemmas", "", "replace ' : ; ^ _ in lemmas by look-alikes; default for CoNLL-U"},
    {"--no-protect-lemmas", "", "leave lemmas as they are; default for CoNLL-X and datafiles"},
    {"--split", "WORDS", "several datafiles of at most WORDS words, numbered before the extension of FILE"},
    {"--list", "FILE", "write the paths of the datafiles to the list FILE, or add them to it"},
    {"--mask", "MASK", "count distinct tags also under this tag mask of * and -"},
    {"--check", "", "write nothing, only report what is wrong"},
    {"--strict", "",
     "exit status 1 if a sentence was skipped or, with --check, if anything was wrong or there are too many tags"},
    {"--tag-table", "", "print the letters of --tag feats and exit"},
    {"-q,--quiet", "", "no report and no progress bar"},
    {"-h,--help", "", "print this help and exit"},
    {"--version", "", "print the version and exit"},
});

[[noreturn]] void _reject(std::string_view key, std::string_view value, std::string_view expected) {
  throw usage_error(fmt::format("--{}: expected {}, found \"{}\"", key, expected, value));
}

const std::string& _path(std::string_view key, const std::string& value) {
  if (value.empty()) _reject(key, value, "the path of a file");
  return value;
}

TreebankFormat _format(std::string_view key, std::string_view value) {
  if (value == "conllu") return TreebankFormat::conllu;
  if (value == "conllx") return TreebankFormat::conllx;
  if (value == "datafile") return TreebankFormat::datafile;
  _reject(key, value, "conllu, conllx or datafile");
}

TagSource _tag_source(std::string_view key, std::string_view value) {
  if (value == "xpos") return TagSource::xpos;
  if (value == "upos") return TagSource::upos;
  if (value == "feats") return TagSource::feats;
  _reject(key, value, "xpos, upos or feats");
}

bool _wants_functions(std::string_view key, std::string_view value) {
  if (value != "keep" && value != "functions") _reject(key, value, "keep or functions");
  return value == "functions";
}

const std::string& _mask(std::string_view key, const std::string& value) {
  if (value.empty() || value.find_first_not_of("*-") != std::string::npos) _reject(key, value, "a mask of * and -");
  return value;
}

void _apply(std::string_view key, const std::string& value, ImportSettings& settings) {
  if (key == "output")
    settings.output = _path(key, value) == "-" ? "" : value;
  else if (key == "from")
    settings.format = _format(key, value);
  else if (key == "tag")
    settings.tag = _tag_source(key, value);
  else if (key == "relations")
    settings.functions = _wants_functions(key, value);
  else if (key == "protect-lemmas")
    settings.protect_lemmas = true;
  else if (key == "no-protect-lemmas")
    settings.protect_lemmas = false;
  else if (key == "split")
    settings.split = whole_number(key, value, 1);
  else if (key == "list")
    settings.list = _path(key, value);
  else if (key == "mask")
    settings.mask = _mask(key, value);
  else if (key == "check")
    settings.check = true;
  else if (key == "strict")
    settings.strict = true;
  else if (key == "quiet")
    settings.quiet = true;
}

// Refuses what the options do not allow together.
void _check_conflicts(const ImportSettings& settings) {
  if (settings.check && (!settings.output.empty() || !settings.list.empty() || settings.split != 0))
    throw usage_error("--check writes nothing and does not go with --output, --list or --split");
  if (settings.output.empty() && settings.split != 0) throw usage_error("--split needs --output FILE");
  if (settings.output.empty() && !settings.list.empty()) throw usage_error("--list needs --output FILE");
  if (settings.list == "-") throw usage_error("--list: expected the path of a file, found \"-\"");
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
  CommandLine line = parse_command_line(import_program, arguments);
  ImportSettings settings;
  for (const auto& [key, value] : line.options) {
    settings.information = key == "tag-table" ? tag_table() : answer(import_program, key);
    if (!settings.information.empty()) return settings;
  }
  for (const auto& [key, value] : line.options)
    _apply(key, value, settings);
  settings.inputs = std::move(line.files);
  if (settings.inputs.empty()) settings.inputs.emplace_back("-");
  _check_conflicts(settings);
  return settings;
}

}  // namespace colx
