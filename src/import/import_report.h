#pragma once

// What an import has seen, counted for the report at its end.

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corpus/text_cache.h"
#include "import/datafile_words.h"
#include "import/sentence.h"
#include "import/sentence_reader.h"
#include "import/tagset.h"
#include "import/text_hash.h"

namespace colx {

// A place in an input.
struct TreebankPlace {
  std::string input;
  std::uint64_t line = 0;
};

// Collects figures over sentences that were not skipped.
class ImportReport {
 public:
  // With an empty mask only whole tags are counted.
  explicit ImportReport(std::string mask) : _mask(std::move(mask)) {}

  // Notes how an input is converted.
  void add_input(const Conversion& conversion);
  // Counts a sentence, given with its words as they are written.
  void add_sentence(const TreebankSentence& sentence, const std::vector<DatafileWord>& words, const std::string& input);
  // Counts a sentence that was skipped, with its words.
  void add_skipped(std::uint64_t words) {
    ++_skipped;
    _skipped_words += words;
  }
  // Says why tags are not taken from XPOS, though they might have been.
  void add_refusal(std::string reason) { _refusal = std::move(reason); }
  // Adds a line on the list that is extended.
  void add_list_note(std::string text) { _list_notes.push_back(std::move(text)); }
  void add_passed(const PassedRows& passed);

  std::uint64_t skipped() const { return _skipped; }

  // Says that there are more tags than ngrex can tell apart, under the mask if there is one, whole otherwise, and where
  // the first too many is; empty when all is well.
  std::string tag_fault() const;

  // The report as text, one figure a line.
  std::string text() const;

 private:
  // Tags of one kind, and the word with the first one too many.
  struct Tags {
    TextCounts words;  // by tag
    TextCache<std::uint64_t*, 8> known_words;
    TreebankPlace overflow;

    void add(std::string_view tag, const std::string& input, std::uint64_t line);
    bool too_many() const;
    std::string fault() const;
  };

  // Where values of the features of a word are counted, in any order; null behind the last one.
  using ValueCounts = std::array<std::uint64_t*, feature_positions>;

  void _add_unknown_values(std::string_view upos, std::string_view feats);
  void _add_word(const TreebankWord& source, const DatafileWord& word, const std::string& input);
  std::string _lemma_lines() const;
  std::string _tag_lines() const;
  std::string _mask_lines() const;
  std::string _relation_lines() const;

  std::string _mask;
  std::set<std::string_view> _formats;
  std::set<std::string_view> _tag_sources;
  std::set<std::string> _relation_maps;
  std::uint64_t _words = 0;
  std::uint64_t _sentences = 0;
  std::uint64_t _skipped = 0;
  std::uint64_t _skipped_words = 0;
  PassedRows _passed;
  TextSet _lemmas;
  TextCache<bool, 11> _known_lemmas;
  std::uint64_t _lemmas_from_forms = 0;
  std::uint64_t _protected_lemmas = 0;
  std::uint64_t _cut_lemmas = 0;
  std::uint64_t _emptied_lemmas = 0;
  Tags _tags;
  Tags _masked_tags;
  std::string _refusal;
  std::vector<std::string> _list_notes;
  std::uint64_t _odd_tags = 0;
  TreebankPlace _first_odd_tag;
  std::uint64_t _words_with_unknown_values = 0;
  std::map<std::string, std::uint64_t> _unknown_values;
  TextCache<ValueCounts, 8, 128> _known_values;  // by word class and features
  std::string _key;
  std::map<std::string, std::uint64_t> _undefined;
  TextCache<std::uint64_t*, 6> _known_undefined;
  std::uint32_t _most_children = 0;
  TreebankPlace _widest;
  std::size_t _most_words = 0;
  TreebankPlace _longest;
};

}  // namespace colx
