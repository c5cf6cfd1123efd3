#include "run/persistent.h"

#include "corpus/datafile_format.h"

namespace colx::persistent {

StringStore<std::uint32_t> lemmas(longest_text);
StringStore<std::uint8_t> tags(longest_text);
NGramStore ngrams(0);
MultiRulesFilter morphologic_filter;
UniRulesFilter context_filter;
std::vector<NamedDataFileStats> overall_stats;
std::map<std::string, Filter::Stats> morphologic_filter_file_stats;

}  // namespace colx::persistent
