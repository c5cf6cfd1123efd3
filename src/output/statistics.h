#pragma once

// The two statistics files. See docs/formats.md.

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "corpus/datafile_stats.h"
#include "corpus/word_texts.h"
#include "filter/filter.h"
#include "model/ngrams.h"

namespace colx {

// How many things the stores of a run hold.
struct StoreSizes {
  std::uint64_t lemmas = 0;
  std::uint64_t tags = 0;
  std::vector<std::uint64_t> records;  // by type; that of type 0 does not matter
};
StoreSizes sizes_of(const WordTexts& texts, const NGramStore& ngrams);

// Writes the counts of each datafile, in the given order, their sums and the sizes of the stores. What the
// morphological filter let through and what it refused is shown when it was asked, that is, when it has rules. Sums are
// of the size of the counts, 32 bits or 64, and wrap.
template <typename Count>
void write_stats(std::ostream& out, const std::vector<NamedDataFileStatsOf<Count>>& datafiles, bool filtered,
                 const StoreSizes& sizes);

// Writes how many N-grams each rule of a filter let through, for each datafile and for the whole run: rule by rule.
using RuleCounts = std::vector<std::uint64_t>;
void write_rule_counts(std::ostream& out, const std::vector<MultiRulesFilter::Rule>& rules, const RuleCounts& whole,
                       const std::map<std::string, RuleCounts>& by_datafile);

// The same as the filter itself has counted it.
void write_morphologic_filter_stats(std::ostream& out, const MultiRulesFilter& filter,
                                    const std::map<std::string, Filter::Stats>& by_datafile);

}  // namespace colx
