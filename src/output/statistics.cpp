#include "output/statistics.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/config.h"

namespace colx {

namespace {

std::string _grams() {
  return std::to_string(settings::n) + "-grams";
}

template <typename Count>
void _write_counts(std::ostream& out, const NamedDataFileStatsOf<Count>& stats, bool filtered) {
  out << "# of words: " << stats.words_count << '\n';
  out << "# of sentences: " << stats.sentences_count << '\n';
  out << "# of " << _grams() << " extracted: " << stats.extracted_count << '\n';
  if (filtered) {
    out << "# of " << _grams() << " passed: " << stats.passed_count << '\n';
    out << "# of " << _grams() << " filtered: " << stats.filtered_count << '\n';
  }
  out << '\n';
}

void _write_rules(std::ostream& out, const std::vector<MultiRulesFilter::Rule>& rules, const RuleCounts& matched) {
  for (std::size_t i = 0; i < rules.size(); ++i) {
    for (const std::string& tag_rule : rules[i])
      out << ' ' << tag_rule;
    out << '\t' << matched[i] << '\n';
  }
}

}  // namespace

StoreSizes sizes_of(const WordTexts& texts, const NGramStore& ngrams) {
  StoreSizes sizes;
  sizes.lemmas = texts.lemmas.size();
  sizes.tags = texts.tags.size();
  sizes.records.push_back(1);
  for (std::uint8_t type = 1; type <= NGram::_full_ngram_type; ++type)
    sizes.records.push_back(ngrams.different(type));
  return sizes;
}

template <typename Count>
void write_stats(std::ostream& out, const std::vector<NamedDataFileStatsOf<Count>>& datafiles, bool filtered,
                 const StoreSizes& sizes) {
  NamedDataFileStatsOf<Count> sums;
  for (const NamedDataFileStatsOf<Count>& stats : datafiles) {
    out << "Statistics for datafile " << stats.name << ":\n";
    _write_counts(out, stats, filtered);
    sums.words_count += stats.words_count;
    sums.sentences_count += stats.sentences_count;
    sums.extracted_count += stats.extracted_count;
    sums.passed_count += stats.passed_count;
    sums.filtered_count += stats.filtered_count;
  }
  out << "Overall datafiles statistics:\n";
  _write_counts(out, sums, filtered);

  out << "Strings storage statistics:\n";
  out << "# of unique lemmas: " << sizes.lemmas << '\n';
  out << "# of unique tags: " << sizes.tags << "\n\n";

  out << _grams() << " storage statistics:\n";
  for (std::uint8_t type = 0; type <= NGram::_full_ngram_type; ++type) {
    // The empty N-gram is one and is not kept in a set.
    const std::uint64_t count = type == 0 ? 1 : sizes.records[type];
    out << "# of unique " << _grams() << " of type " << unsigned{type} << ": " << count << '\n';
  }
  out << std::endl;
}

template void write_stats(std::ostream&, const std::vector<NamedDataFileStatsOf<std::uint32_t>>&, bool,
                          const StoreSizes&);
template void write_stats(std::ostream&, const std::vector<NamedDataFileStatsOf<std::uint64_t>>&, bool,
                          const StoreSizes&);

void write_rule_counts(std::ostream& out, const std::vector<MultiRulesFilter::Rule>& rules, const RuleCounts& whole,
                       const std::map<std::string, RuleCounts>& by_datafile) {
  for (const auto& [name, counts] : by_datafile) {
    out << "Passed " << _grams() << " statistics for datafile " << name << ":\n";
    _write_rules(out, rules, counts);
    out << '\n';
  }
  out << "Overall passed " << _grams() << " statistics:\n";
  _write_rules(out, rules, whole);
  out << std::endl;
}

void write_morphologic_filter_stats(std::ostream& out, const MultiRulesFilter& filter,
                                    const std::map<std::string, Filter::Stats>& by_datafile) {
  const auto wide = [](const Filter::Stats& stats) { return RuleCounts(stats.matched.begin(), stats.matched.end()); };
  std::map<std::string, RuleCounts> counts;
  for (const auto& [name, stats] : by_datafile)
    counts.emplace(name, wide(stats));
  write_rule_counts(out, filter.rules(), wide(filter.stats), counts);
}

}  // namespace colx
