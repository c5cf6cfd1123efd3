#include "corpus/persistent.h"

namespace colx::persistent {

StringStore<std::uint32_t> lemmas(65535);
StringStore<std::uint8_t> tags(65535);
NGramStore ngrams(0);
MultiRulesFilter morphologic_filter;
UniRulesFilter context_filter;
std::vector<NamedDataFileStats> overall_stats;
std::map<std::string, Filter::Stats> morphologic_filter_file_stats;

}  // namespace colx::persistent
