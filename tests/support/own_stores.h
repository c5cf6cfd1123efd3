#pragma once

// Stores of a test's own, for what is given the stores of a run.

#include <cstdint>

#include "base/config.h"
#include "corpus/string_store.h"
#include "corpus/word_texts.h"
#include "extraction/stores.h"
#include "filter/filter.h"
#include "model/ngrams.h"

namespace colx::test {

// Empty stores and filters without rules. To be made after the guard that sets N up; addresses of records and texts die
// with it.
struct OwnStores {
  StringStore<std::uint32_t> lemmas{65535};
  StringStore<std::uint8_t> tags{65535};
  NGramStore ngrams{constants::ngram_within_block};
  MultiRulesFilter morphologic_filter;
  UniRulesFilter context_filter;

  WordTexts texts() const { return {lemmas, tags}; }
  Stores all() { return {lemmas, tags, ngrams, morphologic_filter, context_filter}; }
};

}  // namespace colx::test
