#include "scale/writing/written_statistics.h"

#include <map>
#include <string>
#include <vector>

#include "base/errors.h"
#include "base/limits.h"
#include "corpus/datafile_stats.h"
#include "output/statistics.h"
#include "scale/counting/count_task.h"
#include "scale/counting/map_task.h"
#include "scale/writing/saturation.h"

namespace colx::scale {

namespace {

// What was found in each datafile.
std::vector<MappedDatafile> _mapped(const Counted& counted) {
  const Plan& plan = counted.plan;
  std::vector<MappedDatafile> mapped(plan.datafiles.size());
  for (MappedDatafile& datafile : mapped)
    datafile.matched.resize(plan.morphologic_rules.size());
  for (std::size_t k = 0; k < plan.shards.size(); ++k) {
    if (!counted.used[k]) continue;
    const MapResult result = MapResult::from(counted.folder.result(map_name(k)));
    for (std::size_t i = 0; i < result.datafiles.size(); ++i) {
      const MappedDatafile& piece = result.datafiles[i];
      MappedDatafile& whole = mapped[plan.shards[k].datafile + i];
      whole.occurrences += piece.occurrences;
      whole.passed += piece.passed;
      for (std::size_t rule = 0; rule < piece.matched.size(); ++rule)
        whole.matched.at(rule) += piece.matched[rule];
    }
  }
  return mapped;
}

StoreSizes _sizes(const Counted& counted) {
  StoreSizes sizes;
  sizes.lemmas = counted.numbering.lemmas;
  sizes.tags = counted.numbering.tags;
  sizes.records = records_by_type(counted.folder, counted.plan, counted.layout);
  return sizes;
}

}  // namespace

void check_patterns(const Counted& counted) {
  const auto records = _sizes(counted).records;
  for (unsigned type = 1; type < records.size(); ++type)
    if (records[type] > limits::records) throw too_many_records(type, limits::records);
}

template <typename Count>
void write_statistics(std::ostream& out, const Counted& counted) {
  std::vector<NamedDataFileStatsOf<Count>> list;
  const std::vector<MappedDatafile> mapped = _mapped(counted);
  for (std::size_t d = 0; d < mapped.size(); ++d) {
    const NumberedDatafile& numbered = counted.numbering.datafiles[d];
    if (!numbered.opened) continue;
    NamedDataFileStatsOf<Count>& stats = list.emplace_back();
    stats.name = counted.plan.datafiles[d].path;
    stats.extracted_count = number_as<Count>(mapped[d].occurrences);
    stats.passed_count = number_as<Count>(mapped[d].passed);
    stats.filtered_count = number_as<Count>(mapped[d].occurrences - mapped[d].passed);
    // A datafile without sentences adds nothing, one that has some adds all that was read.
    stats.words_count = number_as<Count>(numbered.words);
    stats.sentences_count = number_as<Count>(numbered.sentences);
  }
  write_stats(out, list, !counted.plan.morphologic_rules.empty(), _sizes(counted));
}

template <typename Count>
void write_filter_statistics(std::ostream& out, const Counted& counted) {
  const std::vector<std::vector<std::string>>& rules = counted.plan.morphologic_rules;
  RuleCounts whole(rules.size());
  std::map<std::string, RuleCounts> by_datafile;
  const std::vector<MappedDatafile> mapped = rules.empty() ? std::vector<MappedDatafile>() : _mapped(counted);
  for (std::size_t d = 0; d < mapped.size(); ++d) {
    if (!counted.numbering.datafiles[d].opened) continue;
    RuleCounts counts;
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
      counts.push_back(number_as<Count>(mapped[d].matched[rule]));
      whole[rule] = number_as<Count>(whole[rule] + counts.back());
    }
    by_datafile.emplace(counted.plan.datafiles[d].path, counts);
  }
  write_rule_counts(out, rules, whole, by_datafile);
}

template void write_statistics<std::uint32_t>(std::ostream&, const Counted&);
template void write_statistics<std::uint64_t>(std::ostream&, const Counted&);
template void write_filter_statistics<std::uint32_t>(std::ostream&, const Counted&);
template void write_filter_statistics<std::uint64_t>(std::ostream&, const Counted&);

}  // namespace colx::scale
