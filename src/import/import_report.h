#pragma once

// What an import has seen, counted for the report at its end.

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "import/sentence.h"
#include "import/sentence_reader.h"

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

  // Counts the words of a sentence as they are written.
  void add_word(std::string_view lemma, std::string_view tag, const TreebankPlace& place);
  void add_sentence(const TreebankSentence& sentence, const std::string& input);
  void add_undefined(const std::string& relation) { ++_undefined[relation]; }
  void add_skipped() { ++_skipped; }
  void add_passed(const PassedRows& passed);

  std::uint64_t sentences() const { return _sentences; }
  std::uint64_t skipped() const { return _skipped; }

  // Says whether there are more tags than ngrex can tell apart, under the mask if there is one, whole otherwise.
  bool too_many_tags() const;

  // The report as text, one figure a line.
  std::string text() const;

 private:
  void _add_tag(std::unordered_set<std::string>& tags, const std::string& tag, TreebankPlace& overflow,
                const TreebankPlace& place);

  std::string _mask;
  std::uint64_t _words = 0;
  std::uint64_t _sentences = 0;
  std::uint64_t _skipped = 0;
  PassedRows _passed;
  std::unordered_set<std::string> _lemmas;
  std::unordered_set<std::string> _tags;
  std::unordered_set<std::string> _masked_tags;
  TreebankPlace _tag_overflow;         // the word with the first tag too many
  TreebankPlace _masked_tag_overflow;  // likewise, under the mask
  std::map<std::string, std::uint64_t> _undefined;
  std::uint32_t _most_children = 0;
  TreebankPlace _widest;
  std::size_t _most_words = 0;
  TreebankPlace _longest;
};

}  // namespace colx
