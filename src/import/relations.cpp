#include "import/relations.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <span>
#include <unordered_map>

#include "corpus/dependencies.h"

namespace colx {

namespace {

struct Mapping {
  std::string_view relation;
  std::string_view function;
};

// Universal relations whose function does not depend on other words. A subtype that is not listed goes with its
// relation.
constexpr Mapping universal_relations[] = {
    {"acl", "Atr"},           {"advcl", "Adv"},        {"advcl:pred", "AtvV"},   {"advmod", "Adv"},
    {"advmod:emph", "AuxZ"},  {"amod", "Atr"},         {"aux", "AuxV"},          {"case", "AuxP"},
    {"cc", "Coord"},          {"cc:preconj", "AuxY"},  {"ccomp", "Obj"},         {"clf", "Atr"},
    {"compound", "Atr"},      {"compound:lvc", "Obj"}, {"compound:prt", "AuxT"}, {"cop", "AuxV"},
    {"csubj", "Sb"},          {"det", "Atr"},          {"discourse", "AuxY"},    {"dislocated", "ExD"},
    {"expl", "AuxO"},         {"expl:impers", "AuxR"}, {"expl:pass", "AuxR"},    {"expl:pv", "AuxT"},
    {"flat", "Atr"},          {"iobj", "Obj"},         {"list", "ExD"},          {"mark", "AuxC"},
    {"nmod", "Atr"},          {"nsubj", "Sb"},         {"nummod", "Atr"},        {"obj", "Obj"},
    {"obl", "Adv"},           {"obl:agent", "Obj"},    {"obl:arg", "Obj"},       {"orphan", "ExD"},
    {"parataxis", "Pred_Pa"}, {"reparandum", "ExD"},   {"root", "Pred"},         {"vocative", "ExD"},
    {"xcomp", "Obj"},
};

// Relations of the first version of the universal scheme that the second one renamed.
constexpr Mapping former_relations[] = {{"auxpass", "AuxV"}, {"csubjpass", "Sb"}, {"dobj", "Obj"},
                                        {"foreign", "Atr"},  {"name", "Atr"},     {"neg", "Adv"},
                                        {"nsubjpass", "Sb"}, {"remnant", "ExD"}};

// Universal relations that take the function of their parent, with a suffix.
constexpr Mapping inherited_functions[] = {
    {"appos", "_Ap"}, {"conj", "_Co"}, {"fixed", ""}, {"goeswith", ""}, {"mwe", ""}};

// Names of analytical functions in other treebanks, in lower case.
constexpr Mapping other_names[] = {{"sbj", "Sb"},     {"subj", "Sb"},    {"ocomp", "Atv"},
                                   {"predc", "Pred"}, {"prede", "Pred"}, {"predp", "Pred"}};

constexpr std::string_view undefined = "Undef";

template <std::size_t count>
std::optional<std::string_view> _find(const Mapping (&table)[count], std::string_view name) {
  const auto found = std::find_if(std::begin(table), std::end(table),
                                  [&](const Mapping& mapping) { return mapping.relation == name; });
  if (found == std::end(table)) return std::nullopt;
  return found->function;
}

// By the whole name, else without subtype.
template <std::size_t count>
std::optional<std::string_view> _find_universal(const Mapping (&table)[count], std::string_view relation) {
  if (const auto found = _find(table, relation)) return found;
  return _find(table, relation.substr(0, relation.find(':')));
}

std::string _lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

// A name without _Ap, _Co or _Pa.
std::string_view _without_suffix(std::string_view function) {
  return function.substr(0, function.find('_'));
}

std::string _with_suffix(std::string_view function, std::string_view suffix) {
  const std::string_view base = _without_suffix(function);
  if (base == undefined || base == "Head") return std::string(base);
  return std::string(base).append(suffix);
}

// The analytical functions by their names in small letters. "Head" is no function that a treebank gives.
const std::unordered_map<std::string, std::string_view>& _functions_by_small_name() {
  static const auto names = [] {
    std::unordered_map<std::string, std::string_view> result;
    for (unsigned code = 0; code < dependencies_count; ++code) {
      const std::string_view name = dependency2cstring(static_cast<std::uint8_t>(code));
      if (name != "Head") result.emplace(_lower(name), name);
    }
    return result;
  }();
  return names;
}

// A name that is one of an analytical function but for upper and lower case, with or without suffix; of several or
// unknown suffixes the last one counts that the function can have.
std::optional<std::string> _other_spelling(std::string_view relation) {
  const auto& functions = _functions_by_small_name();
  const std::string lower = _lower(relation);
  std::string base(_without_suffix(lower));
  std::string_view suffixes = std::string_view(lower).substr(base.size());
  if (const auto other = _find(other_names, base)) base = _lower(*other);
  while (!suffixes.empty()) {
    const std::size_t last = suffixes.rfind('_');
    if (const auto found = functions.find(base + std::string(suffixes.substr(last))); found != functions.end())
      return std::string(found->second);
    suffixes = suffixes.substr(0, last);
  }
  const auto found = functions.find(base);
  if (found == functions.end()) return std::nullopt;
  return std::string(found->second);
}

// Where the function of a word comes from.
enum class Source : std::uint8_t { itself, parent, punctuation };

struct Rule {
  Source source = Source::itself;
  std::string text;  // the function, or the suffix to the one of the parent
};

std::optional<Rule> _universal_rule(std::string_view relation) {
  if (relation.substr(0, relation.find(':')) == "punct") return Rule{Source::punctuation, ""};
  if (const auto suffix = _find_universal(inherited_functions, relation))
    return Rule{Source::parent, std::string(*suffix)};
  if (const auto function = _find_universal(universal_relations, relation))
    return Rule{Source::itself, std::string(*function)};
  if (const auto function = _find_universal(former_relations, relation))
    return Rule{Source::itself, std::string(*function)};
  return std::nullopt;
}

Rule _rule(const std::string& relation) {
  if (is_analytical_function(relation)) return {Source::itself, relation};
  if (auto rule = _universal_rule(relation)) return *rule;
  if (auto function = _other_spelling(relation)) return {Source::itself, *function};
  if (auto rule = _universal_rule(_lower(relation))) return *rule;
  return {Source::itself, std::string(undefined)};
}

// Whether a text is made of one or more of the given characters.
bool _consists_of(std::string_view text, std::span<const std::string_view> characters) {
  if (text.empty()) return false;
  while (!text.empty()) {
    const auto found = std::find_if(characters.begin(), characters.end(),
                                    [&](std::string_view character) { return text.starts_with(character); });
    if (found == characters.end()) return false;
    text.remove_prefix(found->size());
  }
  return true;
}

// Commas and the marks that end a sentence, in the scripts that have their own.
constexpr std::string_view commas[] = {
    ",",
    "\xD5\x9D",      // Armenian
    "\xD8\x8C",      // Arabic
    "\xE1\x8D\xA3",  // Ethiopic
    "\xE1\x81\x8A",  // Burmese
    "\xE3\x80\x81",  // ideographic
    "\xEF\xBC\x8C",  // fullwidth
    "\xEF\xBD\xA4",  // halfwidth ideographic
};
constexpr std::string_view final_marks[] = {
    ".",
    "!",
    "?",
    "\xCD\xBE",      // Greek question mark
    "\xD6\x89",      // Armenian full stop
    "\xD8\x9F",      // Arabic question mark
    "\xDB\x94",      // Arabic full stop
    "\xE0\xA5\xA4",  // danda
    "\xE0\xA5\xA5",  // double danda
    "\xE0\xBC\x8D",  // Tibetan shad
    "\xE0\xBC\x8E",  // Tibetan double shad
    "\xE1\x81\x8B",  // Burmese section
    "\xE1\x8D\xA2",  // Ethiopic full stop
    "\xE1\x8D\xA7",  // Ethiopic question mark
    "\xE1\x9F\x94",  // Khmer khan
    "\xE1\x9F\x95",  // Khmer bariyoosan
    "\xE2\x80\xA6",  // ellipsis
    "\xE2\x80\xBC",  // double exclamation mark
    "\xE2\x81\x87",  // double question mark
    "\xE2\x81\x88",  // question exclamation mark
    "\xE2\x81\x89",  // exclamation question mark
    "\xE3\x80\x82",  // ideographic full stop
    "\xEF\xBC\x81",  // fullwidth exclamation mark
    "\xEF\xBC\x8E",  // fullwidth full stop
    "\xEF\xBC\x9F",  // fullwidth question mark
    "\xEF\xBD\xA1",  // halfwidth ideographic full stop
};

// The word that ends the sentence: of the punctuation behind the last other word the last one that is a final mark, or
// else simply the last one. The number of words when the sentence does not end with punctuation.
std::size_t _final_word(const TreebankSentence& sentence, const std::vector<Rule>& rules) {
  const std::size_t size = rules.size();
  std::size_t last = size;
  for (std::size_t i = size; i > 0 && rules[i - 1].source == Source::punctuation; --i) {
    if (_consists_of(sentence.words[i - 1].form, final_marks)) return i - 1;
    if (last == size) last = i - 1;
  }
  return last;
}

std::string _punctuation(const TreebankWord& word, bool is_final) {
  if (std::find(std::begin(commas), std::end(commas), word.form) != std::end(commas)) return "AuxX";
  return is_final ? "AuxK" : "AuxG";
}

}  // namespace

bool is_analytical_function(std::string_view name) {
  const std::uint8_t code = string2dependency(std::string(name));  // also sets the code of "Undef"
  return name == undefined || code != dependency::undef;
}

std::vector<std::string> analytical_functions(const TreebankSentence& sentence) {
  const auto& words = sentence.words;
  std::vector<Rule> rules;
  for (const TreebankWord& word : words)
    rules.push_back(_rule(word.relation));
  const std::size_t final_word = _final_word(sentence, rules);
  std::vector<std::string> functions(words.size());
  std::vector<std::size_t> waiting;  // words that take the function of the one before them
  for (std::size_t start = 0; start < words.size(); ++start) {
    std::size_t at = start;
    while (functions[at].empty()) {
      if (rules[at].source == Source::parent) {
        waiting.push_back(at);
        if (words[at].parent == 0) break;
        at = words[at].parent - 1;
      } else if (rules[at].source == Source::punctuation) {
        functions[at] = _punctuation(words[at], at == final_word);
      } else {
        functions[at] = rules[at].text;
      }
    }
    for (; !waiting.empty(); waiting.pop_back()) {
      const std::size_t word = waiting.back();
      const std::uint32_t parent = words[word].parent;
      const std::string_view function = parent == 0 ? std::string_view("Pred") : functions[parent - 1];
      functions[word] = _with_suffix(function, rules[word].text);
    }
  }
  return functions;
}

}  // namespace colx
