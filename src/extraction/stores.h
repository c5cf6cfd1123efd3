#pragma once

// What a walk over datafiles fills, and what it asks on the way.

#include <cstdint>

#include "corpus/string_store.h"
#include "filter/filter.h"
#include "model/ngrams.h"

namespace colx {

// Nothing is owned. The N-gram store has been initialised; filters without rules let everything pass.
struct Stores {
  StringStore<std::uint32_t>& lemmas;
  StringStore<std::uint8_t>& tags;
  NGramStore& ngrams;
  MultiRulesFilter& morphologic_filter;
  UniRulesFilter& context_filter;
};

}  // namespace colx
