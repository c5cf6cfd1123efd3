#pragma once

// A sentence of a treebank as it stands in its file.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "import/fault.h"
#include "import/sentence_comments.h"
#include "import/text_arena.h"

namespace colx {

// The formats that are read.
enum class TreebankFormat : std::uint8_t { conllu, conllx, datafile };

// One word. Fields are the bytes of the file; where a format has no such column the text is empty.
struct TreebankWord {
  std::string_view form;
  std::string_view lemma;
  std::string_view upos;
  std::string_view xpos;  // the tag of a datafile
  std::string_view feats;
  std::uint32_t parent = 0;  // position of the parent, from 1, or 0
  std::string_view relation;
  std::uint64_t line = 0;
  bool is_plain = false;  // it is known that no field has white space
};

// The words in order; the position of a word is its index and 1. Their fields are views into `texts`, or into what
// outlives the sentence.
struct TreebankSentence {
  std::vector<TreebankWord> words;
  TextArena texts;
  SentenceComments comments;
  std::uint64_t rows = 0;  // rows of words, those that are lost by a fault included
  std::uint64_t line = 0;  // of its first row
};

// Something that is wrong in a treebank, and where.
struct TreebankProblem {
  std::uint64_t line = 0;
  unsigned column = 0;  // from 1; 0: the line as a whole
  const char* column_name = "";
  std::string text;  // what was expected and what was found
  Fault fault = Fault::columns;
};

// Whether a sentence with these problems has to be skipped.
bool must_be_skipped(const std::vector<TreebankProblem>& problems);

// A text for a message: in quotes, at most some forty bytes of it, control characters replaced.
std::string in_quotes(std::string_view text);

// Stands at the beginning of some files, and within those that were put together from several of them.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

}  // namespace colx
