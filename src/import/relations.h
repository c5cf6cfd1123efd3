#pragma once

// The analytical functions of a sentence, by a table of relations.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "corpus/text_cache.h"
#include "import/relation_map.h"
#include "import/sentence.h"
#include "import/text_arena.h"

namespace colx {

// Gives every word of a sentence, whose tree has no fault, the name of an analytical function, "Undef" where there is
// none. Relations go by the table; what is not in it may be the name of an analytical function, which stays, or another
// spelling of one, such as ATR_CO; what is not that either may be in the table in small letters, such as ROOT. Linear
// in the words. What was found out about a relation is used again in the sentences that follow.
class AnalyticalFunctions {
 public:
  // The table is not owned.
  explicit AnalyticalFunctions(const RelationMap& map) : _map(&map) {}

  // The functions of the words, in order; valid until the next call, and as long as the table.
  const std::vector<std::string_view>& of(const TreebankSentence& sentence);

 private:
  // What a word's relation says of it.
  struct Rule {
    RelationRule::Source source = RelationRule::Source::itself;
    std::string_view text;  // lives as long as the table
  };

  Rule _find(std::string_view relation, std::string_view parent_class) const;
  Rule _known(std::string_view relation, std::string_view parent_class);
  void _take_rules(const TreebankSentence& sentence);
  std::size_t _final_word(const TreebankSentence& sentence) const;
  std::string_view _with_suffix(std::string_view function, std::string_view suffix);
  void _find_phrase_functions(const TreebankSentence& sentence);

  const RelationMap* _map;
  TextCache<Rule, 8> _known_rules;  // by relation, or by class and relation
  std::string _key;
  std::vector<Rule> _rules;
  std::vector<std::string_view> _functions;
  std::vector<std::size_t> _waiting;  // words that take the function of the one before them
  TextArena _texts;                   // of functions that are in no table
};

}  // namespace colx
