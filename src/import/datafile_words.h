#pragma once

// Words of a treebank as they will stand in a datafile.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corpus/text_cache.h"
#include "import/relation_map.h"
#include "import/relations.h"
#include "import/sentence.h"
#include "import/tagset.h"
#include "import/text_arena.h"

namespace colx {

// How words are converted.
struct Conversion {
  TreebankFormat format = TreebankFormat::conllu;
  TagSource tag = TagSource::xpos;         // not automatic; for datafiles without effect
  std::size_t tag_length = 0;              // to which tags from XPOS are brought; 0: they stay
  const RelationMap* relations = nullptr;  // by which relations become analytical functions; null: they stay
  bool protect_lemmas = true;
  bool protect_forms = true;  // where the form stands in for the lemma
};

// One word; form, lemma, tag and relation are fields as they may stand in a datafile.
struct DatafileWord {
  std::string_view form;
  std::string_view lemma;
  std::string_view kept_lemma;  // the part of the lemma that ngrex keeps
  std::string_view tag;
  std::string_view relation;
  bool lemma_is_form = false;
  bool is_protected = false;           // characters of the lemma were replaced
  bool is_odd_tag = false;             // it was brought to the common length
  bool has_unknown_values = false;     // the tag was made from features that have no letter
  bool relation_is_undefined = false;  // ngrex will read the relation as Undef, and it did not say so itself
};

// Converts the sentences of an input one after another; what has been worked out for the words of one is used again for
// those that follow.
class SentenceConverter {
 public:
  explicit SentenceConverter(const Conversion& conversion) : _conversion(conversion) {
    if (conversion.relations != nullptr) _functions.emplace(*conversion.relations);
  }

  // Converts a sentence whose tree has no fault. Notes a lemma and a tag that are too long as problems, after which the
  // sentence must be skipped. The words are valid until the next call, and as long as the sentence is.
  const std::vector<DatafileWord>& convert(const TreebankSentence& sentence, std::vector<TreebankProblem>& problems);

 private:
  // A tag made from features, without the word class.
  struct MadeTag {
    std::array<char, feature_positions> letters;
    bool has_unknown_values;
  };

  std::string_view _field(const TreebankWord& word, std::string_view text);
  void _convert_lemma(const TreebankWord& word, DatafileWord& result);
  void _convert_tag(const TreebankWord& word, DatafileWord& result);
  void _make_tag(const TreebankWord& word, DatafileWord& result);

  Conversion _conversion;
  std::vector<DatafileWord> _words;
  std::optional<AnalyticalFunctions> _functions;  // nothing where relations stay
  TextCache<bool, 8> _known_relations;
  TextArena _texts;                       // of the words, where they differ from those of the sentence
  TextCache<MadeTag, 11, 96> _made_tags;  // by features
  TextCache<char, 5> _word_classes;
};

// Appends the rows of a sentence as they stand in a datafile, without the empty line behind them.
void append_rows(std::string& text, const TreebankSentence& sentence, const std::vector<DatafileWord>& words);

}  // namespace colx
