#pragma once

// The two filters as the extraction asks them: by indexes of tags instead of texts, remembering what they answered.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "corpus/string_store.h"
#include "filter/filter.h"
#include "model/occurrence_batch.h"

namespace colx {

// Asks the morphological filter about the occurrences of a batch. Rules are matched with a text for each position, but
// the combinations of tags of a corpus are few; the first rule that admits one is remembered in a table of fixed size.
class MorphologicFilter {
 public:
  // Filter and tags must outlive this object, and the rules stay as they are.
  MorphologicFilter(MultiRulesFilter& filter, const StringStore<std::uint8_t>& tags);

  // Tells whether there are rules. Without rules everything is to be admitted.
  bool is_on() const { return !_answers.empty(); }

  // Tells whether an occurrence is admitted under a type, and counts it when that is the full one.
  bool admits(const OccurrenceBatch& batch, std::size_t occurrence, std::uint8_t type);

 private:
  struct Answer {
    std::uint64_t question = 0;  // no question: the type is never 0
    std::size_t first_match = 0;
  };
  static constexpr unsigned answer_bits = 14;

  std::size_t _ask(const OccurrenceBatch& batch, std::size_t occurrence, std::uint8_t type);

  MultiRulesFilter& _filter;
  const StringStore<std::uint8_t>& _tags;
  std::vector<Answer> _answers;
  std::vector<std::string> _texts;
};

// Asks the context filter about words. Without rules every word is admitted.
class ContextFilter {
 public:
  // Filter and tags must outlive this object, and the rules stay as they are.
  ContextFilter(UniRulesFilter& filter, const StringStore<std::uint8_t>& tags) : _filter(filter), _tags(tags) {}

  // Tells whether a word with this tag is admitted.
  bool admits(std::uint8_t tag);

 private:
  UniRulesFilter& _filter;
  const StringStore<std::uint8_t>& _tags;
  std::array<std::optional<bool>, 256> _answers;
};

}  // namespace colx
