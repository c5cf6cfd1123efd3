#pragma once

// Which corpus is searched, as it was given to the run of ngrex: list of datafiles, prefix, mask, rules and context
// window. One table of options for every program that looks for the sentences behind N-grams.

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/config.h"
#include "companion/command_line.h"
#include "corpus/datafile_list.h"

namespace colx::concordance {

// What options say of the corpus. The settings of a program derive from it.
struct CorpusSettings {
  std::string list;      // empty: not given
  std::string prefix;    // of all paths of the list
  std::string mask;      // empty: none, tags do not count
  std::string rules;     // empty: none
  ContextWindow window;  // as far as ngrex reads ahead, which leaves sentences at the end of a datafile uncounted
};

// The value of an option as the name of a file, as a mask, and as the radius of a window. Throws usage_error.
std::string path_of(const GivenOption& given);
std::string mask_of(const GivenOption& given);
std::uint32_t radius_of(const GivenOption& given);

// The rows of a program's table of options that fill them.
template <std::derived_from<CorpusSettings> Settings>
struct CorpusOptions {
  static constexpr Option<Settings> list{
      {"-i,--list", "FILE", "the list of datafiles that ngrex was given"},
      [](Settings& settings, const GivenOption& given) { settings.list = path_of(given); }};
  static constexpr Option<Settings> prefix{
      {"-d,--prefix", "TEXT", "put TEXT before every path of the list, as ngrex was told"},
      [](Settings& settings, const GivenOption& given) { settings.prefix = given.value; }};
  static constexpr Option<Settings> mask{
      {"-m,--mask", "MASK", "the tag mask of * and - that ngrex was given"},
      [](Settings& settings, const GivenOption& given) { settings.mask = mask_of(given); }};
  static constexpr Option<Settings> rules{
      {"-f,--rules", "FILE", "the rules for N-grams that ngrex was given; without a mask they do nothing"},
      [](Settings& settings, const GivenOption& given) { settings.rules = path_of(given); }};
  static constexpr Option<Settings> context_sentences{
      {"--context-sentences", "R", "the radius of contexts that ngrex was given with -cs, if it was"},
      [](Settings& settings, const GivenOption& given) {
        settings.window = {ContextWindow::sentences, radius_of(given)};
      }};
  static constexpr Option<Settings> context_words{
      {"--context-words", "R", "the radius of contexts that ngrex was given with -cw, if it was"},
      [](Settings& settings, const GivenOption& given) {
        settings.window = {ContextWindow::words, radius_of(given)};
      }};
};

// Reads the list. Throws input_error when it cannot be read, names no datafile, or names some that cannot be opened or
// read twice, of which it tells the first and how many there are.
std::vector<ListedDatafile> datafiles_of(const CorpusSettings& settings);

// All files that a search reads: list, rules and datafiles. An output must be none of them.
std::vector<std::string> inputs_of(const CorpusSettings& settings, const std::vector<ListedDatafile>& datafiles);

// What the user should know of how the settings are taken: one sentence, or nothing.
std::string note_on(const CorpusSettings& settings);

// Asks for the cause where N-grams are not found as often as they were counted.
inline constexpr std::string_view were_they_given =
    "were --list, --prefix, --mask, --rules and the radius of contexts those of the run of ngrex that counted them?";

}  // namespace colx::concordance
