#include "import/relations.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>

#include "import/function_names.h"

namespace colx {

namespace {

using Source = RelationRule::Source;

// What a word's relation says of it; the text lives as long as sentence and table.
struct Rule {
  Source source = Source::itself;
  std::string_view text;
};

Rule _rule(std::string_view relation, std::string_view parent_class, const RelationMap& map) {
  if (const RelationRule* const rule = map.find(relation, parent_class)) return {rule->source, rule->text};
  if (is_analytical_function(relation)) return {Source::itself, relation};
  if (const auto function = function_in_other_spelling(relation)) return {Source::itself, *function};
  if (const RelationRule* const rule = map.find(in_small_letters(relation), parent_class))
    return {rule->source, rule->text};
  return {Source::itself, undefined_function};
}

std::vector<Rule> _rules(const TreebankSentence& sentence, const RelationMap& map) {
  std::vector<Rule> rules;
  rules.reserve(sentence.words.size());
  for (const TreebankWord& word : sentence.words) {
    const std::string_view parent_class =
        word.parent == 0 ? "" : std::string_view(sentence.words[word.parent - 1].upos);
    rules.push_back(_rule(word.relation, parent_class, map));
  }
  return rules;
}

// A function with another suffix in place of its own.
std::string _with_suffix(std::string_view function, std::string_view suffix) {
  const std::string_view base = function.substr(0, function.find('_'));
  if (base == undefined_function || base == "Head") return std::string(base);
  return std::string(base).append(suffix);
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

// The functions of the phrases that the words are the heads of, or would be without their function words.
std::vector<std::string> _phrase_functions(const TreebankSentence& sentence, const std::vector<Rule>& rules) {
  const auto& words = sentence.words;
  const std::size_t final_word = _final_word(sentence, rules);
  std::vector<std::string> functions(words.size());
  std::vector<std::size_t> waiting;  // words that take the function of the one before them
  for (std::size_t start = 0; start < words.size(); ++start) {
    std::size_t at = start;
    while (functions[at].empty()) {
      if (rules[at].source == Source::parent || rules[at].source == Source::phrase) {
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
      functions[word] =
          rules[word].source == Source::phrase ? std::string(function) : _with_suffix(function, rules[word].text);
    }
  }
  return functions;
}

}  // namespace

std::vector<std::string> analytical_functions(const TreebankSentence& sentence, const RelationMap& map) {
  const std::vector<Rule> rules = _rules(sentence, map);
  std::vector<std::string> functions = _phrase_functions(sentence, rules);
  for (std::size_t i = 0; i < rules.size(); ++i) {
    const std::uint32_t parent = sentence.words[i].parent;
    if (rules[i].source == Source::phrase && parent != 0) functions[parent - 1] = rules[i].text;
  }
  return functions;
}

}  // namespace colx
