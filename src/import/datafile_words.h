#pragma once

// Words of a treebank as they will stand in a datafile.

#include <string>
#include <vector>

#include "import/sentence.h"
#include "import/tagset.h"

namespace colx {

// How words are converted.
struct Conversion {
  TreebankFormat format = TreebankFormat::conllu;
  TagSource tag = TagSource::xpos;  // not automatic; for datafiles without effect
  bool functions = true;            // relations become analytical functions
  bool protect_lemmas = true;
  bool protect_forms = true;  // where the form stands in for the lemma
};

// One word; form, tag and relation are fields as they may stand in a datafile.
struct DatafileWord {
  std::string form;
  std::string lemma;
  std::string tag;
  std::string relation;
  bool lemma_is_form = false;
  bool is_protected = false;           // characters of the lemma were replaced
  bool has_unknown_values = false;     // the tag was made from features that have no letter
  bool relation_is_undefined = false;  // ngrex will read the relation as Undef, and it did not say so itself
};

// Converts a sentence whose tree has no fault. Notes a lemma and a tag that are too long as problems, after which the
// sentence must be skipped.
std::vector<DatafileWord> datafile_words(const TreebankSentence& sentence, const Conversion& conversion,
                                         std::vector<TreebankProblem>& problems);

}  // namespace colx
