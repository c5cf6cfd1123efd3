#include "import/relations.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <string_view>

#include "corpus/dependencies.h"
#include "import/function_names.h"

namespace colx {

namespace {

using Source = RelationRule::Source;

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

std::string_view _punctuation(const TreebankWord& word, bool is_final) {
  if (std::find(std::begin(commas), std::end(commas), word.form) != std::end(commas)) return "AuxX";
  return is_final ? "AuxK" : "AuxG";
}

}  // namespace

AnalyticalFunctions::Rule AnalyticalFunctions::_find(std::string_view relation, std::string_view parent_class) const {
  if (const RelationRule* const rule = _map->find(relation, parent_class)) return {rule->source, rule->text};
  if (is_analytical_function(relation))
    return {Source::itself, dependency2cstring(string2dependency(std::string(relation)))};
  if (const auto function = function_in_other_spelling(relation)) return {Source::itself, *function};
  if (const RelationRule* const rule = _map->find(in_small_letters(relation), parent_class))
    return {rule->source, rule->text};
  return {Source::itself, undefined_function};
}

AnalyticalFunctions::Rule AnalyticalFunctions::_known(std::string_view relation, std::string_view parent_class) {
  if (!_map->has_classes())
    return _known_rules.get(relation, [&](std::string_view) { return _find(relation, parent_class); });
  // Neither of them has a TAB.
  _key.assign(parent_class).append("\t").append(relation);
  return _known_rules.get(_key, [&](std::string_view) { return _find(relation, parent_class); });
}

void AnalyticalFunctions::_take_rules(const TreebankSentence& sentence) {
  _rules.clear();
  for (const TreebankWord& word : sentence.words)
    _rules.push_back(_known(word.relation, word.parent == 0 ? "" : sentence.words[word.parent - 1].upos));
}

// The word that ends the sentence: of the punctuation behind the last other word the last one that is a final mark, or
// else simply the last one. The number of words when the sentence does not end with punctuation.
std::size_t AnalyticalFunctions::_final_word(const TreebankSentence& sentence) const {
  const std::size_t size = _rules.size();
  std::size_t last = size;
  for (std::size_t i = size; i > 0 && _rules[i - 1].source == Source::punctuation; --i) {
    if (_consists_of(sentence.words[i - 1].form, final_marks)) return i - 1;
    if (last == size) last = i - 1;
  }
  return last;
}

// A function with another suffix in place of its own.
std::string_view AnalyticalFunctions::_with_suffix(std::string_view function, std::string_view suffix) {
  const std::string_view base = function.substr(0, function.find('_'));
  if (suffix.empty() || base == undefined_function || base == "Head") return base;
  return _texts.keep(std::string(base).append(suffix));
}

// Finds the functions of the phrases that the words are the heads of, or would be without their function words.
void AnalyticalFunctions::_find_phrase_functions(const TreebankSentence& sentence) {
  const auto& words = sentence.words;
  const std::size_t final_word = _final_word(sentence);
  _functions.assign(words.size(), {});
  for (std::size_t start = 0; start < words.size(); ++start) {
    std::size_t at = start;
    while (_functions[at].empty()) {
      const Rule& rule = _rules[at];
      if (rule.source == Source::parent || rule.source == Source::phrase) {
        _waiting.push_back(at);
        if (words[at].parent == 0) break;
        at = words[at].parent - 1;
      } else if (rule.source == Source::punctuation) {
        _functions[at] = _punctuation(words[at], at == final_word);
      } else {
        _functions[at] = rule.text;
      }
    }
    for (; !_waiting.empty(); _waiting.pop_back()) {
      const std::size_t word = _waiting.back();
      const std::uint32_t parent = words[word].parent;
      const std::string_view function = parent == 0 ? std::string_view("Pred") : _functions[parent - 1];
      _functions[word] = _rules[word].source == Source::phrase ? function : _with_suffix(function, _rules[word].text);
    }
  }
}

const std::vector<std::string_view>& AnalyticalFunctions::of(const TreebankSentence& sentence) {
  _texts.clear();
  _take_rules(sentence);
  _find_phrase_functions(sentence);
  for (std::size_t i = 0; i < _rules.size(); ++i) {
    const std::uint32_t parent = sentence.words[i].parent;
    if (_rules[i].source == Source::phrase && parent != 0) _functions[parent - 1] = _rules[i].text;
  }
  return _functions;
}

}  // namespace colx
