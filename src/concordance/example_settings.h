#pragma once

// Which of the sentences behind an N-gram are shown.

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>

#include "companion/command_line.h"
#include "concordance/corpus_settings.h"

namespace colx::concordance {

// What options say of the choice. The settings of a program derive from it.
struct ExampleSettings {
  std::optional<std::uint64_t> examples = 5;  // for each N-gram; nothing: all
  bool first = false;                         // in the order of the corpus, and no more of it is read than that takes
  std::string sentences;                      // a sentence file of ngrex-import; empty: none
};

// The value of the option as a number from 1; nothing for "all". Throws usage_error.
std::optional<std::uint64_t> examples_of(const GivenOption& given);

// The rows of a program's table of options that fill it.
template <std::derived_from<ExampleSettings> Settings>
struct ExampleOptions {
  static constexpr Option<Settings> examples{
      {"--examples", "K", "how many sentences for each N-gram, or all; default 5"},
      [](Settings& settings, const GivenOption& given) { settings.examples = examples_of(given); }};
  static constexpr Option<Settings> first{
      {"--first", "", "take the first ones of the corpus, and read no more of it than that takes"},
      [](Settings& settings, const GivenOption&) { settings.first = true; }};
  static constexpr Option<Settings> sentences{
      {"--sentences", "FILE",
       "show sentences as they were written and by their ids, from a file that ngrex-import "
       "--sentences has made"},
      [](Settings& settings, const GivenOption& given) { settings.sentences = path_of(given); }};
};

}  // namespace colx::concordance
