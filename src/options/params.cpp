#include "options/params.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "base/config.h"

namespace colx {

namespace {

// How much of a word, after its two leading characters, must agree with an option's name.
enum class Match { prefix, whole_name, third_character };

struct NgrexOption {
  std::string_view name;
  Match match;
  std::string_view value;  // what the usage text calls the value; empty: the option takes none
  void (*apply)(const char* value);
  std::vector<std::string> description;
};

std::uint32_t _to_unsigned32(const char* text) {
  constexpr unsigned long largest = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::min(_ascii2size_t(text), largest));
}

void _set(std::uint32_t& setting, const char* value) {
  if (value != nullptr) setting = _to_unsigned32(value);
}

void _set(double& setting, const char* value) {
  if (value != nullptr) setting = std::strtod(value, nullptr);
}

void _set_window(ContextWindow::Mode mode, const char* value) {
  if (value != nullptr) settings::context_window = {mode, _to_unsigned32(value)};
}

// The low 8 bits are kept, so that 258 asks for pairs as 2 does.
void _set_n(const char* value) {
  if (value != nullptr) settings::n = static_cast<std::uint8_t>(_ascii2size_t(value));
}

std::string _explain_marks() {
  return std::string("'") + constants::significant_position_mark + "' determines significant position, '" +
         constants::insignificant_position_mark + "' determines insignificant position.";
}

const std::vector<NgrexOption>& _mandatory_options() {
  static const std::vector<NgrexOption> options = {
      {"-i",
       Match::prefix,
       "input-file-path",
       [](const char* value) { settings::input_file = value; },
       {"Path to file with list of input datafile names."}},
      {"-n",
       Match::prefix,
       "size",
       _set_n,
       {"Size of extracted N-grams. Minimum value is 2, maximum value is " + std::to_string(constants::max_grammity) +
        "."}},
      {"-o",
       Match::prefix,
       "output-file-path",
       [](const char* value) { settings::output_file = value; },
       {"Path to output datafile."}},
  };
  return options;
}

const std::vector<NgrexOption>& _auxiliary_options() {
  static const std::vector<NgrexOption> options = {
      {"-c",
       Match::whole_name,
       "context-output-file",
       [](const char* value) { settings::context_output_file = value; },
       {"Output datafile for contexts storage."}},
      {"-cf",
       Match::third_character,
       "context-morphologic-filter-file-path",
       [](const char* value) { settings::context_filter_file = value; },
       {"Path to file with morphologic rules to filtrate stored context words."}},
      {"-cs",
       Match::third_character,
       "context-radius-size-in-sentences",
       [](const char* value) { _set_window(ContextWindow::sentences, value); },
       {"Size of context radius in sentences, may be from 0 to " +
            std::to_string(constants::sentences_radius_max_size) + ".",
        _explain_marks()}},
      {"-cw",
       Match::third_character,
       "context-radius-size-in-words",
       [](const char* value) { _set_window(ContextWindow::words, value); },
       {"Size of context radius in words, may be from 1 to " + std::to_string(constants::words_radius_max_size) + "."}},
      {"-d",
       Match::prefix,
       "path-to-datafiles-directory",
       [](const char* value) { settings::dir = value; },
       {"String that shall be prepended to all paths founded in input file."}},
      {"-f",
       Match::whole_name,
       "n-grams-morphologic-filter-file-path",
       [](const char* value) { settings::morphologic_filter_file = value; },
       {"Path to file with morphologic rules to filtrate parsed N-grams.",
        "Must be specified in order to -fs parameter has any effect!"}},
      {"-fs",
       Match::third_character,
       "n-grams-morphologic-filter-stats-file-path",
       [](const char* value) { settings::morphologic_filter_stats_file = value; },
       {"Path to file for saving statistics of applied morphologic rules."}},
      {"-m",
       Match::prefix,
       "morphologic-tag-mask",
       [](const char* value) { settings::morphologic_tag_mask = value; },
       {"Mask determines morphologic tag positions significant for n-grams equality.",
        "Must be specified in order to -cf, -ct, -f parameters have any effect!", _explain_marks()}},
      {"-p",
       Match::prefix,
       "unsigned-number",
       [](const char* value) { _set(settings::precision, value); },
       {"Output statistics precision (default is " + std::to_string(constants::default_precision) + ")."}},
      {"-s",
       Match::prefix,
       "stats-output-file",
       [](const char* value) { settings::stats_file = value; },
       {"Path to file, where statistics should be stored."}},
      {"-ta",
       Match::third_character,
       "",
       [](const char*) { settings::all_thresholds_together = true; },
       {"Reaching all of given thresholds is required."}},
      {"-tc",
       Match::third_character,
       "floating-point-number",
       [](const char* value) { _set(settings::thresholds.chi_square, value); },
       {"Pearson's chi square test threshold."}},
      {"-te",
       Match::third_character,
       "floating-point-number",
       [](const char* value) { _set(settings::sieves.estimated_frequency, value); },
       {"Only N-grams with at least given estimated frequency will be evaluted."}},
      {"-tf",
       Match::third_character,
       "unsigned-number",
       [](const char* value) { _set(settings::sieves.frequency, value); },
       {"Only N-grams with at least given frequency will be evaluted."}},
      {"-tl",
       Match::third_character,
       "floating-point-number",
       [](const char* value) { _set(settings::thresholds.log_likelihood, value); },
       {"Log likelihood ratio threshold."}},
      {"-tm",
       Match::third_character,
       "floating-point-number",
       [](const char* value) { _set(settings::thresholds.mutual_information, value); },
       {"Mutual information threshold."}},
      {"-to",
       Match::third_character,
       "",
       [](const char*) { settings::all_thresholds_together = false; },
       {"Reaching anyone of given thresholds is required."}},
      {"-tp",
       Match::third_character,
       "floating-point-number",
       [](const char* value) { _set(settings::thresholds.pearson, value); },
       {"Pearson's coeficient threshold."}},
      {"-tt",
       Match::third_character,
       "floating-point-number",
       [](const char* value) { _set(settings::thresholds.t_test, value); },
       {"Student's t-test threshold."}},
      {"-tz",
       Match::third_character,
       "floating-point-number",
       [](const char* value) { _set(settings::thresholds.z_score, value); },
       {"Z score threshold."}},
  };
  return options;
}

// `word` begins with '-', so its second character may be read; its third one only when the second agrees.
bool _names(const char* word, const NgrexOption& option) {
  if (word[1] != option.name[1]) return false;
  switch (option.match) {
    case Match::prefix:
      return true;
    case Match::whole_name:
      return word[2] == '\0';
    case Match::third_character:
      return word[2] == option.name[2];
  }
  return false;
}

const NgrexOption* _find(const char* word) {
  for (const auto* options : {&_mandatory_options(), &_auxiliary_options()}) {
    for (const NgrexOption& option : *options) {
      if (_names(word, option)) return &option;
    }
  }
  return nullptr;
}

void _print_options(std::ostream& out, const std::vector<NgrexOption>& options) {
  for (const NgrexOption& option : options) {
    out << ' ' << option.name;
    if (!option.value.empty()) out << ' ' << option.value;
    out << '\n';
    for (const std::string& line : option.description)
      out << "   " << line << '\n';
  }
}

}  // namespace

unsigned long _ascii2size_t(const char* text) {
  const long value = std::strtol(text, nullptr, 10);
  return value < 0 ? 0 : static_cast<unsigned long>(value);
}

int take_option(int count, const char* const* words, int at) {
  if (words[at][0] != '-') return 0;
  const NgrexOption* const option = _find(words[at]);
  if (option == nullptr) return 0;
  if (option->value.empty()) {
    option->apply(nullptr);
    return 1;
  }
  const bool has_value = at + 1 < count;
  option->apply(has_value ? words[at + 1] : nullptr);
  return has_value ? 2 : 1;
}

void parse_params(int argc, const char* const* argv) {
  for (int i = 0; i < argc;) {
    const int taken = take_option(argc, argv, i);
    i += taken == 0 ? 1 : taken;
  }
}

void print_options(std::ostream& out) {
  out << "Mandatory options:\n";
  _print_options(out, _mandatory_options());
  out << "\nAuxiliary options:\n";
  _print_options(out, _auxiliary_options());
}

void print_usage(std::ostream& out) {
  out << "Usage: ngrex [options]\n\n";
  print_options(out);
  out << std::endl;
}

}  // namespace colx
