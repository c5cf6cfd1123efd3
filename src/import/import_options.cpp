#include "import/import_options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace colx {

namespace {

constexpr auto options = std::to_array<ImportOption>({
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
    {"--strict", "", "exit status 1 if a sentence was skipped or, with --check, anything was wrong"},
    {"--tag-table", "", "print the letters of --tag feats and exit"},
    {"-q,--quiet", "", "no report and no progress bar"},
    {"-h,--help", "", "print this help and exit"},
    {"--version", "", "print the version and exit"},
});

[[noreturn]] void _reject(std::string_view option, const std::string& value, std::string_view expected) {
  throw CLI::ValidationError(std::string(option), "expected " + std::string(expected) + ", found \"" + value + "\"");
}

// Puts one value into the settings.
void _apply(std::string_view option, const std::string& value, ImportSettings& settings) {
  if (option == "-o,--output") {
    if (value.empty()) _reject("--output", value, "the path of a file");
    settings.output = value == "-" ? "" : value;
  } else if (option == "--from") {
    if (value == "conllu")
      settings.format = TreebankFormat::conllu;
    else if (value == "conllx")
      settings.format = TreebankFormat::conllx;
    else if (value == "datafile")
      settings.format = TreebankFormat::datafile;
    else
      _reject(option, value, "conllu, conllx or datafile");
  } else if (option == "--tag") {
    if (value == "xpos")
      settings.tag = TagSource::xpos;
    else if (value == "upos")
      settings.tag = TagSource::upos;
    else if (value == "feats")
      settings.tag = TagSource::feats;
    else
      _reject(option, value, "xpos, upos or feats");
  } else if (option == "--relations") {
    if (value != "keep" && value != "functions") _reject(option, value, "keep or functions");
    settings.functions = value == "functions";
  } else if (option == "--split") {
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), settings.split);
    if (error != std::errc() || end != value.data() + value.size() || settings.split == 0) {
      _reject(option, value, "a number of words from 1");
    }
  } else if (option == "--list") {
    if (value.empty()) _reject(option, value, "the path of a file");
    settings.list = value;
  } else if (option == "--mask") {
    if (value.empty() || value.find_first_not_of("*-") != std::string::npos)
      _reject(option, value, "a mask of * and -");
    settings.mask = value;
  }
}

void _apply_flag(std::string_view option, ImportSettings& settings) {
  if (option == "--protect-lemmas")
    settings.protect_lemmas = true;
  else if (option == "--no-protect-lemmas")
    settings.protect_lemmas = false;
  else if (option == "--check")
    settings.check = true;
  else if (option == "--strict")
    settings.strict = true;
  else if (option == "-q,--quiet")
    settings.quiet = true;
}

std::string _help() {
  std::string text =
      "Usage: ngrex-import [options] [FILE...]\n"
      "Turn treebanks in CoNLL-U or CoNLL-X, plain or gzipped, into a datafile of ngrex.\n"
      "Without FILE, or when FILE is -, read standard input.\n\n";
  for (const ImportOption& option : options) {
    std::string names = option.names;
    if (const std::size_t comma = names.find(','); comma != std::string::npos)
      names.insert(comma + 1, " ");
    else
      names.insert(0, "    ");
    if (*option.value != '\0') names += std::string(" ") + option.value;
    names.resize(std::max<std::size_t>(names.size() + 2, 26), ' ');
    text += "  " + names + option.help + "\n";
  }
  return text +
         "\nExit status: 0 when all went well, 1 for failures (and skipped sentences under --strict), 2 for a wrong\n"
         "command line.\n";
}

// What the options do not allow together; empty when all is well.
std::string _conflict(const ImportSettings& settings) {
  if (settings.check && (!settings.output.empty() || !settings.list.empty() || settings.split != 0)) {
    return "--check writes nothing and does not go with --output, --list or --split";
  }
  if (settings.output.empty() && settings.split != 0) return "--split needs --output FILE";
  if (settings.output.empty() && !settings.list.empty()) return "--list needs --output FILE";
  if (!settings.list.empty() && settings.output.find('\n') != std::string::npos) {
    return "a path with a line end cannot stand in a list file";
  }
  if (std::count(settings.inputs.begin(), settings.inputs.end(), "-") > 1) return "standard input is named twice";
  return "";
}

}  // namespace

std::span<const ImportOption> import_options() {
  return options;
}

ImportCommand parse_import_command(const std::vector<std::string>& arguments) {
  ImportSettings settings;
  std::string_view printed;
  CLI::App app;
  app.set_help_flag();
  app.allow_windows_style_options(false);
  for (const ImportOption& option : options) {
    const std::string_view names = option.names;
    if (*option.value != '\0') {
      app.add_option_function<std::string>(
             option.names, [&settings, names](const std::string& value) { _apply(names, value, settings); },
             option.help)
          ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
          ->trigger_on_parse();
    } else {
      app.add_flag_callback(
             option.names,
             [&settings, &printed, names] {
               if (names == "-h,--help" || names == "--version" || names == "--tag-table") {
                 if (printed.empty()) printed = names;
               } else {
                 _apply_flag(names, settings);
               }
             },
             option.help)
          ->trigger_on_parse();
    }
  }
  app.add_option("FILE", settings.inputs);
  const auto usage_error = [](const std::string& problem) {
    return ImportCommand{std::nullopt, 2,
                         "ngrex-import: " + problem + "\nTry 'ngrex-import --help' for more information.\n"};
  };
  try {
    // The parser takes words from the end.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    return usage_error(error.what());
  }
  if (printed == "-h,--help") return {std::nullopt, 0, _help()};
  if (printed == "--version") return {std::nullopt, 0, "ngrex-import " NGREX_VERSION "\n"};
  if (printed == "--tag-table") return {std::nullopt, 0, tag_table()};
  if (settings.inputs.empty()) settings.inputs.emplace_back("-");
  if (const std::string conflict = _conflict(settings); !conflict.empty()) return usage_error(conflict);
  return {settings, 0, ""};
}

}  // namespace colx
