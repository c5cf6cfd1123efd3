#pragma once

// Sentences of datafiles as they are shown: with everything that stands there, also what counting has no use for.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace colx::concordance {

// A word of a sentence, its texts as they stand in the datafile.
struct ExampleWord {
  std::string form;
  std::string lemma;         // as far as ngrex keeps it
  std::string whole_lemma;   // with its technical suffixes
  std::string tag;           // without a mask
  std::string relation;      // may be one that ngrex does not know
  std::uint16_t parent = 0;  // position of the parent in the sentence, from 1; 0 also when it is none of its words
};

// What a sentence file says of a sentence.
struct SentenceOrigin {
  std::string id;          // empty: it has none
  std::string text;        // as it was written; empty: it is not known
  std::string source;      // the path of the treebank
  std::uint64_t line = 0;  // of the first word in the treebank, from 1
};

struct ExampleSentence {
  std::string entry;       // the datafile as the list has it
  std::string file;        // the path by which it was opened
  std::uint32_t line = 0;  // of the first word, from 1
  std::vector<ExampleWord> words;
  std::optional<SentenceOrigin> origin;  // nothing where no sentence file knows the datafile
};

}  // namespace colx::concordance
