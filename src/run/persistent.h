#pragma once

// The objects that outlive a datafile: built before main in this order, there until the process ends.

#include <map>
#include <string>
#include <vector>

#include "corpus/datafile_stats.h"
#include "corpus/string_store.h"
#include "filter/filter.h"
#include "model/ngrams.h"

namespace colx::persistent {

extern StringStore<std::uint32_t> lemmas;  // interned lemmas, cut
extern StringStore<std::uint8_t> tags;     // interned tags, masked
extern NGramStore ngrams;
extern MultiRulesFilter morphologic_filter;                                 // of N-grams
extern UniRulesFilter context_filter;                                       // of context words
extern std::vector<NamedDataFileStats> overall_stats;                       // in processing order
extern std::map<std::string, Filter::Stats> morphologic_filter_file_stats;  // by datafile

}  // namespace colx::persistent
