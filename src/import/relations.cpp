#include "import/relations.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

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
    {"acl", "Atr"},           {"advcl", "Adv"},      {"advmod", "Adv"},        {"advmod:emph", "AuxZ"},
    {"amod", "Atr"},          {"aux", "AuxV"},       {"case", "AuxP"},         {"cc", "Coord"},
    {"cc:preconj", "AuxY"},   {"ccomp", "Obj"},      {"clf", "Atr"},           {"compound", "Atr"},
    {"compound:prt", "AuxT"}, {"cop", "AuxV"},       {"csubj", "Sb"},          {"det", "Atr"},
    {"discourse", "AuxY"},    {"dislocated", "ExD"}, {"expl", "AuxO"},         {"expl:impers", "AuxR"},
    {"expl:pass", "AuxR"},    {"expl:pv", "AuxT"},   {"flat", "Atr"},          {"iobj", "Obj"},
    {"list", "ExD"},          {"mark", "AuxC"},      {"nmod", "Atr"},          {"nsubj", "Sb"},
    {"nummod", "Atr"},        {"obj", "Obj"},        {"obl", "Adv"},           {"obl:agent", "Obj"},
    {"obl:arg", "Obj"},       {"orphan", "ExD"},     {"parataxis", "Pred_Pa"}, {"reparandum", "ExD"},
    {"root", "Pred"},         {"vocative", "ExD"},   {"xcomp", "Obj"},
};

// Universal relations that take the function of their parent, with a suffix.
constexpr Mapping inherited_functions[] = {{"appos", "_Ap"}, {"conj", "_Co"}, {"fixed", ""}, {"goeswith", ""}};

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

// A name that is one of an analytical function but for upper and lower case.
std::string _other_spelling(std::string_view relation) {
  const std::string lower = _lower(relation);
  const std::string_view base = _without_suffix(lower);
  std::string suffix = lower.substr(base.size());
  if (suffix.size() == 3) suffix[1] = static_cast<char>(suffix[1] - 'a' + 'A');
  if (const auto found = _find(other_names, base)) {
    const std::string name = std::string(*found) + suffix;
    return is_analytical_function(name) ? name : std::string(undefined);
  }
  for (unsigned code = 0; code < dependencies_count; ++code) {
    const std::string_view name = dependency2cstring(static_cast<std::uint8_t>(code));
    if (_lower(name) == lower) return std::string(name);
  }
  return std::string(undefined);
}

// Punctuation: a comma, the last word of the sentence, or anything else.
std::string _punctuation(const TreebankSentence& sentence, const TreebankWord& word) {
  if (word.form == ",") return "AuxX";
  return &word == &sentence.words.back() ? "AuxK" : "AuxG";
}

}  // namespace

bool is_analytical_function(std::string_view name) {
  const std::uint8_t code = string2dependency(std::string(name));  // also sets the code of "Undef"
  return name == undefined || code != dependency::undef;
}

std::vector<std::string> analytical_functions(const TreebankSentence& sentence) {
  const auto& words = sentence.words;
  std::vector<std::string> functions(words.size());
  std::vector<std::uint32_t> waiting;  // words that take the function of the one before them
  for (std::size_t start = 0; start < words.size(); ++start) {
    std::uint32_t at = static_cast<std::uint32_t>(start);
    while (functions[at].empty()) {
      const TreebankWord& word = words[at];
      if (is_analytical_function(word.relation)) {
        functions[at] = word.relation;
      } else if (_find_universal(inherited_functions, word.relation)) {
        waiting.push_back(at);
        if (word.parent == 0) break;
        at = word.parent - 1;
      } else if (word.relation == "punct") {
        functions[at] = _punctuation(sentence, word);
      } else if (const auto found = _find_universal(universal_relations, word.relation)) {
        functions[at] = *found;
      } else {
        functions[at] = _other_spelling(word.relation);
      }
    }
    for (; !waiting.empty(); waiting.pop_back()) {
      const TreebankWord& word = words[waiting.back()];
      const std::string_view parent = word.parent == 0 ? std::string_view("Pred") : functions[word.parent - 1];
      functions[waiting.back()] = _with_suffix(parent, *_find_universal(inherited_functions, word.relation));
    }
  }
  return functions;
}

}  // namespace colx
