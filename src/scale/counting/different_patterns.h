#pragma once

// How many different patterns of each type there are, without those that the morphological filter refuses, which are
// none to ngrex.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "corpus/string_store.h"
#include "extraction/tag_filters.h"
#include "filter/filter.h"
#include "model/occurrence_batch.h"
#include "scale/counting/patterns.h"
#include "scale/engine/plan.h"

namespace colx::scale {

// Counts them for a task.
class DifferentPatterns {
 public:
  DifferentPatterns(const WorkFolder& folder, const Plan& plan);

  // Whether every pattern is one, so that nobody has to look at them.
  bool takes_all() const { return !_filter->is_on(); }

  // Counts so many patterns of a type that are all taken.
  void add(std::uint8_t type, std::uint64_t patterns) { _counts[type] += patterns; }

  // Counts one pattern if the filter admits it; `member(k)` is that at the k-th significant position.
  template <typename MemberOf>
  void add_one(std::uint8_t type, const Positions& positions, const MemberOf& member) {
    _batch.clear();
    _batch.add();
    for (unsigned k = 0; k < positions.count; ++k)
      _batch.set_last(positions.at[k], member(k));
    if (_filter->admits(_batch, 0, type)) ++_counts[type];
  }

  // The lines of the task's manifest, one for each type, from which records_by_type adds them up.
  void save(Manifest& manifest) const;

 private:
  StringStore<std::uint8_t> _tags;
  MultiRulesFilter _rules;
  std::unique_ptr<MorphologicFilter> _filter;
  OccurrenceBatch _batch;
  std::vector<std::uint64_t> _counts;  // by type
};

}  // namespace colx::scale
